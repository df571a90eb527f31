// What the one-call operations on ports ask of the chip, and what they make of its answers.
#include "tests/l2/port_calls.h"

#include "platform/port_map.h"

namespace {

const Mp port_5(0, 5);
const Mp port_50(2, 50);
const Mp nowhere(1, 5);

using Sdk = VexoBcmSdk;

std::vector<Setter> setters()
{
    return {
        {"bcmx_port_enable_set(5, 1)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_enable(port, true); }},
        {"bcmx_port_enable_set(5, 0)\nbcmx_l2_addr_delete_by_port(5, 0)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_enable(port, false); }},
        {"bcmx_port_autoneg_set(5, 1)\n", true,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_autoneg(port, true); }},
        {"bcmx_port_autoneg_set(5, 0)\n", true,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_autoneg(port, false); }},
        {"bcmx_port_speed_set(5, 10)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_speed(port, SPEED_10M); }},
        {"bcmx_port_speed_set(5, 100)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_speed(port, SPEED_100M); }},
        {"bcmx_port_speed_set(5, 1000)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_speed(port, SPEED_1G); }},
        {"bcmx_port_duplex_set(5, 0)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_duplex(port, DUPLEX_HALF); }},
        {"bcmx_port_duplex_set(5, 1)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_duplex(port, DUPLEX_FULL); }},
        {"bcmx_port_duplex_set(5, 1)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_duplex(port, duplex_type_t{}); }},
        {"bcmx_port_duplex_set(5, 1)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_duplex(port, duplex_type_t{3}); }},
        {"bcmx_port_pause_set(5, 0, 1)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_pause(port, 1, 0); }},
        {"bcmx_port_frame_max_set(5, 9000)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_mtu(port, 9000); }},
        {"bcmx_port_untagged_vlan_set(5, 1)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_vlan_pvid(port, 1); }},
        {"bcmx_port_untagged_vlan_set(5, 1)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_vlan_pvid(port, 0x10001); }},
        {"bcmx_port_untagged_priority_set(5, 6)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_vlan_priority(port, 99, 6); }},
        {"bcmx_port_discard_set(5, 2)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_vlan_accept_frame(port, true); }},
        {"bcmx_port_discard_set(5, 0)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_vlan_accept_frame(port, false); }},
        {"bcmx_port_discard_set(5, 0)\n", true,
         [](Sdk& sdk, const Mp& port) {
             return sdk.set_port_ingress_discarding(port, INGRESS_DISCARD_NONE);
         }},
        {"bcmx_port_discard_set(5, 3)\n", true,
         [](Sdk& sdk, const Mp& port) {
             return sdk.set_port_ingress_discarding(port, INGRESS_DISCARD_TAGGED);
         }},
        {"bcmx_port_discard_set(5, 2)\n", true,
         [](Sdk& sdk, const Mp& port) {
             return sdk.set_port_ingress_discarding(port, INGRESS_DISCARD_UNTAGGED);
         }},
        {"bcmx_port_discard_set(5, 1)\n", true,
         [](Sdk& sdk, const Mp& port) {
             return sdk.set_port_ingress_discarding(port, INGRESS_DISCARD_ALL);
         }},
        {"bcmx_port_flood_block_set(5, 50, 0xf)\n", true,
         [](Sdk& sdk, const Mp& port) {
             return sdk.set_port_flood_blocking(port, port_50, flood_block_type_t{0xf});
         }},
        {"bcmx_port_flood_block_set(50, 5, 2)\n", true,
         [](Sdk& sdk, const Mp& port) {
             return sdk.set_port_flood_blocking(port_50, port, FLOOD_BLOCK_UNKNOWN_UNICAST);
         }},
        {"bcmx_port_flood_block_set(5, cpu, 1)\n", true,
         [](Sdk& sdk, const Mp& port) {
             return sdk.set_port_flood_blocking_cpu(port, FLOOD_BLOCK_BROADCAST);
         }},
        {"bcmx_port_stp_set(5, 1)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_stp_state(port, STP_BLOCKING); }},
        {"bcmx_port_stp_set(5, 2)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_stp_state(port, STP_LISTENING); }},
        {"bcmx_port_stp_set(5, 3)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_stp_state(port, STP_LEARNING); }},
        {"bcmx_port_stp_set(5, 4)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_stp_state(port, STP_FORWARDING); }},
        {"bcmx_port_stp_set(5, 0)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_port_stp_state(port, STP_DISABLED); }},
        {"bcmx_stg_stp_set(1, 5, 2)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_stg_stp_state(1, port, MSTP_DISCARDING); }},
        {"bcmx_stg_stp_set(1, 5, 3)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_stg_stp_state(1, port, MSTP_LEARNING); }},
        {"bcmx_stg_stp_set(1, 5, 4)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_stg_stp_state(1, port, MSTP_FORWARDING); }},
        {"bcmx_stg_stp_set(1, 5, 0)\n", false,
         [](Sdk& sdk, const Mp& port) { return sdk.set_stg_stp_state(1, port, MSTP_DISABLED); }},
        {"bcmx_stg_stp_set(1, 5, 4)\n", false,
         [](Sdk& sdk, const Mp& port) {
             return sdk.set_stg_stp_state(1, port, MSTP_FORWARDING_ALIAS);
         }},
    };
}

std::vector<Getter> getters()
{
    return {
        {"bcmx_port_enable_get(5, out)\n", false, into(&VexoSdkBase::get_port_enabled)},
        {"bcmx_port_autoneg_get(5, out)\n", true, into(&VexoSdkBase::get_port_autoneg)},
        {"bcmx_port_speed_get(5, out)\n", false, into(&VexoSdkBase::get_port_speed)},
        {"bcmx_port_duplex_get(5, out)\n", false, into(&VexoSdkBase::get_port_duplex)},
        {"bcmx_port_pause_get(5, out, out)\n", false,
         [](Sdk& sdk, const Mp& port, long& value) {
             unsigned rx = static_cast<unsigned>(value);
             unsigned tx = rx;
             const bool result = sdk.get_port_pause(port, rx, tx);
             value = rx == tx ? static_cast<long>(rx) : -1;
             return result;
         }},
        {"bcmx_port_frame_max_get(5, out)\n", false, into(&VexoSdkBase::get_port_mtu)},
        {"bcmx_port_link_status_get(5, out)\n", false, into(&VexoSdkBase::get_port_phy_state)},
        {"bcmx_port_untagged_vlan_get(5, out)\n", false, into(&VexoSdkBase::get_port_vlan_pvid)},
        {"bcmx_port_untagged_priority_get(5, out)\n", false,
         [](Sdk& sdk, const Mp& port, long& value) {
             unsigned priority = static_cast<unsigned>(value);
             const bool result = sdk.get_port_vlan_priority(port, 99, priority);
             value = static_cast<long>(priority);
             return result;
         }},
        {"bcmx_port_discard_get(5, out)\n", false, into(&VexoSdkBase::get_port_vlan_accept_frame)},
        {"bcmx_port_discard_get(5, out)\n", true, into(&VexoSdkBase::get_port_ingress_discarding)},
        {"bcmx_port_flood_block_get(5, cpu, out)\n", true,
         into(&VexoSdkBase::get_port_flood_blocking_cpu)},
        {"bcmx_port_flood_block_get(5, 50, out)\n", true,
         [](Sdk& sdk, const Mp& port, long& value) {
             auto block = static_cast<flood_block_type_t>(value);
             const bool result = sdk.get_port_flood_blocking(port, port_50, block);
             value = static_cast<long>(block);
             return result;
         }},
        {"bcmx_port_stp_get(5, out)\n", false, into(&VexoSdkBase::get_port_stp_state)},
        {"bcmx_stg_stp_get(2, 5, out)\n", false,
         [](Sdk& sdk, const Mp& port, long& value) {
             auto state = static_cast<mstp_state_t>(value);
             const bool result = sdk.get_stg_stp_state(2, port, state);
             value = static_cast<long>(state);
             return result;
         }},
    };
}

} // namespace

TEST(PortCalls, ASetterMakesItsCallAndSucceeds)
{
    expect_calls(driver_with_log(), setters());
}

TEST(PortCalls, ASetterIsFalseForEveryAnswerButSuccess)
{
    expect_failures(driver_with_log(), setters());
}

TEST(PortCalls, ASetterRefusesAPortThatDoesNotExist)
{
    expect_refusals(driver_with_log(), setters());
}

TEST(PortCalls, AGetterMakesItsCallAndSucceeds)
{
    expect_calls(driver_with_log(), getters());
}

TEST(PortCalls, AGetterThatFailsIsFalseAndLeavesItsOutputAlone)
{
    expect_failures(driver_with_log(), getters());
}

TEST(PortCalls, AGetterRefusesAPortThatDoesNotExist)
{
    expect_refusals(driver_with_log(), getters());
}

TEST(PortCalls, FloodBlockingRefusesAnEgressThatDoesNotExistWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    flood_block_type_t block = FLOOD_BLOCK_BROADCAST;
    EXPECT_FALSE(sdk.set_port_flood_blocking(port_5, nowhere, block));
    EXPECT_FALSE(sdk.get_port_flood_blocking(port_5, nowhere, block));
    EXPECT_EQ(block, FLOOD_BLOCK_BROADCAST);
    EXPECT_EQ(calls_made(), "");
}

TEST(PortCalls, FloodBlockingTowardsTheCpuNeedsAnAttachedCpuPort)
{
    VexoBcmSdk& sdk = driver_with_log();
    flood_block_type_t block = FLOOD_BLOCK_BROADCAST;
    vexo_user_port_to_lport[53] = -1;
    EXPECT_FALSE(sdk.set_port_flood_blocking_cpu(port_5, block));
    EXPECT_FALSE(sdk.get_port_flood_blocking_cpu(port_5, block));
    EXPECT_EQ(block, FLOOD_BLOCK_BROADCAST);
    EXPECT_EQ(calls_made(), "");
}

TEST(PortCalls, ValuesThatAreNotListedAreRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int value : {-1, 0, 5, 10})
        EXPECT_FALSE(sdk.set_port_speed(port_5, speed_type_t{value})) << value;
    for (const int value : {-1, 4}) {
        EXPECT_FALSE(sdk.set_port_ingress_discarding(port_5, ingress_discard_type_t{value}))
            << value;
    }
    for (const int value : {-1, 5}) {
        EXPECT_FALSE(sdk.set_port_stp_state(port_5, stp_state_t{value})) << value;
        EXPECT_FALSE(sdk.set_stg_stp_state(1, port_5, mstp_state_t{value})) << value;
    }
    EXPECT_EQ(calls_made(), "");
}

TEST(PortCalls, ARefusedDisableFlushesNothing)
{
    VexoBcmSdk& sdk = driver_with_log();
    vexosim::inject({.call = "bcmx_port_enable_set", .code = -4});
    EXPECT_FALSE(sdk.set_port_enable(port_5, false));
    EXPECT_EQ(calls_made(), "bcmx_port_enable_set(5, 0)\n");
}

TEST(PortCalls, ADisableSucceedsWhateverTheFlushAnswers)
{
    VexoBcmSdk& sdk = driver_with_log();
    vexosim::inject({.call = "bcmx_l2_addr_delete_by_port", .code = -1});
    EXPECT_TRUE(sdk.set_port_enable(port_5, false));
}

TEST(PortCalls, TenGigabitsIsATenGigabitPortsSpeed)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_TRUE(sdk.set_port_speed(port_50, SPEED_10G));
    EXPECT_EQ(calls_made(), "bcmx_port_speed_set(50, 10000)\n");
}

TEST(PortCalls, OperationsThatDoNothingMakeNoCall)
{
    VexoBcmSdk& sdk = driver_with_log();
    unsigned vid = 77;
    EXPECT_TRUE(sdk.set_port_default_vlan(port_5, 2));
    EXPECT_TRUE(sdk.get_port_default_vlan(port_5, vid));
    EXPECT_TRUE(sdk.set_port_phy_state(port_5, PHY_LINK_UP));
    EXPECT_TRUE(sdk.set_port_default_vlan(nowhere, 2));
    EXPECT_TRUE(sdk.get_port_default_vlan(nowhere, vid));
    EXPECT_TRUE(sdk.set_port_phy_state(nowhere, PHY_LINK_UP));
    EXPECT_TRUE(sdk.free_call(3));
    EXPECT_EQ(vid, 77u);
    EXPECT_EQ(calls_made(), "");
}
