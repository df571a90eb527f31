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

    /// Whether one more address may be learned: in a VLAN, at a port or, unless -1, on a trunk. An
    /// address that moves is counted in the system and its VLAN already. Static entries do not
    /// count; the port limit does not bind members of trunks.
    bool allow(const MacTally& learned, int vid, int port, int trunk, bool moves) const
    {
        auto v = static_cast<std::size_t>(vid), p = static_cast<std::size_t>(port),
             t = static_cast<std::size_t>(trunk);
        return (moves || (below(learned.all, system) && below(learned.vlan[v], by_vlan[v]))) &&
               (trunk < 0 ? below(learned.port[p], by_port[p])
                          : below(learned.trunk[t], by_trunk[t]));
    }

    bool operator==(const LearnLimits&) const = default;
    void digest(Digest& d) const
    {
        d.add(system);
        d.add(by_vlan);
        d.add(by_port);
        d.add(by_trunk);
    }

private:
    static bool below(std::size_t count, int limit)
    {
        return limit == kNone || count < static_cast<std::size_t>(limit);
    }
};

} // namespace vexosim
