#include <bcmx/mirror.h>
#include <bcmx/rate.h>
#include <gtest/gtest.h>

#include "sim/chip/mirror_table.h"
#include "sim/chip/rate_table.h"

namespace {

using namespace vexosim;

TEST(MirrorTable, KeepsDestinationAndFlagsAndForgetsThemWithFlagsZero)
{
    MirrorTable mirrors;
    ASSERT_EQ(mirrors.set(1, 2, 0x3), 0);
    EXPECT_EQ(mirrors.of(1), (Mirror{2, 0x3}));
    ASSERT_EQ(mirrors.set(1, 2, 0), 0);
    EXPECT_EQ(mirrors.of(1), (Mirror{-1, 0}));
}

TEST(MirrorTable, TakesOnlyFlagsThatSayADirection)
{
    MirrorTable mirrors;
    for (std::uint32_t flags : {0x3u, 0x5u, 0x7u, 0xDu, 0xFu})
        EXPECT_EQ(mirrors.set(1, 2, flags), 0) << flags;
    const MirrorTable before = mirrors;
    for (std::uint32_t flags : {0x1u, 0x2u, 0x4u, 0x8u, 0x9u, 0xBu, 0x13u})
        EXPECT_EQ(mirrors.set(1, 2, flags), BCM_E_PARAM) << flags;
    EXPECT_EQ(mirrors, before);
}

TEST(MirrorTable, RefusesPortsThatAreNoneAndAPortToItself)
{
    MirrorTable mirrors;
    EXPECT_EQ(mirrors.set(-1, 2, 0x3), BCM_E_PORT);
    EXPECT_EQ(mirrors.set(54, 2, 0x3), BCM_E_PORT);
    EXPECT_EQ(mirrors.set(1, -1, 0x3), BCM_E_PORT);
    EXPECT_EQ(mirrors.set(1, 54, 0x3), BCM_E_PORT);
    EXPECT_EQ(mirrors.set(1, 1, 0x3), BCM_E_PARAM);
    EXPECT_EQ(mirrors, MirrorTable{});
}

TEST(MirrorTable, InitTurnsEverythingOff)
{
    MirrorTable mirrors;
    mirrors.set(1, 2, 0x3);
    mirrors.set_format(1);
    EXPECT_EQ(mirrors.init(), 0);
    EXPECT_EQ(mirrors, MirrorTable{});
}

TEST(MirrorTable, FormatsAreZeroAndOne)
{
    MirrorTable mirrors;
    EXPECT_EQ(mirrors.set_format(1), 0);
    EXPECT_EQ(mirrors.set_format(2), BCM_E_PARAM);
    EXPECT_EQ(mirrors.set_format(-1), BCM_E_PARAM);
    EXPECT_TRUE(mirrors.as_received());
}

TEST(RateTable, KeepsALimitForEachPortAndClass)
{
    RateTable rates;
    ASSERT_EQ(rates.set(1, StormClass::kDlf, 100, BCM_RATE_DLF), 0);
    ASSERT_EQ(rates.set(1, StormClass::kBcast, 200, BCM_RATE_BCAST), 0);
    EXPECT_EQ(rates.limit(1, StormClass::kDlf), 100);
    EXPECT_EQ(rates.limit(1, StormClass::kMcast), 0);
    EXPECT_EQ(rates.limit(1, StormClass::kBcast), 200);
    EXPECT_EQ(rates.limited(1), BCM_RATE_DLF | BCM_RATE_BCAST);
    EXPECT_EQ(rates.limited(2), 0);
}

TEST(RateTable, ALimitOfZeroIsNone)
{
    RateTable rates;
    rates.set(1, StormClass::kMcast, 100, BCM_RATE_MCAST);
    ASSERT_EQ(rates.set(1, StormClass::kMcast, 0, BCM_RATE_MCAST), 0);
    EXPECT_EQ(rates.limited(1), 0);
}

TEST(RateTable, RefusesNegativeLimitsFlagsOfAnotherClassAndPortsThatAreNone)
{
    RateTable rates;
    EXPECT_EQ(rates.set(1, StormClass::kDlf, -1, BCM_RATE_DLF), BCM_E_PARAM);
    EXPECT_EQ(rates.set(1, StormClass::kDlf, 1, BCM_RATE_MCAST), BCM_E_PARAM);
    EXPECT_EQ(rates.set(1, StormClass::kMcast, 1, BCM_RATE_MCAST | BCM_RATE_BCAST), BCM_E_PARAM);
    EXPECT_EQ(rates.set(1, StormClass::kBcast, 1, 0), BCM_E_PARAM);
    EXPECT_EQ(rates.set(-1, StormClass::kDlf, 1, BCM_RATE_DLF), BCM_E_PORT);
    EXPECT_EQ(rates.set(54, StormClass::kDlf, 1, BCM_RATE_DLF), BCM_E_PORT);
    EXPECT_EQ(rates, RateTable{});
}

} // namespace
