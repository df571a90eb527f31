#include "tools/vexosh/call_operation.h"

namespace vexosh {

void add_port_operations(std::vector<Operation>& operations)
{
    const auto add = [&](Operation operation) { operations.push_back(std::move(operation)); };
    add(operation("set_port_phy_state", &VexoSdkBase::set_port_phy_state, "port state"));
    add(operation("get_port_phy_state", &VexoSdkBase::get_port_phy_state, "port state"));
    add(operation("set_port_mac_lock", &VexoSdkBase::set_port_mac_lock, "port lock"));
    add(operation("get_port_mac_lock", &VexoSdkBase::get_port_mac_lock, "port locked"));
    add(operation("set_port_mac_lock_ext", &VexoSdkBase::set_port_mac_lock_ext,
                  "port lock forward"));
    add(operation("get_port_mac_lock_ext", &VexoSdkBase::get_port_mac_lock_ext,
                  "port locked forward"));
    add(operation("set_port_broadcast_control", &VexoSdkBase::set_port_broadcast_control,
                  "port rate"));
    add(operation("get_port_broadcast_control", &VexoSdkBase::get_port_broadcast_control,
                  "port rate"));
    add(operation("set_port_multicast_control", &VexoSdkBase::set_port_multicast_control,
                  "port rate"));
    add(operation("get_port_multicast_control", &VexoSdkBase::get_port_multicast_control,
                  "port rate"));
    add(operation("set_port_unicast_control", &VexoSdkBase::set_port_unicast_control, "port rate"));
    add(operation("get_port_unicast_control", &VexoSdkBase::get_port_unicast_control, "port rate"));
    add(operation("set_port_egress_admin_state", &VexoSdkBase::set_port_egress_admin_state,
                  "port up"));
    add(operation("get_port_egress_admin_state", &VexoSdkBase::get_port_egress_admin_state,
                  "port state"));
    add(operation("set_port_ingress_discarding", &VexoSdkBase::set_port_ingress_discarding,
                  "port type"));
    add(operation("get_port_ingress_discarding", &VexoSdkBase::get_port_ingress_discarding,
                  "port type"));
    add(operation("set_port_vlan_pvid", &VexoSdkBase::set_port_vlan_pvid, "port vid"));
    add(operation("get_port_vlan_pvid", &VexoSdkBase::get_port_vlan_pvid, "port vid"));
    add(operation("set_port_vlan_priority", &VexoSdkBase::set_port_vlan_priority,
                  "port unused priority"));
    add(operation("get_port_vlan_priority", &VexoSdkBase::get_port_vlan_priority,
                  "port unused priority"));
    add(operation("set_port_vlan_accept_frame", &VexoSdkBase::set_port_vlan_accept_frame,
                  "port tagged_only"));
    add(operation("get_port_vlan_accept_frame", &VexoSdkBase::get_port_vlan_accept_frame,
                  "port tagged_only"));
    add(operation("set_port_mac_limit", &VexoSdkBase::set_port_mac_limit, "port limit kind"));
    add(operation("get_port_mac_limit", &VexoSdkBase::get_port_mac_limit, "port limit kind"));
    add(operation("set_port_protocol_vlan", &VexoSdkBase::set_port_protocol_vlan,
                  "port frame ethertype vid"));
    add(operation("delete_port_protocol_vlan", &VexoSdkBase::delete_port_protocol_vlan,
                  "port frame ethertype"));
    add(operation("delete_port_protocol_vlan_all", &VexoSdkBase::delete_port_protocol_vlan_all,
                  "port"));
    add(operation("set_mac_vlan", &VexoSdkBase::set_mac_vlan, "mac vid priority"));
    add(operation("set_ipv4_subnet_vlan", &VexoSdkBase::set_ipv4_subnet_vlan,
                  "ip mask vid priority"));
    add(operation("set_ipv6_subnet_vlan", &VexoSdkBase::set_ipv6_subnet_vlan,
                  "ip6 prefix_length vid priority"));
    add(operation("send_packet_by_ports", &VexoSdkBase::send_packet_by_ports,
                  "tagged untagged packet"));
    add(operation("send_packet_from_cpu", &VexoSdkBase::send_packet_from_cpu, "packet"));
    add(operation("get_port_ability", &VexoSdkBase::get_port_ability, "port ability"));
    add(operation("set_port_advertising_ability", &VexoSdkBase::set_port_advertising_ability,
                  "port ability"));
    add(operation("get_port_advertising_ability", &VexoSdkBase::get_port_advertising_ability,
                  "port ability"));
    add(operation("get_port_current_ability", &VexoSdkBase::get_port_current_ability,
                  "port ability"));
    add(operation("get_port_peer_ability", &VexoSdkBase::get_port_peer_ability, "port ability"));
    add(operation("set_port_flood_blocking", &VexoSdkBase::set_port_flood_blocking,
                  "ingress egress block"));
    add(operation("get_port_flood_blocking", &VexoSdkBase::get_port_flood_blocking,
                  "ingress egress block"));
    add(operation("set_port_flood_blocking_cpu", &VexoSdkBase::set_port_flood_blocking_cpu,
                  "ingress block"));
    add(operation("get_port_flood_blocking_cpu", &VexoSdkBase::get_port_flood_blocking_cpu,
                  "ingress block"));
    add(operation("set_port_cos_mapping", &VexoSdkBase::set_port_cos_mapping,
                  "port priority queue"));
    add(operation("get_port_cos_mapping", &VexoSdkBase::get_port_cos_mapping,
                  "port priority queue"));
    add(operation("get_line_card_usp", &VexoSdkBase::get_line_card_usp, "usp"));
    add(operation("free_call", &VexoSdkBase::free_call, "unused"));
    add(operation("set_switch_forward_mode", &VexoSdkBase::set_switch_forward_mode, "mode"));
    add(operation("get_switch_forward_mode", &VexoSdkBase::get_switch_forward_mode, "mode"));
}

} // namespace vexosh
