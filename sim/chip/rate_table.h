/// @file
/// Storm control: packets per second that a port accepts of each class of frame.
#pragma once

#include <array>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// Classes of frame with a storm-control limit.
enum class StormClass { kDlf, kMcast, kBcast };

/// A limit of 0 is none.
class RateTable {
public:
    /// `flags` names the class once more. PORT; PARAM: a negative limit, other flags.
    int set(int port, StormClass storm, int limit, int flags);

    int limit(int port, StormClass storm) const;
    /// The classes of a port that have a limit, as BCM_RATE_* bits.
    int limited(int port) const;

    bool operator==(const RateTable&) const = default;
    void digest(Digest& d) const { d.add(limits_); }

private:
    std::array<std::array<int, 3>, kPortCount> limits_{};
};

} // namespace vexosim
