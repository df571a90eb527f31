#include <gtest/gtest.h>

#include "tests/l2/driver.h"

TEST(Mirror, EnablingStartsTheBlockAndKeepsTheReceivedFormatWhateverTheArgument)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const unsigned argument : {0u, 1u}) {
        EXPECT_TRUE(sdk.enable_mirror(argument));
        EXPECT_EQ(calls_made(), "bcmx_mirror_init()\nbcmx_mirror_pfmt_set(1)\n");
    }
}

TEST(Mirror, EnablingStopsAtAFailedStart)
{
    VexoBcmSdk& sdk = driver_with_log();
    vexosim::inject({.call = "bcmx_mirror_init", .code = -16});
    EXPECT_FALSE(sdk.enable_mirror(1));
    EXPECT_EQ(calls_made(), "bcmx_mirror_init()\n");
}

TEST(Mirror, EnablingFailsWithTheFormat)
{
    VexoBcmSdk& sdk = driver_with_log();
    vexosim::inject({.call = "bcmx_mirror_pfmt_set", .code = -16});
    EXPECT_FALSE(sdk.enable_mirror(1));
}
