#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

void show_counters(Shell& shell, Words& words)
{
    if (words.empty()) {
        print(shell, vexosim::counters_table(), "nothing has been counted");
        return;
    }
    const int port = parse_user_port(words.next("PORT"));
    const bool all = words.take("all");
    words.end();
    print(shell, vexosim::port_counters_table(port, all), "nothing has been counted");
}

template <class Counter>
void show_brief(Shell& shell, const Words& words, bool (Sdk::*get)(const Mp&, std::list<Counter>&))
{
    vexosim::TextTable table{{"port", "in-packets", "in-bytes", "out-packets", "out-bytes"}, {}};
    auto driver = shell.session().driver();
    for (const Mp& port : parse_ports("0-52,cpu")) {
        std::list<Counter> counters;
        require(((*driver).*get)(port, counters), words.command());
        std::vector<std::string> row = {text(port)};
        bool any = false;
        for (const Counter& counter : counters) {
            row.push_back(std::to_string(counter.value));
            any |= counter.value != 0;
        }
        if (any) {
            table.rows.push_back(row);
        }
    }
    print(shell, table, "nothing has been counted");
}

void show_brief(Shell& shell, Words& words)
{
    const bool narrow = words.take("32");
    words.end();
    if (narrow) {
        show_brief(shell, words, &Sdk::get_port_brief_stat_counter_all32);
    } else {
        show_brief(shell, words, &Sdk::get_port_brief_stat_counter_all64);
    }
}

void clear(Shell& shell, Words& words)
{
    const std::string ports = words.next("PORTS or all");
    words.end();
    each_port(shell, words, parse_ports(ports == "all" ? "0-52,cpu" : ports.c_str()),
              [](Sdk& sdk, const Mp& port) { return sdk.clear_port_stat_counter(port); });
}

constexpr Command kCommands[] = {
    {"counters clear", "PORTS|all", "set counters of ports to 0", clear},
    {"counters enable", "PORTS on|off", "whether the short set of ports' counters counts",
     set_ports<&Sdk::set_port_stat_enable, next_switch>},
    {"show counters", "[PORT [all]]",
     "frames and bytes of every port; the counters of one that are not 0, or all 78",
     show_counters},
    {"show counters brief", "[32]", "the short set of counters of every port; 32: in 32 bits",
     show_brief},
};

} // namespace

std::span<const Command> counter_commands()
{
    return kCommands;
}

} // namespace vexosh
