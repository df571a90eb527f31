// Trunks and VLAN rules as text.
#include <arpa/inet.h>

#include <cstdio>

#include <bcm/port.h>

#include "sim/chip/tables_as_text.h"
#include "sim/chip/text.h"

namespace vexosim {

namespace {

std::string members_text(const std::vector<int>& ports, const PortNames& names)
{
    std::string text;
    for (int port : ports)
        text += (text.empty() ? "" : ",") + names.name(port);
    return text.empty() ? "none" : text;
}

std::string subnet_text(const VlanSubnet& subnet)
{
    char text[INET6_ADDRSTRLEN];
    inet_ntop(subnet.ip6 ? AF_INET6 : AF_INET, subnet.address.data() + (subnet.ip6 ? 0 : 12), text,
              sizeof text);
    return std::string(text) + "/" + std::to_string(subnet.prefix);
}

std::string protocol_text(const ProtocolVlan& rule)
{
    const char* frame = rule.frame_type == BCM_PORT_FRAMETYPE_ETHER2 ? "ethernet"
                        : rule.frame_type == BCM_PORT_FRAMETYPE_8023 ? "802.3"
                                                                     : "snap";
    char type[8];
    std::snprintf(type, sizeof type, " 0x%04x", unsigned{rule.ethertype});
    return frame + std::string(type);
}

void add(TextTable& table, const char* by, const std::string& match, const VlanAssignment& vlan)
{
    table.rows.push_back(
        {by, match, "all", std::to_string(vlan.vid), std::to_string(vlan.priority)});
}

} // namespace

TextTable lags_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"lag", "criterion", "active"}, {}};
    for (int id = 0; id < kTrunkCount; ++id) {
        if (chip.trunks.check(id) != 0)
            continue;
        const Trunk& trunk = chip.trunks.at(id);
        table.rows.push_back({std::to_string(id), std::to_string(trunk.criterion),
                              members_text(trunk.members, names)});
    }
    return table;
}

TextTable vlan_rules_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"by", "match", "port", "vlan", "priority"}, {}};
    for (const auto& [mac, vlan] : chip.vlan_rules.by_mac())
        add(table, "mac", mac_text(mac), vlan);
    for (const auto& [subnet, vlan] : chip.vlan_rules.by_subnet())
        add(table, "subnet", subnet_text(subnet), vlan);
    for (int port : names.in_order()) {
        for (const ProtocolVlan& rule : chip.vlan_rules.by_protocol(port))
            table.rows.push_back(
                {"protocol", protocol_text(rule), names.name(port), std::to_string(rule.vid), "-"});
    }
    return table;
}

TextTable spanning_tree_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"group", "state", "ports"}, {}};
    for (int group = 1; group < StgTable::kGroups; ++group) {
        std::array<PortSet, 5> by_state;
        for (int port = 0; port < kPortCount; ++port)
            by_state[static_cast<std::size_t>(chip.stgs.state(group, port))].set(port);
        for (std::size_t state = 0; state < by_state.size(); ++state) {
            if (by_state[state].any())
                table.rows.push_back({std::to_string(group),
                                      stp_state_name(static_cast<StpState>(state)),
                                      names.names(by_state[state])});
        }
    }
    return table;
}

TextTable port_history_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"port", "pause", "offer", "counting"}, {}};
    for (int port : names.in_order()) {
        const PortConfig& config = chip.ports[port];
        table.rows.push_back({names.name(port), config.pause_by_hand ? "by hand" : "negotiated",
                              config.advert == chip.ports.local_ability(port) ? "all" : "chosen",
                              chip.counters.counting(port) ? "on" : "off"});
    }
    return table;
}

} // namespace vexosim
