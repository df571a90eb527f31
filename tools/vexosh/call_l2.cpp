#include "tools/vexosh/call_operation.h"

namespace vexosh {

void add_l2_operations(std::vector<Operation>& operations)
{
    const auto add = [&](Operation operation) { operations.push_back(std::move(operation)); };
    add(operation("create_vlan", &VexoSdkBase::create_vlan, "vid"));
    add(operation("delete_vlan", &VexoSdkBase::delete_vlan, "vid"));
    add(operation("add_ports_to_vlan", &VexoSdkBase::add_ports_to_vlan, "vid tagged untagged"));
    add(operation("add_cpu_port_to_vlan", &VexoSdkBase::add_cpu_port_to_vlan, "vid"));
    add(operation("delete_ports_from_vlan", &VexoSdkBase::delete_ports_from_vlan, "vid ports"));
    add(operation("delete_cpu_port_from_vlan", &VexoSdkBase::delete_cpu_port_from_vlan, "vid"));
    add(operation("get_vlan_info", &VexoSdkBase::get_vlan_info, "vid tagged untagged"));
    add(operation("set_stg_stp_state", &VexoSdkBase::set_stg_stp_state, "stg port state"));
    add(operation("get_stg_stp_state", &VexoSdkBase::get_stg_stp_state, "stg port state"));
    add(operation("create_lag", &VexoSdkBase::create_lag, "id"));
    add(operation("delete_lag", &VexoSdkBase::delete_lag, "id"));
    add(operation("add_ports_to_lag", &VexoSdkBase::add_ports_to_lag, "id ports"));
    add(operation("delete_ports_from_lag", &VexoSdkBase::delete_ports_from_lag, "id ports"));
    add(operation("set_lag_psc", &VexoSdkBase::set_lag_psc, "id psc"));
    add(operation("get_lag_psc", &VexoSdkBase::get_lag_psc, "id psc"));
    add(operation("enable_mirror", &VexoSdkBase::enable_mirror, "unused"));
    add(operation("set_mirror_port", &VexoSdkBase::set_mirror_port, "destination source type"));
    add(operation("get_mirror_port", &VexoSdkBase::get_mirror_port, "destination source type"));
    add(operation("set_port_enable", &VexoSdkBase::set_port_enable, "port enable"));
    add(operation("get_port_enabled", &VexoSdkBase::get_port_enabled, "port enabled"));
    add(operation("set_port_default_vlan", &VexoSdkBase::set_port_default_vlan, "port vid"));
    add(operation("get_port_default_vlan", &VexoSdkBase::get_port_default_vlan, "port vid"));
    add(operation("set_port_autoneg", &VexoSdkBase::set_port_autoneg, "port enable"));
    add(operation("get_port_autoneg", &VexoSdkBase::get_port_autoneg, "port enabled"));
    add(operation("set_port_speed", &VexoSdkBase::set_port_speed, "port speed"));
    add(operation("get_port_speed", &VexoSdkBase::get_port_speed, "port speed"));
    add(operation("set_port_duplex", &VexoSdkBase::set_port_duplex, "port duplex"));
    add(operation("get_port_duplex", &VexoSdkBase::get_port_duplex, "port duplex"));
    add(operation("set_port_pause", &VexoSdkBase::set_port_pause, "port rx tx"));
    add(operation("get_port_pause", &VexoSdkBase::get_port_pause, "port rx tx"));
    add(operation("set_port_jaming", &VexoSdkBase::set_port_jaming, "port enable"));
    add(operation("get_port_jaming", &VexoSdkBase::get_port_jaming, "port enabled"));
    add(operation("set_port_pause_addr", &VexoSdkBase::set_port_pause_addr, "port mac"));
    add(operation("get_port_pause_addr", &VexoSdkBase::get_port_pause_addr, "port mac"));
    add(operation("set_port_mtu", &VexoSdkBase::set_port_mtu, "port bytes"));
    add(operation("get_port_mtu", &VexoSdkBase::get_port_mtu, "port bytes"));
    add(operation("set_port_stat_enable", &VexoSdkBase::set_port_stat_enable, "port enable"));
    add(operation("get_port_stat_enabled", &VexoSdkBase::get_port_stat_enabled, "port enabled"));
    add(operation("get_port_stat_counter", &VexoSdkBase::get_port_stat_counter, "port type value"));
    add(operation("get_port_stat_counter32", &VexoSdkBase::get_port_stat_counter32,
                  "port type value"));
    add(operation("get_port_stat_counter_all64", &VexoSdkBase::get_port_stat_counter_all64,
                  "port counters"));
    add(operation("get_port_stat_counter_all32", &VexoSdkBase::get_port_stat_counter_all32,
                  "port counters"));
    add(operation_as<const Mp&, StatCounter64*, Capacity>(
        "get_port_stat_counter_all64_ext", &VexoSdkBase::get_port_stat_counter_all64_ext,
        "port counters capacity"));
    add(operation_as<const Mp&, StatCounter32*, Capacity>(
        "get_port_stat_counter_all32_ext", &VexoSdkBase::get_port_stat_counter_all32_ext,
        "port counters capacity"));
    add(operation("get_port_brief_stat_counter", &VexoSdkBase::get_port_brief_stat_counter,
                  "port type value"));
    add(operation("get_port_brief_stat_counter32", &VexoSdkBase::get_port_brief_stat_counter32,
                  "port type value"));
    add(operation("get_port_brief_stat_counter_all64",
                  &VexoSdkBase::get_port_brief_stat_counter_all64, "port counters"));
    add(operation("get_port_brief_stat_counter_all32",
                  &VexoSdkBase::get_port_brief_stat_counter_all32, "port counters"));
    add(operation("clear_port_stat_counter", &VexoSdkBase::clear_port_stat_counter, "port"));
    add(operation("set_port_stp_state", &VexoSdkBase::set_port_stp_state, "port state"));
    add(operation("get_port_stp_state", &VexoSdkBase::get_port_stp_state, "port state"));
    add(operation("set_port_bpdu_processing", &VexoSdkBase::set_port_bpdu_processing,
                  "port enable"));
    add(operation("get_port_bpdu_processing", &VexoSdkBase::get_port_bpdu_processing,
                  "port enabled"));
    add(operation("add_mac_to_port", &VexoSdkBase::add_mac_to_port, "port mac vid is_lag"));
    add(operation("add_system_mac", &VexoSdkBase::add_system_mac, "mac vid"));
    add(operation("add_system_mac_vlan_bitmap", &VexoSdkBase::add_system_mac_vlan_bitmap,
                  "mac bitmap"));
    add(operation("delete_mac", &VexoSdkBase::delete_mac, "mac vid"));
    add(operation("delete_mac_vlan_bitmap", &VexoSdkBase::delete_mac_vlan_bitmap, "mac bitmap"));
    add(operation("delete_mac_by_mac", &VexoSdkBase::delete_mac_by_mac, "mac"));
    add(operation("clear_mac_by_port", &VexoSdkBase::clear_mac_by_port, "port is_lag with_static"));
    add(operation("clear_mac_by_vlan", &VexoSdkBase::clear_mac_by_vlan, "vid with_static"));
    add(operation("clear_fdb_table", &VexoSdkBase::clear_fdb_table, "with_static"));
    add(operation("set_fdb_aging_time", &VexoSdkBase::set_fdb_aging_time, "seconds"));
    add(operation("get_fdb_aging_time", &VexoSdkBase::get_fdb_aging_time, "seconds"));
}

} // namespace vexosh
