// Entries of tables, as the commands that make them.
#include <algorithm>
#include <optional>

#include "l2/lag.h"
#include "tools/vexosh/configuration.h"
#include "tools/vexosh/port_reads.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;
using Row = std::vector<std::string>;

using Names = std::set<std::string>;

/// What the rows of a table are about.
Names names_of(const vexosim::TextTable& table)
{
    Names names;
    for (const Row& row : table.rows) {
        names.insert(row[0]);
    }
    return names;
}

/// A LAG of the manager's, or a trunk that was made without it.
void add_lag(Lines& lines, Sdk& sdk, const Row& trunk)
{
    const auto id = static_cast<unsigned>(std::stoul(trunk[0]));
    std::list<Mp> members;
    Usp usp;
    const bool managed = get_lag_member(id, members) && vexosdk_lag_id_to_lag_usp(id, usp);
    auto criterion = LAG_PSC_SRC_DST_MAC;
    sdk.get_lag_psc(id, criterion);
    lines.push_back(managed ? "lag create " + std::to_string(usp.port()) : "call create_lag");
    if (criterion != LAG_PSC_SRC_DST_MAC) {
        lines.push_back((managed ? "lag criterion " : "call set_lag_psc ") + trunk[0] + " " +
                        show_value(criterion));
    }
    if (managed && !members.empty()) {
        lines.push_back("lag add " + trunk[0] + " " + text(members));
    } else if (!managed && trunk[2] != "none") {
        lines.push_back("call add_ports_to_lag " + trunk[0] + " " + trunk[2]);
    }
}

/// New LAGs have the lowest free ids, so those that are missing in between come and go.
void add_lags(Lines& lines, Sdk& sdk)
{
    Lines gone;
    unsigned next = 0;
    for (const Row& trunk : vexosim::lags_table().rows) {
        for (; std::to_string(next) != trunk[0]; ++next) {
            lines.emplace_back("call create_lag");
            gone.push_back("call delete_lag " + std::to_string(next));
        }
        add_lag(lines, sdk, trunk);
        ++next;
    }
    lines.insert(lines.end(), gone.begin(), gone.end());
}

void add_limits(Lines& lines, Sdk& sdk)
{
    constexpr unsigned kTrunks = 128;
    constexpr unsigned kVlans = 4096;
    const auto add = [&](const std::string& where, unsigned number, LimitKind kind) {
        const std::string limit = limit_text(sdk, Mp(0, number), kind);
        if (limit != "none" && limit != kUnreadable) {
            lines.push_back("fdb limit " + where + " " + limit);
        }
    };
    add("system", 0, kSystemLimit);
    for (unsigned vid = 1; vid < kVlans; ++vid) {
        add("vlan " + std::to_string(vid), vid, kVlanLimit);
    }
    for (unsigned id = 0; id < kTrunks; ++id) {
        add("lag " + std::to_string(id), id, kLagLimit);
    }
}

void add_vlan_rules(Lines& lines)
{
    for (const Row& rule : vexosim::vlan_rules_table().rows) {
        const bool by_protocol = rule[0] == "protocol";
        lines.push_back("vlan " + rule[0] + " " + (by_protocol ? rule[2] + " " : "") + rule[1] +
                        " " + rule[3] + (by_protocol ? "" : " " + rule[4]));
    }
}

/// @return the addresses that have static entries, as "MAC VID".
Names add_static_entries(Configuration& configuration)
{
    std::size_t learned = 0;
    Names addresses;
    for (const Row& entry : vexosim::fdb_table().rows) {
        if (entry[3] == "static") {
            configuration.tables.push_back("fdb add " + entry[1] + " " + entry[0] + " " + entry[2]);
            addresses.insert(entry[1] + " " + entry[0]);
        } else {
            ++learned;
        }
    }
    if (learned > 0) {
        configuration.lost.push_back("# left out: " + std::to_string(learned) +
                                     (learned == 1 ? " learned address" : " learned addresses"));
    }
    return addresses;
}

/// Why a host or route cannot be made, if so.
std::optional<std::string> not_to_be_made(const std::string& interface, const std::string& place,
                                          const Names& interfaces, const Names& lags)
{
    if (!interfaces.contains(interface)) {
        return "interface " + interface + " is gone";
    }
    if (place.starts_with("lag ") && !lags.contains(place.substr(4))) {
        return place + " is gone";
    }
    return std::nullopt;
}

void add_layer3(Configuration& configuration, const Names& static_addresses)
{
    Lines& lines = configuration.tables;
    const vexosim::TextTable interfaces = vexosim::l3_interfaces_table();
    const Names ids = names_of(interfaces);
    const Names lags = names_of(vexosim::lags_table());
    for (const Row& row : interfaces.rows) {
        lines.push_back("l3 interface add " + row[1] + " " + row[2] + " id " + row[0]);
        if (const std::string own = row[1] + " " + row[2]; !static_addresses.contains(own)) {
            lines.push_back("fdb delete " + own); // an interface brings its address along
        }
    }
    for (const Row& host : vexosim::l3_hosts_table().rows) {
        const bool ip6 = host[0].find(':') != std::string::npos;
        const auto why = ip6 ? std::optional<std::string>("the driver refuses IPv6 hosts")
                             : not_to_be_made(host[2], host[3], ids, lags);
        if (why) {
            configuration.lost.push_back("# left out: host " + host[0] + ", for " + *why);
            continue;
        }
        lines.push_back("l3 host add " + host[0] + " " + host[1] + " " + host[2] + " " + host[3]);
        if (host[5] == "no") {
            lines.push_back("l3 host invalidate " + host[0]);
        }
    }
    for (const Row& route : vexosim::l3_routes_table().rows) {
        if (const auto why = not_to_be_made(route[3], route[4], ids, lags)) {
            configuration.lost.push_back("# left out: route " + route[0] + ", for " + *why);
            continue;
        }
        lines.push_back("l3 route add " + route[0] + " " + route[2] + " " + route[3] + " " +
                        route[4] + (route[1] == "-" ? "" : " via " + route[1]));
    }
}

} // namespace

void read_tables(VexoSdkBase& sdk, Configuration& configuration)
{
    add_lags(configuration.tables, sdk);
    add_limits(configuration.tables, sdk);
    add_vlan_rules(configuration.tables);
    add_layer3(configuration, add_static_entries(configuration));
}

} // namespace vexosh
