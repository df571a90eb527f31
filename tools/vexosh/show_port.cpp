// Properties of ports, read through the driver.
#include "l2/lag.h"
#include "tools/vexosh/abilities.h"
#include "tools/vexosh/port_reads.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;
using vexosim::TextTable;

std::string speed_text(Sdk& sdk, const Mp& port)
{
    return read(sdk, port, &Sdk::get_port_speed) + "/" + read(sdk, port, &Sdk::get_port_duplex);
}

void show_ports(Shell& shell, Words& words)
{
    words.end();
    TextTable table{
        {"port", "admin", "link", "speed", "auto", "pvid", "mtu", "learn", "discard", "stp"}, {}};
    auto driver = shell.session().driver();
    for (const Mp& port : parse_ports("0-52,cpu")) {
        table.rows.push_back(
            {text(port), admin_text(*driver, port), read(*driver, port, &Sdk::get_port_phy_state),
             speed_text(*driver, port), read(*driver, port, &Sdk::get_port_autoneg),
             read(*driver, port, &Sdk::get_port_vlan_pvid), read(*driver, port, &Sdk::get_port_mtu),
             learning_text(*driver, port), read(*driver, port, &Sdk::get_port_ingress_discarding),
             read(*driver, port, &Sdk::get_port_stp_state)});
    }
    print(shell, table);
}

std::string accept_text(Sdk& sdk, const Mp& port)
{
    bool tagged_only = false;
    return !sdk.get_port_vlan_accept_frame(port, tagged_only) ? kUnreadable
           : tagged_only                                      ? "restricted"
                                                              : "all";
}

/// The driver's answer is the wrong way round: on for a port whose floods are blocked.
std::string egress_text(Sdk& sdk, const Mp& port)
{
    bool blocked = false;
    return !sdk.get_port_egress_admin_state(port, blocked) ? kUnreadable : blocked ? "off" : "on";
}

/// "0,0,1,1,...": the queue of each priority.
std::string queues_text(Sdk& sdk, const Mp& port)
{
    std::string result;
    for (unsigned priority = 0; priority < 8; ++priority) {
        unsigned queue = 0;
        result +=
            (priority == 0 ? "" : ",") +
            (sdk.get_port_cos_mapping(port, priority, queue) ? std::to_string(queue) : kUnreadable);
    }
    return result;
}

std::string mirror_text(Sdk& sdk, const Mp& port)
{
    Mp destination;
    mirror_type_t type = MIRROR_OFF;
    if (!sdk.get_mirror_port(destination, port, type)) {
        return kUnreadable;
    }
    return type == MIRROR_OFF ? "off" : show_value(type) + " to " + text(destination);
}

std::string lag_text(const Mp& port)
{
    for (const LagNode& lag : lag_list) {
        for (const Mp& member : lag.member_ports()) {
            if (member == port) {
                return std::to_string(lag.id());
            }
        }
    }
    return "-";
}

/// The driver says that it tells, and does not.
std::string default_vlan_text(Sdk& sdk, const Mp& port)
{
    unsigned vid = UINT32_MAX;
    const bool told = sdk.get_port_default_vlan(port, vid) && vid != UINT32_MAX;
    return told ? std::to_string(vid) : "not told (see pvid)";
}

std::string counting_text(Sdk& sdk, const Mp& port)
{
    bool enabled = false;
    return sdk.get_port_stat_enabled(port, enabled) ? show_value(enabled) : "not told";
}

struct Memberships {
    std::string tagged, untagged;
};

Memberships memberships(Sdk& sdk, const Mp& port)
{
    Memberships result;
    const auto append = [&port](std::string& vids, const std::list<Mp>& members, unsigned vid) {
        if (std::find(members.begin(), members.end(), port) != members.end()) {
            vids += (vids.empty() ? "" : ",") + std::to_string(vid);
        }
    };
    for (unsigned vid : existing_vlans()) {
        std::list<Mp> tagged;
        std::list<Mp> untagged;
        sdk.get_vlan_info(vid, tagged, untagged);
        append(result.tagged, tagged, vid);
        append(result.untagged, untagged, vid);
    }
    return result;
}

void add_link(TextTable& table, Sdk& sdk, const Mp& port)
{
    const auto add = [&](const char* name, const std::string& value) {
        table.rows.push_back({name, value});
    };
    add("admin", admin_text(sdk, port));
    add("link", read(sdk, port, &Sdk::get_port_phy_state));
    add("speed", speed_text(sdk, port));
    add("autoneg", read(sdk, port, &Sdk::get_port_autoneg));
    add("abilities", read(sdk, port, &Sdk::get_port_ability));
    add("current", read(sdk, port, &Sdk::get_port_current_ability));
    add("advertises", read(sdk, port, &Sdk::get_port_advertising_ability));
    port_ability_type_t peer = PORT_ABILITY_NONE;
    add("peer", sdk.get_port_peer_ability(port, peer) ? text(peer) : kUnreadable);
    add("pause", pause_text(sdk, port));
    add("pause-address", pause_address_text(sdk, port));
    add("jam", read(sdk, port, &Sdk::get_port_jaming));
    add("mtu", read(sdk, port, &Sdk::get_port_mtu));
}

void add_vlan(TextTable& table, Sdk& sdk, const Mp& port)
{
    const auto add = [&](const char* name, const std::string& value) {
        table.rows.push_back({name, value.empty() ? "-" : value});
    };
    const Memberships vlans = memberships(sdk, port);
    add("tagged", vlans.tagged);
    add("untagged", vlans.untagged);
    add("pvid", read(sdk, port, &Sdk::get_port_vlan_pvid));
    add("default-vlan", default_vlan_text(sdk, port));
    add("priority", priority_text(sdk, port));
    add("queues", queues_text(sdk, port));
    add("accept", accept_text(sdk, port));
    add("discard", read(sdk, port, &Sdk::get_port_ingress_discarding));
}

void add_traffic(TextTable& table, Sdk& sdk, const Mp& port)
{
    const auto add = [&](const char* name, const std::string& value) {
        table.rows.push_back({name, value});
    };
    add("learn", learning_text(sdk, port));
    add("limit", limit_text(sdk, port, kPortLimit));
    add("stp", read(sdk, port, &Sdk::get_port_stp_state));
    add("bpdu", read(sdk, port, &Sdk::get_port_bpdu_processing));
    add("unknown-to-cpu", read(sdk, port, &Sdk::get_port_switch_unknown_unicast_to_cpu));
    add("egress", egress_text(sdk, port));
    add("storm broadcast", rate_text(sdk, port, &Sdk::get_port_broadcast_control));
    add("storm multicast", rate_text(sdk, port, &Sdk::get_port_multicast_control));
    add("storm unicast", rate_text(sdk, port, &Sdk::get_port_unicast_control));
    add("counting", counting_text(sdk, port));
    add("mirror", mirror_text(sdk, port));
    add("lag", lag_text(port));
}

void show_port(Shell& shell, Words& words)
{
    const Mp port = parse_port(words.next("PORT"));
    words.end();
    auto driver = shell.session().driver();
    TextTable table{{"port", text(port)}, {}};
    add_link(table, *driver, port);
    add_vlan(table, *driver, port);
    add_traffic(table, *driver, port);
    print_properties(shell, table);
}

constexpr Command kCommands[] = {
    {"show ports", "", "settings and link of every port", show_ports},
    {"show port", "PORT", "every property of one port", show_port},
};

} // namespace

std::span<const Command> show_port_commands()
{
    return kCommands;
}

} // namespace vexosh
