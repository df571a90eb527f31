// Clearing the whole MAC table, and what is said when parts of it fail.
#include <gtest/gtest.h>

#include "l2/lag.h"
#include "tests/l2/driver.h"
#include "tests/l2/sweep.h"

namespace {

/// Of the ports: uports 1 to 53, which end with user port 47.
std::string port_deletes(const std::string& flags)
{
    return swept("bcmx_l2_addr_delete_by_port", flags) + "bcmx_l2_addr_delete_by_port(47, " +
           flags + ")\n";
}

std::string printed_by(VexoBcmSdk& sdk, bool result)
{
    testing::internal::CaptureStdout();
    EXPECT_EQ(sdk.clear_fdb_table(true), result);
    return testing::internal::GetCapturedStdout();
}

std::string hex(int number)
{
    char text[16];
    std::snprintf(text, sizeof text, "%x", static_cast<unsigned>(number));
    return text;
}

} // namespace

TEST(FdbClear, EveryFrontPanelPortIsClearedInTheOrderOfUports)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.clear_fdb_table(false));
    EXPECT_EQ(calls_made(), port_deletes("0"));
    EXPECT_TRUE(sdk.clear_fdb_table(true));
    EXPECT_EQ(calls_made(), port_deletes("1"));
}

TEST(FdbClear, TheLagsOfTheBookkeepingAreClearedAfterThePortsInTheirOrder)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const unsigned id : {7u, 3u, 9u})
        EXPECT_TRUE(add_lag_to_list(id, lag_list));
    const EveryCallAnswers answer(0);
    EXPECT_TRUE(sdk.clear_fdb_table(true));
    EXPECT_EQ(calls_made(), port_deletes("1") + "bcmx_l2_addr_delete_by_trunk(7, 1)\n"
                                                "bcmx_l2_addr_delete_by_trunk(3, 1)\n"
                                                "bcmx_l2_addr_delete_by_trunk(9, 1)\n");
}

TEST(FdbClear, PortsThatFailAreReportedWhileTracingIsOnAndDoNotMatter)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(-18);
    EXPECT_EQ(printed_by(sdk, true), "");
    std::string warnings;
    for (int uport = 1; uport <= 53; ++uport)
        warnings += "warning: failed to delete port " + std::to_string(uport) +
                    "'s mac, lport = " + hex(256 + uport) + "\n";
    sdk.set_trace("trace_level_all", true);
    calls_made();
    EXPECT_EQ(printed_by(sdk, true), warnings);
    EXPECT_EQ(calls_made(), port_deletes("1"));
}

TEST(FdbClear, ALagThatFailsEndsItWithoutAMessage)
{
    VexoBcmSdk& sdk = driver_with_log();
    sdk.set_trace("trace_level_all", true);
    for (const unsigned id : {7u, 3u})
        EXPECT_TRUE(add_lag_to_list(id, lag_list));
    for (const int code : codes_except({})) {
        fail_next("bcmx_l2_addr_delete_by_trunk", code);
        EXPECT_EQ(printed_by(sdk, false), "") << code;
        EXPECT_EQ(calls_made(), port_deletes("1") + "bcmx_l2_addr_delete_by_trunk(7, 1)\n");
    }
}
