/// @file
/// Spanning-tree groups: what a port does in each of them.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// BCM_STG_STP_*.
enum class StpState : std::uint8_t { kDisable, kBlock, kListen, kLearn, kForward };

const char* stp_state_name(StpState state);

/// Groups 1 to 255. After reset ports forward in group 1 and are disabled in the others. Calls
/// answer NOT_FOUND for other groups, PORT for other ports, PARAM for states outside 0 to 4.
class StgTable {
public:
    static constexpr int kGroups = 256;
    static constexpr int kDefaultGroup = 1;

    StgTable();

    int set(int group, int port, int state);
    int get(int group, int port, int& state) const;
    /// Sets the state in every group.
    int set_all(int port, int state);

    /// `group` is 1 to 255, `port` a port.
    StpState state(int group, int port) const
    {
        const auto& bit = at(group).bit;
        return static_cast<StpState>((bit[0].test(port) ? 1 : 0) | (bit[1].test(port) ? 2 : 0) |
                                     (bit[2].test(port) ? 4 : 0));
    }
    /// Ports that forward in the group; the CPU port always does.
    PortSet forwarding(int group) const { return at(group).bit[2] | PortSet{kCpuPort}; }

    bool operator==(const StgTable&) const = default;
    void digest(Digest& d) const;

private:
    /// One set of ports for each bit of the state's number.
    struct Group {
        std::array<PortSet, 3> bit;
        bool operator==(const Group&) const = default;
    };
    const Group& at(int group) const { return groups_[static_cast<std::size_t>(group)]; }

    std::array<Group, kGroups> groups_;
};

} // namespace vexosim
