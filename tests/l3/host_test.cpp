// L3 hosts as the chip has them after operations.
#include <bcmx/l3.h>

#include "core/result.h"
#include "l2/lag.h"
#include "platform/port_map.h"
#include "tests/l3/addresses.h"

namespace {

constexpr Mac other_hop = {0x02, 0x00, 0x00, 0x00, 0x00, 0x0a};
constexpr Mac multicast = {0x01, 0x00, 0x5e, 0x00, 0x00, 0x01};
constexpr unsigned host_a = ip4(10, 0, 0, 7);
constexpr unsigned host_b = ip4(172, 16, 0, 1);
const std::string absent = "none";

/// Interfaces 5 and 6, and LAG 0.
struct L3Hosts : QuietCardTest {
    L3Hosts()
    {
        unsigned lag = 0;
        sdk().create_lag(lag);
        sdk().create_l3_interface_with_id(router.data(), 10, 5, false);
        sdk().create_l3_interface_with_id(router.data(), 11, 6, false);
        clear_calls();
    }

    bool add(unsigned ip, unsigned interface = 5, const Mac& mac = next_hop)
    {
        return sdk().add_l3_host_ip4(mp(3), false, ip, mac.data(), interface);
    }

    /// An IPv6 host, which the driver itself cannot add with this SDK.
    static void add6(const Ip6& ip6, unsigned interface)
    {
        bcmx_l3_host_t host = {};
        host.l3a_flags = BCM_L3_IP6;
        host.l3a_intf = interface;
        host.l3a_lport = kFirstLport + 3;
        std::copy(next_hop.begin(), next_hop.end(), host.l3a_nexthop_mac);
        std::copy(ip6.begin(), ip6.end(), host.l3a_ip6_addr);
        ASSERT_EQ(bcmx_l3_host_add(&host), 0);
    }

    static std::string text(bool done, const Mac& mac, unsigned interface)
    {
        return done ? std::to_string(mac[5]) + " by " + std::to_string(interface) : absent;
    }

    /// "LAST-BYTE-OF-MAC by INTERFACE" of a host.
    std::string host(unsigned ip, const Mp& port = mp(3), bool is_trunk = false)
    {
        Mac mac = {};
        unsigned interface = 0;
        const bool done = sdk().get_l3_host_ip4(ip, port, mac.data(), interface, is_trunk);
        return text(done, mac, interface);
    }

    std::string host(const Ip6& ip6)
    {
        Mac mac = {};
        unsigned interface = 0;
        const bool done = sdk().get_l3_host_ip6(ip6.data(), mp(3), mac.data(), interface, false);
        return text(done, mac, interface);
    }
};

TEST_F(L3Hosts, AHostReadsAsItWasAdded)
{
    EXPECT_TRUE(add(host_a));
    EXPECT_TRUE(add(host_b, 6, other_hop));
    EXPECT_EQ(host(host_a), "9 by 5");
    EXPECT_EQ(host(host_b), "10 by 6");
    EXPECT_EQ(host(host_a + 1), absent);
}

TEST_F(L3Hosts, AddingAnExistingHostSucceedsAndLeavesItAsItIs)
{
    add(host_a);
    EXPECT_TRUE(add(host_a, 6, other_hop));
    EXPECT_EQ(host(host_a), "9 by 5");
}

TEST_F(L3Hosts, AHostMayBeBehindALag)
{
    EXPECT_TRUE(sdk().add_l3_host_ip4(Mp(9, 0), true, host_a, next_hop.data(), 5));
    EXPECT_EQ(host(host_a, Mp(9, 0), true), "9 by 5");
    bcmx_l3_host_t found = {};
    found.l3a_ip_addr = host_a;
    EXPECT_EQ(bcmx_l3_host_find(&found), 0);
    EXPECT_EQ(found.l3a_flags, BCM_L3_TGID);
    EXPECT_EQ(found.l3a_trunk_id, 0);
}

TEST_F(L3Hosts, AHostMayBeBehindTheCpuPort)
{
    EXPECT_TRUE(sdk().add_l3_host_ip4(mp(53), false, host_a, next_hop.data(), 5));
    EXPECT_EQ(take_calls(), "bcmx_l3_host_add({flags=0, ip=10.0.0.7, intf=5, "
                            "nexthop_mac=02:00:00:00:00:09, port=cpu})\n");
}

TEST_F(L3Hosts, WhatTheChipRefusesIsFalseAndChangesNothing)
{
    const auto before = chip_digest();
    EXPECT_FALSE(add(host_a, 7));
    EXPECT_FALSE(add(host_a, 0xffffffff));
    EXPECT_FALSE(add(host_a, 5, multicast));
    EXPECT_FALSE(sdk().add_l3_host_ip4(Mp(0, 1), true, host_a, next_hop.data(), 5));
    EXPECT_FALSE(sdk().add_l3_host_ip4(Mp(0, 128), true, host_a, next_hop.data(), 5));
    EXPECT_FALSE(sdk().add_l3_host_ip4(Mp(0, 0xffffffff), true, host_a, next_hop.data(), 5));
    EXPECT_EQ(chip_digest(), before);
}

TEST_F(L3Hosts, APortThatIsNotAttachedIsForTheChipToRefuse)
{
    vexo_user_port_to_lport[3] = -1;
    EXPECT_FALSE(add(host_a));
    EXPECT_EQ(take_calls(), "bcmx_l3_host_add({flags=0, ip=10.0.0.7, intf=5, "
                            "nexthop_mac=02:00:00:00:00:09, port=lport:-1})\n");
}

TEST_F(L3Hosts, AddingAnIpv6HostIsFalseBecauseTheSdkPreparesItsRecord)
{
    EXPECT_FALSE(sdk().add_l3_host_ip6(mp(3), false, host6.data(), next_hop.data(), 5));
    EXPECT_EQ(all_calls(), "bcmx_l3_host_t_init(out)\n");
    EXPECT_EQ(host(host6), absent);
}

TEST_F(L3Hosts, AddingAnIpv6HostIsTrueAfterAPreparationThatAnswers1)
{
    inject({.call = "bcmx_l3_host_t_init", .code = 1});
    EXPECT_TRUE(sdk().add_l3_host_ip6(mp(3), false, host6.data(), next_hop.data(), 5));
    EXPECT_EQ(host(host6), "9 by 5");
}

TEST_F(L3Hosts, OneHostGoesByItsAddress)
{
    add(host_a);
    add(host_b);
    add6(host6, 5);
    EXPECT_TRUE(sdk().delete_l3_host_by_addr_ip4(host_a, mp(3), false));
    EXPECT_EQ(host(host_a) + " " + host(host_b) + " " + host(host6), "none 9 by 5 9 by 5");
    EXPECT_TRUE(sdk().delete_l3_host_by_addr_ip6(host6.data(), mp(3), false));
    EXPECT_EQ(host(host_b) + " " + host(host6), "9 by 5 none");
}

TEST_F(L3Hosts, DeletingAnAbsentHostByItsAddressIsFalse)
{
    EXPECT_FALSE(sdk().delete_l3_host_by_addr_ip4(host_a, mp(3), false));
    EXPECT_FALSE(sdk().delete_l3_host_by_addr_ip6(host6.data(), mp(3), false));
}

TEST_F(L3Hosts, DeletingByNetworkGoesWithoutAMaskAndTakesTheWholeFamily)
{
    add(host_a);
    add(host_b);
    add6(host6, 5);
    EXPECT_TRUE(sdk().delete_l3_host_by_network_ip4(ip4(10, 0, 0, 0)));
    EXPECT_EQ(host(host_a) + " " + host(host_b) + " " + host(host6), "none none 9 by 5");
    add(host_a);
    EXPECT_TRUE(sdk().delete_l3_host_by_network_ip6(net6.data()));
    EXPECT_EQ(host(host_a) + " " + host(host6), "9 by 5 none");
}

TEST_F(L3Hosts, HostsGoByInterfaceOrByEveryOther)
{
    add(host_a, 5);
    add6(host6, 5);
    add(host_b, 6);
    EXPECT_TRUE(sdk().delete_l3_host_by_interface(5, true));
    EXPECT_EQ(host(host_a) + " " + host(host6) + " " + host(host_b), "none none 9 by 6");
    add(host_a, 5);
    EXPECT_TRUE(sdk().delete_l3_host_by_interface(5, false));
    EXPECT_EQ(host(host_a) + " " + host(host_b), "9 by 5 none");
    EXPECT_TRUE(sdk().delete_l3_host_by_interface(99, true));
    EXPECT_EQ(host(host_a), "9 by 5");
}

TEST_F(L3Hosts, AllHostsGo)
{
    add(host_a);
    add6(host6, 6);
    EXPECT_TRUE(sdk().delete_l3_host_all());
    EXPECT_EQ(host(host_a) + " " + host(host6), "none none");
    EXPECT_TRUE(sdk().delete_l3_host_all());
}

TEST_F(L3Hosts, AnEntryIsSwitchedOffAndOnAgain)
{
    add(host_a);
    const auto on = chip_digest();
    EXPECT_TRUE(sdk().invalidate_l3_entry(host_a));
    const auto off = chip_digest();
    EXPECT_NE(off, on);
    EXPECT_EQ(host(host_a), "9 by 5");
    EXPECT_TRUE(sdk().invalidate_l3_entry(host_a));
    EXPECT_EQ(chip_digest(), off);
    EXPECT_TRUE(sdk().validate_l3_entry(host_a));
    EXPECT_EQ(chip_digest(), on);
}

TEST_F(L3Hosts, SwitchingAnAbsentEntrySucceeds)
{
    const auto before = chip_digest();
    EXPECT_TRUE(sdk().validate_l3_entry(host_a));
    EXPECT_TRUE(sdk().invalidate_l3_entry(host_a));
    EXPECT_EQ(chip_digest(), before);
}

TEST_F(L3Hosts, TheChipHolds8192)
{
    log_calls(false);
    for (unsigned i = 0; i < 8192; ++i)
        ASSERT_TRUE(add(host_a + i));
    EXPECT_FALSE(add(host_a + 8192));
    EXPECT_TRUE(add(host_a));
    EXPECT_EQ(host(host_a + 8192), absent);
}

} // namespace
