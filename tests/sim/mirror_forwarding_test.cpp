// What mirroring does to frames. Ports 1, 2 and 3 are in VLAN 1; port 9, in no VLAN and blocked by
// spanning tree, gets the copies.
#include <bcm/l2.h>
#include <bcmx/mirror.h>

#include "path.h"

namespace vexosim {
namespace {

constexpr std::uint32_t kIngress = 0x3, kEgress = 0x5, kTrueEgress = 0xd, kBoth = 0xf;
constexpr int kProbe = 9;
const TestFrame kAToB(kHostB, kHostA), kBToA(kHostA, kHostB), kToAll(kBroadcastMac, kHostA);

struct MirrorForwarding : ::testing::Test, Path {
    MirrorForwarding()
    {
        only({1, 2, 3});
        chip.stgs.set(1, kProbe, 1);
        chip.mirrors.set_format(1);
        vlan(10, {1, 3}, {2});
    }
    void mirror(int port, std::uint32_t flags, int to = kProbe)
    {
        ASSERT_EQ(chip.mirrors.set(port, to, flags), 0);
    }
    /// The copies of the last frame at the destination.
    std::vector<Frame> copies() const
    {
        std::vector<Frame> all;
        for (FrameView frame : outputs.frames(kProbe))
            all.emplace_back(frame.begin(), frame.end());
        return all;
    }
    std::uint64_t lost(DropReason reason) const
    {
        return chip.drops.mirrors[static_cast<std::size_t>(reason)];
    }
};
using Frames = std::vector<Frame>;

TEST_F(MirrorForwarding, IngressCopiesWhatThePortReceives)
{
    mirror(1, kIngress);
    EXPECT_EQ(send(1, kAToB), "2 3 9");
    EXPECT_EQ(send(2, kBToA), "1");
    mirror(1, 0);
    EXPECT_EQ(send(1, kAToB), "2");
}

TEST_F(MirrorForwarding, EgressCopiesWhatThePortSends)
{
    for (std::uint32_t flags : {kEgress, kTrueEgress}) {
        mirror(1, flags);
        EXPECT_EQ(send(1, kToAll), "2 3");
        EXPECT_EQ(send(2, kBToA), "1 9");
        EXPECT_EQ(send(2, TestFrame(kBroadcastMac, kHostB)), "1 3 9") << "of a flood too";
    }
}

TEST_F(MirrorForwarding, BothCopiesBoth)
{
    mirror(1, kBoth);
    EXPECT_EQ(send(1, kAToB), "2 3 9");
    EXPECT_EQ(send(2, kBToA), "1 9");
    EXPECT_EQ(send(3, TestFrame(kHostB, kHostC)), "2");
}

TEST_F(MirrorForwarding, IngressCopiesHaveTheFormInWhichTheyCame)
{
    const TestFrame tagged = kAToB.tag(10, 5); // copies lie where the sender put the frame
    mirror(1, kIngress);
    EXPECT_EQ(send(1, tagged), "2 3:v10 9:v10");
    EXPECT_EQ(copies(), Frames{tagged.bytes()});
    chip.ports.set_untagged_vlan(1, 10);
    EXPECT_EQ(send(1, kAToB), "2 3:v10 9");
    EXPECT_EQ(copies(), Frames{kAToB.bytes()});
    EXPECT_EQ(send(1, kAToB.tag(0, 5)), "2 3:v10 9:v0");
}

TEST_F(MirrorForwarding, TrueEgressCopiesHaveTheFormInWhichTheyLeft)
{
    const TestFrame tagged = kAToB.tag(10, 5);
    mirror(2, kTrueEgress);
    mirror(3, kTrueEgress);
    EXPECT_EQ(send(1, tagged), "2 3:v10 9 9:v10");
    EXPECT_EQ(copies(), (Frames{kAToB.bytes(), tagged.bytes()}));
    chip.ports.set_untagged_vlan(1, 10);
    EXPECT_EQ(send(1, kAToB), "2 3:v10 9 9:v10") << "with a tag that it did not come with";
}

TEST_F(MirrorForwarding, OtherEgressCopiesHaveTheFormInWhichTheyCame)
{
    mirror(2, kEgress);
    EXPECT_EQ(send(1, kAToB.tag(10)), "2 3:v10 9:v10");
    chip.ports.set_untagged_vlan(1, 10);
    mirror(2, 0);
    mirror(3, kEgress);
    EXPECT_EQ(send(1, kAToB), "2 3:v10 9");
}

TEST_F(MirrorForwarding, WhereTheChipMayChooseItTagsCopies)
{
    chip.mirrors.set_format(0);
    mirror(1, kIngress);
    EXPECT_EQ(send(1, kAToB), "2 3 9:v1");
    mirror(1, 0);
    mirror(2, kEgress);
    EXPECT_EQ(send(1, kAToB), "2 3 9:v1");
    mirror(2, kTrueEgress);
    EXPECT_EQ(send(1, kAToB), "2 3 9");
}

TEST_F(MirrorForwarding, ItsTagIsTheVlansUnlessTheFrameHasNone)
{
    chip.mirrors.set_format(0);
    mirror(1, kIngress);
    EXPECT_EQ(send(1, kAToB.tag(0, 5)), "2 3 9:v1") << "in VLAN 1";
    chip.ports.set_discard(1, 1);
    EXPECT_EQ(send(1, kAToB), "9 drop:discard_all") << "not yet in a VLAN";
}

TEST_F(MirrorForwarding, EachPortThatSendsIsCopied)
{
    mirror(2, kTrueEgress);
    mirror(3, kTrueEgress);
    mirror(1, kIngress, 8);
    EXPECT_EQ(send(1, kToAll), "2 3 8 9 9");
}

TEST_F(MirrorForwarding, WhatIsDroppedBehindTheMacIsStillCopied)
{
    mirror(1, kIngress);
    struct Case {
        const char* reason;
        std::function<void(Chip&)> setting;
    };
    const std::vector<Case> cases = {
        {"discard_all", [](Chip& c) { c.ports.set_discard(1, 1); }},
        {"stp_blocking", [](Chip& c) { c.stgs.set(1, 1, 1); }},
        {"not_member", [](Chip& c) { c.vlans.remove_ports(1, {1}); }},
        {"vlan_unknown", [](Chip& c) { c.ports.set_untagged_vlan(1, 99); }},
        {"source_unknown", [](Chip& c) { c.ports.set_learn(1, 0); }},
        {"egress_down", [](Chip& c) { c.ports.set_enable(2, 0), c.ports.set_enable(3, 0); }},
    };
    for (const Case& each : cases) {
        const Chip before = chip;
        each.setting(chip);
        EXPECT_EQ(send(1, kAToB), std::string("9 drop:") + each.reason);
        chip = before;
    }
}

TEST_F(MirrorForwarding, WhatTheMacTakesOutIsNotCopied)
{
    mirror(1, kIngress);
    EXPECT_EQ(send(1, TestFrame(0x0180c2000001, kHostA)), "drop:pause");
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA, 1600)), "drop:too_long");
    EXPECT_EQ(send(1, FrameView(kAToB).first(13)), "drop:truncated");
    chip.ports.set_link(1, false);
    EXPECT_EQ(send(1, kAToB), "drop:port_link_down");
    EXPECT_EQ(chip.drops.mirrors_meant, 0u);
}

TEST_F(MirrorForwarding, WhatAPortDoesNotSendIsNotCopied)
{
    mirror(2, kBoth);
    chip.ports.set_link(2, false);
    EXPECT_EQ(send(1, kAToB), "3");
    chip.ports.set_link(2, true);
    chip.ports.set_frame_max(2, 64);
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA, 61)), "3");
    EXPECT_EQ(send(1, kAToB), "2 3 9");
}

TEST_F(MirrorForwarding, BpdusAreCopiedOnTheirWayToTheCpu)
{
    mirror(1, kIngress);
    EXPECT_EQ(send(1, TestFrame(kBridgeGroup, kHostA)), "9 cpu");
}

TEST_F(MirrorForwarding, CopiesTeachNothingAndAreNotMirroredAgain)
{
    mirror(1, kIngress);
    mirror(kProbe, kTrueEgress, 8);
    EXPECT_EQ(send(1, kAToB), "2 3 9");
    EXPECT_EQ(chip.macs.size(), 1u);
    EXPECT_EQ(chip.macs.find(mac_key(kHostA, 1))->port, 1);
}

TEST_F(MirrorForwarding, TheDestinationStillGetsWhatIsForItself)
{
    mirror(1, kIngress, 3);
    send(3, TestFrame(kHostA, kHostC));
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "3 3") << "its own, and the copy";
    EXPECT_EQ(chip.drops.copies_sent, 3u);
    EXPECT_EQ(chip.drops.mirrors_sent, 1u);
}

TEST_F(MirrorForwarding, ADestinationThatIsDownLosesTheCopyAndNotTheFrame)
{
    mirror(1, kIngress);
    chip.ports.set_link(kProbe, false);
    EXPECT_EQ(send(1, kAToB), "2 3");
    EXPECT_EQ(lost(DropReason::egress_down), 1u);
    EXPECT_EQ(chip.drops.mirrors_sent, 0u);
    chip.ports.set_link(kProbe, true);
    chip.ports.set_enable(kProbe, 0);
    EXPECT_EQ(send(1, kAToB), "2 3");
    EXPECT_EQ(lost(DropReason::egress_down), 2u);
}

TEST_F(MirrorForwarding, ACopyThatIsTooLongForTheDestinationIsLost)
{
    mirror(1, kIngress);
    chip.ports.set_frame_max(kProbe, 64);
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA, 61)), "2 3");
    EXPECT_EQ(lost(DropReason::egress_too_long), 1u);
    EXPECT_EQ(chip.counters[kProbe].out_too_long, 1u);
    EXPECT_EQ(send(1, kAToB.tag(10)), "2 3:v10 9:v10") << "one tag does not count";
}

TEST_F(MirrorForwarding, OneTagOfACopyDoesNotCountAndTheSecondDoes)
{
    const TestFrame frame = kAToB.tag(100).tag(10);
    mirror(1, kIngress);
    chip.ports.set_frame_max(kProbe, 64);
    EXPECT_EQ(send(1, frame), "2:v100 3:v10") << "as received it has two";
    chip.ports.set_frame_max(kProbe, 68);
    EXPECT_EQ(send(1, frame), "2:v100 3:v10 9:v10");
    mirror(1, 0);
    mirror(2, kTrueEgress);
    chip.ports.set_frame_max(kProbe, 64);
    EXPECT_EQ(send(1, frame), "2:v100 3:v10 9:v100") << "as it left it has one";
}

TEST_F(MirrorForwarding, TheDestinationCountsWhatItSends)
{
    mirror(1, kBoth);
    send(1, kAToB);
    send(2, kToAll);
    EXPECT_EQ(chip.counters[kProbe].out.frames(), 2u);
    EXPECT_EQ(chip.counters[kProbe].out.octets, 128u);
    EXPECT_EQ(chip.counters[kProbe].out.cast[2], 1u);
    EXPECT_EQ(chip.drops.mirrors_sent, 2u);
    EXPECT_EQ(chip.drops.frames_in, 2u);
}

TEST_F(MirrorForwarding, WhatTheCpuSendsIsCopiedByThePortThatSendsIt)
{
    mirror(2, kTrueEgress);
    EXPECT_EQ(send_from_cpu(kAToB.tag(1)), "1 2 3 9");
    outputs.clear();
    send_to_ports(chip, cpu, kAToB.tag(10), {2, 3}, {2}, outputs);
    EXPECT_EQ(copies(), Frames{kAToB.bytes()});
    mirror(2, 0);
    mirror(kCpuPort, kIngress);
    EXPECT_EQ(send_from_cpu(kAToB.tag(1)), "1 2 3 9:v1");
    EXPECT_EQ(chip.check_conservation(), "");
}

TEST_F(MirrorForwarding, ACopyForTheCpuIsWhatTheCpuPortSends)
{
    mirror(kCpuPort, kTrueEgress);
    EXPECT_EQ(send(1, TestFrame(kBridgeGroup, kHostA)), "9:v1 cpu");
    EXPECT_EQ(send(1, kAToB), "2 3");
}

TEST_F(MirrorForwarding, TheCpuMayBeTheDestination)
{
    mirror(1, kIngress, kCpuPort);
    EXPECT_EQ(send(1, kAToB), "2 3 cpu");
    EXPECT_EQ(take().reason, 0);
    EXPECT_EQ(send(2, kBToA), "1");
    EXPECT_EQ(send(1, TestFrame(kBridgeGroup, kHostA)), "cpu");
    EXPECT_EQ(take().reason, bcmRxReasonBpdu) << "one copy, for both";
}

TEST_F(MirrorForwarding, TheCpuPortDoesNotSendCopiesThatMirrorsMake)
{
    mirror(1, kIngress, kCpuPort);
    mirror(kCpuPort, kTrueEgress);
    EXPECT_EQ(send(1, kAToB), "2 3 cpu");
    EXPECT_EQ(send(1, TestFrame(kBridgeGroup, kHostA)), "9:v1 cpu") << "but the BPDU";
}

TEST_F(MirrorForwarding, WhatDoesNotReachTheCpuIsNotCopiedByItsPort)
{
    for (std::size_t i = 0; i < CpuReceive::kQueueDepth; ++i)
        send(1, TestFrame(kBridgeGroup, kHostA));
    mirror(kCpuPort, kTrueEgress);
    EXPECT_EQ(send(1, TestFrame(kBridgeGroup, kHostA)), "drop:cpu_queue_full");
}

TEST_F(MirrorForwarding, OneMirrorMayGoToTheCpuAndAnotherToAPort)
{
    mirror(1, kIngress, kCpuPort);
    mirror(2, kTrueEgress);
    EXPECT_EQ(send(1, kAToB), "2 3 9 cpu");
}

TEST_F(MirrorForwarding, OnlyWhatIsTooLongIsDiscardedByTheDestination)
{
    mirror(1, kIngress);
    chip.ports.set_link(kProbe, false);
    send(1, kAToB);
    EXPECT_EQ(chip.counters[kProbe].out_discards, 0u);
    chip.ports.set_link(kProbe, true);
    chip.ports.set_frame_max(kProbe, 64);
    send(1, TestFrame(kHostB, kHostA, 61));
    EXPECT_EQ(chip.counters[kProbe].out_discards, 1u);
}

TEST_F(MirrorForwarding, ACopyIsCountedAsTheFrameThatItIs)
{
    mirror(1, kIngress);
    send(1, TestFrame(0x333300000001, kHostA).type(0x86dd));
    EXPECT_EQ(chip.counters[kProbe].out_ip6_multicast, 1u);
    chip.ports.set_queue_count(8);
    chip.ports.set_cos(1, 5, 6);
    send(1, kAToB.tag(1, 5));
    EXPECT_EQ(chip.counters[kProbe].out_queue[6], 1u);
}

TEST_F(MirrorForwarding, ATraceTellsOfEachCopy)
{
    mirror(1, kIngress);
    mirror(2, kTrueEgress, 8);
    chip.ports.set_link(8, false);
    std::string text = trace_frame(chip, cpu, 1, kAToB, names).text;
    EXPECT_NE(
        text.find("mirror             received by 1: as received to 9\n"
                  "                   sent by 2: untagged to 8, lost: the destination is disabled\n"
                  "                   or has no link\n"
                  "result             untagged to 2,3; mirrored to 9\n"),
        std::string::npos)
        << text;
}

} // namespace
} // namespace vexosim
