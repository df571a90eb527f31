/// @file
/// How many addresses may be learned.
#pragma once

#include <array>

#include "sim/chip/digest.h"
#include "sim/chip/mac_table.h"
#include "sim/chip/port_set.h"
#include "sim/chip/vlan_table.h"

namespace vexosim {

/// Limits in addresses, -1 for none, which is what they are after reset.
struct LearnLimits {
    static constexpr int kNone = -1;

    LearnLimits()
    {
        by_vlan.fill(kNone);
        by_port.fill(kNone);
        by_trunk.fill(kNone);
    }

    int system = kNone;
    std::array<int, kVlanIds> by_vlan;
    std::array<int, kPortCount> by_port;
    std::array<int, kTrunkCount> by_trunk;

    bool operator==(const LearnLimits&) const = default;
    void digest(Digest& d) const
    {
        d.add(system);
        d.add(by_vlan);
        d.add(by_port);
        d.add(by_trunk);
    }
};

} // namespace vexosim
