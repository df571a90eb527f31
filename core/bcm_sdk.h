#pragma once

#include <cstdint>
#include <list>
#include <string>
#include <utility>

#include "core/sdk_base.h"
#include "core/trace_keywords.h"

// Deliberately without a virtual destructor: the dispatch table holds the 179 operations only.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// The driver: one instance per process, made by `vexosdk_create_sdk_instance` (core/factory.h).
///
/// Constructing it brings the whole card up before the constructor returns; a bring-up that fails
/// leaves an instance whose operations return what the chip answers. Destroying it makes no SDK
/// call and leaves the chip programmed. Delete it through this type only.
///
/// What each operation does is documented in core/sdk_base.h.
class VexoBcmSdk : public VexoSdkBase {
public:
    VexoBcmSdk();
    ~VexoBcmSdk();

    // ---- VLAN membership (l2/vlan) ------------------------------------------------------------
    bool create_vlan(unsigned vid) override;
    bool delete_vlan(unsigned vid) override;
    bool add_ports_to_vlan(unsigned vid, const std::list<Mp>& tagged,
                           const std::list<Mp>& untagged) override;
    bool add_cpu_port_to_vlan(unsigned vid) override;
    bool delete_ports_from_vlan(unsigned vid, const std::list<Mp>& ports) override;
    bool delete_cpu_port_from_vlan(unsigned vid) override;
    bool get_vlan_info(unsigned vid, std::list<Mp>& tagged, std::list<Mp>& untagged) override;

    // ---- Spanning-tree groups (l2/stp) --------------------------------------------------------
    bool set_stg_stp_state(unsigned stg, const Mp& port, mstp_state_t state) override;
    bool get_stg_stp_state(unsigned stg, const Mp& port, mstp_state_t& state) override;

    // ---- Link aggregation (l2/lag) ------------------------------------------------------------
    bool create_lag(unsigned& id) override;
    bool delete_lag(unsigned id) override;
    bool add_ports_to_lag(unsigned id, const std::list<Mp>& ports) override;
    bool delete_ports_from_lag(unsigned id, const std::list<Mp>& ports) override;
    bool set_lag_psc(unsigned id, lag_psc_t psc) override;
    bool get_lag_psc(unsigned id, lag_psc_t& psc) override;

    // ---- Mirroring (l2/mirror) ----------------------------------------------------------------
    bool enable_mirror(unsigned unused) override;
    bool set_mirror_port(const Mp& destination, const Mp& source, mirror_type_t type) override;
    bool get_mirror_port(Mp& destination, const Mp& source, mirror_type_t& type) override;

    // ---- Port configuration (l2/port) ---------------------------------------------------------
    bool set_port_enable(const Mp& port, bool enable) override;
    bool get_port_enabled(const Mp& port, bool& enabled) override;
    bool set_port_default_vlan(const Mp& port, unsigned vid) override;
    bool get_port_default_vlan(const Mp& port, unsigned& vid) override;
    bool set_port_autoneg(const Mp& port, bool enable) override;
    bool get_port_autoneg(const Mp& port, bool& enabled) override;
    bool set_port_speed(const Mp& port, speed_type_t speed) override;
    bool get_port_speed(const Mp& port, speed_type_t& speed) override;
    bool set_port_duplex(const Mp& port, duplex_type_t duplex) override;
    bool get_port_duplex(const Mp& port, duplex_type_t& duplex) override;
    bool set_port_pause(const Mp& port, unsigned rx, unsigned tx) override;
    bool get_port_pause(const Mp& port, unsigned& rx, unsigned& tx) override;
    bool set_port_jaming(const Mp& port, bool enable) override;
    bool get_port_jaming(const Mp& port, bool& enabled) override;
    bool set_port_pause_addr(const Mp& port, const unsigned char* mac) override;
    bool get_port_pause_addr(const Mp& port, unsigned char (&mac)[6]) override;
    bool set_port_mtu(const Mp& port, unsigned bytes) override;
    bool get_port_mtu(const Mp& port, unsigned& bytes) override;

    // ---- Port statistics (l2/stat) ------------------------------------------------------------
    bool set_port_stat_enable(const Mp& port, bool enable) override;
    bool get_port_stat_enabled(const Mp& port, bool& enabled) override;
    bool get_port_stat_counter(const Mp& port, stat_type_t type,
                               unsigned long long& value) override;
    bool get_port_stat_counter32(const Mp& port, stat_type_t type, unsigned& value) override;
    bool get_port_stat_counter_all64(const Mp& port, std::list<StatCounter64>& counters) override;
    bool get_port_stat_counter_all32(const Mp& port, std::list<StatCounter32>& counters) override;
    bool get_port_stat_counter_all64_ext(const Mp& port, StatCounter64* counters,
                                         unsigned& count) override;
    bool get_port_stat_counter_all32_ext(const Mp& port, StatCounter32* counters,
                                         unsigned& count) override;
    bool get_port_brief_stat_counter(const Mp& port, brief_stat_type_t type,
                                     unsigned long long& value) override;
    bool get_port_brief_stat_counter32(const Mp& port, brief_stat_type_t type,
                                       unsigned& value) override;
    bool get_port_brief_stat_counter_all64(const Mp& port,
                                           std::list<BriefStatCounter64>& counters) override;
    bool get_port_brief_stat_counter_all32(const Mp& port,
                                           std::list<BriefStatCounter32>& counters) override;
    bool clear_port_stat_counter(const Mp& port) override;

    // ---- Spanning tree (l2/stp) ---------------------------------------------------------------
    bool set_port_stp_state(const Mp& port, stp_state_t state) override;
    bool get_port_stp_state(const Mp& port, stp_state_t& state) override;

    // ---- BPDU handling (l2/port) --------------------------------------------------------------
    bool set_port_bpdu_processing(const Mp& port, bool enable) override;
    bool get_port_bpdu_processing(const Mp& port, bool& enabled) override;

    // ---- Forwarding database (l2/fdb) ---------------------------------------------------------
    bool add_mac_to_port(const Mp& port, const unsigned char* mac, unsigned vid,
                         bool is_lag) override;
    bool add_system_mac(const unsigned char* mac, unsigned vid) override;
    bool add_system_mac_vlan_bitmap(const unsigned char* mac, const unsigned char* bitmap) override;
    bool delete_mac(const unsigned char* mac, unsigned vid) override;
    bool delete_mac_vlan_bitmap(const unsigned char* mac, const unsigned char* bitmap) override;
    bool delete_mac_by_mac(const unsigned char* mac) override;
    bool clear_mac_by_port(const Mp& port, bool is_lag, bool with_static) override;
    bool clear_mac_by_vlan(unsigned vid, bool with_static) override;
    bool clear_fdb_table(bool with_static) override;
    bool set_fdb_aging_time(int seconds) override;
    bool get_fdb_aging_time(int& seconds) override;

    // ---- Link state (l2/port) -----------------------------------------------------------------
    bool set_port_phy_state(const Mp& port, phy_state_t state) override;
    bool get_port_phy_state(const Mp& port, phy_state_t& state) override;

    // ---- Address learning (l2/fdb) ------------------------------------------------------------
    bool set_port_mac_lock(const Mp& port, bool lock) override;
    bool get_port_mac_lock(const Mp& port, bool& locked) override;
    bool set_port_mac_lock_ext(const Mp& port, bool lock, bool forward) override;
    bool get_port_mac_lock_ext(const Mp& port, bool& locked, bool& forward) override;

    // ---- Storm control (l2/port) --------------------------------------------------------------
    bool set_port_broadcast_control(const Mp& port, unsigned rate) override;
    bool get_port_broadcast_control(const Mp& port, unsigned& rate) override;
    bool set_port_multicast_control(const Mp& port, unsigned rate) override;
    bool get_port_multicast_control(const Mp& port, unsigned& rate) override;
    bool set_port_unicast_control(const Mp& port, unsigned rate) override;
    bool get_port_unicast_control(const Mp& port, unsigned& rate) override;

    // ---- Admission and default VLAN of a port (l2/port) ---------------------------------------
    bool set_port_egress_admin_state(const Mp& port, bool up) override;
    bool get_port_egress_admin_state(const Mp& port, bool& state) override;
    bool set_port_ingress_discarding(const Mp& port, ingress_discard_type_t type) override;
    bool get_port_ingress_discarding(const Mp& port, ingress_discard_type_t& type) override;
    bool set_port_vlan_pvid(const Mp& port, unsigned vid) override;
    bool get_port_vlan_pvid(const Mp& port, unsigned& vid) override;
    bool set_port_vlan_priority(const Mp& port, unsigned unused, unsigned priority) override;
    bool get_port_vlan_priority(const Mp& port, unsigned unused, unsigned& priority) override;
    bool set_port_vlan_accept_frame(const Mp& port, bool tagged_only) override;
    bool get_port_vlan_accept_frame(const Mp& port, bool& tagged_only) override;

    // ---- Learning limits (l2/fdb) -------------------------------------------------------------
    bool set_port_mac_limit(const Mp& port, int limit, int kind) override;
    bool get_port_mac_limit(const Mp& port, int& limit, int kind) override;

    // ---- VLAN assignment by protocol, MAC and subnet (l2/port) --------------------------------
    bool set_port_protocol_vlan(const Mp& port, frame_type_t frame, unsigned short ethertype,
                                unsigned vid) override;
    bool delete_port_protocol_vlan(const Mp& port, frame_type_t frame,
                                   unsigned short ethertype) override;
    bool delete_port_protocol_vlan_all(const Mp& port) override;
    bool set_mac_vlan(const unsigned char* mac, unsigned vid, unsigned priority) override;
    bool set_ipv4_subnet_vlan(unsigned ip, unsigned mask, unsigned vid, unsigned priority) override;
    bool set_ipv6_subnet_vlan(const unsigned char* ip6, unsigned prefix_length, unsigned vid,
                              unsigned priority) override;

    // ---- Packet transmit (pktio/transmit) -----------------------------------------------------
    bool send_packet_by_ports(const std::list<Mp>& tagged, const std::list<Mp>& untagged,
                              const Packet& packet) override;
    bool send_packet_from_cpu(const Packet& packet) override;

    // ---- Port abilities (l2/port) -------------------------------------------------------------
    bool get_port_ability(const Mp& port, port_ability_type_t& ability) override;
    bool set_port_advertising_ability(const Mp& port, port_ability_type_t ability) override;
    bool get_port_advertising_ability(const Mp& port, port_ability_type_t& ability) override;
    bool get_port_current_ability(const Mp& port, port_ability_type_t& ability) override;
    bool get_port_peer_ability(Mp port, port_ability_type_t& ability) override;

    // ---- Flood blocking and class of service (l2/port) ----------------------------------------
    bool set_port_flood_blocking(const Mp& ingress, const Mp& egress,
                                 flood_block_type_t block) override;
    bool get_port_flood_blocking(const Mp& ingress, const Mp& egress,
                                 flood_block_type_t& block) override;
    bool set_port_flood_blocking_cpu(const Mp& ingress, flood_block_type_t block) override;
    bool get_port_flood_blocking_cpu(const Mp& ingress, flood_block_type_t& block) override;
    bool set_port_cos_mapping(const Mp& port, unsigned priority, unsigned queue) override;
    bool get_port_cos_mapping(const Mp& port, unsigned priority, unsigned& queue) override;

    // ---- The card (core) ----------------------------------------------------------------------
    bool get_line_card_usp(Usp& usp) override;
    bool free_call(int unused) override;

    // ---- Forwarding mode (l2/port) ------------------------------------------------------------
    bool set_switch_forward_mode(unsigned mode) override;
    bool get_switch_forward_mode(unsigned& mode) override;

    // ---- CPU trap filters (flow/arp_filter, flow/trap_filter) ---------------------------------
    bool add_arp_filter(unsigned ip, unsigned mask) override;
    bool delete_arp_filter(unsigned ip, unsigned mask) override;
    bool delete_arp_filter_all() override;
    bool add_ip_protocol_filter(unsigned protocol) override;
    bool delete_ip_protocol_filter(unsigned protocol) override;
    bool delete_ip_protocol_filter_all() override;
    bool add_l4_destination_port_filter(unsigned port) override;
    bool delete_l4_destination_port_filter(unsigned port) override;
    bool delete_l4_destination_port_filter_all() override;

    // ---- Layer-2 switching and unknown unicast (l2/port) --------------------------------------
    bool set_port_l2_enable(const Mp& port, bool enable) override;
    bool set_port_switch_unknown_unicast_to_cpu(const Mp& port, bool enable) override;
    bool get_port_switch_unknown_unicast_to_cpu(const Mp& port, bool& enabled) override;
    bool set_switch_unknown_unicast_to_cpu(bool enable) override;
    bool get_switch_unknown_unicast_to_cpu(bool& enabled) override;

    // ---- Flows (flow/flow_entry, flow/flow_maintenance) ---------------------------------------
    bool add_of_flow(const of_flow_mp_s& flow, unsigned& id,
                     const of_flow_qualify_udf_s& udf) override;
    bool add_of_flow_with_id(const of_flow_mp_s& flow, unsigned id) override;
    bool delete_of_flow(unsigned id) override;
    bool clear_of_flow_table() override;

    // ---- Flow actions (flow/flow_action) ------------------------------------------------------
    bool add_of_flow_action(unsigned id, of_action_t action, of_action_param_s param,
                            const Mp& port) override;
    bool delete_of_flow_action(unsigned id, of_action_t action, of_action_param_s param,
                               const Mp& port) override;
    bool clear_of_flow_action(unsigned id) override;

    // ---- Flow priority and counters (flow/flow_maintenance) -----------------------------------
    bool set_of_flow_priority(unsigned id, int priority) override;
    bool get_of_flow_priority(unsigned id, int& priority) override;
    bool get_of_flow_stat_counter64(unsigned id, unsigned long long& value) override;
    bool get_of_flow_stat_counter32(unsigned id, unsigned& value) override;

    // ---- Event callbacks (pktio/callbacks) ----------------------------------------------------
    bool register_mac_update_callback(void (*callback)(L2Addr*, int, void*), void* cookie) override;
    bool register_mac_update_callback_c(void (*callback)(ctype_l2_addr_s*, int, void*),
                                        void* cookie) override;
    bool register_link_change_callback(void (*callback)(LinkStatus*, Usp*), void* cookie) override;
    bool register_link_change_callback_c(void (*callback)(ctype_link_status_s*, usp_s*),
                                         void* cookie) override;
    bool register_rx_packet_callback(void (*callback)(RxPacket*, void*), void* cookie) override;
    bool register_rx_packet_callback_c(void (*callback)(ctype_rx_packet_s*, void*),
                                       void* cookie) override;
    bool deregister_event_callback(lcmgr_report_event_t event, void* callback,
                                   void* cookie) override;

    // ---- Event dispatch (pktio/callbacks) and the MAC table walk (l2/fdb) ---------------------
    bool mac_update(L2Addr* addr, int type, void* data) override;
    bool mac_update_c(ctype_l2_addr_s* addr, int type, void* data) override;
    void traverse_mac_table(void* user_data) override;
    bool link_change(LinkStatus* status, Usp* port) override;
    bool link_change_c(ctype_link_status_s* status, usp_s* port) override;
    bool rx_packet(RxPacket* packet, void* unused) override;
    bool rx_packet_c(ctype_rx_packet_s* packet, void* unused) override;

    // ---- Active LAG members (l2/lag) ----------------------------------------------------------
    bool port_add_to_egress_list(Mp port) override;
    bool port_remove_from_egress_list(Mp port) override;

    // ---- L3 interfaces (l3/interface) ---------------------------------------------------------
    bool create_l3_interface(const unsigned char* mac, unsigned vid, unsigned& id) override;
    bool create_l3_interface_with_id(const unsigned char* mac, unsigned vid, unsigned id,
                                     bool replace) override;
    bool get_l3_interface(unsigned id, unsigned& vid, unsigned char* mac) override;
    bool delete_l3_interface(const unsigned char* mac, unsigned vid) override;
    bool delete_l3_interface_by_id(unsigned id) override;
    bool delete_l3_interface_all() override;

    // ---- L3 hosts and routes (l3/host, l3/route) ----------------------------------------------
    bool add_l3_host_ip4(Mp port, bool is_trunk, unsigned ip, const unsigned char* mac,
                         unsigned interface_id) override;
    bool add_l3_host_ip6(Mp port, bool is_trunk, const unsigned char* ip6, const unsigned char* mac,
                         unsigned interface_id) override;
    bool get_l3_host_ip4(unsigned ip, Mp port, unsigned char* mac, unsigned& interface_id,
                         bool is_trunk) override;
    bool get_l3_host_ip6(const unsigned char* ip6, Mp port, unsigned char* mac,
                         unsigned& interface_id, bool is_trunk) override;
    bool get_l3_route_by_subnet_ip4(unsigned subnet, unsigned mask, const Mp& port, bool is_trunk,
                                    unsigned char (&mac)[6], unsigned& interface_id,
                                    unsigned& nexthop_ip) override;
    bool get_l3_route_by_subnet_ip6(const unsigned char* net6, const unsigned char* mask6,
                                    const Mp& port, bool is_trunk, unsigned& interface_id,
                                    unsigned char* mac) override;
    bool delete_l3_host_by_interface(unsigned interface_id, bool unmarked) override;
    bool delete_l3_host_by_network_ip4(unsigned net) override;
    bool delete_l3_host_by_network_ip6(const unsigned char* net6) override;
    bool delete_l3_host_by_addr_ip4(unsigned ip, const Mp& port, bool is_trunk) override;
    bool delete_l3_host_by_addr_ip6(const unsigned char* ip6, const Mp& port,
                                    bool is_trunk) override;
    bool delete_l3_host_all() override;
    bool invalidate_l3_entry(unsigned ip) override;
    bool validate_l3_entry(unsigned ip) override;
    bool add_l3_route_ip4(const Mp& port, bool is_trunk, unsigned subnet, unsigned mask,
                          const unsigned char* mac, unsigned interface_id,
                          unsigned nexthop_ip) override;
    bool add_l3_route_ip6(const Mp& port, bool is_trunk, const unsigned char* net6,
                          const unsigned char* mask6, const unsigned char* mac,
                          unsigned interface_id) override;
    bool delete_l3_route_by_interface(unsigned interface_id, bool unmarked) override;
    bool delete_l3_route_by_subnet_ip4(unsigned subnet, unsigned mask, const Mp& port,
                                       bool is_trunk) override;
    bool delete_l3_route_by_subnet_ip6(const unsigned char* net6, const unsigned char* mask6,
                                       const Mp& port, bool is_trunk) override;
    bool delete_l3_route_all() override;

    // ---- Trace control (core/trace) -----------------------------------------------------------
    bool set_trace(const std::string& keyword, bool on) override;

    // ---- Not in the interface -----------------------------------------------------------------

    /// Runs `init_line_card` and, while tracing is on, prints how it ended. Always true: a card
    /// that does not come up deliberately does not fail construction.
    bool initialize();

    /// Brings the card up: SDK, chip, ports and the driver's defaults. False at the first step that
    /// fails; the steps before it stay done.
    bool init_line_card();

    /// Another default set-up for hosts that want one: link scan, L2 notification and receive
    /// without handlers, and no flooding towards `Mp(0, 0)`. False at the first step that fails,
    /// which deliberately is `Mp(0, 49)`, a port of module 2, on a chip that refuses lport -1.
    bool line_card_default_config_init();

    /// Prepares VLAN 4094 for internal use: no learning, the ports of uports 0 to 52 (the CPU port
    /// among them, user port 47 not) untagged members. Nothing calls it. A port that cannot be
    /// listed as member ends it with false after printing why; one that cannot be listed as
    /// untagged is reported the same way and joins tagged. An existing VLAN is no failure.
    bool init_reserved_vlan();

    /// Makes the field group of the IP-protocol and L4-port trap filters. Bring-up only.
    bool init_filter_group_no_udf();

    /// Adds one ARP filter for untagged frames or for frames with one tag.
    bool do_add_arp_filter(unsigned ip, unsigned mask, bool one_vlan);

    /// Adds an action to, or removes it from, a field entry of the chip, and installs it again.
    bool do_change_of_flow_action(int entry, of_action_t action, of_action_param_s param,
                                  const Mp& port, bool add);

    /// While tracing is on, prints bytes as "%02x ", 16 to a line, and an empty line at the end.
    void dump_bytes(const unsigned char* bytes, unsigned length) const;

    // ---- Data, in this order ------------------------------------------------------------------

    /// A registered function and its cookie.
    using Callback = std::pair<void*, void*>;

    std::string sdk_name;
    int32_t port_count; ///< user ports, the CPU port included; also the capacity of port lists
    std::list<Callback> mac_update_callbacks;
    std::list<Callback> mac_update_c_callbacks;
    std::list<Callback> link_change_callbacks;
    std::list<Callback> link_change_c_callbacks;
    std::list<Callback> rx_packet_callbacks;
    std::list<Callback> rx_packet_c_callbacks;
};

#pragma GCC diagnostic pop
