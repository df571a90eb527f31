// Single MAC entries, bulk deletes, ageing and the walk.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "platform/port_map.h"
#include "tests/l2/driver.h"

namespace {

const Mp port_5(0, 5);
const Mp nowhere(1, 5);
const Mp lag_5(77, 5); // the module of a LAG is not looked at
const unsigned char host[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
const unsigned char group[6] = {0x01, 0x00, 0x5e, 0x00, 0x00, 0x01};

using Sdk = VexoBcmSdk;

struct Operation {
    std::string calls;
    int tolerated; // a code that counts as success besides 0
    std::function<bool(Sdk&)> act;
};

std::vector<Operation> operations()
{
    const std::string add = "bcmx_l2_addr_add({flags=";
    constexpr unsigned wide_vid = 0x1f001; // 61441 in its low 16 bits
    return {
        {add + "0x220, mac=00:11:22:33:44:55, vid=1, port=5}, null)\n", -8,
         [](Sdk& sdk) { return sdk.add_mac_to_port(port_5, host, 1, false); }},
        {add + "0x320, mac=01:00:5e:00:00:01, vid=61441, port=5}, null)\n", -8,
         [](Sdk& sdk) { return sdk.add_mac_to_port(port_5, group, wide_vid, false); }},
        {add + "0x2a0, mac=00:11:22:33:44:55, vid=1, trunk=5}, null)\n", -8,
         [](Sdk& sdk) { return sdk.add_mac_to_port(lag_5, host, 1, true); }},
        {"bcmx_l2_addr_delete(00:11:22:33:44:55, 61441)\n", -7,
         [](Sdk& sdk) { return sdk.delete_mac(host, wide_vid); }},
        {add + "0x20, mac=00:11:22:33:44:55, vid=61441, port=cpu}, null)\n", -8,
         [](Sdk& sdk) { return sdk.add_system_mac(host, wide_vid); }},
        {"bcmx_l2_addr_delete_by_mac(00:11:22:33:44:55, 1)\n", -7,
         [](Sdk& sdk) { return sdk.delete_mac_by_mac(host); }},
        {"bcmx_l2_addr_delete_by_port(5, 0)\n", 0,
         [](Sdk& sdk) { return sdk.clear_mac_by_port(port_5, false, false); }},
        {"bcmx_l2_addr_delete_by_port(5, 1)\n", 0,
         [](Sdk& sdk) { return sdk.clear_mac_by_port(port_5, false, true); }},
        {"bcmx_l2_addr_delete_by_trunk(5, 0)\n", 0,
         [](Sdk& sdk) { return sdk.clear_mac_by_port(lag_5, true, false); }},
        {"bcmx_l2_addr_delete_by_trunk(5, 1)\n", 0,
         [](Sdk& sdk) { return sdk.clear_mac_by_port(lag_5, true, true); }},
        {"bcmx_l2_addr_delete_by_vlan(1, 0)\n", 0,
         [](Sdk& sdk) { return sdk.clear_mac_by_vlan(1, false); }},
        {"bcmx_l2_addr_delete_by_vlan(61441, 1)\n", 0,
         [](Sdk& sdk) { return sdk.clear_mac_by_vlan(wide_vid, true); }},
        {"bcmx_l2_age_timer_set(300)\n", 0, [](Sdk& sdk) { return sdk.set_fdb_aging_time(300); }},
    };
}

std::string printed_by_walk(Sdk& sdk)
{
    testing::internal::CaptureStdout();
    sdk.traverse_mac_table(nullptr);
    return testing::internal::GetCapturedStdout();
}

} // namespace

TEST(Fdb, AnOperationMakesItsCall)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const Operation& operation : operations()) {
        const EveryCallAnswers answer(0);
        EXPECT_TRUE(operation.act(sdk)) << operation.calls;
        EXPECT_EQ(calls_made(), operation.calls);
    }
}

TEST(Fdb, AnOperationIsTrueForSuccessAndTheCodeItToleratesOnly)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const Operation& operation : operations()) {
        for (int code = -19; code <= 1; ++code) {
            const EveryCallAnswers answer(code);
            EXPECT_EQ(operation.act(sdk), code == 0 || code == operation.tolerated)
                << operation.calls << code;
        }
    }
}

TEST(Fdb, AnEntryTowardsAPortThatDoesNotExistIsForTheChipToRefuse)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_FALSE(sdk.add_mac_to_port(nowhere, host, 1, false));
    EXPECT_EQ(calls_made(), "bcmx_l2_addr_add({flags=0x220, mac=00:11:22:33:44:55, vid=1, "
                            "port=lport:-1}, null)\n");
}

TEST(Fdb, ClearingAPortThatDoesNotExistIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_FALSE(sdk.clear_mac_by_port(nowhere, false, true));
    EXPECT_EQ(calls_made(), "");
}

TEST(Fdb, AddingAndDeletingTwiceSucceeds)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.add_mac_to_port(port_5, host, 1, false));
    EXPECT_TRUE(sdk.add_mac_to_port(port_5, host, 1, false));
    EXPECT_TRUE(sdk.delete_mac(host, 1));
    EXPECT_TRUE(sdk.delete_mac(host, 1));
    EXPECT_TRUE(sdk.delete_mac_by_mac(host));
}

TEST(Fdb, AnAgeingTimeBelowZeroIsForTheChipToRefuse)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_FALSE(sdk.set_fdb_aging_time(-1));
    EXPECT_EQ(calls_made(), "bcmx_l2_age_timer_set(-1)\n");
}

TEST(Fdb, TheAgeingTimeReadsAsItWasSet)
{
    VexoBcmSdk& sdk = driver_with_log();
    int seconds = 0;
    EXPECT_TRUE(sdk.set_fdb_aging_time(123));
    EXPECT_TRUE(sdk.get_fdb_aging_time(seconds));
    EXPECT_EQ(seconds, 123);
}

TEST(Fdb, AFailedReadOfTheAgeingTimeLeavesTheOutputAlone)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(-17);
    int seconds = 77;
    EXPECT_FALSE(sdk.get_fdb_aging_time(seconds));
    EXPECT_EQ(seconds, 77);
}

TEST(Fdb, AWalkIsOneCallOnTheUnit)
{
    VexoBcmSdk& sdk = driver_with_log();
    sdk.traverse_mac_table(nullptr);
    EXPECT_EQ(calls_made(), "bcm_l2_traverse(0, vexo_mac_traverse_callback, null)\n");
}

TEST(Fdb, AWalkIsOfTheUnitThatTheDriverHas)
{
    VexoBcmSdk& sdk = driver_with_log();
    vexo_bcm_unit = 1;
    sdk.traverse_mac_table(nullptr);
    EXPECT_EQ(calls_made(), "bcm_l2_traverse(1, vexo_mac_traverse_callback, null)\n");
}

TEST(Fdb, AWalkHandsItsDataToTheSubscribers)
{
    static void* got = nullptr;
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.add_mac_to_port(port_5, host, 1, false));
    sdk.register_mac_update_callback([](L2Addr*, int, void* data) { got = data; }, nullptr);
    int data = 0;
    sdk.traverse_mac_table(&data);
    EXPECT_EQ(got, &data);
}

TEST(Fdb, AFailedWalkIsReportedWhileTracingIsOn)
{
    VexoBcmSdk& sdk = driver_with_log();
    sdk.set_trace("trace_level_all", true);
    EXPECT_EQ(printed_by_walk(sdk), "");
    for (const int code : codes_except({})) {
        const EveryCallAnswers answer(code);
        EXPECT_EQ(printed_by_walk(sdk), "bcm_l2_traverse failed.\n") << code;
    }
    const EveryCallAnswers answer(-1);
    sdk.set_trace("trace_level_all", false);
    EXPECT_EQ(printed_by_walk(sdk), "");
}
