// What field entries change in frames: IPv6, sizes, and the copies that mirrors make.
#include <bcmx/mirror.h>

#include "tests/sim/field_path.h"

namespace vexosim {

namespace {

const FieldMatch kToHostB = is(bcmFieldQualifyDstMac, kHostB);

struct FieldRewriting : FieldPath {
    FieldRewriting()
    {
        vlan(20, {2, 3}, {4});
        chip.vlans.add_ports(20, {1}, {1});
        chip.mirrors.set_format(1);
    }

    /// The frames that left at a port.
    std::vector<Frame> left_at(int port) const
    {
        std::vector<Frame> all;
        for (FrameView one : outputs.frames(port))
            all.emplace_back(one.begin(), one.end());
        return all;
    }
};
using Frames = std::vector<Frame>;

TestFrame changed(const TestFrame& frame, std::initializer_list<std::pair<std::size_t, int>> bytes)
{
    Frame copy = frame.bytes();
    for (const auto& [at, value] : bytes)
        copy[at] = static_cast<std::uint8_t>(value);
    return TestFrame(copy);
}

/// Traffic class 0xac, flow label 0xdabcd.
TestFrame ip6()
{
    TestFrame frame(kHostB, kHostA);
    return changed(frame.type(0x86dd).ip(2, 1), {{14, 0x6a}, {15, 0xcd}, {16, 0xab}, {17, 0xcd}});
}

TEST_F(FieldRewriting, TheTrafficClassOfIp6IsMatchedWholly)
{
    entry(is(bcmFieldQualifyTos, 0xac), {kDropIt});
    EXPECT_TRUE(matches(ip6()));
    EXPECT_TRUE(matches(changed(ip6(), {{15, 0xc0}}))) << "the flow label is no part of it";
    EXPECT_FALSE(matches(changed(ip6(), {{15, 0xbd}})));
    EXPECT_FALSE(matches(changed(ip6(), {{14, 0x62}})));
    EXPECT_TRUE(matches(ip6().tag(1)));
}

TEST_F(FieldRewriting, TheTrafficClassOfIp6IsSetAndNothingElse)
{
    const int id = entry(kToHostB, {act(bcmFieldActionTosNew, 0x5a)});
    EXPECT_EQ(sent(ip6()), changed(ip6(), {{14, 0x65}, {15, 0xad}}).bytes());
    const TestFrame behind_tags = changed(ip6(), {{14, 0x65}, {15, 0xad}}).tag(9);
    EXPECT_EQ(sent(ip6().tag(9).tag(1)), behind_tags.bytes());
    EXPECT_EQ(chip.field.add_action(id, act(bcmFieldActionInnerVlanDelete)), 0);
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(sent(ip6().tag(9).tag(1)), changed(ip6(), {{14, 0x65}, {15, 0xad}}).bytes());
}

TEST_F(FieldRewriting, AnIp6HeaderCutShortKeepsItsTrafficClass)
{
    entry(kToHostB, {act(bcmFieldActionTosNew, 0x5a)});
    const Frame bytes = ip6().bytes();
    const TestFrame cut(Frame(bytes.begin(), bytes.begin() + 53));
    EXPECT_EQ(sent(cut), cut.bytes());
}

/// One of them needs the carry of a carry.
TEST_F(FieldRewriting, EveryChecksumIsCorrectedForANewTos)
{
    entry(kToHostB, {act(bcmFieldActionTosNew, 0x5a)});
    for (int sum = 0; sum <= 0xff; ++sum) {
        const TestFrame packet = changed(frame.ip(2, 1), {{24, 0}, {25, sum}});
        const Frame out = sent(packet);
        ASSERT_EQ(out[24] << 8 | out[25], sum < 0x5a ? 0xffff + sum - 0x5a : sum - 0x5a) << sum;
    }
}

TEST_F(FieldRewriting, AWrongChecksumStaysWrongByTheSame)
{
    entry(kToHostB, {act(bcmFieldActionTosNew, 0x5a)});
    const TestFrame packet = changed(frame.ip(2, 1), {{24, 0xab}, {25, 0xcd}});
    const Frame out = sent(packet);
    ASSERT_EQ(out.size(), packet.bytes().size());
    EXPECT_EQ(out[15], 0x5a);
    EXPECT_EQ(out[24] << 8 | out[25], 0xabcd - 0x5a);
}

TEST_F(FieldRewriting, ANewPriorityLeavesTheQueueAndTheDropEligibleBitAlone)
{
    entry(kToHostB, {act(bcmFieldActionOuterVlanPrioNew, 6)});
    chip.ports.set_cos(1, 3, 2);
    chip.ports.set_cos(1, 6, 5);
    chip.vlans.remove_ports(1, {2});
    chip.vlans.add_ports(1, {2}, {});
    EXPECT_EQ(sent(frame.tag(0x1001, 3)), frame.tag(0x1001, 6).bytes());
    EXPECT_EQ(chip.counters[2].out_queue[2], 1u);
    EXPECT_EQ(chip.counters[2].out_queue[5], 0u);
}

TEST_F(FieldRewriting, AFrameMayLeaveAsLongAsItIsWithoutItsInnerTag)
{
    chip.ports.set_frame_max(1, 1600);
    vlan(10, {1, 2}, {3});
    const TestFrame fits = TestFrame(kHostB, kHostA, 1514).tag(9).tag(10),
                    too_long = TestFrame(kHostB, kHostA, 1515).tag(9).tag(10);
    EXPECT_EQ(send(1, fits), "3:v9") << "one tag is not counted, two are";
    const int id = entry(kToHostB, {act(bcmFieldActionInnerVlanDelete)});
    ASSERT_EQ(send(1, fits), "2:v10 3");
    EXPECT_EQ(outputs.frames(2)[0].size(), 1518u);
    EXPECT_EQ(send(1, too_long), "drop:egress_too_long");
    chip.ports.set_frame_max(2, 1519);
    EXPECT_EQ(send(1, too_long), "2:v10");
    EXPECT_EQ(chip.field.remove(id), 0);
    EXPECT_EQ(send(1, too_long), "drop:egress_too_long");
}

TEST_F(FieldRewriting, TrueEgressMirrorsCopyWhatWasSent)
{
    entry(kToHostB, {act(bcmFieldActionOuterVlanNew, 20), act(bcmFieldActionOuterVlanPrioNew, 5),
                     set_mac(bcmFieldActionSrcMacNew, kHostC), act(bcmFieldActionInnerVlanDelete)});
    ASSERT_EQ(chip.mirrors.set(3, 9, 0xd), 0);
    ASSERT_EQ(chip.mirrors.set(4, 8, 0xd), 0);
    EXPECT_EQ(send(1, frame.tag(7).tag(1)), "2:v20 3:v20 4 8 9:v20");
    const TestFrame untagged(kHostB, kHostC);
    EXPECT_EQ(left_at(9), Frames{untagged.tag(20, 5).bytes()});
    EXPECT_EQ(left_at(8), Frames{untagged.bytes()});
    EXPECT_EQ(left_at(3), left_at(9));
    EXPECT_EQ(left_at(4), left_at(8));
}

TEST_F(FieldRewriting, OtherMirrorsCopyWhatWasReceived)
{
    entry(kToHostB,
          {act(bcmFieldActionOuterVlanNew, 20), set_mac(bcmFieldActionSrcMacNew, kHostC)});
    ASSERT_EQ(chip.mirrors.set(1, 9, 0x3), 0);
    ASSERT_EQ(chip.mirrors.set(3, 8, 0x5), 0);
    EXPECT_EQ(send(1, frame), "2:v20 3:v20 4 8 9");
    EXPECT_EQ(left_at(9), Frames{frame.bytes()});
    EXPECT_EQ(left_at(8), Frames{frame.bytes()});
    chip.mirrors.set_format(0);
    EXPECT_EQ(send(1, frame), "2:v20 3:v20 4 8:v1 9:v1");
    EXPECT_EQ(left_at(9), Frames{frame.tag(1).bytes()});
    EXPECT_EQ(left_at(8), Frames{frame.tag(1).bytes()});
}

TEST_F(FieldRewriting, AMirrorLosesWhatIsTooLongAsItWasSent)
{
    for (int port : {1, 2, 3, 4})
        chip.ports.set_frame_max(port, 1600);
    ASSERT_EQ(chip.mirrors.set(3, 9, 0xd), 0);
    const TestFrame long_one = TestFrame(kHostB, kHostA, 1514).tag(9).tag(20);
    EXPECT_EQ(send(1, long_one), "2:v20 3:v20 4:v9");
    EXPECT_EQ(chip.drops.mirrors[static_cast<std::size_t>(DropReason::egress_too_long)], 1u);
    entry(kToHostB, {act(bcmFieldActionInnerVlanDelete)});
    EXPECT_EQ(send(1, long_one), "2:v20 3:v20 4 9:v20");
}

TEST_F(FieldRewriting, TheCpuPortsMirrorCopiesWhatTheCpuGets)
{
    chip.mirrors.set_format(1);
    ASSERT_EQ(chip.mirrors.set(kCpuPort, 9, 0xd), 0);
    entry(kToHostB, {set_mac(bcmFieldActionSrcMacNew, kHostC), act(bcmFieldActionTrapToCpu)});
    EXPECT_EQ(send(1, frame), "9:v1 cpu");
    EXPECT_EQ(left_at(9), Frames{frame.tag(1).bytes()});
}

TEST_F(FieldRewriting, AMirrorOfIngressLosesWhatIsTooLongAsItWasReceived)
{
    for (int port : {1, 2, 3, 4})
        chip.ports.set_frame_max(port, 1600);
    ASSERT_EQ(chip.mirrors.set(1, 9, 0x3), 0);
    entry(kToHostB, {act(bcmFieldActionInnerVlanDelete)});
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA, 1514).tag(9).tag(20)), "2:v20 3:v20 4");
    EXPECT_EQ(send(1, TestFrame(kHostB, kHostA, 1510).tag(9).tag(20)), "2:v20 3:v20 4 9:v20");
}

} // namespace

} // namespace vexosim
