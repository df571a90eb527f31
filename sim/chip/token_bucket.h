/// @file
/// A limit in packets per second.
#pragma once

#include <algorithm>
#include <cstdint>

#include "sim/chip/digest.h"

namespace vexosim {

/// Starts full. Rate and burst may change from call to call; a rate of 0 is no limit, a burst of 0
/// is what comes in one second. Exact: counts millionths of packets, and times are arguments.
class TokenBucket {
public:
    /// Whether a packet may pass now.
    bool ready(int rate, int burst, std::uint64_t now_us)
    {
        return rate == 0 || wait_us(rate, burst, now_us) == 0;
    }
    /// Lets a packet pass, after ready().
    void take(int rate)
    {
        if (rate != 0)
            level_ -= kPacket;
    }
    /// Microseconds until a packet may pass.
    std::uint64_t wait_us(int rate, int burst, std::uint64_t now_us)
    {
        if (rate == 0)
            return 0;
        fill(rate, burst, now_us);
        std::uint64_t per_us = static_cast<std::uint64_t>(rate);
        return level_ >= kPacket ? 0 : (kPacket - level_ + per_us - 1) / per_us;
    }

    bool operator==(const TokenBucket&) const = default;
    void digest(Digest& d) const
    {
        d.add(level_);
        d.add(filled_us_);
        d.add(fresh_);
    }

private:
    static constexpr std::uint64_t kPacket = 1'000'000;

    void fill(int rate, int burst, std::uint64_t now_us)
    {
        std::uint64_t depth = static_cast<std::uint64_t>(burst != 0 ? burst : rate) * kPacket;
        std::uint64_t per_us = static_cast<std::uint64_t>(rate);
        std::uint64_t missing = depth - std::min(depth, level_);
        std::uint64_t elapsed = now_us - filled_us_;
        bool fills_up = fresh_ || elapsed > missing / per_us;
        level_ = fills_up ? depth : std::min(depth, level_ + elapsed * per_us);
        filled_us_ = now_us;
        fresh_ = false;
    }

    std::uint64_t level_ = 0;
    std::uint64_t filled_us_ = 0;
    bool fresh_ = true;
};

} // namespace vexosim
