// Operations that name no port: switch controls, and VLANs by source address and subnet.
#include <gtest/gtest.h>

#include <functional>

#include "tests/l2/driver.h"

namespace {

using Sdk = VexoBcmSdk;

const unsigned char host[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
const unsigned char net6[16] = {0x20, 0x01, 0x0d, 0xb8, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1};

struct Operation {
    std::string calls;
    std::function<bool(Sdk&)> act;
};

std::vector<Operation> operations()
{
    return {
        {"bcmx_switch_control_set(21, 1)\n",
         [](Sdk& sdk) { return sdk.set_switch_unknown_unicast_to_cpu(true); }},
        {"bcmx_switch_control_set(21, 0)\n",
         [](Sdk& sdk) { return sdk.set_switch_unknown_unicast_to_cpu(false); }},
        {"bcmx_switch_control_set(204, 3)\n",
         [](Sdk& sdk) { return sdk.set_switch_forward_mode(3); }},
        {"bcmx_vlan_mac_add(00:11:22:33:44:55, 1, 5)\n",
         [](Sdk& sdk) { return sdk.set_mac_vlan(host, 0x10001, 5); }},
        {"bcmx_vlan_ip4_add(10.1.2.0, 255.255.255.0, 1, 5)\n",
         [](Sdk& sdk) { return sdk.set_ipv4_subnet_vlan(0x0a010200, 0xffffff00, 0x10001, 5); }},
        {"bcmx_vlan_ip_add({flags=0x4000, ip6=20010db8000000000000000000000001, prefix=64, vid=1, "
         "prio=5})\n",
         [](Sdk& sdk) { return sdk.set_ipv6_subnet_vlan(net6, 64, 0x10001, 5); }},
    };
}

} // namespace

TEST(SwitchCalls, AnOperationMakesItsCallAndSucceeds)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const Operation& operation : operations()) {
        EXPECT_TRUE(operation.act(sdk)) << operation.calls;
        EXPECT_EQ(calls_made(), operation.calls);
    }
}

TEST(SwitchCalls, AnOperationIsFalseForEveryAnswerButSuccess)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const Operation& operation : operations()) {
        for (const int code : codes_except({})) {
            const EveryCallAnswers answer(code);
            EXPECT_FALSE(operation.act(sdk)) << operation.calls << code;
        }
    }
}

TEST(SwitchCalls, AVlanIsItsLow16Bits)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(0);
    constexpr unsigned vid = 0x1f001; // 61441 in its low 16 bits
    EXPECT_TRUE(sdk.set_port_vlan_pvid(port(5), vid));
    EXPECT_TRUE(sdk.set_port_protocol_vlan(port(5), FRAME_SNAP, 0x800, vid));
    EXPECT_TRUE(sdk.set_mac_vlan(host, vid, 5));
    EXPECT_TRUE(sdk.set_ipv4_subnet_vlan(0x0a010200, 0xffffff00, vid, 5));
    EXPECT_TRUE(sdk.set_ipv6_subnet_vlan(net6, 64, vid, 5));
    EXPECT_EQ(calls_made(), "bcmx_port_untagged_vlan_set(5, 61441)\n"
                            "bcmx_port_protocol_vlan_add(5, 4, 0x800, 61441)\n"
                            "bcmx_vlan_mac_add(00:11:22:33:44:55, 61441, 5)\n"
                            "bcmx_vlan_ip4_add(10.1.2.0, 255.255.255.0, 61441, 5)\n"
                            "bcmx_vlan_ip_add({flags=0x4000, ip6=20010db8000000000000000000000001, "
                            "prefix=64, vid=61441, prio=5})\n");
}

TEST(SwitchCalls, ControlsReadAsTheyWereSet)
{
    VexoBcmSdk& sdk = driver_with_log();
    unsigned mode = 77;
    EXPECT_TRUE(sdk.set_switch_forward_mode(3));
    EXPECT_TRUE(sdk.get_switch_forward_mode(mode));
    EXPECT_EQ(mode, 3u);
    for (const bool value : {true, false}) {
        bool enabled = !value;
        EXPECT_TRUE(sdk.set_switch_unknown_unicast_to_cpu(value));
        calls_made();
        EXPECT_TRUE(sdk.get_switch_unknown_unicast_to_cpu(enabled));
        EXPECT_EQ(enabled, value);
        EXPECT_EQ(calls_made(), "bcmx_switch_control_get(21, out)\n");
    }
}

TEST(SwitchCalls, AControlThatCannotBeReadLeavesTheOutputAlone)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int code : codes_except({})) {
        const EveryCallAnswers answer(code);
        for (const bool before : {true, false}) {
            unsigned mode = 77;
            bool enabled = before;
            EXPECT_FALSE(sdk.get_switch_forward_mode(mode)) << code;
            EXPECT_FALSE(sdk.get_switch_unknown_unicast_to_cpu(enabled)) << code;
            EXPECT_EQ(mode, 77u) << code;
            EXPECT_EQ(enabled, before) << code;
        }
    }
}

TEST(SwitchCalls, VlansByAddressThatTheChipCannotHaveAreRefused)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_FALSE(sdk.set_mac_vlan(host, 0, 0));
    EXPECT_FALSE(sdk.set_mac_vlan(host, 4095, 0));
    EXPECT_FALSE(sdk.set_mac_vlan(host, 1, 8));
    EXPECT_FALSE(sdk.set_ipv4_subnet_vlan(0x0a010200, 0xff00ff00, 1, 0));
    EXPECT_FALSE(sdk.set_ipv6_subnet_vlan(net6, 129, 1, 0));
}
