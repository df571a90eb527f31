#include <bcmx/mirror.h>
#include <bcmx/rate.h>

#include "tests/sim/card_that_is_up.h"

namespace {

struct SdkMirror : CardThatIsUp {};
struct SdkRate : CardThatIsUp {};

TEST(SdkMirrorBeforeBringUp, IsNotInitialised)
{
    bcmx_lport_t dest = 0;
    uint32_t flags = 0;
    EXPECT_EQ(bcmx_mirror_init(), BCM_E_INIT);
    EXPECT_EQ(bcmx_mirror_pfmt_set(1), BCM_E_INIT);
    EXPECT_EQ(bcmx_mirror_port_set(257, 258, 3), BCM_E_INIT);
    EXPECT_EQ(bcmx_mirror_port_get(257, &dest, &flags), BCM_E_INIT);
}

TEST_F(SdkMirror, GivesBackWhatWasSet)
{
    bcmx_lport_t dest = 0;
    uint32_t flags = 0;
    ASSERT_EQ(bcmx_mirror_port_set(lport(1), lport(2), 0xD), 0);
    EXPECT_EQ(bcmx_mirror_port_get(lport(1), &dest, &flags), 0);
    EXPECT_EQ(dest, lport(2));
    EXPECT_EQ(flags, 0xDu);
}

TEST_F(SdkMirror, APortWithoutAMirrorHasNoDestination)
{
    bcmx_lport_t dest = 0;
    uint32_t flags = 9;
    EXPECT_EQ(bcmx_mirror_port_get(lport(1), &dest, &flags), 0);
    EXPECT_EQ(dest, -1);
    EXPECT_EQ(flags, 0u);
}

TEST_F(SdkMirror, RefusesBadArguments)
{
    bcmx_lport_t dest = 7;
    uint32_t flags = 7;
    EXPECT_EQ(bcmx_mirror_pfmt_set(2), BCM_E_PARAM);
    EXPECT_EQ(bcmx_mirror_port_set(-1, lport(2), 3), BCM_E_PORT);
    EXPECT_EQ(bcmx_mirror_port_set(lport(1), 2, 3), BCM_E_PORT);
    EXPECT_EQ(bcmx_mirror_port_set(lport(1), lport(1), 3), BCM_E_PARAM);
    EXPECT_EQ(bcmx_mirror_port_set(lport(1), lport(2), 0x10), BCM_E_PARAM);
    EXPECT_EQ(bcmx_mirror_port_get(-1, &dest, &flags), BCM_E_PORT);
    EXPECT_EQ(bcmx_mirror_port_get(lport(1), nullptr, &flags), BCM_E_PARAM);
    EXPECT_EQ(bcmx_mirror_port_get(lport(1), &dest, nullptr), BCM_E_PARAM);
    EXPECT_EQ(dest, 7);
    EXPECT_EQ(flags, 7u);
}

TEST(SdkRateBeforeBringUp, IsNotInitialised)
{
    int limit = 0;
    int flags = 0;
    EXPECT_EQ(bcmx_rate_dlfbc_set(1, 1, 257), BCM_E_INIT);
    EXPECT_EQ(bcmx_rate_mcast_set(1, 2, 257), BCM_E_INIT);
    EXPECT_EQ(bcmx_rate_bcast_set(1, 4, 257), BCM_E_INIT);
    EXPECT_EQ(bcmx_rate_dlfbc_get(&limit, &flags, 257), BCM_E_INIT);
    EXPECT_EQ(bcmx_rate_mcast_get(&limit, &flags, 257), BCM_E_INIT);
    EXPECT_EQ(bcmx_rate_bcast_get(&limit, &flags, 257), BCM_E_INIT);
}

TEST_F(SdkRate, GivesBackTheLimitOfEachClass)
{
    int limits[3] = {};
    int flags = 0;
    ASSERT_EQ(bcmx_rate_dlfbc_set(10, BCM_RATE_DLF, lport(1)), 0);
    ASSERT_EQ(bcmx_rate_mcast_set(20, BCM_RATE_MCAST, lport(1)), 0);
    ASSERT_EQ(bcmx_rate_bcast_set(30, BCM_RATE_BCAST, lport(1)), 0);
    EXPECT_EQ(bcmx_rate_dlfbc_get(&limits[0], &flags, lport(1)), 0);
    EXPECT_EQ(bcmx_rate_mcast_get(&limits[1], &flags, lport(1)), 0);
    EXPECT_EQ(bcmx_rate_bcast_get(&limits[2], &flags, lport(1)), 0);
    EXPECT_EQ(limits[0], 10);
    EXPECT_EQ(limits[1], 20);
    EXPECT_EQ(limits[2], 30);
    EXPECT_EQ(flags, 7);
}

TEST_F(SdkRate, RefusesBadArguments)
{
    int limit = 7;
    int flags = 7;
    EXPECT_EQ(bcmx_rate_dlfbc_set(-1, BCM_RATE_DLF, lport(1)), BCM_E_PARAM);
    EXPECT_EQ(bcmx_rate_mcast_set(1, BCM_RATE_DLF, lport(1)), BCM_E_PARAM);
    EXPECT_EQ(bcmx_rate_bcast_set(1, 7, lport(1)), BCM_E_PARAM);
    EXPECT_EQ(bcmx_rate_bcast_set(1, BCM_RATE_BCAST, -1), BCM_E_PORT);
    EXPECT_EQ(bcmx_rate_dlfbc_get(&limit, &flags, 1), BCM_E_PORT);
    EXPECT_EQ(bcmx_rate_mcast_get(nullptr, &flags, lport(1)), BCM_E_PARAM);
    EXPECT_EQ(bcmx_rate_bcast_get(&limit, nullptr, lport(1)), BCM_E_PARAM);
    EXPECT_EQ(limit, 7);
    EXPECT_EQ(flags, 7);
}

} // namespace
