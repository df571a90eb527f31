// What is made of the ways to spread that a chip may report. The SDK's call is this file's own.
#include <bcmx/trunk.h>
#include <gtest/gtest.h>

#include "tests/core/instance.h"

namespace {

int chip_criterion = 0;

} // namespace

extern "C" int bcmx_trunk_psc_get(bcm_trunk_t, int* psc)
{
    *psc = chip_criterion;
    return BCM_E_NONE;
}

TEST(LagValues, AWayToSpreadThatIsNotListedIsAFailedRead)
{
    VexoBcmSdk& sdk = new_instance();
    for (chip_criterion = -1; chip_criterion <= 8; ++chip_criterion) {
        const bool listed = chip_criterion >= 1 && chip_criterion <= 6;
        lag_psc_t psc = lag_psc_t{77};
        EXPECT_EQ(sdk.get_lag_psc(3, psc), listed) << chip_criterion;
        EXPECT_EQ(psc, listed ? chip_criterion : 77);
    }
}
