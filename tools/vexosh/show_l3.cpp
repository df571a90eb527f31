// Tables of layer 3. Interfaces are read through the driver; hosts and routes, which it finds only
// by name, from the card.
#include "tools/vexosh/l3_verbs.h"
#include "tools/vexosh/port_reads.h"

namespace vexosh {
namespace {

using vexosim::TextTable;

void show_interfaces(Shell& shell, Words& words)
{
    words.end();
    TextTable table{{"interface", "mac", "vlan"}, {}};
    auto driver = shell.session().driver();
    for (const auto& row : vexosim::l3_interfaces_table().rows) {
        Mac mac{};
        unsigned vid = 0;
        const auto id = static_cast<unsigned>(std::stoul(row[0]));
        const bool known = driver->get_l3_interface(id, vid, mac.data());
        table.rows.push_back(
            {row[0], known ? text(mac) : kUnreadable, known ? std::to_string(vid) : kUnreadable});
    }
    print(shell, table, "there are no interfaces");
}

void show_hosts(Shell& shell, Words& words)
{
    words.end();
    print(shell, vexosim::l3_hosts_table(), "there are no hosts");
}

void show_routes(Shell& shell, Words& words)
{
    words.end();
    print(shell, vexosim::l3_routes_table(), "there are no routes");
}

constexpr Command kCommands[] = {
    {"show l3-interfaces", "", "router addresses and their VLANs", show_interfaces},
    {"show hosts", "", "where packets to single addresses go; whether any did, and whether any may",
     show_hosts},
    {"show routes", "", "where packets to networks go, and whether any did", show_routes},
};

} // namespace

std::span<const Command> show_l3_commands()
{
    return kCommands;
}

} // namespace vexosh
