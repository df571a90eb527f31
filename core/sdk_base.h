#pragma once

#include <list>
#include <string>

#include "flow/flow_types.h"
#include "l2/lag_types.h"
#include "l2/mirror_types.h"
#include "l2/port_types.h"
#include "l2/stat_types.h"
#include "l2/stp_types.h"
#include "pktio/event_types.h"
#include "platform/mp.h"
#include "platform/usp.h"
#include "platform/usp_s.h"

/// The driver as its callers see it: 179 operations on one switch chip.
///
/// Unless an operation says otherwise:
/// - It returns true when done and false when not; it never throws, and prints nothing.
/// - Outputs are written only when it returns true. List outputs are appended to, never cleared.
/// - False means that the chip refused, that a port does not exist, or that an argument is not one
///   of the values listed. A sequence that fails part-way leaves what it has done; nothing is
///   rolled back.
/// - VLAN ids are used as their low 16 bits; the chip refuses those it does not have.
/// - A MAC address is 6 bytes, an IPv6 address 16 bytes, both in wire order. An IPv4 address or
///   mask is a number in host byte order.
/// - With `is_lag` or `is_trunk`, the `Mp`'s port number is a trunk id and its module is ignored.
///
/// Operations take no locks: the caller uses them from one thread at a time.
///
/// The operations stand in the order of their slots in the dispatch table, which clients built
/// against an earlier library rely on: never reorder, insert or remove one. There is deliberately
/// no virtual destructor, so an instance is deleted through its concrete type, never through this
/// one; hence the protected destructor.
class VexoSdkBase {
public:
    VexoSdkBase() = default;
    VexoSdkBase(const VexoSdkBase&) = delete;
    VexoSdkBase& operator=(const VexoSdkBase&) = delete;

    // ---- VLAN membership (l2/vlan) ------------------------------------------------------------

    /// Creates a VLAN and puts the CPU port into it, tagged. Creating one that exists succeeds, and
    /// still asks for the CPU port; whether the CPU port joins does not change the result.
    virtual bool create_vlan(unsigned vid) = 0;

    /// Removes every MAC entry of a VLAN, static ones too, and then the VLAN. Deleting an absent
    /// VLAN succeeds.
    virtual bool delete_vlan(unsigned vid) = 0;

    /// Makes the given ports members, tagged or untagged as listed; a port that is a member with
    /// the other tagging changes it. Members that are not named stay as they are. A port of both
    /// lists ends untagged. When it fails, ports whose tagging was to change may be out of the
    /// VLAN.
    virtual bool add_ports_to_vlan(unsigned vid, const std::list<Mp>& tagged,
                                   const std::list<Mp>& untagged) = 0;

    /// Makes the CPU port a tagged member. False when the CPU port is not attached, after printing
    /// "failed to get cpu port.", and when the chip refuses for any reason, an existing membership
    /// included, after printing a line while tracing is on.
    virtual bool add_cpu_port_to_vlan(unsigned vid) = 0;

    /// Takes ports out of a VLAN. Ports that are not members are the chip's to judge.
    virtual bool delete_ports_from_vlan(unsigned vid, const std::list<Mp>& ports) = 0;

    /// Takes the CPU port out of a VLAN; an absent VLAN or membership succeeds. Failures print the
    /// same lines as `add_cpu_port_to_vlan`, "failed to add" included, deliberately.
    virtual bool delete_cpu_port_from_vlan(unsigned vid) = 0;

    /// Appends the tagged and the untagged members in the chip's order. False for an absent VLAN.
    /// When only releasing the SDK's lists fails, false although the members were appended.
    virtual bool get_vlan_info(unsigned vid, std::list<Mp>& tagged, std::list<Mp>& untagged) = 0;

    // ---- Spanning-tree groups (l2/stp) --------------------------------------------------------

    /// Sets a port's state in one spanning-tree group. Discarding deliberately programs the chip's
    /// listening state; the alias of forwarding programs forwarding. False for other values.
    virtual bool set_stg_stp_state(unsigned stg, const Mp& port, mstp_state_t state) = 0;

    /// Reads a port's state in one spanning-tree group. Blocking and listening both read as
    /// discarding; the alias of forwarding is never read back.
    virtual bool get_stg_stp_state(unsigned stg, const Mp& port, mstp_state_t& state) = 0;

    // ---- Link aggregation (l2/lag) ------------------------------------------------------------

    /// Creates an empty LAG, spreading by source and destination MAC, and writes its id. When only
    /// setting the spreading fails, the result is false although the LAG exists and `id` is
    /// written.
    virtual bool create_lag(unsigned& id) = 0;

    /// Removes every MAC entry of a LAG, static ones too, and then the LAG. False when absent.
    virtual bool delete_lag(unsigned id) = 0;

    /// Makes those of the given ports that have link the LAG's active members, in place of all
    /// earlier ones, and flushes the addresses they learned. The first becomes the LAG's port for
    /// unknown unicasts and multicasts. With no link on any, true and nothing changes. False above
    /// 8 members. Does not touch the LAG bookkeeping (l2/lag.h).
    virtual bool add_ports_to_lag(unsigned id, const std::list<Mp>& ports) = 0;

    /// Takes ports out of a LAG's active members and blocks their spanning-tree state. A LAG left
    /// without members is made anew under the same id. Name each port once: one named twice counts
    /// as two that leave. False, too, for a LAG that the bookkeeping (l2/lag.h) does not know; when
    /// it fails later, ports may stay blocked.
    virtual bool delete_ports_from_lag(unsigned id, const std::list<Mp>& ports) = 0;

    /// Sets how a LAG spreads its traffic. False for a value that is not listed.
    virtual bool set_lag_psc(unsigned id, lag_psc_t psc) = 0;

    /// Reads how a LAG spreads its traffic. False when the chip uses a way that is not listed.
    virtual bool get_lag_psc(unsigned id, lag_psc_t& psc) = 0;

    // ---- Mirroring (l2/mirror) ----------------------------------------------------------------

    /// Starts the mirroring block; copies keep the format in which frames were received. The
    /// argument is ignored: there is no way to switch the block off.
    virtual bool enable_mirror(unsigned unused) = 0;

    /// Copies the traffic of `source` to `destination`, or stops with `MIRROR_OFF`, and keeps
    /// broadcasts, unknown unicasts and known multicasts from being flooded to `destination`
    /// (allows them again when off, even while other ports are mirrored there). Floods from user
    /// port 47 are deliberately left alone. False for a type that is not listed.
    virtual bool set_mirror_port(const Mp& destination, const Mp& source, mirror_type_t type) = 0;

    /// Reads what is mirrored from `source` and to where. `destination` is not written when the
    /// type is `MIRROR_OFF`.
    virtual bool get_mirror_port(Mp& destination, const Mp& source, mirror_type_t& type) = 0;

    // ---- Port configuration (l2/port) ---------------------------------------------------------

    /// Switches a port on or off. Switching off also flushes the port's learned addresses.
    virtual bool set_port_enable(const Mp& port, bool enable) = 0;
    virtual bool get_port_enabled(const Mp& port, bool& enabled) = 0;

    /// Does nothing and returns true; `set_port_vlan_pvid` sets a port's default VLAN.
    virtual bool set_port_default_vlan(const Mp& port, unsigned vid) = 0;

    /// Returns true and leaves `vid` as it is; `get_port_vlan_pvid` reads a port's default VLAN.
    virtual bool get_port_default_vlan(const Mp& port, unsigned& vid) = 0;

    /// Auto-negotiation on or off.
    virtual bool set_port_autoneg(const Mp& port, bool enable) = 0;
    virtual bool get_port_autoneg(const Mp& port, bool& enabled) = 0;

    /// False, without asking the chip, for a speed that is not listed.
    virtual bool set_port_speed(const Mp& port, speed_type_t speed) = 0;

    /// False when the port runs at a speed that is not listed.
    virtual bool get_port_speed(const Mp& port, speed_type_t& speed) = 0;

    /// `DUPLEX_HALF` sets half duplex, deliberately every other value full duplex.
    virtual bool set_port_duplex(const Mp& port, duplex_type_t duplex) = 0;
    virtual bool get_port_duplex(const Mp& port, duplex_type_t& duplex) = 0;

    /// Pause frames honoured (`rx`) and sent (`tx`): 0 off, 1 on.
    virtual bool set_port_pause(const Mp& port, unsigned rx, unsigned tx) = 0;
    virtual bool get_port_pause(const Mp& port, unsigned& rx, unsigned& tx) = 0;

    /// Half-duplex back pressure by jamming, on or off.
    virtual bool set_port_jaming(const Mp& port, bool enable) = 0;
    virtual bool get_port_jaming(const Mp& port, bool& enabled) = 0;

    /// The source address of the pause frames that a port sends.
    virtual bool set_port_pause_addr(const Mp& port, const unsigned char* mac) = 0;

    /// Writes straight into `mac`, so its contents after a false result are the chip's doing.
    virtual bool get_port_pause_addr(const Mp& port, unsigned char (&mac)[6]) = 0;

    /// The longest frame a port takes, in bytes with header and FCS. Passed to the chip as it is.
    virtual bool set_port_mtu(const Mp& port, unsigned bytes) = 0;
    virtual bool get_port_mtu(const Mp& port, unsigned& bytes) = 0;

    // ---- Port statistics (l2/stat) ------------------------------------------------------------

    /// Switches a port's counters on or off.
    virtual bool set_port_stat_enable(const Mp& port, bool enable) = 0;

    /// Always false, writing nothing: the chip does not tell.
    virtual bool get_port_stat_enabled(const Mp& port, bool& enabled) = 0;

    /// Reads one counter. A counter that the chip fails to read gives 0 and true, deliberately;
    /// false for a port that does not exist and for a type outside 1 to 76.
    virtual bool get_port_stat_counter(const Mp& port, stat_type_t type,
                                       unsigned long long& value) = 0;
    virtual bool get_port_stat_counter32(const Mp& port, stat_type_t type, unsigned& value) = 0;

    /// Appends all 76 counters in the order of their types; those that the chip fails to read are
    /// 0. False only for a port that does not exist.
    virtual bool get_port_stat_counter_all64(const Mp& port,
                                             std::list<StatCounter64>& counters) = 0;
    virtual bool get_port_stat_counter_all32(const Mp& port,
                                             std::list<StatCounter32>& counters) = 0;

    /// The same into an array of `count` records. False, writing nothing, when `count` is below 76;
    /// otherwise writes 76 records, type i at position i - 1, and sets `count` to 76.
    virtual bool get_port_stat_counter_all64_ext(const Mp& port, StatCounter64* counters,
                                                 unsigned& count) = 0;
    virtual bool get_port_stat_counter_all32_ext(const Mp& port, StatCounter32* counters,
                                                 unsigned& count) = 0;

    /// Reads one summary counter. Deliberately true only when the chip's answer is 1, which no
    /// chip gives on success: expect false, and use the list forms below.
    virtual bool get_port_brief_stat_counter(const Mp& port, brief_stat_type_t type,
                                             unsigned long long& value) = 0;
    virtual bool get_port_brief_stat_counter32(const Mp& port, brief_stat_type_t type,
                                               unsigned& value) = 0;

    /// Appends the four summary counters in the order of their types. Stops with false at the first
    /// that cannot be read; those before it stay appended.
    virtual bool get_port_brief_stat_counter_all64(const Mp& port,
                                                   std::list<BriefStatCounter64>& counters) = 0;
    virtual bool get_port_brief_stat_counter_all32(const Mp& port,
                                                   std::list<BriefStatCounter32>& counters) = 0;

    /// Sets all of a port's counters to 0.
    virtual bool clear_port_stat_counter(const Mp& port) = 0;

    // ---- Spanning tree (l2/stp) ---------------------------------------------------------------

    /// Sets a port's state in every spanning-tree group. False for a state that is not listed.
    virtual bool set_port_stp_state(const Mp& port, stp_state_t state) = 0;
    virtual bool get_port_stp_state(const Mp& port, stp_state_t& state) = 0;

    // ---- BPDU handling (l2/port) --------------------------------------------------------------

    /// Whether a port hands the BPDUs it receives to the CPU.
    virtual bool set_port_bpdu_processing(const Mp& port, bool enable) = 0;
    virtual bool get_port_bpdu_processing(const Mp& port, bool& enabled) = 0;

    // ---- Forwarding database (l2/fdb) ---------------------------------------------------------

    /// Installs a static MAC entry towards a port or LAG; it may replace a learned one. Multicast
    /// addresses are taken too. Adding an entry that exists succeeds.
    virtual bool add_mac_to_port(const Mp& port, const unsigned char* mac, unsigned vid,
                                 bool is_lag) = 0;

    /// Installs a static MAC entry towards the CPU. False for a multicast address. Adding an entry
    /// that exists succeeds.
    virtual bool add_system_mac(const unsigned char* mac, unsigned vid) = 0;

    /// The same in each VLAN 0 to 4095 whose bit is set: bit v % 8 of byte v / 8, 512 bytes. Stops
    /// at the first failure; an empty bitmap succeeds.
    virtual bool add_system_mac_vlan_bitmap(const unsigned char* mac,
                                            const unsigned char* bitmap) = 0;

    /// Deletes one entry. Deleting an absent entry succeeds.
    virtual bool delete_mac(const unsigned char* mac, unsigned vid) = 0;

    /// Deletes an address in the VLANs of a bitmap as above, but deliberately looks at VLANs 0 to
    /// 511 only. Deliberately, too, an absent entry ends it with false.
    virtual bool delete_mac_vlan_bitmap(const unsigned char* mac, const unsigned char* bitmap) = 0;

    /// Deletes an address in every VLAN, static entries too. Deleting an absent address succeeds.
    virtual bool delete_mac_by_mac(const unsigned char* mac) = 0;

    /// Deletes the learned, and `with_static` also the static, entries of a port or LAG.
    virtual bool clear_mac_by_port(const Mp& port, bool is_lag, bool with_static) = 0;

    /// Deletes the learned, and `with_static` also the static, entries of a VLAN.
    virtual bool clear_mac_by_vlan(unsigned vid, bool with_static) = 0;

    /// Deletes the learned, and `with_static` also the static, entries of every front-panel port
    /// and every LAG of the bookkeeping (l2/lag.h). A failure on a port is only reported while
    /// tracing is on and does not stop it; a failure on a LAG ends it with false.
    virtual bool clear_fdb_table(bool with_static) = 0;

    /// How long a learned address stays without being seen, in seconds; 0 keeps it for good.
    virtual bool set_fdb_aging_time(int seconds) = 0;
    virtual bool get_fdb_aging_time(int& seconds) = 0;

    // ---- Link state (l2/port) -----------------------------------------------------------------

    /// Does nothing and returns true: a link state cannot be set.
    virtual bool set_port_phy_state(const Mp& port, phy_state_t state) = 0;

    /// Whether a port has link.
    virtual bool get_port_phy_state(const Mp& port, phy_state_t& state) = 0;

    // ---- Address learning (l2/fdb) ------------------------------------------------------------

    /// A locked port learns nothing: frames from unknown sources go to the CPU and no further. An
    /// unlocked port learns and forwards.
    virtual bool set_port_mac_lock(const Mp& port, bool lock) = 0;

    /// `locked` is false only when the port both learns and forwards unknown sources.
    virtual bool get_port_mac_lock(const Mp& port, bool& locked) = 0;

    /// A locked port forwards frames from unknown sources (`forward`) or hands them to the CPU. An
    /// unlocked port only learns, whatever `forward` says.
    virtual bool set_port_mac_lock_ext(const Mp& port, bool lock, bool forward) = 0;

    /// `forward` is written only when the port is locked.
    virtual bool get_port_mac_lock_ext(const Mp& port, bool& locked, bool& forward) = 0;

    // ---- Storm control (l2/port) --------------------------------------------------------------

    /// The most broadcasts, multicasts or unknown unicasts that a port takes, in packets per
    /// second.
    virtual bool set_port_broadcast_control(const Mp& port, unsigned rate) = 0;
    virtual bool get_port_broadcast_control(const Mp& port, unsigned& rate) = 0;
    virtual bool set_port_multicast_control(const Mp& port, unsigned rate) = 0;
    virtual bool get_port_multicast_control(const Mp& port, unsigned& rate) = 0;
    virtual bool set_port_unicast_control(const Mp& port, unsigned rate) = 0;
    virtual bool get_port_unicast_control(const Mp& port, unsigned& rate) = 0;

    // ---- Admission and default VLAN of a port (l2/port) ---------------------------------------

    /// Blocks (false) or allows (true) all flooding from front-panel ports to a port, deliberately
    /// but for user port 47. Stops at the first port that fails.
    virtual bool set_port_egress_admin_state(const Mp& port, bool up) = 0;

    /// Deliberately inverted: true when all flooding to the port is blocked, false otherwise.
    virtual bool get_port_egress_admin_state(const Mp& port, bool& state) = 0;

    /// Which received frames a port discards. False for a value that is not listed.
    virtual bool set_port_ingress_discarding(const Mp& port, ingress_discard_type_t type) = 0;
    virtual bool get_port_ingress_discarding(const Mp& port, ingress_discard_type_t& type) = 0;

    /// The VLAN of the untagged frames that a port receives.
    virtual bool set_port_vlan_pvid(const Mp& port, unsigned vid) = 0;
    virtual bool get_port_vlan_pvid(const Mp& port, unsigned& vid) = 0;

    /// The priority of the untagged frames that a port receives. The first number is ignored.
    virtual bool set_port_vlan_priority(const Mp& port, unsigned unused, unsigned priority) = 0;
    virtual bool get_port_vlan_priority(const Mp& port, unsigned unused, unsigned& priority) = 0;

    /// Whether a port takes tagged frames only. Shares its setting with
    /// `set_port_ingress_discarding`: any discarding at all reads as true.
    virtual bool set_port_vlan_accept_frame(const Mp& port, bool tagged_only) = 0;
    virtual bool get_port_vlan_accept_frame(const Mp& port, bool& tagged_only) = 0;

    // ---- Learning limits (l2/fdb) -------------------------------------------------------------

    /// The most addresses to learn; `kind` says where: 0 unspecified, 1 on the port, 2 on the LAG
    /// `port.port()`, 3 in the VLAN `port.port()`, 4 on the whole chip. False for other kinds and
    /// on a chip without limits, which is reported while tracing is on; true when only the kind is
    /// unavailable.
    virtual bool set_port_mac_limit(const Mp& port, int limit, int kind) = 0;

    /// Reads a limit; `kind` as above, without 0.
    virtual bool get_port_mac_limit(const Mp& port, int& limit, int kind) = 0;

    // ---- VLAN assignment by protocol, MAC and subnet (l2/port) --------------------------------

    /// Puts the untagged frames of a frame type and EtherType that a port receives into a VLAN.
    /// False for a frame type that is not listed.
    virtual bool set_port_protocol_vlan(const Mp& port, frame_type_t frame,
                                        unsigned short ethertype, unsigned vid) = 0;
    virtual bool delete_port_protocol_vlan(const Mp& port, frame_type_t frame,
                                           unsigned short ethertype) = 0;
    virtual bool delete_port_protocol_vlan_all(const Mp& port) = 0;

    /// Puts the untagged frames from a source address into a VLAN, with a priority.
    virtual bool set_mac_vlan(const unsigned char* mac, unsigned vid, unsigned priority) = 0;

    /// Puts the untagged frames from an IPv4 subnet into a VLAN, with a priority.
    virtual bool set_ipv4_subnet_vlan(unsigned ip, unsigned mask, unsigned vid,
                                      unsigned priority) = 0;

    /// The same for an IPv6 subnet.
    virtual bool set_ipv6_subnet_vlan(const unsigned char* ip6, unsigned prefix_length,
                                      unsigned vid, unsigned priority) = 0;

    // ---- Packet transmit (pktio/transmit) -----------------------------------------------------

    /// Sends a frame out of the given ports, tagged and untagged as listed. The frame starts at the
    /// destination MAC and carries no FCS; without an 802.1Q tag it gets one with VLAN 1, and is
    /// padded to 64 bytes. False below 16 and above 16384 bytes, tag included.
    virtual bool send_packet_by_ports(const std::list<Mp>& tagged, const std::list<Mp>& untagged,
                                      const Packet& packet) = 0;

    /// Has the chip forward a frame as if the CPU port had received it. The frame is as above.
    virtual bool send_packet_from_cpu(const Packet& packet) = 0;

    // ---- Port abilities (l2/port) -------------------------------------------------------------

    /// What a port is able to run: every speed, medium and pause mode it has.
    virtual bool get_port_ability(const Mp& port, port_ability_type_t& ability) = 0;

    /// What a port offers in auto-negotiation. Of the speeds, only the lowest set one is taken.
    virtual bool set_port_advertising_ability(const Mp& port, port_ability_type_t ability) = 0;

    /// What a port offers, is able to run, and its peer offers. Of the speeds, deliberately only
    /// one is reported: the lowest, full duplex before half.
    virtual bool get_port_advertising_ability(const Mp& port, port_ability_type_t& ability) = 0;
    virtual bool get_port_current_ability(const Mp& port, port_ability_type_t& ability) = 0;
    virtual bool get_port_peer_ability(Mp port, port_ability_type_t& ability) = 0;

    // ---- Flood blocking and class of service (l2/port) ----------------------------------------

    /// Keeps the given kinds of flood that enter at `ingress` from leaving at `egress`.
    virtual bool set_port_flood_blocking(const Mp& ingress, const Mp& egress,
                                         flood_block_type_t block) = 0;
    virtual bool get_port_flood_blocking(const Mp& ingress, const Mp& egress,
                                         flood_block_type_t& block) = 0;

    /// The same towards the CPU port. False while the CPU port is not attached.
    virtual bool set_port_flood_blocking_cpu(const Mp& ingress, flood_block_type_t block) = 0;
    virtual bool get_port_flood_blocking_cpu(const Mp& ingress, flood_block_type_t& block) = 0;

    /// The queue, 0 to 7, of frames with a priority, 0 to 7.
    virtual bool set_port_cos_mapping(const Mp& port, unsigned priority, unsigned queue) = 0;
    virtual bool get_port_cos_mapping(const Mp& port, unsigned priority, unsigned& queue) = 0;

    // ---- The card (core) ----------------------------------------------------------------------

    /// Names the CPU port: unit 1, this card's slot (0 until `vexo_init_line_card`), port 53. The
    /// port is the user port, deliberately not user port + 1 as in every other `Usp`. Always true.
    virtual bool get_line_card_usp(Usp& usp) = 0;

    /// Does nothing and returns true.
    virtual bool free_call(int unused) = 0;

    // ---- Forwarding mode (l2/port) ------------------------------------------------------------

    /// The chip's forwarding mode, in the chip's own numbers.
    virtual bool set_switch_forward_mode(unsigned mode) = 0;
    virtual bool get_switch_forward_mode(unsigned& mode) = 0;

    // ---- CPU trap filters (flow/arp_filter, flow/trap_filter) ---------------------------------

    /// Hands ARP frames for target addresses of `ip` / `mask` to the CPU, untagged or with one
    /// tag. Adding a filter of the same `ip` AND `mask` succeeds and changes nothing. On failure,
    /// parts already made stay in the chip, and the untagged half counts as the filter.
    virtual bool add_arp_filter(unsigned ip, unsigned mask) = 0;

    /// Always true; chip failures are printed. Deliberately, deleting a filter that was never added
    /// destroys the chip's field entry 0.
    virtual bool delete_arp_filter(unsigned ip, unsigned mask) = 0;

    /// Deletes every ARP filter and forgets them all. False, after printing, when the chip failed
    /// to delete any.
    virtual bool delete_arp_filter_all() = 0;

    /// Hands IP frames of a protocol (low 8 bits) to the CPU. Adding one that exists succeeds.
    virtual bool add_ip_protocol_filter(unsigned protocol) = 0;

    /// Deleting an absent filter succeeds. Deliberately, the filter is remembered: adding it again
    /// succeeds without effect until `delete_ip_protocol_filter_all`.
    virtual bool delete_ip_protocol_filter(unsigned protocol) = 0;

    /// Stops at the first failure, then remembering every filter.
    virtual bool delete_ip_protocol_filter_all() = 0;

    /// The same for IP frames to an L4 destination port.
    virtual bool add_l4_destination_port_filter(unsigned port) = 0;
    virtual bool delete_l4_destination_port_filter(unsigned port) = 0;
    virtual bool delete_l4_destination_port_filter_all() = 0;

    // ---- Layer-2 switching and unknown unicast (l2/port) --------------------------------------

    /// Allows or blocks flooding (broadcast, unknown unicast, unknown multicast) from the other
    /// front-panel ports, deliberately but for user port 47, to a port; disabling also deletes the
    /// port's MAC entries, static ones too. Stops at the first port that fails.
    virtual bool set_port_l2_enable(const Mp& port, bool enable) = 0;

    /// Whether frames to unknown unicast addresses go to the CPU too, for those that a port
    /// receives.
    virtual bool set_port_switch_unknown_unicast_to_cpu(const Mp& port, bool enable) = 0;
    virtual bool get_port_switch_unknown_unicast_to_cpu(const Mp& port, bool& enabled) = 0;

    /// The same for the whole chip.
    virtual bool set_switch_unknown_unicast_to_cpu(bool enable) = 0;
    virtual bool get_switch_unknown_unicast_to_cpu(bool& enabled) = 0;

    // ---- Flows (flow/flow_entry, flow/flow_maintenance) ---------------------------------------

    /// Installs a flow without actions and writes its id; ids ascend from 0 and are never reused.
    /// `udf` is read only when the flow's flags have `OF_QUALIFY_UDF`. Prints what it programs, and
    /// what fails. On failure, parts already made stay in the chip, and the id is not used up.
    virtual bool add_of_flow(const of_flow_mp_s& flow, unsigned& id,
                             const of_flow_qualify_udf_s& udf) = 0;

    /// Does nothing and returns false: ids are the driver's to choose.
    virtual bool add_of_flow_with_id(const of_flow_mp_s& flow, unsigned id) = 0;

    /// Deletes a flow and its counter, and with the last flow of a kind the group they shared.
    /// Deleting an absent flow succeeds. False when the chip fails; the flow then stays known.
    virtual bool delete_of_flow(unsigned id) = 0;

    /// Deletes every flow; ids keep ascending. Counters and groups deliberately stay. Always true.
    virtual bool clear_of_flow_table() = 0;

    // ---- Flow actions (flow/flow_action) ------------------------------------------------------

    /// Adds an action to a flow and installs the flow again. `port` is used only for an output of
    /// type `OF_OUTPUT_PORT` and above. False for an absent flow, for an action not listed, and
    /// when the chip fails, after printing why; what was changed by then acts with the next change.
    virtual bool add_of_flow_action(unsigned id, of_action_t action, of_action_param_s param,
                                    const Mp& port) = 0;

    /// Removes an action. Deliberately, port outputs and MAC rewrites are not taken out: an output
    /// port is added to the ports that the flow's frames never leave by, a MAC rewrite is added
    /// once more.
    virtual bool delete_of_flow_action(unsigned id, of_action_t action, of_action_param_s param,
                                       const Mp& port) = 0;

    /// Removes all actions, the counting of hits included. Deliberately, the flow is not installed
    /// again, so the chip runs the old ones until the next change. False for an absent flow.
    virtual bool clear_of_flow_action(unsigned id) = 0;

    // ---- Flow priority and counters (flow/flow_maintenance) -----------------------------------

    /// The flow is not installed again by this. False for an absent flow.
    virtual bool set_of_flow_priority(unsigned id, int priority) = 0;
    virtual bool get_of_flow_priority(unsigned id, int& priority) = 0;

    /// The packets that hit a flow. False, after printing why, for an absent flow or a failed read.
    virtual bool get_of_flow_stat_counter64(unsigned id, unsigned long long& value) = 0;
    virtual bool get_of_flow_stat_counter32(unsigned id, unsigned& value) = 0;

    // ---- Event callbacks (pktio/callbacks) ----------------------------------------------------

    /// Registers a function for an event; class-form functions are called before C-style ones, each
    /// in order of registration, on the SDK's threads. Register before the events flow. The same
    /// function with the same cookie is registered once. Only packet functions are handed their
    /// cookie: link functions get none, MAC functions the data of the event. Always true.
    virtual bool register_mac_update_callback(void (*callback)(L2Addr*, int, void*),
                                              void* cookie) = 0;
    virtual bool register_mac_update_callback_c(void (*callback)(ctype_l2_addr_s*, int, void*),
                                                void* cookie) = 0;
    virtual bool register_link_change_callback(void (*callback)(LinkStatus*, Usp*),
                                               void* cookie) = 0;
    virtual bool register_link_change_callback_c(void (*callback)(ctype_link_status_s*, usp_s*),
                                                 void* cookie) = 0;
    virtual bool register_rx_packet_callback(void (*callback)(RxPacket*, void*), void* cookie) = 0;
    virtual bool register_rx_packet_callback_c(void (*callback)(ctype_rx_packet_s*, void*),
                                               void* cookie) = 0;

    /// Removes a function registered with that cookie, in both forms; true also when there was
    /// none. C-style packet functions deliberately stay. False for an event that is not listed.
    virtual bool deregister_event_callback(lcmgr_report_event_t event, void* callback,
                                           void* cookie) = 0;

    // ---- Event dispatch (pktio/callbacks) and the MAC table walk (l2/fdb) ---------------------

    /// Hands a MAC table update to every function registered for it, with `type` (0 removed, 1
    /// added, 2 listed) and `data`. Called by the driver's event handlers; the result means
    /// nothing, here and in the other five dispatchers.
    virtual bool mac_update(L2Addr* addr, int type, void* data) = 0;
    virtual bool mac_update_c(ctype_l2_addr_s* addr, int type, void* data) = 0;

    /// Hands every MAC entry of the chip to the functions registered for MAC updates, as type 2
    /// with `user_data`, before it returns. A failed walk is reported only while tracing is on.
    virtual void traverse_mac_table(void* user_data) = 0;

    /// Hands a link change to every function registered for it.
    virtual bool link_change(LinkStatus* status, Usp* port) = 0;
    virtual bool link_change_c(ctype_link_status_s* status, usp_s* port) = 0;

    /// Hands a packet to every function registered for it, with the function's own cookie; the
    /// argument is ignored.
    virtual bool rx_packet(RxPacket* packet, void* unused) = 0;
    virtual bool rx_packet_c(ctype_rx_packet_s* packet, void* unused) = 0;

    // ---- Active LAG members (l2/lag) ----------------------------------------------------------

    /// Puts a configured member back into the active members of its LAGs, as the bookkeeping
    /// (l2/lag.h) has them, and flushes the addresses it learned. Stops at the first LAG that
    /// fails. A port of no LAG succeeds.
    virtual bool port_add_to_egress_list(Mp port) = 0;

    /// Takes a configured member out of the active members of its LAGs; a LAG left without members
    /// is made anew under the same id. One that is not active is no failure. Stops at the first LAG
    /// that fails. A port of no LAG succeeds.
    virtual bool port_remove_from_egress_list(Mp port) = 0;

    // ---- L3 interfaces (l3/interface) ---------------------------------------------------------

    /// Creates a router interface with a MAC address in a VLAN and writes its id. Creating one that
    /// exists succeeds and writes the id it has. False when the chip is full or refuses the MAC
    /// address (multicast) or the VLAN.
    virtual bool create_l3_interface(const unsigned char* mac, unsigned vid, unsigned& id) = 0;

    /// The same under an id of the caller's choice; `replace` puts it in place of another.
    /// Deliberately, what exists counts as created and stays as it is: an id that is taken and not
    /// to be replaced, and an interface of this MAC address and VLAN under another id.
    virtual bool create_l3_interface_with_id(const unsigned char* mac, unsigned vid, unsigned id,
                                             bool replace) = 0;

    /// Reads an interface's VLAN and MAC address (6 bytes). Deliberately true, with the outputs
    /// untouched, when the SDK fails to prepare its record. False for an absent id.
    virtual bool get_l3_interface(unsigned id, unsigned& vid, unsigned char* mac) = 0;

    /// Deleting an absent interface succeeds.
    virtual bool delete_l3_interface(const unsigned char* mac, unsigned vid) = 0;
    virtual bool delete_l3_interface_by_id(unsigned id) = 0;
    virtual bool delete_l3_interface_all() = 0;

    // ---- L3 hosts and routes (l3/host, l3/route) ----------------------------------------------
    // IPv4 addresses and masks are numbers in host order; IPv6 ones are 16 bytes, MAC addresses 6.
    // With `is_trunk`, the number in `port` is the id of a LAG; without, a port that does not map
    // returns false before any SDK call.

    /// Adds a host: frames to `ip` go to `mac` out of a port or LAG through an interface. Adding
    /// one that exists succeeds and leaves it as it is. False for an absent interface or LAG.
    virtual bool add_l3_host_ip4(Mp port, bool is_trunk, unsigned ip, const unsigned char* mac,
                                 unsigned interface_id) = 0;

    /// The same for IPv6, but deliberately false unless the SDK answers 1 when it prepares its
    /// record, which no SDK does on success: expect false, and reach IPv6 hosts by routes.
    virtual bool add_l3_host_ip6(Mp port, bool is_trunk, const unsigned char* ip6,
                                 const unsigned char* mac, unsigned interface_id) = 0;

    /// Reads a host's MAC address and interface; the lookup is made with the port or LAG. False
    /// when absent.
    virtual bool get_l3_host_ip4(unsigned ip, Mp port, unsigned char* mac, unsigned& interface_id,
                                 bool is_trunk) = 0;
    virtual bool get_l3_host_ip6(const unsigned char* ip6, Mp port, unsigned char* mac,
                                 unsigned& interface_id, bool is_trunk) = 0;

    /// Reads a route's next hop: MAC address, interface and, for IPv4, IP address. The lookup is
    /// made with the port or LAG. False when absent.
    virtual bool get_l3_route_by_subnet_ip4(unsigned subnet, unsigned mask, const Mp& port,
                                            bool is_trunk, unsigned char (&mac)[6],
                                            unsigned& interface_id, unsigned& nexthop_ip) = 0;
    virtual bool get_l3_route_by_subnet_ip6(const unsigned char* net6, const unsigned char* mask6,
                                            const Mp& port, bool is_trunk, unsigned& interface_id,
                                            unsigned char* mac) = 0;

    /// Deletes the hosts of an interface, IPv4 and IPv6; none succeeds. `unmarked` false adds the
    /// SDK's flag 0x80 to the request: the hosts of every other interface go.
    virtual bool delete_l3_host_by_interface(unsigned interface_id, bool unmarked) = 0;

    /// Asks for the hosts of a network to be deleted, deliberately without a mask: unless the SDK
    /// makes records with one, all hosts of the family go. False when the SDK finds none to delete.
    virtual bool delete_l3_host_by_network_ip4(unsigned net) = 0;
    virtual bool delete_l3_host_by_network_ip6(const unsigned char* net6) = 0;

    /// Deletes one host. False when absent.
    virtual bool delete_l3_host_by_addr_ip4(unsigned ip, const Mp& port, bool is_trunk) = 0;
    virtual bool delete_l3_host_by_addr_ip6(const unsigned char* ip6, const Mp& port,
                                            bool is_trunk) = 0;
    virtual bool delete_l3_host_all() = 0;

    /// Switches the entry of an IPv4 address off or on again; an absent entry succeeds.
    virtual bool invalidate_l3_entry(unsigned ip) = 0;
    virtual bool validate_l3_entry(unsigned ip) = 0;

    /// Adds a route: frames to a subnet go to `mac` out of a port or LAG through an interface.
    /// Adding one that exists succeeds and leaves it as it is. False for a mask with holes, host
    /// bits in the subnet, an absent interface or LAG.
    virtual bool add_l3_route_ip4(const Mp& port, bool is_trunk, unsigned subnet, unsigned mask,
                                  const unsigned char* mac, unsigned interface_id,
                                  unsigned nexthop_ip) = 0;
    virtual bool add_l3_route_ip6(const Mp& port, bool is_trunk, const unsigned char* net6,
                                  const unsigned char* mask6, const unsigned char* mac,
                                  unsigned interface_id) = 0;

    /// Deletes the routes of an interface, IPv4 and IPv6; none succeeds. `unmarked` as above.
    /// Deliberately the chip is first asked for the IPv4 default route, and where there is one the
    /// request goes on with its interface and flags instead: the routes of that interface go.
    virtual bool delete_l3_route_by_interface(unsigned interface_id, bool unmarked) = 0;

    /// Deletes one route. Deleting an absent route succeeds.
    virtual bool delete_l3_route_by_subnet_ip4(unsigned subnet, unsigned mask, const Mp& port,
                                               bool is_trunk) = 0;
    virtual bool delete_l3_route_by_subnet_ip6(const unsigned char* net6,
                                               const unsigned char* mask6, const Mp& port,
                                               bool is_trunk) = 0;
    virtual bool delete_l3_route_all() = 0;

    // ---- Trace control (core/trace) -----------------------------------------------------------

    /// Switches the driver's diagnostics on or off for the life of the process. True for
    /// "trace_level_all" and "trace_level_sdk", which are the same switch; every other keyword
    /// (core/trace_keywords.h) returns false and changes nothing.
    virtual bool set_trace(const std::string& keyword, bool on) = 0;

protected:
    ~VexoSdkBase() = default;
};
