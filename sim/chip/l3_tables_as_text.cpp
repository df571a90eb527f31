// Layer-3 interfaces, hosts and routes as text.
#include "sim/chip/tables_as_text.h"
#include "sim/chip/text.h"

namespace vexosim {

namespace {

std::string egress_text(const NextHop& hop, const PortNames& names)
{
    return hop.on_trunk ? "lag " + std::to_string(hop.egress) : names.name(hop.egress);
}

std::string via_text(const NextHop& hop)
{
    return hop.ip4 == 0 ? "-" : ip_text(IpAddress::from_ip4(hop.ip4));
}

const char* yes_or_no(bool value)
{
    return value ? "yes" : "no";
}

} // namespace

TextTable l3_interfaces_table(const Chip& chip)
{
    TextTable table{{"interface", "mac", "vlan"}, {}};
    for (unsigned id = 0; id < chip.l3_interfaces.capacity(); ++id) {
        if (const L3Interface* found = chip.l3_interfaces.find(id))
            table.rows.push_back(
                {std::to_string(id), mac_text(found->mac), std::to_string(found->vid)});
    }
    return table;
}

TextTable l3_hosts_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"host", "mac", "interface", "port", "hit", "valid"}, {}};
    for (const IpAddress& address : chip.l3_hosts.keys()) {
        const L3Host& host = *chip.l3_hosts.find(address);
        const NextHop& hop = host.next_hop;
        table.rows.push_back({ip_text(address), mac_text(hop.mac), std::to_string(hop.interface),
                              egress_text(hop, names), yes_or_no(host.hit),
                              yes_or_no(host.usable)});
    }
    return table;
}

TextTable l3_routes_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"network", "via", "mac", "interface", "port", "hit"}, {}};
    for (const IpPrefix& prefix : chip.l3_routes.keys()) {
        const L3Route& route = *chip.l3_routes.find(prefix);
        const NextHop& hop = route.next_hop;
        table.rows.push_back({prefix_text(prefix), via_text(hop), mac_text(hop.mac),
                              std::to_string(hop.interface), egress_text(hop, names),
                              yes_or_no(route.hit)});
    }
    return table;
}

} // namespace vexosim
