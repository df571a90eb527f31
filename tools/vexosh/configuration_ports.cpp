// Settings of ports, as commands take them.
#include "tools/vexosh/configuration.h"
#include "tools/vexosh/port_reads.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

/// What the SDK does not tell of a port.
struct History {
    bool pause_by_hand, offer_chosen;
    std::string counting;
};

struct Reading {
    Sdk& sdk;
    Mp port;
    History history;

    bool negotiates() const
    {
        bool on = false;
        return sdk.get_port_autoneg(port, on) && on;
    }
};

/// Speed and duplex of a port that negotiates are its link's.
template <auto Get>
std::string unless_negotiated(const Reading& r)
{
    return r.negotiates() ? "" : read(r.sdk, r.port, Get);
}

/// What a link has negotiated stays when negotiation ends.
std::string pause(const Reading& r)
{
    const std::string now = pause_text(r.sdk, r.port);
    const bool left = !r.negotiates() && now != "off";
    return r.history.pause_by_hand || left ? now : "";
}

std::string offer(const Reading& r)
{
    return r.history.offer_chosen ? read(r.sdk, r.port, &Sdk::get_port_advertising_ability) : "";
}

template <unsigned Priority>
std::string queue(const Reading& r)
{
    unsigned number = 0;
    return r.sdk.get_port_cos_mapping(r.port, Priority, number) ? std::to_string(number) : "";
}

template <auto Get>
std::string plain(const Reading& r)
{
    return read(r.sdk, r.port, Get);
}

template <auto Get>
std::string rate(const Reading& r)
{
    return rate_text(r.sdk, r.port, Get);
}

struct Property {
    const char* command;
    std::string (*word)(const Reading&);
};

/// In an order in which none undoes another: speed and duplex end negotiation, and negotiation
/// forgets PAUSE.
constexpr Property kProperties[] = {
    {"port speed % $", unless_negotiated<&Sdk::get_port_speed>},
    {"port duplex % $", unless_negotiated<&Sdk::get_port_duplex>},
    {"port autoneg % $", plain<&Sdk::get_port_autoneg>},
    {"port advertise % $", offer},
    {"port pause % $", pause},
    {"port pause-address % $", [](const Reading& r) { return pause_address_text(r.sdk, r.port); }},
    {"port jam % $", plain<&Sdk::get_port_jaming>},
    {"port mtu % $", plain<&Sdk::get_port_mtu>},
    {"port pvid % $", plain<&Sdk::get_port_vlan_pvid>},
    {"port priority % $", [](const Reading& r) { return priority_text(r.sdk, r.port); }},
    {"port queue % 0 $", queue<0>},
    {"port queue % 1 $", queue<1>},
    {"port queue % 2 $", queue<2>},
    {"port queue % 3 $", queue<3>},
    {"port queue % 4 $", queue<4>},
    {"port queue % 5 $", queue<5>},
    {"port queue % 6 $", queue<6>},
    {"port queue % 7 $", queue<7>},
    {"port discard % $", plain<&Sdk::get_port_ingress_discarding>},
    {"port learn % $", [](const Reading& r) { return learning_text(r.sdk, r.port); }},
    {"fdb limit port % $", [](const Reading& r) { return limit_text(r.sdk, r.port, kPortLimit); }},
    {"port bpdu % $", plain<&Sdk::get_port_bpdu_processing>},
    {"port unknown-to-cpu % $", plain<&Sdk::get_port_switch_unknown_unicast_to_cpu>},
    {"port storm % broadcast $", rate<&Sdk::get_port_broadcast_control>},
    {"port storm % multicast $", rate<&Sdk::get_port_multicast_control>},
    {"port storm % unicast $", rate<&Sdk::get_port_unicast_control>},
    {"counters enable % $", [](const Reading& r) { return r.history.counting; }},
    {"port $ %",
     [](const Reading& r) -> std::string {
         return admin_text(r.sdk, r.port) == "up" ? "enable" : "disable";
     }},
};

} // namespace

std::vector<PortSetting> read_port_settings(VexoSdkBase& sdk)
{
    std::vector<PortSetting> settings;
    for (const Property& property : kProperties) {
        settings.push_back({property.command, {}});
    }
    for (const auto& row : vexosim::port_history_table().rows) {
        const auto port = static_cast<std::size_t>(parse_user_port(row[0]));
        const Reading reading{
            sdk, parse_port(row[0]), {row[1] == "by hand", row[2] == "chosen", row[3]}};
        for (std::size_t i = 0; i < settings.size(); ++i) {
            const std::string word = kProperties[i].word(reading);
            settings[i].words[port] = word == kUnreadable ? "" : word;
        }
    }
    return settings;
}

} // namespace vexosh
