/// @file
/// What a port has counted, and the SDK's counters made from it.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

enum class Cast : std::uint8_t { kUnicast, kMulticast, kBroadcast };

/// A frame's length where it is counted: with the FCS, and padded to the shortest frame.
constexpr std::uint32_t wire_octets(std::size_t frame_bytes)
{
    return frame_bytes < 60 ? 64 : static_cast<std::uint32_t>(frame_bytes) + 4;
}

/// Frames in one direction.
struct FrameCounters {
    /// Largest frame of each size class but the last.
    static constexpr std::array<std::uint32_t, 10> kSizes = {64,   127,  255,  511,  1023,
                                                             1518, 1522, 2047, 4095, 9216};

    static constexpr std::size_t kClasses = kSizes.size() + 1;

    std::uint64_t octets = 0;
    std::array<std::uint64_t, 3> cast{};
    std::array<std::uint64_t, kClasses> size{};

    static constexpr std::size_t size_class(std::uint32_t octets)
    {
        std::size_t i = 0;
        while (i < kSizes.size() && octets > kSizes[i])
            ++i;
        return i;
    }
    void count(Cast kind, std::uint32_t frame_octets, std::size_t frame_size_class)
    {
        octets += frame_octets;
        ++cast[static_cast<std::size_t>(kind)];
        ++size[frame_size_class];
    }
    std::uint64_t frames() const { return cast[0] + cast[1] + cast[2]; }
    std::uint64_t not_unicast() const { return cast[1] + cast[2]; }

    bool operator==(const FrameCounters&) const = default;
    void digest(Digest& d) const;
};

/// Packets of one kind of IP that came for the router, but for those that it handed to the CPU
/// with nothing wrong.
struct RouterCounters {
    std::uint64_t in_header_errors = 0;
    std::uint64_t in_address_errors = 0;
    std::uint64_t in_discards = 0; ///< others that went nowhere
    std::uint64_t in_forwarded = 0;
    std::uint64_t out_forwarded = 0; ///< copies
    std::uint64_t out_discards = 0;  ///< copies that did not leave

    bool operator==(const RouterCounters&) const = default;
    void digest(Digest& d) const;
};

/// Good frames by direction, and frames by what was wrong with them.
struct PortCounters {
    FrameCounters in, out;
    std::uint64_t in_discards = 0;  ///< good frames that went nowhere
    std::uint64_t in_undersize = 0; ///< frames too short to be parsed
    std::uint64_t in_oversize = 0;
    std::uint64_t in_bad_octets = 0; ///< of these two
    std::array<std::uint64_t, FrameCounters::kClasses> in_bad_size{};
    std::uint64_t in_pause = 0;
    std::uint64_t in_control = 0;             ///< MAC control frames that are not PAUSE
    std::uint64_t in_drop_events = 0;         ///< copies for the CPU that found its queue full
    std::uint64_t out_discards = 0;           ///< copies that did not leave
    std::uint64_t out_too_long = 0;           ///< of these, those longer than the port's frame_max
    std::array<std::uint64_t, 8> out_queue{}; ///< copies that left, by queue
    std::uint64_t in_ip4 = 0, in_ip6 = 0, in_ip6_multicast = 0, out_ip6_multicast = 0;
    RouterCounters router4, router6;

    /// A frame that is not good.
    void count_bad(std::uint64_t& kind, std::size_t frame_bytes)
    {
        ++kind;
        in_bad_octets += frame_bytes + 4;
        if (frame_bytes >= 60)
            ++in_bad_size[FrameCounters::size_class(wire_octets(frame_bytes))];
    }
    /// A copy that leaves.
    void count_sent(Cast kind, std::uint32_t octets, std::size_t size_class, int queue, bool ip6)
    {
        out.count(kind, octets, size_class);
        ++out_queue[static_cast<std::size_t>(queue)];
        out_ip6_multicast += ip6 && kind != Cast::kUnicast ? 1 : 0;
    }
    /// One of the SDK's counters (bcm_stat_val_t, 0 to 77); docs/counters.md says which are always
    /// 0, and why.
    std::uint64_t stat(int counter) const;

    bool operator==(const PortCounters&) const = default;
    void digest(Digest& d) const;
};

inline constexpr int kStatCount = 78;
/// The SDK's name of a counter, 0 to 77.
const char* stat_name(int counter);

class CounterTable {
public:
    PortCounters& operator[](int port) { return ports_[static_cast<std::size_t>(port)]; }
    const PortCounters& operator[](int port) const
    {
        return ports_[static_cast<std::size_t>(port)];
    }

    /// A counter of the SDK's full set (bcm_stat_val_t). PORT; PARAM.
    int get(int port, int counter, std::uint64_t& value) const;
    /// A counter of the short set (bcm_port_stat_t). PORT; PARAM.
    int get_short(int port, int counter, std::uint64_t& value) const;
    /// While 0, the port's short set stands still. PORT; PARAM: neither 0 nor 1.
    int set_short_enable(int port, int enable);
    /// Whether the short set of a port counts.
    bool counting(int port) const { return !stopped_.test(port); }
    /// Sets all counters of the port to 0, of both sets. PORT.
    int clear(int port);

    bool operator==(const CounterTable&) const = default;
    void digest(Digest& d) const;

private:
    /// The short set of a port: what it would be had it never stood still.
    using Short = std::array<std::uint64_t, 4>;
    Short running(int port) const;

    std::array<PortCounters, kPortCount> ports_;
    PortSet stopped_;
    std::array<Short, kPortCount> stopped_at_{}; ///< running() when the set was stopped
    std::array<Short, kPortCount> missed_{};     ///< what it missed when it was stopped before
};

} // namespace vexosim
