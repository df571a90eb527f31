// What routing makes of frames, and where they leave.
#include <set>

#include <bcm/l2.h>
#include <bcmx/mirror.h>
#include <bcmx/rate.h>
#include <bcmx/trunk.h>

#include "tests/sim/routing_path.h"

namespace vexosim {
namespace {

struct Routing : RoutingPath {};

TEST_F(Routing, AnIpv4PacketLeavesAsTheRoutersWithOneHopLess)
{
    host(kFar4, hop(2, 3));
    Frame expected = to_router4(kFar4, 64);
    store_mac(kNextHop, expected.data());
    store_mac(kRouter20, expected.data() + 6);
    expected[22] = 63;
    EXPECT_EQ(sent(to_router4(kFar4, 64), 3), checked(expected));
    EXPECT_EQ(send(1, to_router4(kFar4, 64)), "3") << "and nowhere else";
}

TEST_F(Routing, AnIpv6PacketLeavesAsTheRoutersWithOneHopLess)
{
    host(ip6(0x20, 1), hop(2, 3));
    Frame expected = to_router6(ip6(0x20, 1), 255);
    store_mac(kNextHop, expected.data());
    store_mac(kRouter20, expected.data() + 6);
    expected[21] = 254;
    EXPECT_EQ(sent(to_router6(ip6(0x20, 1), 255), 3), expected);
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 1), 255)), "3");
}

/// By the packet's identification every checksum occurs, and every carry.
TEST_F(Routing, TheChecksumIsRightAgainWhateverItWas)
{
    host(kFar4, hop(2, 3));
    for (unsigned id = 0; id <= 0xffff; ++id) {
        Frame frame = to_router4(kFar4, 2 + static_cast<int>(id % 254));
        frame[18] = static_cast<std::uint8_t>(id >> 8);
        frame[19] = static_cast<std::uint8_t>(id);
        frame = checked(frame);
        outputs.clear();
        const FrameView view = frame;
        forward_batch(chip, cpu, 1, {&view, 1}, outputs);
        ASSERT_EQ(outputs.frames(3).size(), 1u);
        ASSERT_EQ(header_sum(outputs.frames(3)[0]), 0xffffu) << id;
        ASSERT_NE(load16(outputs.frames(3)[0], 24), 0xffffu) << id << ": the other zero";
    }
}

TEST_F(Routing, TheLongestPrefixWinsInWhateverOrderTheyCame)
{
    route(ip4(10, 0, 20, 1), 32, hop(2, 3));
    route(0, 0, hop(3, 5));
    route(ip4(10, 0, 0, 0), 8, hop(1, 2));
    route(ip4(10, 0, 20, 0), 31, hop(2, 4));
    EXPECT_EQ(send(1, to_router4(ip4(10, 0, 20, 1))), "3");
    EXPECT_EQ(send(1, to_router4(ip4(10, 0, 20, 0))), "4:v20");
    EXPECT_EQ(send(1, to_router4(ip4(10, 0, 20, 2))), "2");
    EXPECT_EQ(send(1, to_router4(ip4(11, 0, 20, 1))), "5");
}

TEST_F(Routing, WhenARouteGoesTheNextShorterOneTakesItsPlace)
{
    route(0, 0, hop(3, 5));
    route(ip4(10, 0, 20, 0), 24, hop(2, 3));
    const IpPrefix net{IpAddress::from_ip4(ip4(10, 0, 20, 0)), 24};
    EXPECT_EQ(send(1, to_router4(kFar4)), "3");
    EXPECT_EQ(chip.l3_routes.erase(net), 0);
    EXPECT_EQ(send(1, to_router4(kFar4)), "5");
}

TEST_F(Routing, Ipv6GoesByTheLongestPrefixToo)
{
    route(ip6(0, 0), 0, hop(3, 5));
    route(ip6(0x20, 0), 48, hop(2, 3));
    route(ip6(0x20, 7), 128, hop(2, 4));
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 7))), "4:v20");
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 8))), "3");
    EXPECT_EQ(send(1, to_router6(ip6(0x21, 7))), "5");
    route(0, 0, hop(1, 2));
    EXPECT_EQ(send(1, to_router6(ip6(0x21, 7))), "5") << "IPv4's default is another one";
}

TEST_F(Routing, AHostComesBeforeAnyRoute)
{
    host(kFar4, hop(2, 3));
    route(kFar4, 32, hop(2, 4));
    EXPECT_EQ(send(1, to_router4(kFar4)), "3");
    host(ip6(0x20, 1), hop(2, 3));
    route(ip6(0x20, 1), 128, hop(2, 4));
    EXPECT_EQ(send(1, to_router6(ip6(0x20, 1))), "3");
}

TEST_F(Routing, AHostThatIsNotValidLeavesItToTheRoutes)
{
    host(kFar4, hop(2, 3));
    route(0, 0, hop(3, 5));
    chip.l3_hosts.set_usable(IpAddress::from_ip4(kFar4), false);
    EXPECT_EQ(send(1, to_router4(kFar4)), "5");
    chip.l3_hosts.set_usable(IpAddress::from_ip4(kFar4), true);
    EXPECT_EQ(send(1, to_router4(kFar4)), "3");
}

TEST_F(Routing, OnlyWhatIsForARouterOfItsVlanIsRouted)
{
    route(0, 0, hop(3, 5));
    Frame frame = to_router4(kFar4);
    EXPECT_EQ(send(1, frame), "5");
    store_mac(kHostB, frame.data());
    EXPECT_EQ(send(1, frame), "2") << "for a station";
    store_mac(kRouter20, frame.data());
    EXPECT_EQ(send(1, frame), "2") << "for the router of another VLAN";
    EXPECT_EQ(send(3, frame), "5");
}

TEST_F(Routing, MulticastIsNotRouted)
{
    route(0, 0, hop(3, 5));
    Frame frame = to_router4(ip4(224, 1, 2, 3));
    store_mac(0x01005e010203, frame.data());
    EXPECT_EQ(send(1, frame), "2");
    store_mac(kBroadcastMac, frame.data());
    EXPECT_EQ(send(1, frame), "2");
}

TEST_F(Routing, WhatIsNotIpIsNotRouted)
{
    route(0, 0, hop(3, 5));
    EXPECT_EQ(send(1, TestFrame(kRouter10, kHostA).type(0x0806)), "2");
    EXPECT_EQ(send(1, TestFrame(to_router4(kFar4)).tag(100).tag(10)), "2:v100")
        << "two tags hide the packet";
}

TEST_F(Routing, WhatIsForAnAddressOfTheLinkIsNotRouted)
{
    route(0, 0, hop(3, 5));
    EXPECT_EQ(send(1, to_router4(ip4(169, 254, 0, 1))), "2");
    IpAddress link = ip6(0, 1);
    link.bytes[0] = 0xfe;
    link.bytes[1] = 0xbf;
    EXPECT_EQ(send(1, to_router6(link)), "2");
    link.bytes[1] = 0xc0;
    route(ip6(0, 0), 0, hop(3, 5));
    EXPECT_EQ(send(1, to_router6(link)), "5") << "fec0::/10 is not of the link";
}

TEST_F(Routing, TheSourceIsLearnedWhereItIs)
{
    host(kFar4, hop(2, 3));
    send(2, to_router4(kFar4));
    ASSERT_NE(chip.macs.find(mac_key(kHostA, 10)), nullptr);
    EXPECT_EQ(chip.macs.find(mac_key(kHostA, 10))->port, 2);
    EXPECT_EQ(chip.macs.size(), 1u);
}

TEST_F(Routing, TheTagIsThatOfTheNewVlanWithTheOldPriority)
{
    host(kFar4, hop(2, 4));
    EXPECT_EQ(load16(sent(to_router4(kFar4), 4), 14), 20u);
    const Frame high = TestFrame(to_router4(kFar4)).tag(0x1000 | 10, 6).bytes();
    const Frame out = sent(high, 4);
    EXPECT_EQ(load16(out, 12), 0x8100u);
    EXPECT_EQ(load16(out, 14), 0xd014u) << "priority 6, may be discarded, VLAN 20";
    EXPECT_EQ(header_sum(out, 18), 0xffffu);
    host(kFar4, hop(2, 3));
    EXPECT_EQ(sent(high, 3).size(), 60u);
    EXPECT_EQ(header_sum(sent(high, 3)), 0xffffu);
}

TEST_F(Routing, AFrameMayLeaveThroughThePortThatItCameFrom)
{
    chip.vlans.add_ports(20, {1}, {});
    host(kFar4, hop(2, 1));
    EXPECT_EQ(send(1, to_router4(kFar4)), "1:v20");
    host(kFar4, hop(1, 1));
    EXPECT_EQ(send(1, to_router4(kFar4)), "1") << "also in the same VLAN";
    host(kFar4, hop(1, 2));
    EXPECT_EQ(send(1, to_router4(kFar4)), "2");
}

TEST_F(Routing, StormControlAndFloodBlocksAreForFloods)
{
    ASSERT_EQ(chip.rates.set(1, StormClass::kDlf, 1, BCM_RATE_DLF), 0);
    chip.flood_block.set(1, 3, 0xf);
    host(kFar4, hop(2, 3));
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(send(1, to_router4(kFar4)), "3");
}

TEST_F(Routing, OneMemberOfATrunkSends)
{
    route(ip4(10, 0, 0, 0), 8, to_trunk());
    std::set<std::string> used;
    for (unsigned n = 0; n < 64; ++n) {
        Frame frame = to_router4(kFar4);
        store_mac(kHostA + n, frame.data() + 6);
        used.insert(send(1, frame));
    }
    EXPECT_EQ(used, (std::set<std::string>{"6", "7"}));
    EXPECT_EQ(send(1, to_router4(kFar4)), send(1, to_router4(kFar4)));
}

TEST_F(Routing, ATrunksCriterionIsWhatItIsForOtherFrames)
{
    route(ip4(10, 0, 0, 0), 8, to_trunk());
    chip.trunks.set_criterion(kTrunk, BCM_TRUNK_PSC_DSTIP);
    std::set<std::string> by_source, by_destination;
    for (unsigned n = 0; n < 64; ++n) {
        by_source.insert(send(1, to_router4(kFar4, 64, kNear4 + n)));
        by_destination.insert(send(1, to_router4(kFar4 + n)));
    }
    EXPECT_EQ(by_source.size(), 1u);
    EXPECT_EQ(by_destination.size(), 2u);
}

TEST_F(Routing, AFrameMayLeaveThroughTheTrunkThatItCameFrom)
{
    Frame frame = to_router4(kFar4);
    store_mac(kRouter30, frame.data());
    route(0, 0, to_trunk());
    const std::string member = send(6, frame);
    EXPECT_TRUE(member == "6" || member == "7") << member;
}

TEST_F(Routing, ATrunkWithoutMembersSendsNothing)
{
    chip.trunks.create_id(4);
    route(0, 0, to_trunk(4));
    EXPECT_EQ(send(1, to_router4(kFar4)), "drop:trunk_empty");
    chip.trunks.destroy(4);
    EXPECT_EQ(send(1, to_router4(kFar4)), "drop:trunk_empty");
}

TEST_F(Routing, ThePortsEgressRulesHoldInTheNewVlan)
{
    host(kFar4, hop(2, 3));
    chip.vlans.remove_ports(20, {3});
    EXPECT_EQ(send(1, to_router4(kFar4)), "drop:egress_not_member");
    chip.vlans.add_ports(20, {3}, {3});
    chip.stgs.set(1, 3, 1);
    EXPECT_EQ(send(1, to_router4(kFar4)), "drop:egress_stp");
    chip.stgs.set(1, 3, 4);
    chip.ports.set_link(3, false);
    EXPECT_EQ(send(1, to_router4(kFar4)), "drop:egress_down");
    chip.ports.set_link(3, true);
    chip.ports.set_frame_max(3, 256);
    EXPECT_EQ(send(1, to_router4(kFar4, 64, kNear4, 300)), "drop:egress_too_long");
    EXPECT_EQ(send(1, to_router4(kFar4)), "3");
}

TEST_F(Routing, TheEgressQueueIsByThePriority)
{
    host(kFar4, hop(2, 3));
    chip.ports.set_queue_count(8);
    chip.ports.set_cos(1, 5, 6);
    chip.ports.set_untagged_priority(1, 5);
    send(1, to_router4(kFar4));
    EXPECT_EQ(chip.counters[3].out_queue[6], 1u);
}

TEST_F(Routing, MirrorsOfEgressCopyWhatIsSent)
{
    host(kFar4, hop(2, 3));
    chip.mirrors.set_format(1);
    chip.mirrors.set(3, 9, 0xd);
    EXPECT_EQ(send(1, to_router4(kFar4)), "3 9");
    const Frame copy(outputs.frames(9)[0].begin(), outputs.frames(9)[0].end());
    EXPECT_EQ(copy, sent(to_router4(kFar4), 3));
    chip.mirrors.set(3, 9, 0x5);
    EXPECT_EQ(sent(to_router4(kFar4), 9), to_router4(kFar4)) << "as received";
}

TEST_F(Routing, MirrorsOfIngressCopyWhatIsReceived)
{
    host(kFar4, hop(2, 3));
    chip.mirrors.set_format(1);
    for (std::uint32_t flags : {0x3u, 0xfu}) {
        chip.mirrors.set(1, 9, flags);
        EXPECT_EQ(sent(to_router4(kFar4), 9), to_router4(kFar4)) << flags;
    }
}

TEST_F(Routing, AnInterfaceThatIsReplacedRoutesAsTheNewOne)
{
    host(kFar4, hop(2, 3));
    interface(2, kRouter30 + 1, 30);
    chip.vlans.add_ports(30, {3}, {});
    const Frame out = sent(to_router4(kFar4), 3);
    EXPECT_EQ(load_mac(out.data() + 6), kRouter30 + 1);
    EXPECT_EQ(load16(out, 14), 30u);
    interface(1, kRouter10 + 1, 10);
    EXPECT_EQ(send(1, to_router4(kFar4)), "2") << "the old address is no router's";
}

} // namespace
} // namespace vexosim
