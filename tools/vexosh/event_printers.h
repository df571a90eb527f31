#pragma once

#include <functional>
#include <string>

#include "pktio/event_records.h"
#include "platform/usp.h"

/// Callbacks of the shell, one for each form of each event. Each makes one line of text and hands
/// it to the sink.
namespace vexosh {

void print_event(RxPacket* packet, void* cookie);
void print_event(ctype_rx_packet_s* packet, void* cookie);
void print_event(LinkStatus* status, Usp* port);
void print_event(ctype_link_status_s* status, usp_s* port);
void print_event(L2Addr* addr, int type, void* data);
void print_event(ctype_l2_addr_s* addr, int type, void* data);

/// Where the lines go; called on the thread that delivers the event.
void set_event_sink(std::function<void(const std::string&)> sink);

} // namespace vexosh
