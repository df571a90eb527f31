#include "tools/vexosh/configuration.h"

#include "tools/vexosh/port_at.h"
#include "tools/vexosh/port_reads.h"

namespace vexosh {

namespace {

using Sdk = VexoSdkBase;

std::map<unsigned, Members> read_vlans(Sdk& sdk)
{
    std::map<unsigned, Members> vlans;
    for (const unsigned vid : existing_vlans()) {
        std::list<Mp> tagged;
        std::list<Mp> untagged;
        require(sdk.get_vlan_info(vid, tagged, untagged), "reading vlan " + std::to_string(vid));
        vlans[vid] = {{tagged.begin(), tagged.end()}, {untagged.begin(), untagged.end()}};
    }
    return vlans;
}

Lines read_switch(Sdk& sdk)
{
    bool to_cpu = false;
    unsigned mode = 0;
    int seconds = 0;
    require(sdk.get_switch_unknown_unicast_to_cpu(to_cpu) && sdk.get_switch_forward_mode(mode) &&
                sdk.get_fdb_aging_time(seconds),
            "reading the switch's settings");
    return {"switch unknown-to-cpu " + show_value(to_cpu),
            "switch forward-mode " + std::to_string(mode), "fdb ageing " + std::to_string(seconds)};
}

PortWords read_mirrors(Sdk& sdk)
{
    PortWords mirrors;
    for (std::size_t port = 0; port < kPorts; ++port) {
        Mp destination;
        mirror_type_t type = MIRROR_OFF;
        if (sdk.get_mirror_port(destination, port_at(port), type) && type != MIRROR_OFF) {
            mirrors[port] = "to " + text(destination) + " " + show_value(type);
        }
    }
    return mirrors;
}

void read_blocks(Sdk& sdk, std::size_t egress, PortNumbers& blocks)
{
    for (std::size_t ingress = 0; ingress < kPorts; ++ingress) {
        auto flags = FLOOD_BLOCK_NONE;
        require(sdk.get_port_flood_blocking(port_at(ingress), port_at(egress), flags),
                "reading what is blocked");
        blocks[ingress] = flags;
    }
}

std::map<unsigned, PortWords> read_spanning_tree()
{
    std::map<unsigned, PortWords> groups;
    for (const auto& row : vexosim::spanning_tree_table().rows) {
        PortWords& states = groups[static_cast<unsigned>(std::stoul(row[0]))];
        for (const int port : parse_user_ports(row[2])) {
            states[static_cast<std::size_t>(port)] = row[1];
        }
    }
    return groups;
}

} // namespace

Configuration read_configuration(VexoSdkBase& sdk)
{
    Configuration now;
    now.vlans = read_vlans(sdk);
    now.of_switch = read_switch(sdk);
    now.ports = read_port_settings(sdk);
    now.mirrors = read_mirrors(sdk);
    for (std::size_t egress = 0; egress < kPorts; ++egress) {
        read_blocks(sdk, egress, now.blocks[egress]);
    }
    now.spanning_tree = read_spanning_tree();
    read_tables(sdk, now);
    return now;
}

} // namespace vexosh
