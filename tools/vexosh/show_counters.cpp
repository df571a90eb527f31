// Counters of one port as the driver reads them.
#include <algorithm>

#include "l2/stat_tables.h"
#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

constexpr unsigned kCounters = 76;

/// The SDK's names of the driver's counters; that of type 1 comes first.
std::vector<std::string> counter_names()
{
    const auto rows = vexosim::port_counters_table(0, true).rows;
    std::vector<std::string> names;
    for (unsigned type = 1; type <= kCounters; ++type) {
        names.push_back(rows.at(static_cast<std::size_t>(stat_to_stat_val[type])).at(0));
    }
    return names;
}

template <class Counter>
std::vector<Counter> read_list(Sdk& sdk, const Mp& port,
                               bool (Sdk::*get)(const Mp&, std::list<Counter>&))
{
    std::list<Counter> counters;
    require((sdk.*get)(port, counters), "show counters driver " + text(port));
    return {counters.begin(), counters.end()};
}

template <class Counter>
std::vector<Counter> read_array(Sdk& sdk, const Mp& port,
                                bool (Sdk::*get)(const Mp&, Counter*, unsigned&))
{
    std::vector<Counter> counters(kCounters);
    unsigned count = kCounters;
    require((sdk.*get)(port, counters.data(), count), "show counters driver " + text(port));
    return counters;
}

template <class Counter>
void print_counters(Shell& shell, const std::vector<Counter>& counters, bool all)
{
    const std::vector<std::string> names = counter_names();
    vexosim::TextTable table{{"counter", "value"}, {}};
    for (const Counter& counter : counters) {
        if (all || counter.value != 0) {
            table.rows.push_back({names.at(static_cast<std::size_t>(counter.type) - 1),
                                  std::to_string(counter.value)});
        }
    }
    print(shell, table, "nothing has been counted");
}

void show_driver(Shell& shell, Words& words)
{
    const Mp port = parse_port(words.next("PORT"));
    const bool narrow = words.take("32");
    const bool array = words.take("array");
    const bool all = words.take("all");
    words.end();
    auto driver = shell.session().driver();
    if (narrow) {
        print_counters(
            shell,
            array ? read_array<StatCounter32>(*driver, port, &Sdk::get_port_stat_counter_all32_ext)
                  : read_list<StatCounter32>(*driver, port, &Sdk::get_port_stat_counter_all32),
            all);
        return;
    }
    print_counters(
        shell,
        array ? read_array<StatCounter64>(*driver, port, &Sdk::get_port_stat_counter_all64_ext)
              : read_list<StatCounter64>(*driver, port, &Sdk::get_port_stat_counter_all64),
        all);
}

/// By the SDK's name, or by number.
stat_type_t next_counter(Words& words)
{
    const std::string word = words.next("COUNTER");
    const std::vector<std::string> names = counter_names();
    const auto name = std::ranges::find(names, word);
    if (name != names.end()) {
        return static_cast<stat_type_t>(name - names.begin() + 1);
    }
    if (word.find_first_not_of("0123456789") != std::string::npos) {
        throw BadInput("bad counter '" + word +
                       "': `show counters driver 0 all` lists their names; 1 to 76 will do");
    }
    return static_cast<stat_type_t>(parse_number(word, "counter", 1, kCounters));
}

/// One counter, by the operation for its width.
template <auto Get64, auto Get32, class Type>
void show_one(Shell& shell, Words& words, const Mp& port, Type type)
{
    const bool narrow = words.take("32");
    words.end();
    auto driver = shell.session().driver();
    unsigned long long wide_value = 0;
    unsigned value = 0;
    require(narrow ? ((*driver).*Get32)(port, type, value)
                   : ((*driver).*Get64)(port, type, wide_value),
            words.command() + " " + text(port));
    const unsigned long long count = narrow ? value : wide_value;
    print(shell, {}, {{"port", text(port)}, {"count", count}}, std::to_string(count) + "\n");
}

void show_counter(Shell& shell, Words& words)
{
    const Mp port = parse_port(words.next("PORT"));
    const stat_type_t type = next_counter(words);
    show_one<&Sdk::get_port_stat_counter, &Sdk::get_port_stat_counter32>(shell, words, port, type);
}

void show_brief_counter(Shell& shell, Words& words)
{
    const Mp port = parse_port(words.next("PORT"));
    const auto type = next_enum<brief_stat_type_t>(words, "counter");
    show_one<&Sdk::get_port_brief_stat_counter, &Sdk::get_port_brief_stat_counter32>(shell, words,
                                                                                     port, type);
}

constexpr Command kCommands[] = {
    {"show counters driver", "PORT [32] [array] [all]",
     "the driver's 76 counters of a port that are not 0, or all; 32: in 32 bits; array: by the "
     "operation that fills an array, not a list",
     show_driver},
    {"show counter", "PORT COUNTER [32]", "one of these, by its name or number", show_counter},
    {"show counter brief", "PORT in-packets|in-bytes|out-packets|out-bytes [32]",
     "one of the short set; the driver always refuses, but `show counters brief` works",
     show_brief_counter},
};

} // namespace

std::span<const Command> show_counter_commands()
{
    return kCommands;
}

} // namespace vexosh
