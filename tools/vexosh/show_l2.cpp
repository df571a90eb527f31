// Tables of layer 2. What the driver can tell is read through it, the rest from the card.
#include "l2/lag.h"
#include "tools/vexosh/port_reads.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;
using vexosim::TextTable;

using Row = std::vector<std::string>;

std::string usp_text(unsigned lag)
{
    Usp usp;
    return vexosdk_lag_id_to_lag_usp(lag, usp) ? show_value(usp) : "-";
}

void show_lags(Shell& shell, Words& words)
{
    words.end();
    TextTable table{{"lag", "usp", "criterion", "ports", "active"}, {}};
    auto driver = shell.session().driver();
    for (const Row& trunk : vexosim::lags_table().rows) {
        const auto id = static_cast<unsigned>(std::stoul(trunk[0]));
        auto criterion = LAG_PSC_SRC_DST_MAC;
        std::list<Mp> members;
        get_lag_member(id, members);
        table.rows.push_back(
            {trunk[0], usp_text(id),
             driver->get_lag_psc(id, criterion) ? show_value(criterion) : kUnreadable,
             text(members), trunk[2]});
    }
    print(shell, table, "there are no lags");
}

/// Takes a filter's words, and keeps the rows that have its value in a column.
bool filter(TextTable& table, Words& words, const char* name, std::size_t column,
            std::string (*value)(Words&))
{
    if (!words.take(name)) {
        return false;
    }
    const std::string wanted = value(words);
    std::erase_if(table.rows, [&](const Row& row) { return row[column] != wanted; });
    return true;
}

bool filter_fdb(TextTable& table, Words& words)
{
    for (const char* kind : {"static", "learned"}) {
        if (words.take(kind)) {
            std::erase_if(table.rows, [kind](const Row& row) { return row[3] != kind; });
            return true;
        }
    }
    return filter(table, words, "vlan", 0, [](Words& w) { return std::to_string(next_vid(w)); }) ||
           filter(table, words, "mac", 1,
                  [](Words& w) { return text(parse_mac(w.next("MAC"))); }) ||
           filter(table, words, "port", 2,
                  [](Words& w) { return text(parse_port(w.next("PORT"))); }) ||
           filter(table, words, "lag", 2,
                  [](Words& w) { return "lag " + std::to_string(w.number("LAG", 0, INT32_MAX)); });
}

// Not through the driver, whose walk leaves out group addresses and those of the CPU.
void show_fdb(Shell& shell, Words& words)
{
    TextTable table = vexosim::fdb_table();
    while (!words.empty()) {
        if (!filter_fdb(table, words)) {
            words.end();
        }
    }
    print(shell, table, "no MAC entries");
}

/// One row for each value that ports have, with the ports.
TextTable ports_by(const std::string& head, const std::function<std::string(const Mp&)>& value)
{
    std::vector<std::pair<std::string, std::list<Mp>>> groups;
    for (const Mp& port : parse_ports("0-52")) {
        const std::string of_port = value(port);
        auto group = std::ranges::find(groups, of_port, &decltype(groups)::value_type::first);
        if (group == groups.end()) {
            group = groups.insert(group, {of_port, {}});
        }
        group->second.push_back(port);
    }
    TextTable table{{head, "ports"}, {}};
    for (const auto& [name, ports] : groups) {
        table.rows.push_back({name, text(ports)});
    }
    return table;
}

std::string group_state(Sdk& sdk, unsigned group, const Mp& port)
{
    auto state = MSTP_DISABLED;
    require(sdk.get_stg_stp_state(group, port, state), "show stp " + std::to_string(group));
    return show_value(state);
}

void show_stp(Shell& shell, Words& words)
{
    const bool one_group = !words.empty();
    const unsigned group = one_group ? words.number("GROUP", 0, INT32_MAX) : 0;
    words.end();
    auto driver = shell.session().driver();
    print(shell, ports_by("state", [&](const Mp& port) {
              return one_group ? group_state(*driver, group, port)
                               : read(*driver, port, &Sdk::get_port_stp_state);
          }));
}

void show_mirrors(Shell& shell, Words& words)
{
    words.end();
    TextTable table{{"from", "to", "direction"}, {}};
    auto driver = shell.session().driver();
    for (const Mp& source : parse_ports("0-52,cpu")) {
        Mp destination;
        mirror_type_t type = MIRROR_OFF;
        if (driver->get_mirror_port(destination, source, type) && type != MIRROR_OFF) {
            table.rows.push_back({text(source), text(destination), show_value(type)});
        }
    }
    print(shell, table, "no port is mirrored");
}

void show_learning(Shell& shell, Words& words)
{
    words.end();
    auto driver = shell.session().driver();
    int seconds = 0;
    const bool known = driver->get_fdb_aging_time(seconds);
    const TextTable table =
        ports_by("learn", [&](const Mp& port) { return learning_text(*driver, port); });
    const std::string ageing = !known         ? kUnreadable
                               : seconds == 0 ? "off"
                                              : std::to_string(seconds) + " s";
    print(shell, table, {{"ageing", ageing}}, "ageing " + ageing + "\n" + table.text());
}

void show_limits(Shell& shell, Words& words)
{
    words.end();
    auto driver = shell.session().driver();
    TextTable table{{"where", "limit"}, {}};
    const auto add = [&](const std::string& where, const Mp& place, LimitKind kind) {
        const std::string limit = limit_text(*driver, place, kind);
        if (limit != "none") {
            table.rows.push_back({where, limit});
        }
    };
    require(limit_text(*driver, Mp(), kSystemLimit) != kUnreadable, words.command());
    add("system", Mp(), kSystemLimit);
    for (unsigned vid : existing_vlans()) {
        add("vlan " + std::to_string(vid), Mp(0, vid), kVlanLimit);
    }
    for (const Mp& port : parse_ports("0-52")) {
        add("port " + text(port), port, kPortLimit);
    }
    for (const Row& lag : vexosim::lags_table().rows) {
        add("lag " + lag[0], Mp(0, static_cast<unsigned>(std::stoul(lag[0]))), kLagLimit);
    }
    print(shell, table, "no learning limits are set");
}

void show_storm_control(Shell& shell, Words& words)
{
    words.end();
    TextTable table{{"port", "broadcast", "multicast", "unicast"}, {}};
    auto driver = shell.session().driver();
    for (const Mp& port : parse_ports("0-52")) {
        const Row row = {text(port), rate_text(*driver, port, &Sdk::get_port_broadcast_control),
                         rate_text(*driver, port, &Sdk::get_port_multicast_control),
                         rate_text(*driver, port, &Sdk::get_port_unicast_control)};
        if (row[1] != "off" || row[2] != "off" || row[3] != "off") {
            table.rows.push_back(row);
        }
    }
    print(shell, table, "no port has storm control");
}

bool read_blocks(Sdk& sdk, const Mp& ingress, const Mp& egress, flood_block_type_t& flags)
{
    return text(egress) == "cpu" ? sdk.get_port_flood_blocking_cpu(ingress, flags)
                                 : sdk.get_port_flood_blocking(ingress, egress, flags);
}

/// What is blocked towards one port: a row for each kind of flood.
void add_blocks(TextTable& table, Sdk& sdk, const Mp& egress)
{
    for (unsigned bit = 0x1; bit <= 0x8; bit <<= 1) {
        std::list<Mp> from;
        for (const Mp& ingress : parse_ports("0-52")) {
            auto flags = FLOOD_BLOCK_NONE;
            if (read_blocks(sdk, ingress, egress, flags) && (flags & bit) != 0) {
                from.push_back(ingress);
            }
        }
        if (!from.empty()) {
            table.rows.push_back(
                {text(egress), text(static_cast<flood_block_type_t>(bit)), text(from)});
        }
    }
}

void show_blocks(Shell& shell, Words& words)
{
    const std::list<Mp> egresses =
        parse_ports(words.empty() ? "0-52,cpu" : words.next("PORTS").c_str());
    words.end();
    TextTable table{{"to", "flood", "from"}, {}};
    auto driver = shell.session().driver();
    for (const Mp& egress : egresses) {
        add_blocks(table, *driver, egress);
    }
    print(shell, table, "no floods are blocked");
}

void show_vlan_rules(Shell& shell, Words& words)
{
    words.end();
    print(shell, vexosim::vlan_rules_table(), "no VLAN rules");
}

void show_vlans(Shell& shell, Words& words)
{
    if (words.empty()) {
        print(shell, vexosim::vlans_table());
        return;
    }
    const unsigned vid = next_vid(words);
    words.end();
    std::list<Mp> tagged;
    std::list<Mp> untagged;
    if (!shell.session().driver()->get_vlan_info(vid, tagged, untagged)) {
        throw BadInput("there is no VLAN " + std::to_string(vid));
    }
    TextTable table{{"vlan", "tagged", "untagged"}, {}};
    table.rows.push_back({std::to_string(vid), text(tagged), text(untagged)});
    print(shell, table);
}

void show_switch(Shell& shell, Words& words)
{
    words.end();
    auto driver = shell.session().driver();
    bool to_cpu = false;
    unsigned mode = 0;
    const bool known = driver->get_switch_unknown_unicast_to_cpu(to_cpu);
    print_properties(shell,
                     {{"switch", ""},
                      {{"unknown-to-cpu", known ? show_value(to_cpu) : kUnreadable},
                       {"forward-mode",
                        driver->get_switch_forward_mode(mode) ? show_value(mode) : kUnreadable}}});
}

constexpr Command kCommands[] = {
    {"show switch", "", "settings of the whole switch", show_switch},
    {"show vlans", "[VID]", "VLANs and their members", show_vlans},
    {"show vlan-rules", "", "VLANs by source address, subnet and protocol", show_vlan_rules},
    {"show lags", "", "LAGs: configured ports, and the active ones", show_lags},
    {"show fdb", "[vlan VID] [port PORT] [lag LAG] [mac MAC] [static|learned]",
     "the MAC table, or entries of it", show_fdb},
    {"show learning", "", "ageing time, and how ports learn", show_learning},
    {"show limits", "", "learning limits", show_limits},
    {"show stp", "[GROUP]", "ports by spanning-tree state, in group 1 or another", show_stp},
    {"show mirrors", "", "mirrored ports and where to", show_mirrors},
    {"show storm-control", "", "ports with storm control, in frames a second", show_storm_control},
    {"show blocks", "[PORTS]", "floods that are kept from ports", show_blocks},
};

} // namespace

std::span<const Command> show_l2_commands()
{
    return kCommands;
}

} // namespace vexosh
