#pragma once

#include <array>

namespace vexosim {

/// Classes of frame with a storm-control limit.
enum class StormClass { unknown_unicast, multicast, broadcast };

/// Storm control: packets per second by chip-local port and class, 0 is no limit. Results are SDK
/// codes.
class RateTable {
public:
    /// `flags` must name the class and nothing else.
    int set(int port, StormClass storm, int limit, int flags);

    int limit(int port, StormClass storm) const;
    /// The classes of a port that have a limit, as BCM_RATE_* bits.
    int limited(int port) const;

    bool operator==(const RateTable&) const = default;

private:
    std::array<std::array<int, 3>, 54> limits_{};
};

} // namespace vexosim
