/// @file
/// A frame on its way through the chip: what is known about it and what has been decided.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "sim/chip/chip.h"
#include "sim/pipeline/field_verdict.h"
#include "vexosim/drops.h"
#include "vexosim/frame.h"

namespace vexosim {

class Recorder;

/// What a stage does with a frame.
struct Step {
    enum class Kind : std::uint8_t {
        kNext, ///< goes on to the next stage
        kDone, ///< all is decided
        kDrop  ///< goes no further; a CPU copy that an earlier stage asked for is still made
    };
    Kind kind = Kind::kNext;
    DropReason reason = DropReason::kNone;
};
constexpr Step next()
{
    return {};
}
constexpr Step done()
{
    return {Step::Kind::kDone};
}
constexpr Step drop(DropReason reason)
{
    return {Step::Kind::kDrop, reason};
}

/// What happens to the MAC table because of the frame's source.
enum class Learning : std::uint8_t {
    kNone,
    kRefresh, ///< the address is here and was heard again
    kLearn    ///< the address is new here, or has moved here
};

/// What the router makes of a frame.
enum class Routing : std::uint8_t {
    kNone,        ///< it is not for the router, or goes where its MAC address says
    kPacket,      ///< it is one that may be routed
    kHeaderError, ///< its header is bad, or no hop is left
    kAddressError ///< it is from or to an address that is none to route
};

/// What a frame says to the port's MAC.
enum class MacControl : std::uint8_t { kNone, kPause, kOther };

inline constexpr std::uint16_t kTagType = 0x8100;
inline constexpr std::uint16_t kArpType = 0x0806;
inline constexpr std::uint16_t kIp4Type = 0x0800;
inline constexpr std::uint16_t kIp6Type = 0x86dd;
inline constexpr std::uint16_t kControlType = 0x8808;
inline constexpr std::size_t kHeaderBytes = 14;
inline constexpr std::size_t kTagBytes = 4;

/// Pointers are into the chip's tables and valid until they change.
struct Packet {
    /// The members are set one by one, so that the verdict, which few frames have, is left alone.
    explicit Packet(FrameView received, int port = kCpuPort) : frame(received), in_port(port) {}

    FrameView frame;
    int in_port; ///< chip port

    // Set by parse.
    MacAddress dst = 0, src = 0;
    std::uint16_t ethertype = 0; ///< behind the outer tag
    std::uint16_t tag = 0;       ///< the tag's lower half, if tagged
    bool tagged = false;         ///< has an outer 802.1Q tag, be it for VLAN 0
    Cast cast = Cast::kUnicast;

    // Set by VLAN assignment.
    int vid = 0;
    int priority = 0;
    const Vlan* vlan = nullptr;

    MacControl control = MacControl::kNone;
    bool bpdu = false; ///< to a reserved bridge group address, which the port traps
    StpState stp = StpState::kForward;
    DropReason stp_refusal = DropReason::kNone; ///< the frame stops unless an entry takes it past
    Learning learning = Learning::kNone;
    const MacEntry* source = nullptr;          ///< of the source address; null when unknown
    const MacEntry* destination = nullptr;     ///< of the destination; null when unknown
    FloodClass flood = FloodClass::kBroadcast; ///< meaningful unless unicast to a known address

    // Set by routing.
    Routing routing = Routing::kNone;
    const L3HostTable::Item* host = nullptr;   ///< what the frame has found; at most one of them
    const L3RouteTable::Item* route = nullptr; ///< is set
    const L3Interface* interface = nullptr;    ///< where it leaves; null unless routed

    std::optional<FieldVerdict> field; ///< of the entries that match; none when none does

    bool limited = false;                ///< storm control has accepted it
    StormClass storm = StormClass::kDlf; ///< as a frame of this class

    PortSet out;           ///< ports to send to
    PortSet untagged;      ///< of these, those that send without a tag
    PortSet too_long;      ///< ports that would have sent a shorter frame
    int queue = 0;         ///< of the ports that it leaves through
    ReasonSet cpu = 0;     ///< why the CPU gets a copy; 0: it gets none
    int cpu_reason = 0;    ///< the first of them, a bcm_rx_reason_t
    int cpu_queue = 0;     ///< where the copy waits
    bool cpu_full = false; ///< it does not: the queue is full
    DropReason drop = DropReason::kNone;

    Recorder* recorder = nullptr; ///< null unless traced

    bool multicast() const { return cast != Cast::kUnicast; }
    /// To a group of IPv4 or IPv6 hosts.
    bool ip_multicast() const
    {
        return (ethertype == kIp4Type && dst >> 23 == 0x01005e000000 >> 23) ||
               (ethertype == kIp6Type && dst >> 32 == 0x3333);
    }
    /// Has a second tag behind the first.
    bool has_inner_tag() const
    {
        return tagged && ethertype == kTagType && frame.size() >= kHeaderBytes + 2 * kTagBytes;
    }
    /// Entries name the ports that it goes to.
    bool redirected() const
    {
        return field &&
               (field->place == FieldPlace::kRedirect || field->place == FieldPlace::kLoopback);
    }
    /// Leaves as a router's, and not where the MAC table or a flood would send it.
    bool routed() const { return interface != nullptr; }
    const NextHop& next_hop() const
    {
        return host != nullptr ? host->entry.next_hop : route->entry.next_hop;
    }
    /// Something of it changes on its way out.
    bool edited() const { return routed() || (field && field->edits.any()); }
    bool from_cpu() const { return in_port == kCpuPort; }
    void copy_to_cpu(int reason)
    {
        cpu_reason = cpu == 0 ? reason : cpu_reason;
        cpu |= reason_bit(reason);
    }

    /// Bytes without the outer tag.
    std::size_t untagged_bytes() const { return frame.size() - (tagged ? kTagBytes : 0); }
    /// What a port's frame_max is compared with: FCS counted, one tag not, when sent with the
    /// VLAN's tag and without.
    std::size_t tagged_size() const { return untagged_bytes() + 4; }
    std::size_t untagged_size() const
    {
        return untagged_bytes() + 4 - (ethertype == kTagType ? kTagBytes : 0);
    }
};

} // namespace vexosim
