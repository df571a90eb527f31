#pragma once

#include <functional>
#include <string>

#include "pktio/event_records.h"
#include "platform/usp.h"
#include "tools/vexosh/event.h"

/// Events as people and programs read them, and callbacks of the shell, one for each form of each
/// event, which hand them to the sink.
namespace vexosh {

Event event_of(RxPacket* packet);
Event event_of(LinkStatus* status, Usp* port);
Event event_of(L2Addr* addr, int type);

void print_event(RxPacket* packet, void* cookie);
void print_event(ctype_rx_packet_s* packet, void* cookie);
void print_event(LinkStatus* status, Usp* port);
void print_event(ctype_link_status_s* status, usp_s* port);
void print_event(L2Addr* addr, int type, void* data);
void print_event(ctype_l2_addr_s* addr, int type, void* data);

/// Where events go that callbacks are told; called on the thread that delivers the event.
void set_event_sink(std::function<void(const Event&)> sink);

} // namespace vexosh
