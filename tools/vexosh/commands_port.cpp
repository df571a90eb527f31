#include "core/sdk_base.h"
#include "tools/vexosh/call_names.h"
#include "tools/vexosh/shell.h"

namespace vexosh {
namespace {

template <class Enum>
Enum parse_enum(const std::string& word, const char* what)
{
    std::string wanted;
    for (const NamedValue& value : enum_names(typeid(Enum))) {
        if (word == value.name) {
            return static_cast<Enum>(value.value);
        }
        wanted += (wanted.empty() ? "" : ", ") + std::string(value.name);
    }
    throw BadInput(std::string("bad ") + what + " '" + word + "': one of " + wanted + " is wanted");
}

/// Does the same to each port of a list; the first refusal ends it.
template <class Change>
void each_port(Shell& shell, const std::list<Mp>& ports, const char* what, Change change)
{
    auto driver = shell.session().driver();
    for (const Mp& port : ports) {
        require(change(*driver, port), "port " + std::string(what) + " " + text(port));
    }
}

void enable(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    words.end();
    each_port(shell, ports, "enable",
              [](VexoSdkBase& sdk, const Mp& port) { return sdk.set_port_enable(port, true); });
}

void disable(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    words.end();
    each_port(shell, ports, "disable",
              [](VexoSdkBase& sdk, const Mp& port) { return sdk.set_port_enable(port, false); });
}

void pvid(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const unsigned vid = parse_vid(words.next("VID"));
    words.end();
    each_port(shell, ports, "pvid", [vid](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_vlan_pvid(port, vid);
    });
}

void priority(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const auto value =
        static_cast<unsigned>(parse_number(words.next("PRIORITY"), "priority", 0, 7));
    words.end();
    each_port(shell, ports, "priority", [value](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_vlan_priority(port, 0, value);
    });
}

void speed(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const auto value = parse_enum<speed_type_t>(words.next("SPEED"), "speed");
    words.end();
    each_port(shell, ports, "speed", [value](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_speed(port, value);
    });
}

void duplex(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const auto value = parse_enum<duplex_type_t>(words.next("DUPLEX"), "duplex");
    words.end();
    each_port(shell, ports, "duplex", [value](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_duplex(port, value);
    });
}

void autoneg(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const bool on = parse_switch(words.next("on|off"), "switch");
    words.end();
    each_port(shell, ports, "autoneg",
              [on](VexoSdkBase& sdk, const Mp& port) { return sdk.set_port_autoneg(port, on); });
}

void mtu(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const auto bytes =
        static_cast<unsigned>(parse_number(words.next("BYTES"), "frame size", 0, 65535));
    words.end();
    each_port(shell, ports, "mtu",
              [bytes](VexoSdkBase& sdk, const Mp& port) { return sdk.set_port_mtu(port, bytes); });
}

void discard(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const auto mode = parse_enum<ingress_discard_type_t>(words.next("MODE"), "discard mode");
    words.end();
    each_port(shell, ports, "discard", [mode](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_ingress_discarding(port, mode);
    });
}

void stp(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const auto state = parse_enum<stp_state_t>(words.next("STATE"), "state");
    words.end();
    each_port(shell, ports, "stp", [state](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_stp_state(port, state);
    });
}

void block(Shell& shell, Words& words)
{
    const auto ports = parse_ports(words.next("PORTS"));
    const Mp egress = parse_port(words.next("EGRESS"));
    unsigned flags = 0;
    for (const std::string& word : words.rest()) {
        const std::pair<const char*, flood_block_type_t> kinds[] = {
            {"broadcast", FLOOD_BLOCK_BROADCAST},
            {"unknown-unicast", FLOOD_BLOCK_UNKNOWN_UNICAST},
            {"known-multicast", FLOOD_BLOCK_KNOWN_MULTICAST},
            {"unknown-multicast", FLOOD_BLOCK_UNKNOWN_MULTICAST},
            {"none", FLOOD_BLOCK_NONE}};
        bool known = false;
        for (const auto& [name, flag] : kinds) {
            flags |= word == name ? static_cast<unsigned>(flag) : 0u;
            known |= word == name;
        }
        if (!known) {
            words.usage_error("unknown kind of traffic '" + word + "'");
        }
    }
    each_port(shell, ports, "block", [&](VexoSdkBase& sdk, const Mp& port) {
        return sdk.set_port_flood_blocking(port, egress, static_cast<flood_block_type_t>(flags));
    });
}

constexpr Command kCommands[] = {
    {"port enable", "PORTS", "switch ports on", enable},
    {"port disable", "PORTS", "switch ports off; forgets the addresses learned there", disable},
    {"port pvid", "PORTS VID", "VLAN of untagged frames", pvid},
    {"port priority", "PORTS PRIORITY", "priority of untagged frames", priority},
    {"port speed", "PORTS 10|100|1000|10000", "speed in Mb/s", speed},
    {"port duplex", "PORTS half|full", "duplex", duplex},
    {"port autoneg", "PORTS on|off", "auto-negotiation", autoneg},
    {"port mtu", "PORTS BYTES", "longest frame in bytes, with its check sequence", mtu},
    {"port discard", "PORTS none|tagged|untagged|all", "frames refused on arrival", discard},
    {"port stp", "PORTS blocking|listening|learning|forwarding|disabled", "spanning-tree state",
     stp},
    {"port block", "PORTS EGRESS none|broadcast|unknown-unicast|known-multicast|unknown-multicast",
     "keep floods that enter at PORTS from leaving at EGRESS", block},
};

} // namespace

std::span<const Command> port_commands()
{
    return kCommands;
}

} // namespace vexosh
