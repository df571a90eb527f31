#include "tools/vexosh/event_printers.h"

#include <mutex>

#include "tools/vexosh/frame_words.h"
#include "tools/vexosh/input.h"

namespace vexosh {
namespace {

std::mutex sink_mutex;
std::function<void(const std::string&)> sink;

void emit(const std::string& line)
{
    const std::lock_guard lock(sink_mutex);
    if (sink) {
        sink(line);
    }
}

/// A Usp's port by its user port number.
std::string port_text(unsigned usp_port)
{
    return usp_port == 54 ? "cpu" : std::to_string(static_cast<int>(usp_port) - 1);
}

void emit_packet(const char* form, unsigned port, unsigned vid, const Bytes& frame)
{
    emit(std::string(form) + " port " + port_text(port) + " vlan " + std::to_string(vid) + " " +
         std::to_string(frame.size()) + " bytes: " + describe_frame(frame));
}

void emit_link(const char* form, unsigned port, int status, unsigned speed, unsigned duplex)
{
    const char* const speeds[] = {"?", "10", "100", "1000", "10000"};
    const char* const duplexes[] = {"?", "half", "full"};
    std::string line =
        std::string(form) + " port " + port_text(port) + (status == 1 ? " up" : " down");
    if (status == 1) {
        line += std::string(" ") + speeds[speed < 5 ? speed : 0] + " Mb/s " +
                duplexes[duplex < 3 ? duplex : 0];
    }
    emit(line);
}

void emit_mac(const char* form, const unsigned char* mac, unsigned vid, int type, bool learned,
              const std::string& where)
{
    const char* const types[] = {"removed", "added", "listed"};
    Mac address;
    std::copy_n(mac, address.size(), address.begin());
    emit(std::string(form) + " " + (type >= 0 && type < 3 ? types[type] : "?") + " " +
         text(address) + " vlan " + std::to_string(vid) + " " + where + (learned ? "" : " static"));
}

} // namespace

void set_event_sink(std::function<void(const std::string&)> new_sink)
{
    const std::lock_guard lock(sink_mutex);
    sink = std::move(new_sink);
}

void print_event(RxPacket* packet, void*)
{
    Bytes frame;
    packet->get_pkt_data(frame);
    emit_packet("rx", packet->port().port(), packet->vlan(), frame);
}

void print_event(ctype_rx_packet_s* packet, void*)
{
    emit_packet("rx_c", packet->port, packet->vlan,
                packet->data == nullptr ? Bytes{}
                                        : Bytes(packet->data, packet->data + packet->length));
}

void print_event(LinkStatus* status, Usp* port)
{
    emit_link("link", port->port(), status->status(), status->speed(), status->duplex());
}

void print_event(ctype_link_status_s* status, usp_s* port)
{
    emit_link("link_c", port->port, status->status, status->speed, status->duplex);
}

void print_event(L2Addr* addr, int type, void*)
{
    emit_mac("mac", addr->mac(), addr->vlan(), type, addr->learn_type(),
             addr->is_trunk() ? "lag " + std::to_string(addr->trunk())
                              : "port " + port_text(addr->port().port()));
}

void print_event(ctype_l2_addr_s* addr, int type, void*)
{
    emit_mac("mac_c", addr->mac, addr->vlan, type, addr->learn_type != 0,
             addr->is_trunk != 0 ? "lag " + std::to_string(addr->trunk)
                                 : "port " + port_text(addr->port));
}

} // namespace vexosh
