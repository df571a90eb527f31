// What goes wrong on purpose: cables that are pulled, flap, lose and delay frames; SDK calls that
// fail.
#include <algorithm>
#include <array>
#include <charconv>

#include "tools/vexosh/nearest.h"
#include "tools/vexosh/shell.h"
#include "tools/vexosh/time_passes.h"
#include "vexosim/cable.h"
#include "vexosim/faults.h"

namespace vexosh {
namespace {

using vexosim::CableWay;

void throw_if(const std::string& error)
{
    if (!error.empty()) {
        throw BadInput(error);
    }
}

void link(Shell&, Words& words)
{
    const auto ports = parse_user_ports(words.next("PORTS"));
    const bool flaps = words.take("flap");
    const std::string how = words.next(flaps ? "PERIOD" : "up, down or flap");
    words.end();
    for (int port : ports) {
        throw_if(flaps ? vexosim::flap_cable(port, parse_duration(how))
                       : vexosim::plug_cable(port, parse_switch(how, "link")));
    }
}

double parse_percent(std::string_view word)
{
    double percent = -1;
    const std::string_view number = word.ends_with('%') ? word.substr(0, word.size() - 1) : word;
    const auto end = std::from_chars(number.data(), number.data() + number.size(), percent);
    if (end.ec != std::errc() || end.ptr != number.data() + number.size() ||
        !(percent >= 0 && percent <= 100)) {
        throw BadInput("bad loss '" + std::string(word) +
                       "': a percentage from 0 to 100 is wanted");
    }
    return percent;
}

vexosim::Impairment next_impairment(Words& words)
{
    vexosim::Impairment impairment;
    if (words.take("off")) {
        return impairment;
    }
    bool any = false;
    for (; !words.empty(); any = true) {
        if (words.take("loss")) {
            impairment.loss_percent = parse_percent(words.next("PERCENT"));
        } else if (words.take("delay")) {
            impairment.delay = parse_duration(words.next("DURATION"));
        } else if (words.take("seed")) {
            impairment.seed =
                static_cast<std::uint64_t>(parse_number(words.next("N"), "seed", 0, INT64_MAX));
        } else {
            words.end();
        }
    }
    return any ? impairment : (words.next("loss, delay or off"), impairment);
}

void impair(Shell&, Words& words)
{
    const auto ports = parse_user_ports(words.next("PORTS"));
    const bool in = words.take("in"), out = !in && words.take("out");
    const vexosim::Impairment impairment = next_impairment(words);
    words.end();
    for (int port : ports) {
        if (!out) {
            throw_if(vexosim::impair_cable(port, CableWay::in, impairment));
        }
        if (!in) {
            throw_if(vexosim::impair_cable(port, CableWay::out, impairment));
        }
    }
}

std::string duration_text(std::chrono::microseconds duration)
{
    const auto us = duration.count();
    return us % 1'000'000 == 0 ? std::to_string(us / 1'000'000) + "s"
           : us % 1000 == 0    ? std::to_string(us / 1000) + "ms"
                               : std::to_string(us) + "us";
}

std::string percent_text(double percent)
{
    std::array<char, 32> text{};
    const auto end = std::to_chars(text.begin(), text.end(), percent);
    return {text.begin(), end.ptr};
}

void show_impairments(Shell& shell, Words& words)
{
    words.end();
    vexosim::TextTable table{{"port", "cable", "way", "loss", "delay", "seed", "lost", "waiting"},
                             {}};
    for (const vexosim::CableStatus& cable : vexosim::impaired_cables()) {
        std::string state = cable.plugged ? "up" : "down";
        if (cable.flap_period.count() != 0) {
            state += ", flaps " + duration_text(cable.flap_period);
        }
        for (const auto& [way, lane] : {std::pair{"in", cable.in}, {"out", cable.out}}) {
            table.rows.push_back({std::to_string(cable.user_port), state, way,
                                  percent_text(lane.impairment.loss_percent) + "%",
                                  duration_text(lane.impairment.delay),
                                  std::to_string(lane.impairment.seed), std::to_string(lane.lost),
                                  std::to_string(lane.waiting)});
        }
    }
    print(shell, table, "all cables are in order");
}

/// The function of the SDK that a word names, or empty for `any`.
std::string next_call(Words& words)
{
    std::string name = words.next("CALL");
    if (name == "any") {
        return {};
    }
    const std::vector<std::string>& names = vexosim::calls_that_can_fail();
    if (!std::ranges::binary_search(names, name)) {
        std::string like;
        for (const std::string& one : nearest(name, names)) {
            like += (like.empty() ? "" : ", ") + one;
        }
        throw BadInput("no SDK call '" + name + "' that can fail; the nearest are " + like);
    }
    return name;
}

void fault(Shell&, Words& words)
{
    if (words.take("clear")) {
        words.end();
        vexosim::clear_faults();
        return;
    }
    vexosim::Fault fault;
    fault.call = next_call(words);
    fault.code = static_cast<int>(parse_number(words.next("CODE"), "code", -1000, 1000));
    while (!words.empty()) {
        if (words.take("nth")) {
            fault.nth =
                static_cast<unsigned>(parse_number(words.next("N"), "count", 1, 1'000'000'000));
        } else if (words.take("sticky")) {
            fault.sticky = true;
        } else {
            words.end();
        }
    }
    fault.do_nothing = fault.code >= 0;
    vexosim::inject(fault);
}

void show_faults(Shell& shell, Words& words)
{
    words.end();
    vexosim::TextTable table{{"call", "code", "nth", "sticky", "seen", "hits"}, {}};
    for (const auto& [fault, seen, hits] : vexosim::armed_faults()) {
        table.rows.push_back({fault.call.empty() ? "any" : fault.call, std::to_string(fault.code),
                              std::to_string(fault.nth), fault.sticky ? "yes" : "no",
                              std::to_string(seen), std::to_string(hits)});
    }
    print(shell, table, "no SDK call is made to fail");
}

constexpr Command kCommands[] = {
    {"link", "PORTS up|down|flap [PERIOD]",
     "pull cables, plug them in, or have them flap: down for half of each period, up for the other",
     link},
    {"impair", "PORTS [in|out] off|loss|delay|seed ...",
     "have cables lose PERCENT of the frames (loss PERCENT), deliver them later (delay DURATION), "
     "both ways or those into or out of the card; with the same seed (seed N) the same are lost; "
     "off: no longer",
     impair},
    {"fault", "CALL|clear [CODE] [nth N] [sticky]",
     "make an SDK call fail (or with 0, do nothing); CALL may be any", fault},
    {"show impairments", "", "cables that are pulled, flap, lose or delay frames",
     show_impairments},
    {"show faults", "", "the SDK calls that are made to fail, and how often it has happened",
     show_faults},
};

} // namespace

std::span<const Command> trouble_commands()
{
    return kCommands;
}

} // namespace vexosh
