#include <chrono>

#include "tools/vexosh/abilities.h"
#include "tools/vexosh/shell.h"
#include "tools/vexosh/time_passes.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"
#include "vexosim/partner.h"
#include "vexosim/wire.h"

namespace vexosh {
namespace {

void throw_if(const std::string& error)
{
    if (!error.empty()) {
        throw BadInput(error);
    }
}

void attach_one(int port, const std::string& spec)
{
    if (spec != "mem") {
        throw_if(vexosim::attach(port, spec));
        return;
    }
    auto wire = std::make_unique<vexosim::MemoryWire>();
    wire->count_only();
    throw_if(vexosim::attach(port, std::move(wire)));
}

void attach(Shell&, Words& words)
{
    do {
        const std::string pair = words.next("PORT=WIRE");
        const std::size_t equals = pair.find('=');
        if (equals == std::string::npos) {
            words.usage_error("'" + pair + "' is not PORT=WIRE");
        }
        for (int port : parse_user_ports(std::string_view(pair).substr(0, equals))) {
            attach_one(port, pair.substr(equals + 1));
        }
    } while (!words.empty());
}

void detach(Shell&, Words& words)
{
    const auto ports = parse_user_ports(words.next("PORTS"));
    words.end();
    for (int port : ports) {
        throw_if(vexosim::detach(port));
    }
}

void wait(Shell& shell, Words& words)
{
    const auto duration = parse_duration(words.next("DURATION"));
    words.end();
    let_time_pass(shell, duration);
}

void calls(Shell&, Words& words)
{
    const std::string what = words.next("on|off|clear");
    words.end();
    if (what == "clear") {
        vexosim::clear_calls();
        return;
    }
    vexosim::log_calls(parse_switch(what, "switch"));
}

void events(Shell& shell, Words& words)
{
    if (words.empty() && !vexosim::manual_clock()) {
        shell.follow_events(true);
        shell.tell_waiting("events as they come");
        while (shell.pause(std::chrono::hours(1))) {
        }
        shell.follow_events(false);
        return;
    }
    const bool on = parse_switch(words.next("on|off"), "switch");
    words.end();
    shell.follow_events(on);
}

void forwarding(Shell& shell, Words& words)
{
    const bool on = parse_switch(words.next("on|off"), "switch");
    words.end();
    shell.session().set_auto_forwarding(on);
}

std::uint32_t speed_bits(unsigned abilities, unsigned ten, unsigned hundred, unsigned thousand,
                         unsigned ten_thousand)
{
    return ((abilities & ten) != 0 ? 0x1u : 0u) | ((abilities & hundred) != 0 ? 0x2u : 0u) |
           ((abilities & thousand) != 0 ? 0x4u : 0u) |
           ((abilities & ten_thousand) != 0 ? 0x80u : 0u);
}

/// A partner that negotiates about abilities if `autoneg` is one of them, else has one speed.
vexosim::LinkPartner partner_of(unsigned abilities)
{
    vexosim::LinkPartner partner;
    partner.autoneg = (abilities & PORT_ABILITY_AUTONEG) != 0;
    partner.speed_half = speed_bits(abilities, PORT_ABILITY_10M_HALF, PORT_ABILITY_100M_HALF,
                                    PORT_ABILITY_1G_HALF, PORT_ABILITY_10G_HALF);
    partner.speed_full = speed_bits(abilities, PORT_ABILITY_10M_FULL, PORT_ABILITY_100M_FULL,
                                    PORT_ABILITY_1G_FULL, PORT_ABILITY_10G_FULL);
    partner.pause = ((abilities & PORT_ABILITY_PAUSE_TX) != 0 ? 0x1u : 0u) |
                    ((abilities & PORT_ABILITY_PAUSE_RX) != 0 ? 0x2u : 0u) |
                    ((abilities & PORT_ABILITY_PAUSE_ASYMMETRIC) != 0 ? 0x4u : 0u);
    return partner;
}

void partner(Shell&, Words& words)
{
    const auto ports = parse_user_ports(words.next("PORTS"));
    const port_ability_type_t abilities = parse_abilities(words.next("ABILITIES"));
    words.end();
    for (int port : ports) {
        throw_if(vexosim::set_partner(port, partner_of(abilities)));
    }
}

constexpr Command kCommands[] = {
    {"attach", "PORTS=WIRE ...", "plug ports in; WIRE is tap:NAME, veth:NAME, pcap:IN,OUT or mem",
     attach},
    {"detach", "PORTS", "unplug ports", detach},
    {"partner", "PORTS ABILITIES",
     "what the far end can do, e.g. 100-full,autoneg; without autoneg it has one speed", partner},
    {"forwarding", "on|off",
     "whether ports that come up are put into forwarding (the driver leaves them blocking); on "
     "at first",
     forwarding},
    {"wait", "DURATION", "let time pass: 5s, 250ms, 10us", wait},
    {"events", "[on|off]",
     "print packets for the CPU, link and MAC table changes as they come; without on or off, until "
     "Ctrl-C",
     events},
    {"calls", "on|off|clear", "log the driver's SDK calls; `show calls` prints them", calls},
};

} // namespace

std::span<const Command> card_commands()
{
    return kCommands;
}

} // namespace vexosh
