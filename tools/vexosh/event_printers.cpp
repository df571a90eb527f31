#include "tools/vexosh/event_printers.h"

#include <mutex>

#include "tools/vexosh/frame_words.h"
#include "tools/vexosh/input.h"

namespace vexosh {
namespace {

std::mutex sink_mutex;
std::function<void(const Event&)> sink;

void emit(const Event& event)
{
    const std::lock_guard lock(sink_mutex);
    if (sink) {
        sink(event);
    }
}

/// A Usp's port by its user port number.
std::string port_text(unsigned usp_port)
{
    return usp_port == 54 ? "cpu" : std::to_string(static_cast<int>(usp_port) - 1);
}

/// A number where it is one.
nlohmann::ordered_json port_json(unsigned usp_port)
{
    if (usp_port == 54) {
        return "cpu";
    }
    return static_cast<int>(usp_port) - 1;
}

Event packet_event(const char* form, unsigned port, unsigned vid, const Bytes& frame)
{
    const std::string what = describe_frame(frame);
    return {std::string(form) + " port " + port_text(port) + " vlan " + std::to_string(vid) + " " +
                std::to_string(frame.size()) + " bytes: " + what,
            {{"event", form},
             {"port", port_json(port)},
             {"vlan", vid},
             {"bytes", frame.size()},
             {"frame", hex(frame.data(), frame.size())},
             {"what", what}}};
}

Event link_event(const char* form, unsigned port, int status, unsigned speed, unsigned duplex)
{
    constexpr unsigned speeds[] = {0, 10, 100, 1000, 10000};
    const char* const duplexes[] = {"?", "half", "full"};
    Event event{std::string(form) + " port " + port_text(port) + (status == 1 ? " up" : " down"),
                {{"event", form}, {"port", port_json(port)}, {"up", status == 1}}};
    if (status == 1) {
        const unsigned mbps = speeds[speed < 5 ? speed : 0];
        const std::string duplex_name = duplexes[duplex < 3 ? duplex : 0];
        event.text += " " + (mbps == 0 ? "?" : std::to_string(mbps)) + " Mb/s " + duplex_name;
        event.data["speed"] = mbps;
        event.data["duplex"] = duplex_name;
    }
    return event;
}

struct Place {
    bool lag;
    int lag_id;
    unsigned usp_port;
};

Event mac_event(const char* form, const unsigned char* mac, unsigned vid, int type, bool learned,
                const Place& place)
{
    const char* const types[] = {"removed", "added", "listed"};
    const std::string change = type >= 0 && type < 3 ? types[type] : "?";
    Mac address;
    std::copy_n(mac, address.size(), address.begin());
    const std::string where =
        place.lag ? "lag " + std::to_string(place.lag_id) : "port " + port_text(place.usp_port);
    Event event{std::string(form) + " " + change + " " + text(address) + " vlan " +
                    std::to_string(vid) + " " + where + (learned ? "" : " static"),
                {{"event", form}, {"change", change}, {"mac", text(address)}, {"vlan", vid}}};
    event.data[place.lag ? "lag" : "port"] =
        place.lag ? nlohmann::ordered_json(place.lag_id) : port_json(place.usp_port);
    event.data["static"] = !learned;
    return event;
}

} // namespace

void set_event_sink(std::function<void(const Event&)> new_sink)
{
    const std::lock_guard lock(sink_mutex);
    sink = std::move(new_sink);
}

Event event_of(RxPacket* packet)
{
    Bytes frame;
    packet->get_pkt_data(frame);
    return packet_event("rx", packet->port().port(), packet->vlan(), frame);
}

Event event_of(LinkStatus* status, Usp* port)
{
    return link_event("link", port->port(), status->status(), status->speed(), status->duplex());
}

Event event_of(L2Addr* addr, int type)
{
    return mac_event("mac", addr->mac(), addr->vlan(), type, addr->learn_type(),
                     {addr->is_trunk(), addr->trunk(), addr->port().port()});
}

void print_event(RxPacket* packet, void*)
{
    emit(event_of(packet));
}

void print_event(ctype_rx_packet_s* packet, void*)
{
    emit(packet_event(
        "rx_c", packet->port, packet->vlan,
        packet->data == nullptr ? Bytes{} : Bytes(packet->data, packet->data + packet->length)));
}

void print_event(LinkStatus* status, Usp* port)
{
    emit(event_of(status, port));
}

void print_event(ctype_link_status_s* status, usp_s* port)
{
    emit(link_event("link_c", port->port, status->status, status->speed, status->duplex));
}

void print_event(L2Addr* addr, int type, void*)
{
    emit(event_of(addr, type));
}

void print_event(ctype_l2_addr_s* addr, int type, void*)
{
    emit(mac_event("mac_c", addr->mac, addr->vlan, type, addr->learn_type != 0,
                   {addr->is_trunk != 0, addr->trunk, addr->port}));
}

} // namespace vexosh
