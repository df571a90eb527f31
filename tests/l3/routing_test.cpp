// Frames that the card routes as the driver's operations have told it to. VLAN 10 is ports 3 and 4,
// untagged; VLAN 20 is port 5, untagged, and port 6, tagged. Interface 1 is the router in VLAN 10,
// interface 2 the one in VLAN 20.
#include <bcmx/l3.h>

#include "l2/lag.h"
#include "tests/l3/addresses.h"
#include "vexosim/state.h"
#include "vexosim/trace.h"

namespace {

constexpr MacBytes router10 = {2, 0, 0, 0, 10, 1}, router20 = {2, 0, 0, 0, 20, 1},
                   far_mac = {2, 0, 0, 0, 20, 9};
constexpr unsigned far = ip4(10, 0, 20, 9);
constexpr Ip6 no_bits = {};

struct Routed : CardTest {
    /// From host 1 to a far host.
    const TestFrame packet = udp(host1, {router10, far});

    Routed()
    {
        make_vlan(10, {}, {3, 4});
        make_vlan(20, {6}, {5});
        EXPECT_TRUE(sdk().create_l3_interface_with_id(router10.data(), 10, 1, false));
        EXPECT_TRUE(sdk().create_l3_interface_with_id(router20.data(), 20, 2, false));
    }
    void make_vlan(unsigned vid, const std::vector<unsigned>& tagged,
                   const std::vector<unsigned>& untagged)
    {
        EXPECT_TRUE(sdk().create_vlan(vid));
        EXPECT_TRUE(sdk().add_ports_to_vlan(vid, mps(tagged), mps(untagged)));
        for (const unsigned port : untagged)
            EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(port), vid));
    }
    bool add_host(unsigned port, unsigned ip = far, unsigned interface = 2)
    {
        return sdk().add_l3_host_ip4(mp(port), false, ip, far_mac.data(), interface);
    }
    bool add_route(unsigned port, unsigned net, unsigned mask)
    {
        return sdk().add_l3_route_ip4(mp(port), false, net, mask, far_mac.data(), 2, 0);
    }
    bool add_route(unsigned port, const Ip6& net, const Ip6& mask)
    {
        return sdk().add_l3_route_ip6(mp(port), false, net.data(), mask.data(), far_mac.data(), 2);
    }
    /// The packet as the router of VLAN 20 sends it: one hop less takes 1 from the TTL's byte, and
    /// adds 1 to the checksum's first.
    TestFrame routed() const
    {
        const auto ttl = static_cast<std::uint8_t>(packet.bytes()[22] - 1);
        const auto sum = static_cast<std::uint8_t>(packet.bytes()[24] + 1);
        return packet.to(far_mac).from(router20).with(22, ttl).with(24, sum);
    }
    /// An IPv6 packet without contents to an address.
    static TestFrame packet6(const Ip6& to)
    {
        vexosim::Frame header(40);
        header[0] = 0x60;
        header[6] = 59;
        header[7] = 64;
        header[8] = 0x20;
        std::copy(to.begin(), to.end(), header.begin() + 24);
        return ethernet(router10, host1.mac, 0x86dd, header);
    }
    static std::string fdb() { return vexosim::fdb_table().text(); }
    static std::string hosts() { return vexosim::l3_hosts_table().text(); }
};

TEST_F(Routed, AHostIsReachedWithoutOrWithATag)
{
    ASSERT_TRUE(add_host(5));
    expect_copies(packet, 3, {{5, routed()}});
    ASSERT_TRUE(sdk().delete_l3_host_by_addr_ip4(far, mp(5), false));
    ASSERT_TRUE(add_host(6));
    expect_copies(packet, 3, {{6, routed().tagged(20)}});
}

TEST_F(Routed, TheDefaultRouteIsForWhatNoOtherRouteTakes)
{
    ASSERT_TRUE(add_route(5, 0, 0));
    EXPECT_EQ(ports_reached(packet, 3), "5");
    ASSERT_TRUE(add_route(6, ip4(10, 0, 20, 0), 0xffffff00));
    EXPECT_EQ(ports_reached(packet, 3), "6");
    ASSERT_TRUE(sdk().delete_l3_route_by_subnet_ip4(ip4(10, 0, 20, 0), 0xffffff00, mp(6), false));
    EXPECT_EQ(ports_reached(packet, 3), "5");
    ASSERT_TRUE(sdk().delete_l3_route_all());
    EXPECT_EQ(ports_reached(packet, 3), "none");
}

TEST_F(Routed, Ipv6HostsAreReachedByRoutesOf128Bits)
{
    Ip6 ones;
    ones.fill(0xff);
    EXPECT_FALSE(sdk().add_l3_host_ip6(mp(5), false, host6.data(), far_mac.data(), 2));
    ASSERT_TRUE(add_route(6, no_bits, no_bits));
    ASSERT_TRUE(add_route(5, host6, ones));
    EXPECT_EQ(ports_reached(packet6(host6), 3), "5");
    EXPECT_EQ(ports_reached(packet6(net6), 3), "6");
}

TEST_F(Routed, AnEntryThatIsSwitchedOffRoutesNothing)
{
    ASSERT_TRUE(add_host(5));
    ASSERT_TRUE(sdk().invalidate_l3_entry(far));
    expect_to_cpu(packet, 3);
    ASSERT_TRUE(sdk().validate_l3_entry(far));
    EXPECT_EQ(ports_reached(packet, 3), "5");
}

TEST_F(Routed, AHostIsHitOnceAFrameHasFoundIt)
{
    ASSERT_TRUE(add_host(5));
    EXPECT_NE(hosts().find("5  no   yes"), std::string::npos) << hosts();
    expect_copies(packet, 3, {{5, routed()}});
    EXPECT_NE(hosts().find("5  yes  yes"), std::string::npos) << hosts();
    bcmx_l3_host_t record = {};
    record.l3a_ip_addr = far;
    ASSERT_EQ(bcmx_l3_host_find(&record), 0);
    EXPECT_EQ(record.l3a_flags, BCM_L3_HIT);
}

TEST_F(Routed, WhatIsForTheRouterItselfReachesTheCpu)
{
    const Host router_host = {router10, ip4(10, 0, 0, 254)};
    expect_to_cpu(arp(host1, router_host).to(router10), 3);
    EXPECT_EQ(ports_reached(arp(host1, router_host).to(router10), 3), "none");
    EXPECT_NE(fdb().find("  10  02:00:00:00:0a:01  cpu   static"), std::string::npos) << fdb();
}

TEST_F(Routed, ARouterThatGoesTakesItsMacEntryAlong)
{
    ASSERT_TRUE(sdk().delete_l3_interface(router10.data(), 10));
    EXPECT_EQ(fdb().find("02:00:00:00:0a:01"), std::string::npos) << fdb();
    ASSERT_TRUE(sdk().create_l3_interface_with_id(router10.data(), 20, 2, true));
    EXPECT_EQ(fdb().find("02:00:00:00:14:01"), std::string::npos) << fdb();
    EXPECT_NE(fdb().find("  20  02:00:00:00:0a:01  cpu   static"), std::string::npos) << fdb();
    ASSERT_TRUE(sdk().delete_l3_interface_all());
    EXPECT_EQ(fdb().find("02:00:00:00:0a:01"), std::string::npos) << fdb();
}

TEST_F(Routed, TheManagersOwnMacEntryStays)
{
    const MacBytes other = {2, 0, 0, 0, 10, 7};
    ASSERT_TRUE(sdk().add_mac_to_port(mp(4), other.data(), 10, false));
    ASSERT_TRUE(sdk().create_l3_interface_with_id(other.data(), 10, 7, false));
    ASSERT_TRUE(sdk().delete_l3_interface_by_id(7));
    EXPECT_NE(fdb().find("  10  02:00:00:00:0a:07  4     static"), std::string::npos) << fdb();
}

TEST_F(Routed, HostsOfAnInterfaceThatIsGoneAreNotRouted)
{
    ASSERT_TRUE(add_host(5));
    ASSERT_TRUE(sdk().delete_l3_interface_by_id(2));
    expect_dropped(packet, 3, "l3_interface_gone");
    ASSERT_TRUE(sdk().create_l3_interface_with_id(router20.data(), 20, 2, false));
    expect_copies(packet, 3, {{5, routed()}});
}

TEST_F(Routed, ALagSendsThroughOneOfItsPorts)
{
    unsigned lag = 77;
    std::list<Mp> members = mps({10, 11});
    make_vlan(30, {}, {10, 11});
    ASSERT_TRUE(sdk().create_lag(lag));
    ASSERT_TRUE(add_lag_to_list(lag, lag_list));
    ASSERT_TRUE(add_lag_member(lag, lag_list, members));
    ASSERT_TRUE(sdk().add_ports_to_lag(lag, members));
    ASSERT_TRUE(sdk().create_l3_interface_with_id(router20.data(), 30, 3, false));
    ASSERT_TRUE(sdk().add_l3_host_ip4(Mp(0, lag), true, far, far_mac.data(), 3));
    std::set<std::string> used;
    for (std::uint8_t n = 1; n < 32; ++n)
        used.insert(ports_reached(udp(host(n), {router10, far}), 3));
    EXPECT_EQ(used, (std::set<std::string>{"10", "11"}));
}

TEST_F(Routed, ATraceChangesNothing)
{
    ASSERT_TRUE(add_host(5));
    const std::uint64_t before = chip_digest();
    const std::string text = vexosim::what_if(3, packet);
    EXPECT_NE(text.find("host 10.0.20.9\n"), std::string::npos) << text;
    EXPECT_NE(text.find("result             untagged to 5\n"), std::string::npos) << text;
    EXPECT_EQ(chip_digest(), before);
}

} // namespace
