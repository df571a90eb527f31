// Learning limits: what is refused, and what is read back.
#include <gtest/gtest.h>

#include <bcmx/l2.h>
#include <bcmx/trunk.h>
#include <bcmx/vlan.h>

#include "tests/sim/lport_test.h"

namespace {

using L2Limits = LportTest;

int limit_of(std::uint32_t flags, bcm_vlan_t vlan, int lport, int trunk)
{
    bcm_l2_learn_limit_t record;
    bcmx_l2_learn_limit_t_init(&record);
    record.flags = flags;
    record.vlan = vlan;
    record.port = lport;
    record.trunk = trunk;
    record.limit = -77;
    const int rc = bcmx_l2_learn_limit_get(&record);
    return rc == 0 ? record.limit : rc * 100;
}

int set_limit(std::uint32_t flags, bcm_vlan_t vlan, int lport, int trunk, int limit)
{
    bcm_l2_learn_limit_t record{flags, vlan, lport, trunk, limit};
    return bcmx_l2_learn_limit_set(&record);
}

TEST_F(L2Limits, AreKeptByScope)
{
    ASSERT_EQ(bcmx_vlan_create(10), 0);
    ASSERT_EQ(bcmx_trunk_create_id(5), 0);
    EXPECT_EQ(limit_of(BCM_L2_LEARN_LIMIT_VLAN, 10, -1, -1), -1);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_SYSTEM, 0, -1, -1, 1000), 0);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_VLAN, 10, -1, -1, 0), 0);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_PORT, 0, port3, -1, 30), 0);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_TRUNK, 0, -1, 5, 40), 0);
    EXPECT_EQ(limit_of(0, 0, -1, -1), 1000) << "a record without scope reads the system's";
    EXPECT_EQ(limit_of(BCM_L2_LEARN_LIMIT_SYSTEM, 0, -1, -1), 1000);
    EXPECT_EQ(limit_of(BCM_L2_LEARN_LIMIT_VLAN, 10, -1, -1), 0);
    EXPECT_EQ(limit_of(BCM_L2_LEARN_LIMIT_PORT, 0, port3, -1), 30);
    EXPECT_EQ(limit_of(BCM_L2_LEARN_LIMIT_PORT, 0, port4, -1), -1);
    EXPECT_EQ(limit_of(BCM_L2_LEARN_LIMIT_TRUNK, 0, -1, 5), 40);
}

TEST_F(L2Limits, OfNothingThatThereIsAreRefused)
{
    EXPECT_EQ(set_limit(0, 0, -1, -1, 5), BCM_E_PARAM) << "no scope";
    EXPECT_EQ(set_limit(3, 0, -1, -1, 5), BCM_E_PARAM) << "two scopes";
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_SYSTEM, 0, -1, -1, -2), BCM_E_PARAM);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_SYSTEM, 0, -1, -1, 32769), BCM_E_PARAM);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_VLAN, 10, -1, -1, 5), BCM_E_NOT_FOUND);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_VLAN, 4095, -1, -1, 5), BCM_E_PARAM);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_PORT, 0, kNoPort, -1, 5), BCM_E_PORT);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_TRUNK, 0, -1, 5, 5), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_l2_learn_limit_set(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_learn_limit_get(nullptr), BCM_E_PARAM);
}

struct ChipWithoutL2Limits : BareCardTest {};

TEST_F(ChipWithoutL2Limits, AChipWithoutLearningLimitsSaysSo)
{
    Profile profile;
    profile.learn_limits = false;
    set_profile(profile);
    bring_up();
    EXPECT_EQ(limit_of(0, 0, -1, -1), BCM_E_UNAVAIL * 100);
    EXPECT_EQ(set_limit(BCM_L2_LEARN_LIMIT_SYSTEM, 0, -1, -1, 5), BCM_E_UNAVAIL);
}

} // namespace
