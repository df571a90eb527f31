// What is made of the ways to spread and the link states that a chip may report. The SDK's calls
// are this file's own.
#include <bcmx/port.h>
#include <bcmx/trunk.h>
#include <gtest/gtest.h>

#include "tests/core/instance.h"

namespace {

int chip_result = BCM_E_NONE;
int chip_criterion = 0;
int chip_status = 0;
int written_trunks = 0;

} // namespace

extern "C" {

int bcmx_trunk_psc_get(bcm_trunk_t, int* psc)
{
    *psc = chip_criterion;
    return chip_result;
}
int bcmx_port_link_status_get(bcmx_lport_t, int* status)
{
    *status = chip_status;
    return chip_result;
}
int bcmx_trunk_set(bcm_trunk_t, bcmx_trunk_add_info_t*)
{
    ++written_trunks;
    return BCM_E_NONE;
}

} // extern "C"

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

TEST(LagValues, WhatAFailingChipWroteIsNotTaken)
{
    VexoBcmSdk& sdk = new_instance();
    chip_result = BCM_E_FAIL;
    chip_criterion = 4;
    chip_status = 1;
    lag_psc_t psc = lag_psc_t{77};
    EXPECT_FALSE(sdk.get_lag_psc(3, psc));
    EXPECT_EQ(psc, 77);
    EXPECT_TRUE(sdk.add_ports_to_lag(3, {Mp(0, 0)})); // without link
    EXPECT_EQ(written_trunks, 0);
}

TEST(LagValues, OnlyALinkThatIsUpIsTaken)
{
    VexoBcmSdk& sdk = new_instance();
    for (chip_status = -1; chip_status <= 3; ++chip_status) {
        written_trunks = 0;
        EXPECT_TRUE(sdk.add_ports_to_lag(3, {Mp(0, 0)})) << chip_status;
        EXPECT_EQ(written_trunks, chip_status == 1 ? 1 : 0) << chip_status;
    }
}
