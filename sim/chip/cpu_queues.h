/// @file
/// How frames for the CPU are sorted into queues, and how fast they may come.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip/digest.h"

namespace vexosim {

inline constexpr int kCpuQueues = 8;
inline constexpr int kCpuChannels = 4;

/// A set of receive reasons (bcm_rx_reason_t), one bit each.
using ReasonSet = std::uint64_t;
constexpr ReasonSet reason_bit(int reason)
{
    return ReasonSet{1} << reason;
}

/// An entry matches when all its masked fields are equal.
struct CpuMapping {
    bool used = false;
    ReasonSet reasons = 0, reasons_mask = 0;
    std::uint8_t priority = 0, priority_mask = 0;
    std::uint32_t packet_type = 0, packet_type_mask = 0;
    int queue = 0;

    bool operator==(const CpuMapping&) const = default;
    void digest(Digest& d) const;
};

/// A receive channel takes the frames of the queues that are mapped to it.
struct CpuChannel {
    int chains = 0;   ///< 0: takes no frames
    int rate_pps = 0; ///< 0: no limit

    bool operator==(const CpuChannel&) const = default;
};

/// After reset no entry is set, all queues go to channel 1, which takes frames, and nothing is
/// limited.
class CpuQueues {
public:
    static constexpr int kMappings = 64;

    CpuQueues();

    /// PARAM: index outside 0 to 63, queue outside 0 to 7.
    int set_mapping(int index, const CpuMapping& mapping);
    /// PARAM: queue outside 0 to 7, channel outside 0 to 3.
    int set_queue_channel(int queue, int channel);
    /// Packets per second of a class of service, which is a queue; 0: no limit. PARAM.
    int set_cos_rate(int cos, int pps);
    /// `cos_bitmap`: the queues that now go to this channel. PARAM.
    int set_channel(int channel, const CpuChannel& settings, std::uint32_t cos_bitmap);
    /// Packets per second over all channels; 0: no limit. `burst` packets may come at once in every
    /// limit; 0: as many as in one second. PARAM.
    int set_global_rate(int pps, int burst);
    /// Lifts the limits of all classes.
    void clear_cos_rates() { cos_rate_ = {}; }

    /// The queue of a frame: that of the first entry that matches, else `default_queue`.
    int queue_of(ReasonSet reasons, int priority, int default_queue) const;
    /// The entry that queue_of() goes by; -1 when none matches.
    int match(ReasonSet reasons, int priority) const;

    const CpuMapping& mapping(int index) const { return map_[static_cast<std::size_t>(index)]; }
    int channel_of(int queue) const { return queue_channel_[static_cast<std::size_t>(queue)]; }
    int cos_rate(int cos) const { return cos_rate_[static_cast<std::size_t>(cos)]; }
    const CpuChannel& channel(int n) const { return channels_[static_cast<std::size_t>(n)]; }
    int global_rate() const { return global_rate_; }
    int burst() const { return burst_; }

    bool operator==(const CpuQueues&) const = default;
    void digest(Digest& d) const;

private:
    std::array<CpuMapping, kMappings> map_;
    std::array<int, kCpuQueues> queue_channel_;
    std::array<int, kCpuQueues> cos_rate_{};
    std::array<CpuChannel, kCpuChannels> channels_;
    int global_rate_ = 0;
    int burst_ = 0;
};

} // namespace vexosim
