// Operations that go through many ports, when one does not map. The mapping is this file's own.
#include <gtest/gtest.h>

#include "platform/port_map.h"
#include "tests/l2/driver.h"

namespace {

int unmapped = -1;

constexpr int first_lport = 256;

std::string printed_by_clearing(VexoBcmSdk& sdk)
{
    testing::internal::CaptureStdout();
    EXPECT_TRUE(sdk.clear_fdb_table(false));
    return testing::internal::GetCapturedStdout();
}

std::size_t lines(const std::string& text)
{
    return static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
}

} // namespace

bool map_uport_to_lport(int uport, int& lport)
{
    if (uport == unmapped)
        return false;
    lport = first_lport + uport;
    return true;
}

TEST(Unmapped, ClearingTheMacTableReportsThePortWhileTracingIsOnAndGoesOn)
{
    VexoBcmSdk& sdk = driver_with_log();
    unmapped = 3;
    EXPECT_EQ(printed_by_clearing(sdk), "");
    EXPECT_EQ(lines(calls_made()), 52u);
    sdk.set_trace("trace_level_all", true);
    EXPECT_EQ(printed_by_clearing(sdk),
              "warning: failed to map uport to lport when clearing fdb, port = 3\n");
    EXPECT_EQ(lines(calls_made()), 52u);
}

TEST(Unmapped, ASweepStopsThereAndIsFalse)
{
    VexoBcmSdk& sdk = driver_with_log();
    unmapped = 3;
    bool state = true;
    mirror_type_t type = MIRROR_INGRESS;
    EXPECT_FALSE(sdk.set_port_l2_enable(port(5), false));
    EXPECT_EQ(lines(calls_made()), 2u);
    EXPECT_FALSE(sdk.set_port_egress_admin_state(port(5), false));
    EXPECT_EQ(lines(calls_made()), 2u);
    EXPECT_FALSE(sdk.set_mirror_port(port(5), port(6), type));
    EXPECT_EQ(lines(calls_made()), 5u);
    EXPECT_FALSE(sdk.get_port_egress_admin_state(port(5), state));
    EXPECT_TRUE(state);
    EXPECT_EQ(lines(calls_made()), 2u);
}

TEST(Unmapped, ASweepThatStopsAtItsFirstPortIsFalseWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    unmapped = 1;
    for (const bool before : {true, false}) {
        bool state = before;
        EXPECT_FALSE(sdk.set_port_l2_enable(port(5), before));
        EXPECT_FALSE(sdk.set_port_egress_admin_state(port(5), before));
        EXPECT_FALSE(sdk.get_port_egress_admin_state(port(5), state));
        EXPECT_EQ(state, before);
    }
    EXPECT_EQ(calls_made(), "");
}

TEST(Unmapped, AnOpenPortBeforeItDecidesTheEgressState)
{
    VexoBcmSdk& sdk = driver_with_log();
    bool state = true;
    unmapped = 3;
    EXPECT_TRUE(sdk.get_port_egress_admin_state(port(6), state));
    EXPECT_FALSE(state);
}
