#pragma once

#include <tuple>

#include "tools/vexosh/call_record.h"
#include "tools/vexosh/passing_sdk.h"

namespace vexosh {

/// The driver, with the calls that change something noted in a record while it is on.
class RecordingSdk final : public PassingSdk {
public:
    RecordingSdk(VexoSdkBase& sdk, CallRecord& record) : PassingSdk(sdk), record_(record) {}
    ~RecordingSdk() = default;

#define VEXOSH_NOTE(name, parameters, arguments)                                                   \
    bool name parameters override                                                                  \
    {                                                                                              \
        return noted<&VexoSdkBase::name>(#name, std::tie arguments);                               \
    }
    VEXOSH_NOTE(create_vlan, (unsigned vid), (vid))
    VEXOSH_NOTE(delete_vlan, (unsigned vid), (vid))
    VEXOSH_NOTE(add_ports_to_vlan,
                (unsigned vid, const std::list<Mp>& tagged, const std::list<Mp>& untagged),
                (vid, tagged, untagged))
    VEXOSH_NOTE(add_cpu_port_to_vlan, (unsigned vid), (vid))
    VEXOSH_NOTE(delete_ports_from_vlan, (unsigned vid, const std::list<Mp>& ports), (vid, ports))
    VEXOSH_NOTE(delete_cpu_port_from_vlan, (unsigned vid), (vid))
    VEXOSH_NOTE(set_stg_stp_state, (unsigned stg, const Mp& port, mstp_state_t state),
                (stg, port, state))
    VEXOSH_NOTE(create_lag, (unsigned& id), (id))
    VEXOSH_NOTE(delete_lag, (unsigned id), (id))
    VEXOSH_NOTE(add_ports_to_lag, (unsigned id, const std::list<Mp>& ports), (id, ports))
    VEXOSH_NOTE(delete_ports_from_lag, (unsigned id, const std::list<Mp>& ports), (id, ports))
    VEXOSH_NOTE(set_lag_psc, (unsigned id, lag_psc_t psc), (id, psc))
    VEXOSH_NOTE(enable_mirror, (unsigned unused), (unused))
    VEXOSH_NOTE(set_mirror_port, (const Mp& destination, const Mp& source, mirror_type_t type),
                (destination, source, type))
    VEXOSH_NOTE(set_port_enable, (const Mp& port, bool enable), (port, enable))
    VEXOSH_NOTE(set_port_default_vlan, (const Mp& port, unsigned vid), (port, vid))
    VEXOSH_NOTE(set_port_autoneg, (const Mp& port, bool enable), (port, enable))
    VEXOSH_NOTE(set_port_speed, (const Mp& port, speed_type_t speed), (port, speed))
    VEXOSH_NOTE(set_port_duplex, (const Mp& port, duplex_type_t duplex), (port, duplex))
    VEXOSH_NOTE(set_port_pause, (const Mp& port, unsigned rx, unsigned tx), (port, rx, tx))
    VEXOSH_NOTE(set_port_jaming, (const Mp& port, bool enable), (port, enable))
    VEXOSH_NOTE(set_port_pause_addr, (const Mp& port, const unsigned char* mac), (port, mac))
    VEXOSH_NOTE(set_port_mtu, (const Mp& port, unsigned bytes), (port, bytes))
    VEXOSH_NOTE(set_port_stat_enable, (const Mp& port, bool enable), (port, enable))
    VEXOSH_NOTE(clear_port_stat_counter, (const Mp& port), (port))
    VEXOSH_NOTE(set_port_stp_state, (const Mp& port, stp_state_t state), (port, state))
    VEXOSH_NOTE(set_port_bpdu_processing, (const Mp& port, bool enable), (port, enable))
    VEXOSH_NOTE(add_mac_to_port,
                (const Mp& port, const unsigned char* mac, unsigned vid, bool is_lag),
                (port, mac, vid, is_lag))
    VEXOSH_NOTE(add_system_mac, (const unsigned char* mac, unsigned vid), (mac, vid))
    VEXOSH_NOTE(add_system_mac_vlan_bitmap, (const unsigned char* mac, const unsigned char* bitmap),
                (mac, bitmap))
    VEXOSH_NOTE(delete_mac, (const unsigned char* mac, unsigned vid), (mac, vid))
    VEXOSH_NOTE(delete_mac_vlan_bitmap, (const unsigned char* mac, const unsigned char* bitmap),
                (mac, bitmap))
    VEXOSH_NOTE(delete_mac_by_mac, (const unsigned char* mac), (mac))
    VEXOSH_NOTE(clear_mac_by_port, (const Mp& port, bool is_lag, bool with_static),
                (port, is_lag, with_static))
    VEXOSH_NOTE(clear_mac_by_vlan, (unsigned vid, bool with_static), (vid, with_static))
    VEXOSH_NOTE(clear_fdb_table, (bool with_static), (with_static))
    VEXOSH_NOTE(set_fdb_aging_time, (int seconds), (seconds))
    VEXOSH_NOTE(set_port_phy_state, (const Mp& port, phy_state_t state), (port, state))
    VEXOSH_NOTE(set_port_mac_lock, (const Mp& port, bool lock), (port, lock))
    VEXOSH_NOTE(set_port_mac_lock_ext, (const Mp& port, bool lock, bool forward),
                (port, lock, forward))
    VEXOSH_NOTE(set_port_broadcast_control, (const Mp& port, unsigned rate), (port, rate))
    VEXOSH_NOTE(set_port_multicast_control, (const Mp& port, unsigned rate), (port, rate))
    VEXOSH_NOTE(set_port_unicast_control, (const Mp& port, unsigned rate), (port, rate))
    VEXOSH_NOTE(set_port_egress_admin_state, (const Mp& port, bool up), (port, up))
    VEXOSH_NOTE(set_port_ingress_discarding, (const Mp& port, ingress_discard_type_t type),
                (port, type))
    VEXOSH_NOTE(set_port_vlan_pvid, (const Mp& port, unsigned vid), (port, vid))
    VEXOSH_NOTE(set_port_vlan_priority, (const Mp& port, unsigned unused, unsigned priority),
                (port, unused, priority))
    VEXOSH_NOTE(set_port_vlan_accept_frame, (const Mp& port, bool tagged_only), (port, tagged_only))
    VEXOSH_NOTE(set_port_mac_limit, (const Mp& port, int limit, int kind), (port, limit, kind))
    VEXOSH_NOTE(set_port_protocol_vlan,
                (const Mp& port, frame_type_t frame, unsigned short ethertype, unsigned vid),
                (port, frame, ethertype, vid))
    VEXOSH_NOTE(delete_port_protocol_vlan,
                (const Mp& port, frame_type_t frame, unsigned short ethertype),
                (port, frame, ethertype))
    VEXOSH_NOTE(delete_port_protocol_vlan_all, (const Mp& port), (port))
    VEXOSH_NOTE(set_mac_vlan, (const unsigned char* mac, unsigned vid, unsigned priority),
                (mac, vid, priority))
    VEXOSH_NOTE(set_ipv4_subnet_vlan, (unsigned ip, unsigned mask, unsigned vid, unsigned priority),
                (ip, mask, vid, priority))
    VEXOSH_NOTE(set_ipv6_subnet_vlan,
                (const unsigned char* ip6, unsigned prefix_length, unsigned vid, unsigned priority),
                (ip6, prefix_length, vid, priority))
    VEXOSH_NOTE(send_packet_by_ports,
                (const std::list<Mp>& tagged, const std::list<Mp>& untagged, const Packet& packet),
                (tagged, untagged, packet))
    VEXOSH_NOTE(send_packet_from_cpu, (const Packet& packet), (packet))
    VEXOSH_NOTE(set_port_advertising_ability, (const Mp& port, port_ability_type_t ability),
                (port, ability))
    VEXOSH_NOTE(set_port_flood_blocking,
                (const Mp& ingress, const Mp& egress, flood_block_type_t block),
                (ingress, egress, block))
    VEXOSH_NOTE(set_port_flood_blocking_cpu, (const Mp& ingress, flood_block_type_t block),
                (ingress, block))
    VEXOSH_NOTE(set_port_cos_mapping, (const Mp& port, unsigned priority, unsigned queue),
                (port, priority, queue))
    VEXOSH_NOTE(free_call, (int unused), (unused))
    VEXOSH_NOTE(set_switch_forward_mode, (unsigned mode), (mode))
    VEXOSH_NOTE(add_arp_filter, (unsigned ip, unsigned mask), (ip, mask))
    VEXOSH_NOTE(delete_arp_filter, (unsigned ip, unsigned mask), (ip, mask))
    VEXOSH_NOTE(delete_arp_filter_all, (), ())
    VEXOSH_NOTE(add_ip_protocol_filter, (unsigned protocol), (protocol))
    VEXOSH_NOTE(delete_ip_protocol_filter, (unsigned protocol), (protocol))
    VEXOSH_NOTE(delete_ip_protocol_filter_all, (), ())
    VEXOSH_NOTE(add_l4_destination_port_filter, (unsigned port), (port))
    VEXOSH_NOTE(delete_l4_destination_port_filter, (unsigned port), (port))
    VEXOSH_NOTE(delete_l4_destination_port_filter_all, (), ())
    VEXOSH_NOTE(set_port_l2_enable, (const Mp& port, bool enable), (port, enable))
    VEXOSH_NOTE(set_port_switch_unknown_unicast_to_cpu, (const Mp& port, bool enable),
                (port, enable))
    VEXOSH_NOTE(set_switch_unknown_unicast_to_cpu, (bool enable), (enable))
    VEXOSH_NOTE(add_of_flow,
                (const of_flow_mp_s& flow, unsigned& id, const of_flow_qualify_udf_s& udf),
                (flow, id, udf))
    VEXOSH_NOTE(add_of_flow_with_id, (const of_flow_mp_s& flow, unsigned id), (flow, id))
    VEXOSH_NOTE(delete_of_flow, (unsigned id), (id))
    VEXOSH_NOTE(clear_of_flow_table, (), ())
    VEXOSH_NOTE(add_of_flow_action,
                (unsigned id, of_action_t action, of_action_param_s param, const Mp& port),
                (id, action, param, port))
    VEXOSH_NOTE(delete_of_flow_action,
                (unsigned id, of_action_t action, of_action_param_s param, const Mp& port),
                (id, action, param, port))
    VEXOSH_NOTE(clear_of_flow_action, (unsigned id), (id))
    VEXOSH_NOTE(set_of_flow_priority, (unsigned id, int priority), (id, priority))
    VEXOSH_NOTE(port_add_to_egress_list, (Mp port), (port))
    VEXOSH_NOTE(port_remove_from_egress_list, (Mp port), (port))
    VEXOSH_NOTE(create_l3_interface, (const unsigned char* mac, unsigned vid, unsigned& id),
                (mac, vid, id))
    VEXOSH_NOTE(create_l3_interface_with_id,
                (const unsigned char* mac, unsigned vid, unsigned id, bool replace),
                (mac, vid, id, replace))
    VEXOSH_NOTE(delete_l3_interface, (const unsigned char* mac, unsigned vid), (mac, vid))
    VEXOSH_NOTE(delete_l3_interface_by_id, (unsigned id), (id))
    VEXOSH_NOTE(delete_l3_interface_all, (), ())
    VEXOSH_NOTE(add_l3_host_ip4,
                (Mp port, bool is_trunk, unsigned ip, const unsigned char* mac,
                 unsigned interface_id),
                (port, is_trunk, ip, mac, interface_id))
    VEXOSH_NOTE(add_l3_host_ip6,
                (Mp port, bool is_trunk, const unsigned char* ip6, const unsigned char* mac,
                 unsigned interface_id),
                (port, is_trunk, ip6, mac, interface_id))
    VEXOSH_NOTE(delete_l3_host_by_interface, (unsigned interface_id, bool unmarked),
                (interface_id, unmarked))
    VEXOSH_NOTE(delete_l3_host_by_network_ip4, (unsigned net), (net))
    VEXOSH_NOTE(delete_l3_host_by_network_ip6, (const unsigned char* net6), (net6))
    VEXOSH_NOTE(delete_l3_host_by_addr_ip4, (unsigned ip, const Mp& port, bool is_trunk),
                (ip, port, is_trunk))
    VEXOSH_NOTE(delete_l3_host_by_addr_ip6,
                (const unsigned char* ip6, const Mp& port, bool is_trunk), (ip6, port, is_trunk))
    VEXOSH_NOTE(delete_l3_host_all, (), ())
    VEXOSH_NOTE(invalidate_l3_entry, (unsigned ip), (ip))
    VEXOSH_NOTE(validate_l3_entry, (unsigned ip), (ip))
    VEXOSH_NOTE(add_l3_route_ip4,
                (const Mp& port, bool is_trunk, unsigned subnet, unsigned mask,
                 const unsigned char* mac, unsigned interface_id, unsigned nexthop_ip),
                (port, is_trunk, subnet, mask, mac, interface_id, nexthop_ip))
    VEXOSH_NOTE(add_l3_route_ip6,
                (const Mp& port, bool is_trunk, const unsigned char* net6,
                 const unsigned char* mask6, const unsigned char* mac, unsigned interface_id),
                (port, is_trunk, net6, mask6, mac, interface_id))
    VEXOSH_NOTE(delete_l3_route_by_interface, (unsigned interface_id, bool unmarked),
                (interface_id, unmarked))
    VEXOSH_NOTE(delete_l3_route_by_subnet_ip4,
                (unsigned subnet, unsigned mask, const Mp& port, bool is_trunk),
                (subnet, mask, port, is_trunk))
    VEXOSH_NOTE(delete_l3_route_by_subnet_ip6,
                (const unsigned char* net6, const unsigned char* mask6, const Mp& port,
                 bool is_trunk),
                (net6, mask6, port, is_trunk))
    VEXOSH_NOTE(delete_l3_route_all, (), ())
    VEXOSH_NOTE(set_trace, (const std::string& keyword, bool on), (keyword, on))
#undef VEXOSH_NOTE

private:
    template <auto Function, class... A>
    bool noted(const char* name, std::tuple<A&...> arguments)
    {
        return std::apply(
            [&](A&... each) {
                vexosim::forget_failed_call();
                const bool done = keep_refusal(name, (sdk().*Function)(each...));
                if (record_.on()) {
                    record_.note(name, Function, done, each...);
                }
                return done;
            },
            arguments);
    }

    CallRecord& record_;
};

} // namespace vexosh
