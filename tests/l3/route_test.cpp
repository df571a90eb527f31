// L3 routes as the chip has them after operations.
#include <bcmx/l3.h>

#include "tests/l3/addresses.h"

namespace {

constexpr Mac other_hop = {0x02, 0x00, 0x00, 0x00, 0x00, 0x0a};
constexpr Mac multicast = {0x01, 0x00, 0x5e, 0x00, 0x00, 0x01};
constexpr Ip6 any6 = {};
const std::string absent = "none";

struct Net {
    unsigned net;
    unsigned mask;
};

constexpr Net net_10 = {ip4(10, 0, 0, 0), ip4(255, 0, 0, 0)};
constexpr Net net_10_0 = {ip4(10, 0, 0, 0), ip4(255, 255, 0, 0)};
constexpr Net net_11 = {ip4(11, 0, 0, 0), ip4(255, 0, 0, 0)};
constexpr Net any = {0, 0};

/// Interfaces 5 and 6, and LAG 0.
struct L3Routes : QuietCardTest {
    L3Routes()
    {
        unsigned lag = 0;
        sdk().create_lag(lag);
        sdk().create_l3_interface_with_id(router.data(), 10, 5, false);
        sdk().create_l3_interface_with_id(router.data(), 11, 6, false);
        clear_calls();
    }

    bool add(const Net& to, unsigned interface = 5, const Mac& mac = next_hop)
    {
        return sdk().add_l3_route_ip4(mp(3), false, to.net, to.mask, mac.data(), interface,
                                      ip4(192, 0, 2, 1));
    }
    bool add(const Ip6& net, const Ip6& mask, unsigned interface = 5)
    {
        return sdk().add_l3_route_ip6(mp(3), false, net.data(), mask.data(), next_hop.data(),
                                      interface);
    }
    bool remove(const Net& to, const Mp& port = mp(3), bool is_trunk = false)
    {
        return sdk().delete_l3_route_by_subnet_ip4(to.net, to.mask, port, is_trunk);
    }
    bool remove(const Ip6& net, const Ip6& mask)
    {
        return sdk().delete_l3_route_by_subnet_ip6(net.data(), mask.data(), mp(3), false);
    }

    /// "LAST-BYTE-OF-MAC by INTERFACE" of a route, for IPv4 with the low byte of the next hop's
    /// address.
    std::string route(const Net& to)
    {
        unsigned char mac[6] = {};
        unsigned interface = 0;
        unsigned ip = 0;
        if (!sdk().get_l3_route_by_subnet_ip4(to.net, to.mask, mp(3), false, mac, interface, ip))
            return absent;
        return std::to_string(mac[5]) + " by " + std::to_string(interface) + " ." +
               std::to_string(ip & 0xff);
    }
    std::string route(const Ip6& net, const Ip6& mask)
    {
        Mac mac = {};
        unsigned interface = 0;
        if (!sdk().get_l3_route_by_subnet_ip6(net.data(), mask.data(), mp(3), false, interface,
                                              mac.data()))
            return absent;
        return std::to_string(mac[5]) + " by " + std::to_string(interface);
    }
};

TEST_F(L3Routes, ARouteReadsAsItWasAdded)
{
    EXPECT_TRUE(add(net_10));
    EXPECT_TRUE(add(net_10_0, 6, other_hop));
    EXPECT_TRUE(add(net6, mask6, 6));
    EXPECT_TRUE(add(any6, any6));
    EXPECT_EQ(route(net_10), "9 by 5 .1");
    EXPECT_EQ(route(net_10_0), "10 by 6 .1");
    EXPECT_EQ(route(any), absent);
    EXPECT_EQ(route(net6, mask6), "9 by 6");
    EXPECT_EQ(route(any6, any6), "9 by 5");
    EXPECT_EQ(route(net6, any6), absent);
}

TEST_F(L3Routes, AddingAnExistingRouteSucceedsAndLeavesItAsItIs)
{
    add(net_10);
    add(net6, mask6);
    EXPECT_TRUE(add(net_10, 6, other_hop));
    EXPECT_TRUE(add(net6, mask6, 6));
    EXPECT_EQ(route(net_10), "9 by 5 .1");
    EXPECT_EQ(route(net6, mask6), "9 by 5");
}

TEST_F(L3Routes, WhatTheChipRefusesIsFalseAndChangesNothing)
{
    const auto before = chip_digest();
    EXPECT_FALSE(add({ip4(10, 0, 0, 0), ip4(255, 0, 255, 0)}));
    EXPECT_FALSE(add({ip4(10, 0, 0, 1), ip4(255, 0, 0, 0)}));
    EXPECT_FALSE(add({0, 1}));
    EXPECT_FALSE(add(net6, any6));
    EXPECT_FALSE(add(any6, host6));
    EXPECT_FALSE(add(net_10, 7));
    EXPECT_FALSE(add(net_10, 5, multicast));
    for (const unsigned lag : {1u, 128u, 0xffffffffu})
        EXPECT_FALSE(sdk().add_l3_route_ip4(Mp(0, lag), true, net_10.net, net_10.mask,
                                            next_hop.data(), 5, 0));
    EXPECT_EQ(chip_digest(), before);
}

TEST_F(L3Routes, ANetworkThatIsNoneIsRefusedBeforeTheDelete)
{
    clear_calls();
    EXPECT_FALSE(remove({ip4(10, 0, 0, 1), ip4(255, 0, 0, 0)}));
    EXPECT_EQ(take_calls().find("delete"), std::string::npos);
    EXPECT_FALSE(remove(net6, any6));
}

TEST_F(L3Routes, ADeleteGoesOnWithTheRecordThatWasRead)
{
    sdk().add_l3_route_ip4(Mp(0, 0), true, net_10.net, net_10.mask, next_hop.data(), 5, 0);
    clear_calls();
    EXPECT_TRUE(remove(net_10));
    EXPECT_EQ(take_calls(),
              "bcmx_l3_route_get({flags=0, net=10.0.0.0, mask=255.0.0.0, intf=0, "
              "nexthop_mac=00:00:00:00:00:00, nexthop_ip=0.0.0.0, port=3})\n"
              "bcmx_l3_route_delete({flags=0x200, net=10.0.0.0, mask=255.0.0.0, intf=5, "
              "nexthop_mac=02:00:00:00:00:09, nexthop_ip=0.0.0.0, trunk=0})\n");
    EXPECT_EQ(route(net_10), absent);
}

TEST_F(L3Routes, DeletingAnAbsentRouteSucceedsAndStillAsksForTheDelete)
{
    EXPECT_TRUE(remove(net_10));
    EXPECT_NE(take_calls().find("bcmx_l3_route_delete("), std::string::npos);
    EXPECT_TRUE(remove(net6, mask6));
    EXPECT_NE(take_calls().find("bcmx_l3_route_delete("), std::string::npos);
}

TEST_F(L3Routes, OneRouteGoesByItsNetworkAndMask)
{
    add(net_10);
    add(net_10_0);
    add(net6, mask6);
    EXPECT_TRUE(remove(net_10));
    EXPECT_TRUE(remove(net6, mask6));
    EXPECT_EQ(route(net_10) + " " + route(net6, mask6), "none none");
    EXPECT_EQ(route(net_10_0), "9 by 5 .1");
}

TEST_F(L3Routes, RoutesGoByInterfaceOrByEveryOther)
{
    add(net_10, 5);
    add(net6, mask6, 5);
    add(net_11, 6);
    EXPECT_TRUE(sdk().delete_l3_route_by_interface(5, true));
    EXPECT_EQ(route(net_10) + " " + route(net6, mask6) + " " + route(net_11),
              "none none 9 by 6 .1");
    add(net_10, 5);
    EXPECT_TRUE(sdk().delete_l3_route_by_interface(5, false));
    EXPECT_EQ(route(net_10) + " " + route(net_11), "9 by 5 .1 none");
    EXPECT_TRUE(sdk().delete_l3_route_by_interface(99, true));
    EXPECT_EQ(route(net_10), "9 by 5 .1");
}

TEST_F(L3Routes, BesideADefaultRouteTheRoutesOfItsInterfaceGoInstead)
{
    add(any, 6);
    add(net_11, 6);
    add(net_10, 5);
    clear_calls();
    EXPECT_TRUE(sdk().delete_l3_route_by_interface(5, false));
    EXPECT_EQ(take_calls(),
              "bcmx_l3_route_get({flags=0x80, net=0.0.0.0, mask=0.0.0.0, intf=5, "
              "nexthop_mac=00:00:00:00:00:00, nexthop_ip=0.0.0.0, port=lport:0})\n"
              "bcmx_l3_route_delete_by_interface({flags=0, net=0.0.0.0, mask=0.0.0.0, intf=6, "
              "nexthop_mac=02:00:00:00:00:09, nexthop_ip=192.0.2.1, port=3})\n");
    EXPECT_EQ(route(any) + " " + route(net_11) + " " + route(net_10), "none none 9 by 5 .1");
}

TEST_F(L3Routes, AllRoutesGo)
{
    add(net_10);
    add(net6, mask6, 6);
    EXPECT_TRUE(sdk().delete_l3_route_all());
    EXPECT_EQ(route(net_10) + " " + route(net6, mask6), "none none");
    EXPECT_TRUE(sdk().delete_l3_route_all());
}

TEST_F(L3Routes, TheChipHolds16384)
{
    log_calls(false);
    for (unsigned i = 0; i < 16384; ++i)
        ASSERT_TRUE(add({i << 8, 0xffffff00}));
    EXPECT_FALSE(add({16384 << 8, 0xffffff00}));
    EXPECT_TRUE(add({0, 0xffffff00}));
}

} // namespace
