#include "sim/chip/stg_table.h"

#include <bcm/error.h>

namespace vexosim {

static_assert(static_cast<int>(StpState::kForward) == 4);

const char* stp_state_name(StpState state)
{
    static constexpr std::array<const char*, 5> kNames = {"disabled", "blocking", "listening",
                                                          "learning", "forwarding"};
    return kNames[static_cast<std::size_t>(state)];
}

StgTable::StgTable()
{
    groups_[kDefaultGroup].bit[2] = PortSet::all();
}

int StgTable::set(int group, int port, int state)
{
    if (group < 1 || group >= kGroups)
        return BCM_E_NOT_FOUND;
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (state < 0 || state > static_cast<int>(StpState::kForward))
        return BCM_E_PARAM;
    Group& g = groups_[static_cast<std::size_t>(group)];
    for (std::size_t i = 0; i < g.bit.size(); ++i)
        g.bit[i].assign(port, (state >> i & 1) != 0);
    return BCM_E_NONE;
}

int StgTable::get(int group, int port, int& state_out) const
{
    if (group < 1 || group >= kGroups)
        return BCM_E_NOT_FOUND;
    if (!is_chip_port(port))
        return BCM_E_PORT;
    state_out = static_cast<int>(state(group, port));
    return BCM_E_NONE;
}

int StgTable::set_all(int port, int state)
{
    for (int group = 1; group < kGroups; ++group) {
        if (int rc = set(group, port, state); rc != BCM_E_NONE)
            return rc;
    }
    return BCM_E_NONE;
}

void StgTable::digest(Digest& d) const
{
    for (const Group& group : groups_)
        d.add(group.bit);
}

} // namespace vexosim
