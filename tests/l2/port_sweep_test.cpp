// Operations that go through the front-panel ports: layer-2 enable and the egress state.
#include "tests/l2/sweep.h"

#include <gtest/gtest.h>

#include "tests/l2/driver.h"

namespace {

const std::string set_block = "bcmx_port_flood_block_set";
const std::string get_block = "bcmx_port_flood_block_get";
const std::string flush = "bcmx_l2_addr_delete_by_port(5, 1)\n";
const Mp nowhere(1, 5);

bool egress_state(VexoBcmSdk& sdk, const Mp& mp)
{
    bool state = false;
    EXPECT_TRUE(sdk.get_port_egress_admin_state(mp, state));
    return state;
}

} // namespace

TEST(PortSweep, TheSweptPortsAreFiftyTwo)
{
    EXPECT_EQ(swept_ports().size(), 52u);
}

TEST(PortSweep, DisablingLayer2BlocksFloodsFromTheOtherPortsAndFlushesThePort)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.set_port_l2_enable(port(5), false));
    EXPECT_EQ(calls_made(), swept(set_block, "5, 0xb", 5) + flush);
}

TEST(PortSweep, EnablingLayer2LetsFloodsThroughAndFlushesNothing)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.set_port_l2_enable(port(5), true));
    EXPECT_EQ(calls_made(), swept(set_block, "5, 0", 5));
}

TEST(PortSweep, Layer2OfUserPort47AndOfTheCpuIsSweptWithoutSkippingAPort)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.set_port_l2_enable(port(47), true));
    EXPECT_EQ(calls_made(), swept(set_block, "47, 0"));
    EXPECT_TRUE(sdk.set_port_l2_enable(port(53), true));
    EXPECT_EQ(calls_made(), swept(set_block, "cpu, 0"));
}

TEST(PortSweep, DisablingLayer2ToleratesThatThereIsNothingToFlush)
{
    VexoBcmSdk& sdk = driver_with_log();
    fail_next("bcmx_l2_addr_delete_by_port", -7);
    EXPECT_TRUE(sdk.set_port_l2_enable(port(5), false));
    for (const int code : codes_except({-7})) {
        fail_next("bcmx_l2_addr_delete_by_port", code);
        EXPECT_FALSE(sdk.set_port_l2_enable(port(5), false)) << code;
    }
}

TEST(PortSweep, SettersStopAtThePortThatFails)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int code : codes_except({})) {
        fail_next(set_block, code, 3);
        EXPECT_FALSE(sdk.set_port_l2_enable(port(5), false)) << code;
        EXPECT_EQ(calls_made(), first_lines(swept(set_block, "5, 0xb"), 3));
        fail_next(set_block, code, 3);
        EXPECT_FALSE(sdk.set_port_egress_admin_state(port(5), false)) << code;
        EXPECT_EQ(calls_made(), first_lines(swept(set_block, "5, 0xf"), 3));
    }
    fail_next(set_block, -1, 51);
    EXPECT_FALSE(sdk.set_port_l2_enable(port(5), true));
    fail_next(set_block, -1, 52);
    EXPECT_FALSE(sdk.set_port_egress_admin_state(port(5), true));
}

TEST(PortSweep, TheEgressStateIsSetFromEveryPortTheGivenOneIncluded)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.set_port_egress_admin_state(port(5), false));
    EXPECT_EQ(calls_made(), swept(set_block, "5, 0xf"));
    EXPECT_TRUE(sdk.set_port_egress_admin_state(port(5), true));
    EXPECT_EQ(calls_made(), swept(set_block, "5, 0"));
}

TEST(PortSweep, TheEgressStateReadsTheOtherWayRoundThanItIsSet)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.set_port_egress_admin_state(port(5), false));
    calls_made();
    EXPECT_TRUE(egress_state(sdk, port(5)));
    EXPECT_EQ(calls_made(), swept(get_block, "5, out"));
    EXPECT_TRUE(sdk.set_port_egress_admin_state(port(5), true));
    calls_made();
    EXPECT_FALSE(egress_state(sdk, port(5)));
    EXPECT_EQ(calls_made(), first_lines(swept(get_block, "5, out"), 1));
}

TEST(PortSweep, OneFloodThatIsLetThroughMakesTheEgressStateFalse)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const unsigned user_port : {48u, 5u, 46u}) {
        for (const unsigned flags : {0x0u, 0x7u, 0xbu, 0xdu, 0xeu}) {
            EXPECT_TRUE(sdk.set_port_egress_admin_state(port(5), false));
            EXPECT_TRUE(sdk.set_port_flood_blocking(port(user_port), port(5),
                                                    static_cast<flood_block_type_t>(flags)));
            EXPECT_FALSE(egress_state(sdk, port(5))) << user_port << " " << flags;
        }
    }
}

TEST(PortSweep, FloodsFromUserPort47DoNotMatterToTheEgressState)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.set_port_egress_admin_state(port(5), false));
    EXPECT_TRUE(sdk.set_port_flood_blocking(port(47), port(5), FLOOD_BLOCK_NONE));
    EXPECT_TRUE(egress_state(sdk, port(5)));
}

TEST(PortSweep, AFailedReadCountsAsALetThroughFlood)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.set_port_egress_admin_state(port(5), false));
    for (const int code : codes_except({})) {
        fail_next(get_block, code, 2);
        EXPECT_FALSE(egress_state(sdk, port(5))) << code;
    }
}

TEST(PortSweep, APortThatDoesNotExistIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const bool before : {true, false}) {
        bool state = before;
        EXPECT_FALSE(sdk.set_port_l2_enable(nowhere, before));
        EXPECT_FALSE(sdk.set_port_egress_admin_state(nowhere, before));
        EXPECT_FALSE(sdk.get_port_egress_admin_state(nowhere, state));
        EXPECT_EQ(state, before);
    }
    EXPECT_EQ(calls_made(), "");
}
