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
    limits_[static_cast<std::size_t>(port)][index] = {limit, {}};
    ports_.assign(port, limited(port) != 0);
    return BCM_E_NONE;
}

bool RateTable::accepts(int port, StormClass storm, std::uint64_t now_us) const
{
    TokenBucket bucket = at(port, storm).bucket;
    return bucket.ready(limit(port, storm), 0, now_us);
}

void RateTable::accept(int port, StormClass storm, std::uint64_t now_us)
{
    auto& [limit, bucket] =
        limits_[static_cast<std::size_t>(port)][static_cast<std::size_t>(storm)];
    if (bucket.ready(limit, 0, now_us))
        bucket.take(limit);
}

int RateTable::limited(int port) const
{
    int flags = 0;
    for (std::size_t index = 0; index < 3; ++index) {
        if (limits_[static_cast<std::size_t>(port)][index].limit > 0)
            flags |= kFlags[index];
    }
    return flags;
}

} // namespace vexosim
