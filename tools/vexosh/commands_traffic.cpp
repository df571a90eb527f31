// What ports do with floods, storms, unknown addresses and control frames.
#include "tools/vexosh/abilities.h"
#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

/// Rates of the driver are `unsigned`, of the chip `int`.
constexpr std::int64_t kHighestRate = INT32_MAX;

void block(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const Mp egress = parse_port(words.next("EGRESS"));
    unsigned floods = parse_flood(words.next("FLOOD"));
    for (const std::string& word : words.rest()) {
        floods |= parse_flood(word);
    }
    const auto flags = static_cast<flood_block_type_t>(floods);
    each_port(shell, words, ports, [&](Sdk& sdk, const Mp& port) {
        return egress == parse_port("cpu") ? sdk.set_port_flood_blocking_cpu(port, flags)
                                           : sdk.set_port_flood_blocking(port, egress, flags);
    });
}

void storm(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const std::string kind = words.next("broadcast|multicast|unicast|all");
    const bool known =
        kind == "broadcast" || kind == "multicast" || kind == "unicast" || kind == "all";
    if (!known) {
        words.usage_error("bad kind of frame '" + kind + "'");
    }
    const unsigned rate = words.take("off") ? 0 : words.number("rate", 1, kHighestRate);
    words.end();
    const auto wanted = [&kind](const char* name) { return kind == "all" || kind == name; };
    each_port(shell, words, ports, [&](Sdk& sdk, const Mp& port) {
        return (!wanted("broadcast") || sdk.set_port_broadcast_control(port, rate)) &&
               (!wanted("multicast") || sdk.set_port_multicast_control(port, rate)) &&
               (!wanted("unicast") || sdk.set_port_unicast_control(port, rate));
    });
}

bool set_learning(Sdk& sdk, const Mp& port, const std::string& mode)
{
    if (mode == "on") {
        return sdk.set_port_mac_lock(port, false);
    }
    return sdk.set_port_mac_lock_ext(port, mode != "learn", mode == "forward");
}

void learn(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const std::string mode = words.next("on|learn|forward|cpu");
    words.end();
    if (mode != "on" && mode != "learn" && mode != "forward" && mode != "cpu") {
        words.usage_error("bad learning mode '" + mode + "'");
    }
    each_port(shell, words, ports,
              [&](Sdk& sdk, const Mp& port) { return set_learning(sdk, port, mode); });
}

void switch_unknown(Shell& shell, Words& words)
{
    const bool on = next_switch(words);
    words.end();
    require(shell.session().driver()->set_switch_unknown_unicast_to_cpu(on), words.command());
}

void switch_mode(Shell& shell, Words& words)
{
    const unsigned mode = words.number("mode", 0, kHighestRate);
    words.end();
    require(shell.session().driver()->set_switch_forward_mode(mode), words.command());
}

constexpr Command kCommands[] = {
    {"port block",
     "PORTS EGRESS none|all|broadcast|unknown-unicast|known-multicast|unknown-multicast ...",
     "keep floods that enter at PORTS from leaving at EGRESS; only those named stay blocked",
     block},
    {"port l2", "PORTS on|off",
     "off: no broadcast or unknown frame floods out of the ports, and their addresses go",
     set_ports<&Sdk::set_port_l2_enable, next_switch>},
    {"port egress", "PORTS on|off", "off: nothing floods out of the ports",
     set_ports<&Sdk::set_port_egress_admin_state, next_switch>},
    {"port storm", "PORTS broadcast|multicast|unicast|all RATE|off",
     "storm control: frames a second that a port takes; unicast is that of unknown destination",
     storm},
    {"port learn", "PORTS on|learn|forward|cpu",
     "frames of unknown source: learned and forwarded, only learned, only forwarded, or sent to "
     "the CPU alone",
     learn},
    {"port bpdu", "PORTS on|off", "whether frames to bridge group addresses go to the CPU",
     set_ports<&Sdk::set_port_bpdu_processing, next_switch>},
    {"port unknown-to-cpu", "PORTS on|off", "frames of unknown destination also go to the CPU",
     set_ports<&Sdk::set_port_switch_unknown_unicast_to_cpu, next_switch>},
    {"switch unknown-to-cpu", "on|off", "the same for frames of all ports", switch_unknown},
    {"switch forward-mode", "MODE", "the chip's forwarding mode, a number", switch_mode},
};

} // namespace

std::span<const Command> traffic_commands()
{
    return kCommands;
}

} // namespace vexosh
