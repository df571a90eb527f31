// VLAN entry points: what they refuse, and what is read back.
#include <gtest/gtest.h>

#include <bcmx/vlan.h>

#include "tests/sim/lport_test.h"

namespace {

using VlanCalls = LportTest;

std::string ports_of(const bcmx_lplist_t& list)
{
    std::string text;
    int index = 0;
    bcmx_lport_t lport = 0;
    BCMX_LPLIST_ITER(list, lport, index)
    text += port_name(lport - kFirstLport) + " ";
    return text;
}

TEST_F(VlanCalls, AVlanWithAPortThatIsNoneIsLeftAsItIs)
{
    bcmx_vlan_create(10);
    const std::uint64_t before = chip_digest();
    EXPECT_EQ(bcmx_vlan_port_add(10, list({port3, kNoPort}), list({})), BCM_E_PORT);
    EXPECT_EQ(bcmx_vlan_port_add(10, list({port3}), list({-1})), BCM_E_PORT);
    EXPECT_EQ(bcmx_vlan_port_remove(10, list({port3, -1})), BCM_E_PORT);
    EXPECT_EQ(chip_digest(), before);
}

TEST_F(VlanCalls, VlansThatThereAreNotAreRefused)
{
    bcmx_lplist_t ports = list({port3}), none = list({});
    EXPECT_EQ(bcmx_vlan_create(0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_create(4095), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_create(1), BCM_E_EXISTS);
    EXPECT_EQ(bcmx_vlan_destroy(1), BCM_E_BADID);
    EXPECT_EQ(bcmx_vlan_destroy(10), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_vlan_destroy(4096), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_port_add(10, ports, none), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_vlan_port_remove(10, ports), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_vlan_port_get(10, &ports, &none), BCM_E_NOT_FOUND);
    EXPECT_EQ(ports_of(ports), "3 ") << "outputs stay";
}

TEST_F(VlanCalls, MembersReplaceWhatTheListsHeldInRisingChipPorts)
{
    bcmx_lplist_t ports{nullptr, -1, 0}, untagged{nullptr, -1, 0};
    bcmx_lplist_add(&ports, 1);
    bcmx_lplist_add(&untagged, 1);
    bcmx_vlan_create(10);
    bcmx_vlan_port_add(10, list({port4, port3, kFirstLport}), list({port4}));
    EXPECT_EQ(bcmx_vlan_port_get(10, &ports, nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_port_get(10, &ports, &untagged), 0);
    EXPECT_EQ(ports_of(ports), "cpu 3 4 ");
    EXPECT_EQ(ports_of(untagged), "4 ");
    bcmx_lplist_free(&ports);
    bcmx_lplist_free(&untagged);
}

TEST_F(VlanCalls, VlansByAddressAndSubnetAreCheckedAndKept)
{
    const std::uint64_t before = chip_digest();
    bcm_mac_t group = {1, 0, 0, 0, 0, 1};
    bcm_vlan_ip_t subnet{};
    EXPECT_EQ(bcmx_vlan_mac_add(nullptr, 10, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_mac_add(group, 10, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_mac_add(mac, 0, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_mac_add(mac, 10, 8), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_ip4_add(0x0a000000, 0xff00ff00, 10, 0), BCM_E_PARAM) << "holes";
    EXPECT_EQ(bcmx_vlan_ip4_add(0x0a000000, 0xff000000, 4095, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_vlan_ip_add(nullptr), BCM_E_PARAM);
    subnet.flags = BCM_VLAN_SUBNET_IP6;
    subnet.prefix = 129;
    subnet.vid = 10;
    EXPECT_EQ(bcmx_vlan_ip_add(&subnet), BCM_E_PARAM);
    EXPECT_EQ(chip_digest(), before);
    subnet.prefix = 128;
    EXPECT_EQ(bcmx_vlan_ip_add(&subnet), 0);
    EXPECT_EQ(bcmx_vlan_mac_add(mac, 10, 7), 0);
    EXPECT_EQ(bcmx_vlan_ip4_add(0x0a000000, 0xff000000, 10, 0), 0);
    EXPECT_NE(chip_digest(), before);
}

TEST_F(VlanCalls, SubnetsThatAreTheSameTakeOnePlace)
{
    EXPECT_EQ(bcmx_vlan_ip4_add(0x0a000001, 0xff000000, 10, 0), 0);
    const std::uint64_t once = chip_digest();
    EXPECT_EQ(bcmx_vlan_ip4_add(0x0a000002, 0xff000000, 10, 0), 0);
    EXPECT_EQ(chip_digest(), once);
}

TEST_F(VlanCalls, AddressRulesEndWhenTheTableIsFull)
{
    for (int i = 0; i < 1024; ++i) {
        bcm_mac_t each = {
            2, 1, 0, 0, static_cast<std::uint8_t>(i >> 8), static_cast<std::uint8_t>(i & 0xff)};
        ASSERT_EQ(bcmx_vlan_mac_add(each, 10, 0), 0);
    }
    EXPECT_EQ(bcmx_vlan_mac_add(mac, 10, 0), BCM_E_FULL);
    bcm_mac_t first = {2, 1, 0, 0, 0, 0};
    EXPECT_EQ(bcmx_vlan_mac_add(first, 11, 0), 0) << "takes the place of the other";
}

} // namespace
