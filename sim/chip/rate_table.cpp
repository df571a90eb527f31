#include "sim/chip/rate_table.h"

#include <bcmx/rate.h>

namespace vexosim {

namespace {

constexpr int kFlags[] = {BCM_RATE_DLF, BCM_RATE_MCAST, BCM_RATE_BCAST};

} // namespace

int RateTable::set(int port, StormClass storm, int limit, int flags)
{
    const auto index = static_cast<std::size_t>(storm);
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (limit < 0 || flags != kFlags[index])
        return BCM_E_PARAM;
    limits_[static_cast<std::size_t>(port)][index] = limit;
    return BCM_E_NONE;
}

int RateTable::limit(int port, StormClass storm) const
{
    return limits_[static_cast<std::size_t>(port)][static_cast<std::size_t>(storm)];
}

int RateTable::limited(int port) const
{
    int flags = 0;
    for (std::size_t index = 0; index < 3; ++index) {
        if (limits_[static_cast<std::size_t>(port)][index] > 0)
            flags |= kFlags[index];
    }
    return flags;
}

} // namespace vexosim
