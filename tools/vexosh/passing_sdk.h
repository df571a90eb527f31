#pragma once

#include "core/sdk_base.h"
#include "tools/vexosh/refusal.h"
#include "vexosim/calls.h"

namespace vexosh {

/// Passes on to the driver what only reads, or is about callbacks.
class PassingSdk : public VexoSdkBase {
public:
    explicit PassingSdk(VexoSdkBase& sdk) : sdk_(sdk) {}

#define VEXOSH_PASS(name, parameters, arguments)                                                   \
    bool name parameters override                                                                  \
    {                                                                                              \
        vexosim::forget_failed_call();                                                             \
        return keep_refusal(#name, sdk_.name arguments);                                           \
    }
    VEXOSH_PASS(get_vlan_info, (unsigned vid, std::list<Mp>& tagged, std::list<Mp>& untagged),
                (vid, tagged, untagged))
    VEXOSH_PASS(get_stg_stp_state, (unsigned stg, const Mp& port, mstp_state_t& state),
                (stg, port, state))
    VEXOSH_PASS(get_lag_psc, (unsigned id, lag_psc_t& psc), (id, psc))
    VEXOSH_PASS(get_mirror_port, (Mp & destination, const Mp& source, mirror_type_t& type),
                (destination, source, type))
    VEXOSH_PASS(get_port_enabled, (const Mp& port, bool& enabled), (port, enabled))
    VEXOSH_PASS(get_port_default_vlan, (const Mp& port, unsigned& vid), (port, vid))
    VEXOSH_PASS(get_port_autoneg, (const Mp& port, bool& enabled), (port, enabled))
    VEXOSH_PASS(get_port_speed, (const Mp& port, speed_type_t& speed), (port, speed))
    VEXOSH_PASS(get_port_duplex, (const Mp& port, duplex_type_t& duplex), (port, duplex))
    VEXOSH_PASS(get_port_pause, (const Mp& port, unsigned& rx, unsigned& tx), (port, rx, tx))
    VEXOSH_PASS(get_port_jaming, (const Mp& port, bool& enabled), (port, enabled))
    VEXOSH_PASS(get_port_pause_addr, (const Mp& port, unsigned char (&mac)[6]), (port, mac))
    VEXOSH_PASS(get_port_mtu, (const Mp& port, unsigned& bytes), (port, bytes))
    VEXOSH_PASS(get_port_stat_enabled, (const Mp& port, bool& enabled), (port, enabled))
    VEXOSH_PASS(get_port_stat_counter,
                (const Mp& port, stat_type_t type, unsigned long long& value), (port, type, value))
    VEXOSH_PASS(get_port_stat_counter32, (const Mp& port, stat_type_t type, unsigned& value),
                (port, type, value))
    VEXOSH_PASS(get_port_stat_counter_all64, (const Mp& port, std::list<StatCounter64>& counters),
                (port, counters))
    VEXOSH_PASS(get_port_stat_counter_all32, (const Mp& port, std::list<StatCounter32>& counters),
                (port, counters))
    VEXOSH_PASS(get_port_stat_counter_all64_ext,
                (const Mp& port, StatCounter64* counters, unsigned& count), (port, counters, count))
    VEXOSH_PASS(get_port_stat_counter_all32_ext,
                (const Mp& port, StatCounter32* counters, unsigned& count), (port, counters, count))
    VEXOSH_PASS(get_port_brief_stat_counter,
                (const Mp& port, brief_stat_type_t type, unsigned long long& value),
                (port, type, value))
    VEXOSH_PASS(get_port_brief_stat_counter32,
                (const Mp& port, brief_stat_type_t type, unsigned& value), (port, type, value))
    VEXOSH_PASS(get_port_brief_stat_counter_all64,
                (const Mp& port, std::list<BriefStatCounter64>& counters), (port, counters))
    VEXOSH_PASS(get_port_brief_stat_counter_all32,
                (const Mp& port, std::list<BriefStatCounter32>& counters), (port, counters))
    VEXOSH_PASS(get_port_stp_state, (const Mp& port, stp_state_t& state), (port, state))
    VEXOSH_PASS(get_port_bpdu_processing, (const Mp& port, bool& enabled), (port, enabled))
    VEXOSH_PASS(get_fdb_aging_time, (int& seconds), (seconds))
    VEXOSH_PASS(get_port_phy_state, (const Mp& port, phy_state_t& state), (port, state))
    VEXOSH_PASS(get_port_mac_lock, (const Mp& port, bool& locked), (port, locked))
    VEXOSH_PASS(get_port_mac_lock_ext, (const Mp& port, bool& locked, bool& forward),
                (port, locked, forward))
    VEXOSH_PASS(get_port_broadcast_control, (const Mp& port, unsigned& rate), (port, rate))
    VEXOSH_PASS(get_port_multicast_control, (const Mp& port, unsigned& rate), (port, rate))
    VEXOSH_PASS(get_port_unicast_control, (const Mp& port, unsigned& rate), (port, rate))
    VEXOSH_PASS(get_port_egress_admin_state, (const Mp& port, bool& state), (port, state))
    VEXOSH_PASS(get_port_ingress_discarding, (const Mp& port, ingress_discard_type_t& type),
                (port, type))
    VEXOSH_PASS(get_port_vlan_pvid, (const Mp& port, unsigned& vid), (port, vid))
    VEXOSH_PASS(get_port_vlan_priority, (const Mp& port, unsigned unused, unsigned& priority),
                (port, unused, priority))
    VEXOSH_PASS(get_port_vlan_accept_frame, (const Mp& port, bool& tagged_only),
                (port, tagged_only))
    VEXOSH_PASS(get_port_mac_limit, (const Mp& port, int& limit, int kind), (port, limit, kind))
    VEXOSH_PASS(get_port_ability, (const Mp& port, port_ability_type_t& ability), (port, ability))
    VEXOSH_PASS(get_port_advertising_ability, (const Mp& port, port_ability_type_t& ability),
                (port, ability))
    VEXOSH_PASS(get_port_current_ability, (const Mp& port, port_ability_type_t& ability),
                (port, ability))
    VEXOSH_PASS(get_port_peer_ability, (Mp port, port_ability_type_t& ability), (port, ability))
    VEXOSH_PASS(get_port_flood_blocking,
                (const Mp& ingress, const Mp& egress, flood_block_type_t& block),
                (ingress, egress, block))
    VEXOSH_PASS(get_port_flood_blocking_cpu, (const Mp& ingress, flood_block_type_t& block),
                (ingress, block))
    VEXOSH_PASS(get_port_cos_mapping, (const Mp& port, unsigned priority, unsigned& queue),
                (port, priority, queue))
    VEXOSH_PASS(get_line_card_usp, (Usp & usp), (usp))
    VEXOSH_PASS(get_switch_forward_mode, (unsigned& mode), (mode))
    VEXOSH_PASS(get_port_switch_unknown_unicast_to_cpu, (const Mp& port, bool& enabled),
                (port, enabled))
    VEXOSH_PASS(get_switch_unknown_unicast_to_cpu, (bool& enabled), (enabled))
    VEXOSH_PASS(get_of_flow_priority, (unsigned id, int& priority), (id, priority))
    VEXOSH_PASS(get_of_flow_stat_counter64, (unsigned id, unsigned long long& value), (id, value))
    VEXOSH_PASS(get_of_flow_stat_counter32, (unsigned id, unsigned& value), (id, value))
    VEXOSH_PASS(register_mac_update_callback, (void (*callback)(L2Addr*, int, void*), void* cookie),
                (callback, cookie))
    VEXOSH_PASS(register_mac_update_callback_c,
                (void (*callback)(ctype_l2_addr_s*, int, void*), void* cookie), (callback, cookie))
    VEXOSH_PASS(register_link_change_callback, (void (*callback)(LinkStatus*, Usp*), void* cookie),
                (callback, cookie))
    VEXOSH_PASS(register_link_change_callback_c,
                (void (*callback)(ctype_link_status_s*, usp_s*), void* cookie), (callback, cookie))
    VEXOSH_PASS(register_rx_packet_callback, (void (*callback)(RxPacket*, void*), void* cookie),
                (callback, cookie))
    VEXOSH_PASS(register_rx_packet_callback_c,
                (void (*callback)(ctype_rx_packet_s*, void*), void* cookie), (callback, cookie))
    VEXOSH_PASS(deregister_event_callback,
                (lcmgr_report_event_t event, void* callback, void* cookie),
                (event, callback, cookie))
    VEXOSH_PASS(mac_update, (L2Addr * addr, int type, void* data), (addr, type, data))
    VEXOSH_PASS(mac_update_c, (ctype_l2_addr_s * addr, int type, void* data), (addr, type, data))
    void traverse_mac_table(void* user_data) override
    {
        sdk_.traverse_mac_table(user_data);
    }
    VEXOSH_PASS(link_change, (LinkStatus * status, Usp* port), (status, port))
    VEXOSH_PASS(link_change_c, (ctype_link_status_s * status, usp_s* port), (status, port))
    VEXOSH_PASS(rx_packet, (RxPacket * packet, void* unused), (packet, unused))
    VEXOSH_PASS(rx_packet_c, (ctype_rx_packet_s * packet, void* unused), (packet, unused))
    VEXOSH_PASS(get_l3_interface, (unsigned id, unsigned& vid, unsigned char* mac), (id, vid, mac))
    VEXOSH_PASS(get_l3_host_ip4,
                (unsigned ip, Mp port, unsigned char* mac, unsigned& interface_id, bool is_trunk),
                (ip, port, mac, interface_id, is_trunk))
    VEXOSH_PASS(get_l3_host_ip6,
                (const unsigned char* ip6, Mp port, unsigned char* mac, unsigned& interface_id,
                 bool is_trunk),
                (ip6, port, mac, interface_id, is_trunk))
    VEXOSH_PASS(get_l3_route_by_subnet_ip4,
                (unsigned subnet, unsigned mask, const Mp& port, bool is_trunk,
                 unsigned char (&mac)[6], unsigned& interface_id, unsigned& nexthop_ip),
                (subnet, mask, port, is_trunk, mac, interface_id, nexthop_ip))
    VEXOSH_PASS(get_l3_route_by_subnet_ip6,
                (const unsigned char* net6, const unsigned char* mask6, const Mp& port,
                 bool is_trunk, unsigned& interface_id, unsigned char* mac),
                (net6, mask6, port, is_trunk, interface_id, mac))
#undef VEXOSH_PASS

protected:
    ~PassingSdk() = default;
    VexoSdkBase& sdk()
    {
        return sdk_;
    }

private:
    VexoSdkBase& sdk_;
};

} // namespace vexosh
