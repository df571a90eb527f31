// What keeps a frame from entering. Every case is a frame that passes, and one setting that stops
// it.
#include <functional>

#include "path.h"

namespace vexosim {
namespace {

struct Case {
    const char* description;
    const char* drop;
    TestFrame frame;
    const char* otherwise; ///< where the frame goes without the setting
    std::function<void(Chip&)> setting;
};

class Ingress : public ::testing::TestWithParam<Case> {};

TEST_P(Ingress, DropsForOneSettingAndPassesWithoutIt)
{
    Path path;
    path.only({1, 2});
    path.vlan(10, {1, 2});
    EXPECT_EQ(path.send(1, GetParam().frame), GetParam().otherwise);
    path.chip.macs.erase(mac_key(kHostA, 1));
    path.chip.macs.erase(mac_key(kHostA, 10));
    GetParam().setting(path.chip);
    EXPECT_EQ(path.send(1, GetParam().frame), std::string("drop:") + GetParam().drop);
}

const TestFrame kPlain(kHostB, kHostA);

INSTANTIATE_TEST_SUITE_P(
    All, Ingress,
    ::testing::Values(
        Case{"administratively down", "port_disabled", kPlain, "2",
             [](Chip& c) { c.ports.set_enable(1, 0); }},
        Case{"no link", "port_link_down", kPlain, "2", [](Chip& c) { c.ports.set_link(1, false); }},
        Case{"frame_max counts the FCS", "too_long", TestFrame(kHostB, kHostA, 61), "2",
             [](Chip& c) { c.ports.set_frame_max(1, 64); }},
        Case{"frame_max does not count one tag", "too_long", TestFrame(kHostB, kHostA, 61).tag(10),
             "2:v10", [](Chip& c) { c.ports.set_frame_max(1, 64); }},
        Case{"frame_max counts a second tag", "too_long",
             TestFrame(kHostB, kHostA, 60).tag(5).tag(10), "2:v10",
             [](Chip& c) { c.ports.set_frame_max(1, 64); }},
        Case{"discards all", "discard_all", kPlain, "2",
             [](Chip& c) { c.ports.set_discard(1, 1); }},
        Case{"discards all, tagged too", "discard_all", kPlain.tag(10), "2:v10",
             [](Chip& c) { c.ports.set_discard(1, 1); }},
        Case{"discards untagged", "discard_untagged", kPlain, "2",
             [](Chip& c) { c.ports.set_discard(1, 2); }},
        Case{"a priority tag makes no tagged frame", "discard_untagged", kPlain.tag(0, 5), "2",
             [](Chip& c) { c.ports.set_discard(1, 2); }},
        Case{"discards tagged", "discard_tagged", kPlain.tag(10), "2:v10",
             [](Chip& c) { c.ports.set_discard(1, 3); }},
        Case{"VLAN of the tag is gone", "vlan_unknown", kPlain.tag(10), "2:v10",
             [](Chip& c) { c.vlans.destroy(10); }},
        Case{"the port's own VLAN is not there", "vlan_unknown", kPlain, "2",
             [](Chip& c) { c.ports.set_untagged_vlan(1, 77); }},
        Case{"not in the VLAN", "not_member", kPlain, "2",
             [](Chip& c) { c.vlans.remove_ports(1, {1}); }},
        Case{"not in the VLAN of the tag", "not_member", kPlain.tag(10), "2:v10",
             [](Chip& c) { c.vlans.remove_ports(10, {1}); }},
        Case{"spanning tree: disabled", "stp_disabled", kPlain, "2",
             [](Chip& c) { c.stgs.set(1, 1, 0); }},
        Case{"spanning tree: blocking", "stp_blocking", kPlain, "2",
             [](Chip& c) { c.stgs.set(1, 1, 1); }},
        Case{"spanning tree: listening", "stp_blocking", kPlain, "2",
             [](Chip& c) { c.stgs.set(1, 1, 2); }},
        Case{"spanning tree: learning", "stp_learning", kPlain, "2",
             [](Chip& c) { c.stgs.set(1, 1, 3); }},
        Case{"unknown sources are not forwarded", "source_unknown", kPlain, "2",
             [](Chip& c) { c.ports.set_learn(1, 1); }}),
    [](const auto& test) {
        std::string name;
        for (char c : std::string(test.param.description))
            name += std::isalnum(static_cast<unsigned char>(c)) != 0 ? c : '_';
        return name;
    });

TEST(Parse, FramesShorterThanTheirHeadersAreTruncated)
{
    Path path;
    path.only({1, 2});
    for (std::size_t bytes = 0; bytes < 14; ++bytes) {
        Frame cut(kPlain.bytes().begin(), kPlain.bytes().begin() + static_cast<long>(bytes));
        EXPECT_EQ(path.send(1, cut), "drop:truncated") << bytes;
    }
    EXPECT_EQ(path.send(1, FrameView(kPlain).first(14)), "2");
    path.vlan(10, {1, 2});
    TestFrame tagged = kPlain.tag(10);
    for (std::size_t bytes = 14; bytes < 18; ++bytes)
        EXPECT_EQ(path.send(1, FrameView(tagged).first(bytes)), "drop:truncated") << bytes;
    EXPECT_EQ(path.send(1, FrameView(tagged).first(18)), "2:v10");
}

TEST(Parse, TheOuterOfTwoTagsNamesTheVlanAndTheInnerOneIsData)
{
    Path path;
    path.vlan(10, {1, 3}, {2});
    EXPECT_EQ(path.send(1, kPlain.tag(20).tag(10)), "2:v20 3:v10");
    EXPECT_EQ(path.outputs.frames(3)[0].size(), 68u);
    EXPECT_EQ(path.outputs.frames(2)[0].size(), 64u);
}

TEST(FrameSize, AFrameAtTheMaximumEntersWithAndWithoutATag)
{
    Path path;
    path.only({1, 2});
    path.vlan(10, {1, 2});
    path.chip.ports.set_frame_max(1, 64);
    EXPECT_EQ(path.send(1, TestFrame(kHostB, kHostA, 60)), "2");
    EXPECT_EQ(path.send(1, TestFrame(kHostB, kHostA, 60).tag(10)), "2:v10");
    EXPECT_EQ(path.send(1, TestFrame(kHostB, kHostA, 60).tag(0)), "2");
}

TEST(Parse, VlanTagsOfOtherTypesAreData)
{
    Path path;
    path.only({1, 2});
    TestFrame service = kPlain.tag(10);
    service.type(0x88a8);
    EXPECT_EQ(path.send(1, service), "2");
}

TEST(Vlan, TheReservedVlanIsNotUsed)
{
    Path path;
    EXPECT_EQ(path.send(1, kPlain.tag(4095)), "drop:vlan_reserved");
    path.vlan(4094, {1, 2});
    EXPECT_EQ(path.send(1, kPlain.tag(4094)), "2:v4094");
}

TEST(Vlan, APriorityTagKeepsThePriorityAndTakesThePortsVlan)
{
    Path path;
    path.vlan(10, {3}, {1, 2});
    path.chip.ports.set_untagged_vlan(1, 10);
    EXPECT_EQ(path.send(1, kPlain.tag(0, 5)), "2 3:v10");
    EXPECT_EQ(path.outputs.frames(3)[0][14] >> 5, 5);
    EXPECT_EQ(path.outputs.frames(2)[0].size(), 60u);
}

TEST(Vlan, AnAddedTagHasThePortsPriority)
{
    Path path;
    path.vlan(10, {3}, {1});
    path.chip.ports.set_untagged_vlan(1, 10);
    path.chip.ports.set_untagged_priority(1, 6);
    EXPECT_EQ(path.send(1, kPlain), "3:v10");
    EXPECT_EQ(path.outputs.frames(3)[0][14] >> 5, 6);
}

TEST(Vlan, WithoutTheIngressFilterANonMemberMaySend)
{
    Path path;
    path.vlan(10, {2, 3});
    EXPECT_EQ(path.send(1, kPlain.tag(10)), "drop:not_member");
    path.chip.ports.set_vlan_member(1, 2);
    EXPECT_EQ(path.send(1, kPlain.tag(10)), "2:v10 3:v10");
}

TEST(SpanningTree, GroupsOtherThanTheVlansDoNotMatter)
{
    Path path;
    path.only({1, 2});
    path.chip.stgs.set(2, 1, 1);
    EXPECT_EQ(path.send(1, kPlain), "2");
    path.chip.stgs.set_all(1, 1);
    EXPECT_EQ(path.send(1, kPlain), "drop:stp_blocking");
}

TEST(Source, GroupAddressesAreNoSources)
{
    Path path;
    path.only({1, 2});
    EXPECT_EQ(path.send(1, TestFrame(kHostB, kGroup)), "drop:source_multicast");
    EXPECT_EQ(path.chip.macs.size(), 0u);
}

TEST(Control, PauseFramesEndInTheMac)
{
    Path path;
    path.only({1, 2});
    Frame pause = TestFrame(0x0180c2000001, kHostA).type(0x8808).bytes();
    pause[15] = 1;
    EXPECT_EQ(path.send(1, pause), "drop:pause");
    EXPECT_EQ(path.chip.counters[1].stat(58), 1u);
    path.chip.ports.set_bpdu_enable(1, 0);
    EXPECT_EQ(path.send(1, pause), "drop:pause");
}

TEST(Control, ReservedGroupAddressesGoToTheCpuOnlyWhileThePortTrapsThem)
{
    Path path;
    path.only({1, 2});
    for (MacAddress n : {0x0U, 0x2U, 0x3U, 0xeU, 0xfU}) {
        EXPECT_EQ(path.send(1, TestFrame(kBridgeGroup + n, kHostA)), "cpu") << n;
        EXPECT_EQ(path.take().reason, bcmRxReasonBpdu) << n;
    }
    EXPECT_EQ(path.chip.macs.size(), 0u) << "nothing is learned from them";
    EXPECT_EQ(path.send(1, TestFrame(kBridgeGroup + 0x10, kHostA)), "2");
    path.chip.ports.set_bpdu_enable(1, 0);
    EXPECT_EQ(path.send(1, TestFrame(kBridgeGroup + 0xe, kHostA)), "2");
}

TEST(Control, ATaggedBpduReachesTheCpuWhereTaggedDataDoesNot)
{
    Path path;
    path.vlan(10, {1, 2});
    path.chip.ports.set_discard(1, 3);
    EXPECT_EQ(path.send(1, TestFrame(kHostB, kHostA).tag(10)), "drop:discard_tagged");
    EXPECT_EQ(path.send(1, TestFrame(kBridgeGroup, kHostA).tag(10)), "cpu");
}

TEST(Control, BpdusReachTheCpuWhereDataDoesNot)
{
    const TestFrame bpdu(kBridgeGroup, kHostA);
    const std::vector<std::pair<const char*, std::function<void(Chip&)>>> settings = {
        {"blocking", [](Chip& c) { c.stgs.set(1, 1, 1); }},
        {"listening", [](Chip& c) { c.stgs.set(1, 1, 2); }},
        {"learning", [](Chip& c) { c.stgs.set(1, 1, 3); }},
        {"no member", [](Chip& c) { c.vlans.remove_ports(1, {1}); }},
        {"no VLAN", [](Chip& c) { c.ports.set_untagged_vlan(1, 99); }},
        {"tagged only", [](Chip& c) { c.ports.set_discard(1, 2); }},
        {"locked", [](Chip& c) { c.ports.set_learn(1, 2); }},
    };
    for (const auto& [description, setting] : settings) {
        Path path;
        setting(path.chip);
        EXPECT_EQ(path.send(1, bpdu), "cpu") << description;
        EXPECT_EQ(path.chip.macs.size(), 0u) << description;
    }
    Path path;
    path.chip.stgs.set(1, 1, 0);
    EXPECT_EQ(path.send(1, bpdu), "drop:stp_disabled");
    path.chip.stgs.set(1, 1, 4);
    path.chip.ports.set_discard(1, 1);
    EXPECT_EQ(path.send(1, bpdu), "drop:discard_all");
}

} // namespace
} // namespace vexosim
