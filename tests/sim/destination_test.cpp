// Where frames go, and in which form they leave.
#include <bcm/l2.h>

#include "path.h"

namespace vexosim {
namespace {

const TestFrame kToB(kHostB, kHostA), kToGroup(kGroup, kHostA), kToAll(kBroadcastMac, kHostA);

struct Destination : ::testing::Test, Path {
    Destination() { only({1, 2, 3}); }
    void place(MacAddress mac, int port, std::uint16_t flags = BCM_L2_STATIC, PortSet block = {})
    {
        MacEntry e;
        e.key = mac_key(mac, 1);
        e.port = static_cast<std::uint8_t>(port);
        e.flags = flags;
        e.block = block;
        ASSERT_EQ(chip.macs.add(e, true, 0), 0);
    }
};

TEST_F(Destination, AFrameDoesNotGoBackWhereItCameFrom)
{
    place(kHostB, 1);
    EXPECT_EQ(send(1, kToB), "drop:same_port");
    EXPECT_EQ(send(2, TestFrame(kHostB, kHostC)), "1");
}

TEST_F(Destination, AloneInTheVlanThereIsNowhereToFlood)
{
    only({1});
    EXPECT_EQ(send(1, kToAll), "drop:no_destination");
    chip.vlans.add_ports(1, {2}, {2});
    EXPECT_EQ(send(1, kToAll), "2");
}

TEST_F(Destination, EachClassOfFloodHasItsBlock)
{
    struct {
        TestFrame frame;
        std::uint32_t flag;
    } cases[] = {{kToAll, 0x1}, {kToB, 0x2}, {kToGroup, 0x8}};
    for (const auto& c : cases) {
        for (std::uint32_t flag : {0x1u, 0x2u, 0x4u, 0x8u}) {
            chip.flood_block.set(1, 2, flag);
            EXPECT_EQ(send(1, c.frame), flag == c.flag ? "3" : "2 3") << c.flag << " " << flag;
        }
        chip.flood_block.set(1, 2, c.flag);
        chip.flood_block.set(1, 3, c.flag);
        EXPECT_EQ(send(1, c.frame), "drop:flood_blocked");
        EXPECT_EQ(send(2, c.frame), "1 3") << "the block is for one ingress port";
        chip.flood_block.set(1, 2, 0);
        chip.flood_block.set(1, 3, 0);
        chip.macs.erase(mac_key(kHostA, 1));
    }
}

TEST_F(Destination, KnownMulticastGoesToItsEntryUnlessBlocked)
{
    place(kGroup, 3, BCM_L2_STATIC | BCM_L2_MCAST);
    EXPECT_EQ(send(1, kToGroup), "3");
    chip.flood_block.set(1, 3, 0xb);
    EXPECT_EQ(send(1, kToGroup), "3");
    chip.flood_block.set(1, 3, 0x4);
    EXPECT_EQ(send(1, kToGroup), "drop:flood_blocked");
}

TEST_F(Destination, KnownUnicastIsNeverFloodBlocked)
{
    place(kHostB, 3);
    chip.flood_block.set(1, 3, 0xf);
    EXPECT_EQ(send(1, kToB), "3");
}

TEST_F(Destination, AnEntryThatBlocksItsOwnPortDrops)
{
    place(kHostB, 3, BCM_L2_STATIC, {3});
    EXPECT_EQ(send(1, kToB), "drop:entry_blocked");
    chip.macs.erase(mac_key(kHostB, 1));
    place(kHostB, 3, BCM_L2_STATIC, {2});
    EXPECT_EQ(send(1, kToB), "3");
}

TEST_F(Destination, ADestinationOutsideTheVlanIsFilteredOnEgress)
{
    place(kHostB, 5);
    EXPECT_EQ(send(1, kToB), "drop:egress_not_member");
    chip.ports.set_vlan_member(5, 1);
    EXPECT_EQ(send(1, kToB), "5:v1");
}

TEST_F(Destination, SpanningTreeLetsOnlyForwardingPortsSend)
{
    place(kHostB, 2);
    for (int state = 0; state < 4; ++state) {
        chip.stgs.set(1, 2, state);
        EXPECT_EQ(send(1, kToB), "drop:egress_stp") << state;
        EXPECT_EQ(send(1, kToAll), "3") << state;
    }
    chip.stgs.set(1, 2, 4);
    EXPECT_EQ(send(1, kToB), "2");
}

TEST_F(Destination, PortsThatAreDownSendNothing)
{
    place(kHostB, 2);
    chip.ports.set_link(2, false);
    EXPECT_EQ(send(1, kToB), "drop:egress_down");
    EXPECT_EQ(send(1, kToAll), "3");
    chip.ports.set_link(2, true);
    chip.ports.set_enable(2, 0);
    EXPECT_EQ(send(1, kToB), "drop:egress_down");
    chip.ports.set_enable(2, 1);
    EXPECT_EQ(send(1, kToB), "2");
}

TEST_F(Destination, MembersSendWithAndWithoutTheTag)
{
    vlan(10, {1, 2}, {3, 4});
    TestFrame tagged = kToAll.tag(10, 3);
    EXPECT_EQ(send(1, tagged), "2:v10 3 4");
    EXPECT_EQ(outputs.frames(2)[0].data()[14], 3 << 5);
    chip.ports.set_untagged_vlan(3, 10);
    EXPECT_EQ(send(3, kToAll), "1:v10 2:v10 4");
}

TEST_F(Destination, AnUnchangedFrameIsNotCopied)
{
    EXPECT_EQ(send(1, kToAll), "2 3");
    EXPECT_EQ(outputs.frames(2)[0].data(), FrameView(kToAll).data());
    vlan(10, {1, 2}, {3, 4});
    TestFrame tagged = kToAll.tag(10);
    EXPECT_EQ(send(1, tagged), "2:v10 3 4");
    EXPECT_EQ(outputs.frames(2)[0].data(), FrameView(tagged).data());
    EXPECT_EQ(outputs.frames(3)[0].data(), outputs.frames(4)[0].data()) << "one untagged form";
}

TEST_F(Destination, TheDropEligibleBitOfATagIsKept)
{
    vlan(10, {1, 2});
    Frame frame = kToAll.tag(10).bytes();
    frame[14] |= 0x10;
    EXPECT_EQ(send(1, frame), "2:v10");
    EXPECT_EQ(outputs.frames(2)[0][14], 0x10);
}

TEST_F(Destination, APortDropsCopiesLongerThanItsMaximum)
{
    chip.ports.set_frame_max(2, 64);
    EXPECT_EQ(send(1, TestFrame(kBroadcastMac, kHostA, 60)), "2 3");
    EXPECT_EQ(send(1, TestFrame(kBroadcastMac, kHostA, 61)), "3");
    EXPECT_EQ(chip.drops.copies[static_cast<std::size_t>(DropReason::egress_too_long)], 1u);
    EXPECT_EQ(chip.counters[2].stat(17), 1u);
    EXPECT_EQ(chip.counters[2].stat(9), 1u);
    place(kHostB, 2);
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA, 61)), "drop:egress_too_long");
    vlan(10, {1, 2});
    EXPECT_EQ(send(1, TestFrame(kBroadcastMac, kHostA, 60).tag(10)), "2:v10") << "one tag is free";
    EXPECT_EQ(send(1, TestFrame(kBroadcastMac, kHostA, 60).tag(5).tag(10)), "drop:egress_too_long");
}

TEST_F(Destination, AnInnerTagThatIsLeftAloneIsNotCountedEither)
{
    chip.ports.set_frame_max(2, 64);
    vlan(10, {1}, {2});
    EXPECT_EQ(send(1, TestFrame(kBroadcastMac, kHostA, 60).tag(5).tag(10)), "2:v5");
    EXPECT_EQ(send(1, TestFrame(kBroadcastMac, kHostA, 61).tag(5).tag(10)), "drop:egress_too_long");
}

TEST_F(Destination, CountersCountTheFcsAndThePadding)
{
    send(1, TestFrame(kBroadcastMac, kHostA, 42));
    send(1, TestFrame(kGroup, kHostA, 60));
    send(1, TestFrame(kHostB, kHostA, 61));
    send(1, TestFrame(kHostB, kHostA, 1514));
    const PortCounters &in = chip.counters[1], &out = chip.counters[2];
    EXPECT_EQ(in.stat(0), 64u + 64 + 65 + 1518);
    EXPECT_EQ(out.stat(6), in.stat(0));
    EXPECT_EQ(in.stat(1), 2u) << "unicast";
    EXPECT_EQ(in.stat(62), 1u) << "multicast";
    EXPECT_EQ(in.stat(63), 1u) << "broadcast";
    EXPECT_EQ(in.stat(26), 2u) << "64 octets";
    EXPECT_EQ(in.stat(27), 1u) << "65 to 127";
    EXPECT_EQ(in.stat(31), 1u) << "1024 to 1518";
    EXPECT_EQ(out.stat(65), 2u);
    EXPECT_EQ(in.stat(43), 4u);
    EXPECT_EQ(in.stat(42), 0u);
}

TEST_F(Destination, WhatIsWrongWithAFrameIsCountedAtItsPort)
{
    send(1, FrameView(kToB).first(10));
    send(1, TestFrame(kHostB, kHostA, 1515));
    send(1, TestFrame(kHostB, kGroup));
    EXPECT_EQ(chip.counters[1].stat(24), 1u) << "undersize";
    EXPECT_EQ(chip.counters[1].stat(32), 1u) << "oversize";
    EXPECT_EQ(chip.counters[1].stat(4), 2u) << "errors";
    EXPECT_EQ(chip.counters[1].stat(3), 1u) << "discards";
    chip.ports.set_link(1, false);
    Chip before = chip;
    send(1, kToB);
    EXPECT_EQ(chip.counters, before.counters) << "a port without link receives nothing";
}

} // namespace
} // namespace vexosim
