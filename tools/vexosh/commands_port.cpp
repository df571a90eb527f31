// Properties of ports that an operator sets every day: link, frames accepted, VLAN and priority.
#include "tools/vexosh/abilities.h"
#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

speed_type_t next_speed(Words& words)
{
    return next_enum<speed_type_t>(words, "speed");
}

duplex_type_t next_duplex(Words& words)
{
    return next_enum<duplex_type_t>(words, "duplex");
}

phy_state_t next_phy_state(Words& words)
{
    return next_enum<phy_state_t>(words, "state");
}

ingress_discard_type_t next_discard(Words& words)
{
    return next_enum<ingress_discard_type_t>(words, "discard mode");
}

port_ability_type_t next_abilities(Words& words)
{
    return parse_abilities(words.next("ABILITIES"));
}

unsigned next_frame_size(Words& words)
{
    return words.number("frame size", 0, 65535);
}

/// True for tagged frames only.
bool next_accepted(Words& words)
{
    const std::string accepted = words.next("all|tagged");
    if (accepted != "all" && accepted != "tagged") {
        words.usage_error("bad kind of frame '" + accepted + "'");
    }
    return accepted == "tagged";
}

void pause(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const std::string which = words.next("off|rx|tx|both");
    words.end();
    const bool rx = which == "rx" || which == "both";
    const bool tx = which == "tx" || which == "both";
    if (!rx && !tx && which != "off") {
        words.usage_error("bad pause '" + which + "'");
    }
    each_port(shell, words, ports, [=](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_pause(port, rx ? 1 : 0, tx ? 1 : 0);
    });
}

void pause_address(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const Mac mac = parse_mac(words.next("MAC"));
    words.end();
    each_port(shell, words, ports, [&mac](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_pause_addr(port, mac.data());
    });
}

void priority(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const unsigned value = words.number("priority", 0, 7);
    words.end();
    each_port(shell, words, ports, [value](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_vlan_priority(port, 0, value);
    });
}

void queue(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const unsigned value = words.number("priority", 0, 7);
    const unsigned queue = words.number("queue", 0, 7);
    words.end();
    each_port(shell, words, ports, [=](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_cos_mapping(port, value, queue);
    });
}

using Sdk = VexoSdkBase;

constexpr Command kCommands[] = {
    {"port enable", "PORTS", "switch ports on", fix_ports<&Sdk::set_port_enable, true>},
    {"port disable", "PORTS", "switch ports off; forgets the addresses learned there",
     fix_ports<&Sdk::set_port_enable, false>},
    {"port speed", "PORTS 10|100|1000|10000", "speed in Mb/s",
     set_ports<&Sdk::set_port_speed, next_speed>},
    {"port duplex", "PORTS half|full", "duplex", set_ports<&Sdk::set_port_duplex, next_duplex>},
    {"port autoneg", "PORTS on|off", "auto-negotiation",
     set_ports<&Sdk::set_port_autoneg, next_switch>},
    {"port advertise", "PORTS ABILITIES",
     "what auto-negotiation offers, e.g. 100-full,autoneg,pause-rx; of several speeds the driver "
     "takes the lowest",
     set_ports<&Sdk::set_port_advertising_ability, next_abilities>},
    {"port pause", "PORTS off|rx|tx|both", "PAUSE frames heeded (rx) and sent (tx)", pause},
    {"port pause-address", "PORTS MAC", "source address of PAUSE frames", pause_address},
    {"port jam", "PORTS on|off", "back pressure at half duplex",
     set_ports<&Sdk::set_port_jaming, next_switch>},
    {"port mtu", "PORTS BYTES", "longest frame in bytes, with its check sequence",
     set_ports<&Sdk::set_port_mtu, next_frame_size>},
    {"port discard", "PORTS none|tagged|untagged|all", "frames refused on arrival",
     set_ports<&Sdk::set_port_ingress_discarding, next_discard>},
    {"port accept", "PORTS all|tagged", "frames accepted: all, or tagged ones only",
     set_ports<&Sdk::set_port_vlan_accept_frame, next_accepted>},
    {"port pvid", "PORTS VID", "VLAN of untagged frames",
     set_ports<&Sdk::set_port_vlan_pvid, next_vid>},
    {"port default-vlan", "PORTS VID", "nothing: the driver says yes and does not act; see pvid",
     set_ports<&Sdk::set_port_default_vlan, next_vid>},
    {"port phy-state", "PORTS up|down",
     "nothing: the driver says yes, but a link state cannot be set",
     set_ports<&Sdk::set_port_phy_state, next_phy_state>},
    {"port priority", "PORTS PRIORITY", "priority of untagged frames, 0 to 7", priority},
    {"port queue", "PORTS PRIORITY QUEUE", "the queue that frames of a priority leave through",
     queue},
};

} // namespace

std::span<const Command> port_commands()
{
    return kCommands;
}

} // namespace vexosh
