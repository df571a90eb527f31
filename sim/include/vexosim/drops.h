/// @file
/// Why frames go nowhere. One list makes the enumerators, the counters and the texts.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vexosim {

/// X(name, text): in the order in which a frame meets them.
#define VEXOSIM_DROP_REASONS(X)                                                                    \
    X(truncated, "shorter than its headers")                                                       \
    X(port_disabled, "the port is disabled")                                                       \
    X(port_link_down, "the port has no link")                                                      \
    X(too_long, "longer than the ingress port's maximum")                                          \
    X(pause, "a PAUSE or other control frame, for the port itself")                                \
    X(discard_all, "the port discards all frames")                                                 \
    X(discard_tagged, "the port discards tagged frames")                                           \
    X(discard_untagged, "the port discards untagged frames")                                       \
    X(vlan_reserved, "tagged with the reserved VLAN 4095")                                         \
    X(vlan_unknown, "the VLAN does not exist")                                                     \
    X(not_member, "the ingress port is not in the VLAN")                                           \
    X(stp_disabled, "spanning tree has the ingress port disabled")                                 \
    X(stp_blocking, "spanning tree blocks the ingress port")                                       \
    X(stp_learning, "the ingress port only learns")                                                \
    X(source_multicast, "the source address is a group address")                                   \
    X(source_unknown, "the port does not forward frames of unknown source")                        \
    X(field_drop, "a field entry drops it")                                                        \
    X(l3_martian, "its IP source or destination is not one to route")                              \
    X(l3_from_cpu, "routing would hand it to the CPU, which sent it")                              \
    X(l3_interface_gone, "the next hop's interface, or its VLAN, is gone")                         \
    X(same_port, "the destination is on the port it came from")                                    \
    X(same_trunk, "the destination is on the trunk it came from")                                  \
    X(trunk_empty, "the destination's trunk has no members")                                       \
    X(entry_blocked, "the MAC entry blocks its own port")                                          \
    X(storm_broadcast, "more broadcasts than the port's limit")                                    \
    X(storm_multicast, "more multicasts than the port's limit")                                    \
    X(storm_unknown_unicast, "more unknown unicasts than the port's limit")                        \
    X(no_destination, "no other port is in the VLAN")                                              \
    X(flood_blocked, "flooding is blocked towards every destination")                              \
    X(field_no_port, "field entries leave it no port")                                             \
    X(egress_not_member, "the destination is not in the VLAN")                                     \
    X(egress_stp, "spanning tree does not let the destination send")                               \
    X(egress_down, "the destination is disabled or has no link")                                   \
    X(egress_too_long, "longer than the destination's maximum")                                    \
    X(cpu_queue_full, "the CPU's queue is full")

enum class DropReason : std::uint8_t {
    kNone,
#define X(name, text) name,
    VEXOSIM_DROP_REASONS(X)
#undef X
        kCount
};
inline constexpr std::size_t kDropReasons = static_cast<std::size_t>(DropReason::kCount);

/// The enumerator's name ("vlan_unknown"); "none" for kNone.
const char* drop_name(DropReason reason);
/// Why, in words; empty for kNone.
const char* drop_text(DropReason reason);

/// What became of all frames. Frames enter from the wire or from the CPU; each frame ends once:
/// delivered (at least one copy left through a port or was queued for the CPU) or dropped for one
/// reason. A copy that was meant for a port or the CPU and did not get there is counted by itself;
/// a frame of which no copy got anywhere counts as dropped for the reason of the first of them.
/// What mirroring sends through a port is neither: it says nothing about where the frame went.
struct DropCounters {
    std::uint64_t frames_in = 0;
    std::uint64_t frames_delivered = 0;
    std::uint64_t copies_meant = 0;
    std::uint64_t copies_sent = 0;                    ///< through a port
    std::uint64_t copies_to_cpu = 0;                  ///< queued for the CPU
    std::array<std::uint64_t, kDropReasons> frames{}; ///< dropped frames by reason
    std::array<std::uint64_t, kDropReasons> copies{}; ///< dropped copies by reason
    std::uint64_t mirrors_meant = 0;
    std::uint64_t mirrors_sent = 0;                    ///< by a mirror's destination
    std::array<std::uint64_t, kDropReasons> mirrors{}; ///< lost mirror copies by reason

    std::uint64_t frame_drops() const;
    std::uint64_t copy_drops() const;
    std::uint64_t mirror_drops() const;
    /// Whether every frame, and every copy of either kind, is accounted for.
    bool balanced() const;

    bool operator==(const DropCounters&) const = default;
};

/// What became of all frames of the card so far.
DropCounters drop_counters();

} // namespace vexosim
