// The card's state as text, and what-if tracing: the chip's own views under its lock.
#include "vexosim/state.h"

#include <cstdio>

#include "sim/card/card.h"
#include "sim/chip/tables_as_text.h"
#include "sim/pipeline/trace.h"
#include "vexosim/trace.h"

namespace vexosim {
namespace {

PortNames port_names()
{
    PortNames names;
    for (int chip_port = 0; attached() && chip_port < kPorts; ++chip_port)
        names.set(chip_port, user_port_of(chip_port));
    return names;
}

} // namespace

TextTable ports_table()
{
    const ChipLock chip;
    return ports_table(*chip, port_names());
}

TextTable vlans_table()
{
    const ChipLock chip;
    return vlans_table(*chip, port_names());
}

TextTable fdb_table()
{
    const ChipLock chip;
    return fdb_table(*chip, port_names());
}

TextTable lags_table()
{
    const ChipLock chip;
    return lags_table(*chip, port_names());
}

TextTable vlan_rules_table()
{
    const ChipLock chip;
    return vlan_rules_table(*chip, port_names());
}

TextTable spanning_tree_table()
{
    const ChipLock chip;
    return spanning_tree_table(*chip, port_names());
}

TextTable port_history_table()
{
    const ChipLock chip;
    return port_history_table(*chip, port_names());
}

TextTable l3_interfaces_table()
{
    const ChipLock chip;
    return l3_interfaces_table(*chip);
}

TextTable l3_hosts_table()
{
    const ChipLock chip;
    return l3_hosts_table(*chip, port_names());
}

TextTable l3_routes_table()
{
    const ChipLock chip;
    return l3_routes_table(*chip, port_names());
}

TextTable field_groups_table()
{
    const ChipLock chip;
    return field_groups_table(*chip);
}

TextTable field_entries_table()
{
    const ChipLock chip;
    return field_entries_table(*chip, port_names());
}

TextTable counters_table()
{
    const ChipLock chip;
    return counters_table(*chip, port_names());
}

TextTable port_counters_table(int user_port, bool all)
{
    const ChipLock chip;
    const int chip_port = chip_port_of(user_port);
    return chip_port < 0 ? TextTable{} : port_counters_table(*chip, chip_port, all);
}

TextTable drops_table()
{
    const ChipLock chip;
    return drops_table(*chip);
}

DropCounters drop_counters()
{
    const ChipLock chip;
    return chip->drops;
}

std::string state_digest()
{
    const ChipLock chip;
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(chip->digest()));
    return text;
}

std::string check_conservation()
{
    const ChipLock chip;
    return chip->check_conservation();
}

std::string what_if(int user_port, FrameView frame)
{
    const ChipLock chip;
    const int chip_port = chip_port_of(user_port);
    if (chip_port < 0)
        return "no port " + std::to_string(user_port) + "\n";
    return trace_frame(*chip, card().background.receiver.queues, chip_port, frame, port_names())
        .text;
}

std::string trace_next(unsigned count, int user_port)
{
    const ChipLock chip;
    const int chip_port = user_port == -1 ? -1 : chip_port_of(user_port);
    if (user_port != -1 && chip_port < 0)
        return "no port " + std::to_string(user_port);
    NextTraces& traces = card().next_traces;
    traces.start(count, chip_port, port_names());
    std::erase(card().observers, &traces);
    if (count > 0)
        card().observers.push_back(&traces);
    return {};
}

std::vector<std::string> take_traces()
{
    const ChipLock chip;
    NextTraces& traces = card().next_traces;
    if (traces.done())
        std::erase(card().observers, &traces);
    return traces.take();
}

} // namespace vexosim
