#include <bcm/error.h>
#include <gtest/gtest.h>

#include "sim/chip/l3_forwarding_table.h"
#include "sim/chip/l3_interface_table.h"

namespace {

using namespace vexosim;

constexpr std::uint32_t ip(unsigned a, unsigned b, unsigned c, unsigned d)
{
    return a << 24 | b << 16 | c << 8 | d;
}

IpPrefix network(std::uint32_t net, int length)
{
    return {IpAddress::from_ip4(net).masked(length), length};
}

L3Interface interface_of(MacAddress mac, int vid)
{
    return {mac, vid, 0};
}

TEST(IpAddress, AMaskHasLeadingOnesOnly)
{
    EXPECT_EQ(prefix_length(IpAddress::from_ip4(0)), 0);
    EXPECT_EQ(prefix_length(IpAddress::from_ip4(ip(255, 255, 254, 0))), 23);
    EXPECT_EQ(prefix_length(IpAddress::from_ip4(0xffffffff)), 32);
    EXPECT_EQ(prefix_length(IpAddress::from_ip4(ip(255, 0, 255, 0))), -1);
    EXPECT_EQ(prefix_length(IpAddress::from_ip4(1)), -1);
    const std::uint8_t ones[16] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0x80};
    EXPECT_EQ(prefix_length(IpAddress::from_ip6(ones)), 65);
}

TEST(IpAddress, ANetworkContainsItsOwnFamilyOnly)
{
    const IpPrefix net = network(ip(10, 1, 0, 0), 16);
    EXPECT_TRUE(net.contains(IpAddress::from_ip4(ip(10, 1, 255, 255))));
    EXPECT_FALSE(net.contains(IpAddress::from_ip4(ip(10, 2, 0, 0))));
    const std::uint8_t ip6[16] = {10, 1};
    EXPECT_FALSE(net.contains(IpAddress::from_ip6(ip6)));
    EXPECT_FALSE(network(0, 0).contains(IpAddress::from_ip6(ip6)));
}

TEST(IpAddress, Ip4SurvivesTheWayThere)
{
    EXPECT_EQ(IpAddress::from_ip4(ip(192, 0, 2, 17)).ip4(), ip(192, 0, 2, 17));
}

TEST(L3InterfaceTable, APairOfAddressAndVlanHasOneInterface)
{
    L3InterfaceTable table;
    unsigned id = 99;
    ASSERT_EQ(table.create(interface_of(0x10, 5), id), 0);
    EXPECT_EQ(id, 0u);
    id = 99;
    EXPECT_EQ(table.create(interface_of(0x10, 5), id), BCM_E_EXISTS);
    EXPECT_EQ(id, 0u);
    EXPECT_EQ(table.create(interface_of(0x10, 6), id), 0);
    EXPECT_EQ(id, 1u);
}

TEST(L3InterfaceTable, AChosenIdIsTakenOnceUnlessItIsToBeReplaced)
{
    L3InterfaceTable table;
    unsigned id = 7;
    ASSERT_EQ(table.create_id(interface_of(0x10, 5), id, false), 0);
    EXPECT_EQ(table.create_id(interface_of(0x20, 5), id, false), BCM_E_EXISTS);
    EXPECT_EQ(id, 7u);
    EXPECT_EQ(table.create_id(interface_of(0x20, 5), id, true), 0);
    EXPECT_EQ(*table.find(7), interface_of(0x20, 5));
    EXPECT_FALSE(table.find(0x10, 5));
    EXPECT_EQ(table.find(0x20, 5), 7u);
}

TEST(L3InterfaceTable, APairOfAnotherIdIsNamed)
{
    L3InterfaceTable table;
    unsigned first = 3;
    unsigned second = 4;
    ASSERT_EQ(table.create_id(interface_of(0x10, 5), first, false), 0);
    EXPECT_EQ(table.create_id(interface_of(0x10, 5), second, true), BCM_E_EXISTS);
    EXPECT_EQ(second, 3u);
    EXPECT_EQ(table.find(4), nullptr);
}

TEST(L3InterfaceTable, Holds512)
{
    L3InterfaceTable table;
    unsigned id = 0;
    for (MacAddress mac = 0; mac < 512; ++mac)
        ASSERT_EQ(table.create(interface_of(mac, 1), id), 0);
    EXPECT_EQ(table.create(interface_of(512, 1), id), BCM_E_FULL);
    EXPECT_EQ(id, 511u);
    id = 512;
    EXPECT_EQ(table.create_id(interface_of(512, 1), id, false), BCM_E_PARAM);
}

TEST(L3InterfaceTable, RefusesMulticastAddressesAndVlansThatAreNone)
{
    L3InterfaceTable table;
    unsigned id = 0;
    EXPECT_EQ(table.create(interface_of(0x010000000000, 1), id), BCM_E_PARAM);
    EXPECT_EQ(table.create(interface_of(1, 0), id), BCM_E_PARAM);
    EXPECT_EQ(table.create_id(interface_of(1, 4095), id, false), BCM_E_PARAM);
    EXPECT_EQ(table, L3InterfaceTable{});
}

TEST(L3InterfaceTable, WhatIsNotThereIsNotFound)
{
    L3InterfaceTable table;
    unsigned id = 0;
    table.create(interface_of(1, 1), id);
    EXPECT_EQ(table.destroy(1), BCM_E_NOT_FOUND);
    EXPECT_EQ(table.destroy(512), BCM_E_NOT_FOUND);
    EXPECT_EQ(table.find(512), nullptr);
    EXPECT_EQ(table.destroy(0), 0);
    EXPECT_EQ(table.destroy(0), BCM_E_NOT_FOUND);
    EXPECT_FALSE(table.find(1, 1));
}

TEST(L3InterfaceTable, TheOthersAreStillFoundWhenOneGoes)
{
    L3InterfaceTable table;
    unsigned id = 0;
    for (MacAddress mac = 0; mac < 512; ++mac)
        table.create(interface_of(mac, 1), id);
    ASSERT_EQ(table.destroy(7), 0);
    for (unsigned other = 0; other < 512; ++other)
        ASSERT_EQ(table.find(other, 1).value_or(7), other);
    EXPECT_FALSE(table.find(7, 1));
}

TEST(L3HostTable, TablesWithOtherEntriesDiffer)
{
    L3HostTable one, other;
    one.add(IpAddress::from_ip4(1), {}, false);
    EXPECT_FALSE(other == one);
    other.add(IpAddress::from_ip4(1), {}, false);
    EXPECT_TRUE(other == one);
    other.set_usable(IpAddress::from_ip4(1), false);
    EXPECT_FALSE(other == one);
}

TEST(L3HostTable, TablesOfAnotherCapacityDiffer)
{
    EXPECT_EQ(L3HostTable(4), L3HostTable(4));
    EXPECT_FALSE(L3HostTable(4) == L3HostTable(5));
}

TEST(L3HostTable, AnAddressHasOneEntryUnlessItIsReplaced)
{
    L3HostTable hosts;
    const IpAddress address = IpAddress::from_ip4(ip(10, 0, 0, 1));
    L3Host host;
    host.next_hop.mac = 1;
    ASSERT_EQ(hosts.add(address, host, false), 0);
    host.next_hop.mac = 2;
    EXPECT_EQ(hosts.add(address, host, false), BCM_E_EXISTS);
    EXPECT_EQ(hosts.find(address)->next_hop.mac, 1u);
    EXPECT_EQ(hosts.add(address, host, true), 0);
    EXPECT_EQ(hosts.find(address)->next_hop.mac, 2u);
    EXPECT_EQ(hosts.erase(address), 0);
    EXPECT_EQ(hosts.erase(address), BCM_E_NOT_FOUND);
}

TEST(L3HostTable, FamiliesAreApart)
{
    L3HostTable hosts;
    const std::uint8_t ip6[16] = {10, 0, 0, 1};
    ASSERT_EQ(hosts.add(IpAddress::from_ip4(ip(10, 0, 0, 1)), {}, false), 0);
    EXPECT_EQ(hosts.add(IpAddress::from_ip6(ip6), {}, false), 0);
    EXPECT_EQ(hosts.size(), 2u);
}

TEST(L3HostTable, Holds8192)
{
    L3HostTable hosts;
    for (std::uint32_t i = 0; i < 8192; ++i)
        ASSERT_EQ(hosts.add(IpAddress::from_ip4(i), {}, false), 0);
    EXPECT_EQ(hosts.add(IpAddress::from_ip4(8192), {}, false), BCM_E_FULL);
    EXPECT_EQ(hosts.add(IpAddress::from_ip4(8191), {}, true), 0);
}

TEST(L3HostTable, MarksEntriesUsableOrNot)
{
    L3HostTable hosts;
    const IpAddress address = IpAddress::from_ip4(1);
    EXPECT_EQ(hosts.set_usable(address, false), BCM_E_NOT_FOUND);
    hosts.add(address, {}, false);
    EXPECT_TRUE(hosts.find(address)->usable);
    EXPECT_EQ(hosts.set_usable(address, false), 0);
    EXPECT_FALSE(hosts.find(address)->usable);
}

TEST(L3RouteTable, NetworksOfDifferentLengthAreDifferent)
{
    L3RouteTable routes;
    ASSERT_EQ(routes.add(network(ip(10, 0, 0, 0), 8), {}, false), 0);
    EXPECT_EQ(routes.add(network(ip(10, 0, 0, 0), 16), {}, false), 0);
    EXPECT_EQ(routes.add(network(ip(10, 0, 0, 0), 8), {}, false), BCM_E_EXISTS);
    EXPECT_EQ(routes.keys(),
              (std::vector{network(ip(10, 0, 0, 0), 8), network(ip(10, 0, 0, 0), 16)}));
}

TEST(L3RouteTable, Holds16384)
{
    L3RouteTable routes;
    for (std::uint32_t i = 0; i < 16384; ++i)
        ASSERT_EQ(routes.add(network(i << 8, 24), {}, false), 0);
    EXPECT_EQ(routes.add(network(16384 << 8, 24), {}, false), BCM_E_FULL);
}

TEST(L3RouteTable, TheDigestDoesNotDependOnTheOrderOfEntry)
{
    L3RouteTable one;
    L3RouteTable other;
    for (std::uint32_t i = 0; i < 100; ++i) {
        one.add(network(i << 8, 24), {}, false);
        other.add(network((99 - i) << 8, 24), {}, false);
    }
    Digest first;
    Digest second;
    first.add(one);
    second.add(other);
    EXPECT_EQ(one, other);
    EXPECT_EQ(first.value(), second.value());
}

TEST(L3RouteTable, TheDigestTellsWhereARouteLeads)
{
    const auto leading_to = [](int port) {
        L3RouteTable table;
        table.add(network(ip(10, 0, 0, 0), 8), {{0, 0, false, port, 0}, false}, false);
        Digest d;
        table.digest(d);
        return d.value();
    };
    EXPECT_EQ(leading_to(1), leading_to(1));
    EXPECT_NE(leading_to(1), leading_to(2));
}

} // namespace
