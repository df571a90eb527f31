/// @file
/// Storm control: packets per second that a port accepts of each class of frame.
#pragma once

#include <array>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"
#include "sim/chip/token_bucket.h"

namespace vexosim {

/// Classes of frame with a storm-control limit.
enum class StormClass { kDlf, kMcast, kBcast };

/// A limit of 0 is none. A port saves up at most what comes in one second, and has that when the
/// limit is set.
class RateTable {
public:
    /// `flags` names the class once more. PORT; PARAM: a negative limit, other flags.
    int set(int port, StormClass storm, int limit, int flags);

    int limit(int port, StormClass storm) const { return at(port, storm).limit; }
    /// The classes of a port that have a limit, as BCM_RATE_* bits.
    int limited(int port) const;
    /// Ports with any limit.
    PortSet ports() const { return ports_; }

    /// Whether the port would accept a frame of the class now.
    bool accepts(int port, StormClass storm, std::uint64_t now_us) const;
    /// Accepts it, after accepts().
    void accept(int port, StormClass storm, std::uint64_t now_us);

    bool operator==(const RateTable&) const = default;
    void digest(Digest& d) const { d.add(limits_); }

private:
    struct Limit {
        int limit = 0;
        TokenBucket bucket;

        bool operator==(const Limit&) const = default;
        void digest(Digest& d) const
        {
            d.add(limit);
            d.add(bucket);
        }
    };
    const Limit& at(int port, StormClass storm) const
    {
        return limits_[static_cast<std::size_t>(port)][static_cast<std::size_t>(storm)];
    }

    std::array<std::array<Limit, 3>, kPortCount> limits_{};
    PortSet ports_;
};

} // namespace vexosim
