#include "tools/vexosh/call_operation.h"

namespace vexosh {

void add_flow_operations(std::vector<Operation>& operations)
{
    const auto add = [&](Operation operation) { operations.push_back(std::move(operation)); };
    add(operation("add_arp_filter", &VexoSdkBase::add_arp_filter, "ip mask"));
    add(operation("delete_arp_filter", &VexoSdkBase::delete_arp_filter, "ip mask"));
    add(operation("delete_arp_filter_all", &VexoSdkBase::delete_arp_filter_all));
    add(operation("add_ip_protocol_filter", &VexoSdkBase::add_ip_protocol_filter, "protocol"));
    add(operation("delete_ip_protocol_filter", &VexoSdkBase::delete_ip_protocol_filter,
                  "protocol"));
    add(operation("delete_ip_protocol_filter_all", &VexoSdkBase::delete_ip_protocol_filter_all));
    add(operation("add_l4_destination_port_filter", &VexoSdkBase::add_l4_destination_port_filter,
                  "port"));
    add(operation("delete_l4_destination_port_filter",
                  &VexoSdkBase::delete_l4_destination_port_filter, "port"));
    add(operation("delete_l4_destination_port_filter_all",
                  &VexoSdkBase::delete_l4_destination_port_filter_all));
    add(operation("set_port_l2_enable", &VexoSdkBase::set_port_l2_enable, "port enable"));
    add(operation("set_port_switch_unknown_unicast_to_cpu",
                  &VexoSdkBase::set_port_switch_unknown_unicast_to_cpu, "port enable"));
    add(operation("get_port_switch_unknown_unicast_to_cpu",
                  &VexoSdkBase::get_port_switch_unknown_unicast_to_cpu, "port enabled"));
    add(operation("set_switch_unknown_unicast_to_cpu",
                  &VexoSdkBase::set_switch_unknown_unicast_to_cpu, "enable"));
    add(operation("get_switch_unknown_unicast_to_cpu",
                  &VexoSdkBase::get_switch_unknown_unicast_to_cpu, "enabled"));
    add(operation("add_of_flow", &VexoSdkBase::add_of_flow, "flow id udf"));
    add(operation("add_of_flow_with_id", &VexoSdkBase::add_of_flow_with_id, "flow id"));
    add(operation("delete_of_flow", &VexoSdkBase::delete_of_flow, "id"));
    add(operation("clear_of_flow_table", &VexoSdkBase::clear_of_flow_table));
    add(operation("add_of_flow_action", &VexoSdkBase::add_of_flow_action, "id action param port"));
    add(operation("delete_of_flow_action", &VexoSdkBase::delete_of_flow_action,
                  "id action param port"));
    add(operation("clear_of_flow_action", &VexoSdkBase::clear_of_flow_action, "id"));
    add(operation("set_of_flow_priority", &VexoSdkBase::set_of_flow_priority, "id priority"));
    add(operation("get_of_flow_priority", &VexoSdkBase::get_of_flow_priority, "id priority"));
    add(operation("get_of_flow_stat_counter64", &VexoSdkBase::get_of_flow_stat_counter64,
                  "id value"));
    add(operation("get_of_flow_stat_counter32", &VexoSdkBase::get_of_flow_stat_counter32,
                  "id value"));
    add(operation("register_mac_update_callback", &VexoSdkBase::register_mac_update_callback,
                  "callback cookie"));
    add(operation("register_mac_update_callback_c", &VexoSdkBase::register_mac_update_callback_c,
                  "callback cookie"));
    add(operation("register_link_change_callback", &VexoSdkBase::register_link_change_callback,
                  "callback cookie"));
    add(operation("register_link_change_callback_c", &VexoSdkBase::register_link_change_callback_c,
                  "callback cookie"));
    add(operation("register_rx_packet_callback", &VexoSdkBase::register_rx_packet_callback,
                  "callback cookie"));
    add(operation("register_rx_packet_callback_c", &VexoSdkBase::register_rx_packet_callback_c,
                  "callback cookie"));
    add(operation_as<lcmgr_report_event_t, CallbackName, void*>(
        "deregister_event_callback", &VexoSdkBase::deregister_event_callback,
        "event callback cookie"));
    add(operation("mac_update", &VexoSdkBase::mac_update, "addr type data"));
    add(operation("mac_update_c", &VexoSdkBase::mac_update_c, "addr type data"));
    add(operation("traverse_mac_table", &VexoSdkBase::traverse_mac_table, "user_data"));
    add(operation("link_change", &VexoSdkBase::link_change, "status port"));
    add(operation("link_change_c", &VexoSdkBase::link_change_c, "status port"));
    add(operation("rx_packet", &VexoSdkBase::rx_packet, "packet unused"));
    add(operation("rx_packet_c", &VexoSdkBase::rx_packet_c, "packet unused"));
    add(operation("port_add_to_egress_list", &VexoSdkBase::port_add_to_egress_list, "port"));
    add(operation("port_remove_from_egress_list", &VexoSdkBase::port_remove_from_egress_list,
                  "port"));
}

} // namespace vexosh
