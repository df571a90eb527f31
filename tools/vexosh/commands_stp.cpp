// Spanning-tree states and mirrors.
#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

stp_state_t next_state(Words& words)
{
    return next_enum<stp_state_t>(words, "state");
}

void group(Shell& shell, Words& words)
{
    const unsigned group = words.number("GROUP", 0, INT32_MAX);
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const auto state = next_enum<mstp_state_t>(words, "state");
    words.end();
    each_port(shell, words, ports,
              [=](Sdk& sdk, const Mp& port) { return sdk.set_stg_stp_state(group, port, state); });
}

/// Switching a mirror off lets floods reach its destination again, so others that go there are set
/// once more.
bool isolate_again(Sdk& sdk, const Mp& destination)
{
    for (const Mp& source : parse_ports("0-52")) {
        Mp other;
        mirror_type_t type = MIRROR_OFF;
        if (sdk.get_mirror_port(other, source, type) && type != MIRROR_OFF &&
            other == destination && !sdk.set_mirror_port(destination, source, type)) {
            return false;
        }
    }
    return true;
}

/// @param was out: whether the port was mirrored.
bool stop_mirror(Sdk& sdk, const Mp& source, bool& was)
{
    Mp destination;
    mirror_type_t type = MIRROR_OFF;
    if (!sdk.get_mirror_port(destination, source, type)) {
        return false;
    }
    was = type != MIRROR_OFF;
    return !was || (sdk.set_mirror_port(destination, source, MIRROR_OFF) &&
                    isolate_again(sdk, destination));
}

void mirror_from(Shell& shell, Words& words)
{
    const std::list<Mp> sources = parse_ports(words.next("PORTS"));
    if (!words.take("to")) {
        words.usage_error("missing to");
    }
    const Mp destination = parse_port(words.next("PORT"));
    const auto type = next_enum<mirror_type_t>(words, "direction");
    words.end();
    if (type == MIRROR_OFF) {
        words.usage_error("`mirror off` stops a mirror");
    }
    each_port(shell, words, sources, [&](Sdk& sdk, const Mp& source) {
        if (source == destination) {
            throw BadInput("port " + text(source) + " cannot be mirrored to itself");
        }
        bool was = false; // a mirror that moves leaves its old destination
        return stop_mirror(sdk, source, was) && sdk.set_mirror_port(destination, source, type);
    });
}

void mirror_off(Shell& shell, Words& words)
{
    const std::list<Mp> sources = parse_ports(words.next("PORTS"));
    words.end();
    each_port(shell, words, sources, [](Sdk& sdk, const Mp& source) {
        bool was = false;
        const bool stopped = stop_mirror(sdk, source, was);
        if (stopped && !was) {
            throw BadInput("port " + text(source) + " is not mirrored");
        }
        return stopped;
    });
}

void mirror_enable(Shell& shell, Words& words)
{
    words.end();
    require(shell.session().driver()->enable_mirror(1), words.command());
}

constexpr const char* kStates = "PORTS blocking|listening|learning|forwarding|disabled";

constexpr Command kCommands[] = {
    {"stp port", kStates, "spanning-tree state in every group",
     set_ports<&Sdk::set_port_stp_state, next_state>},
    {"port stp", kStates, "the same", set_ports<&Sdk::set_port_stp_state, next_state>},
    {"stp group", "GROUP PORTS discarding|learning|forwarding|disabled",
     "spanning-tree state in one group, 1 to 255; VLANs are in group 1", group},
    {"mirror from", "PORTS to PORT ingress|egress|both",
     "copy what ports receive or send to another, which gets no broadcast or unknown frame any "
     "more",
     mirror_from},
    {"mirror enable", "",
     "start the mirroring block anew, without mirrors, as bring-up does; nothing stops it",
     mirror_enable},
    {"mirror off", "PORTS", "stop mirroring ports", mirror_off},
};

} // namespace

std::span<const Command> stp_commands()
{
    return kCommands;
}

} // namespace vexosh
