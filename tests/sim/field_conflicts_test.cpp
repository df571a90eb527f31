// Which entry acts when several match: the best of each group, and of these the first group's.
#include "tests/sim/field_path.h"

namespace vexosim {

namespace {

using FieldConflicts = FieldPath;

const FieldMatch kToHostB = is(bcmFieldQualifyDstMac, kHostB),
                 kFromHostA = is(bcmFieldQualifySrcMac, kHostA);

TEST_F(FieldConflicts, OfAGroupOnlyTheEntryOfHighestPriorityActs)
{
    const int g = group({bcmFieldQualifyDstMac, bcmFieldQualifySrcMac});
    const int low = entry(g, {kToHostB}, {kDropIt}, 1);
    const int high = entry(g, {kFromHostA}, {redirect({3})}, 2);
    EXPECT_EQ(send(1, frame), "3");
    EXPECT_EQ(counted(low), 0u);
    EXPECT_EQ(counted(high), 1u);
    EXPECT_EQ(chip.field.set_priority(low, 3), 0);
    EXPECT_EQ(send(1, frame), "drop:field_drop") << "at once, without another install";
}

TEST_F(FieldConflicts, OfEqualPriorityTheOlderEntryActs)
{
    const int g = group({bcmFieldQualifyDstMac, bcmFieldQualifySrcMac});
    const int older = entry(g, {kToHostB}, {redirect({2})});
    entry(g, {kToHostB}, {kDropIt});
    entry(g, {kFromHostA}, {kDropIt});
    EXPECT_EQ(send(1, frame), "2");
    EXPECT_EQ(chip.field.install(older), 0);
    EXPECT_EQ(send(1, frame), "2") << "installing it again does not make it younger";
    EXPECT_EQ(chip.field.destroy_entry(older), 0);
    EXPECT_EQ(send(1, frame), "drop:field_drop");
}

TEST_F(FieldConflicts, EveryGroupActsAndCounts)
{
    const int first = entry(kToHostB, {redirect({3})});
    const int second = entry(kFromHostA, {});
    EXPECT_EQ(send(1, frame), "3");
    EXPECT_EQ(counted(first), 1u);
    EXPECT_EQ(counted(second), 1u);
}

TEST_F(FieldConflicts, TheGroupOfHigherPriorityDecidesWhereAFrameGoes)
{
    const int low = group({bcmFieldQualifyDstMac}, 1), high = group({bcmFieldQualifySrcMac}, 2);
    const int loser = entry(low, {kToHostB}, {kDropIt}, 9);
    const int winner = entry(high, {kFromHostA}, {redirect({4})});
    EXPECT_EQ(send(1, frame), "4");
    EXPECT_EQ(counted(loser), 1u) << "it matched all the same";
    EXPECT_EQ(chip.field.remove(winner), 0);
    EXPECT_EQ(send(1, frame), "drop:field_drop");
}

TEST_F(FieldConflicts, OfEqualGroupsTheOneOfLowerIdDecides)
{
    FieldSet set;
    set.fields.set(bcmFieldQualifySrcMac);
    EXPECT_EQ(chip.field.create_group_id(set, 0, 7), 0);
    EXPECT_EQ(chip.field.create_group_id(set, 0, -1), 0);
    entry(7, {kFromHostA}, {redirect({2})});
    EXPECT_EQ(send(1, frame), "2");
    entry(-1, {kFromHostA}, {redirect({3})});
    EXPECT_EQ(send(1, frame), "3");
}

TEST_F(FieldConflicts, ChangesOfDifferentGroupsAddUpAndTheFirstGroupsWins)
{
    chip.vlans.remove_ports(1, {2});
    chip.vlans.add_ports(1, {2}, {});
    entry(kToHostB, {act(bcmFieldActionOuterVlanPrioNew, 3)});
    entry(kFromHostA,
          {act(bcmFieldActionOuterVlanPrioNew, 5), act(bcmFieldActionTosNew, 0x20), redirect({2})});
    TestFrame wanted = frame.ip(0x0a000002, 0x0a000001).tag(1, 3);
    const Frame out = sent(frame.ip(0x0a000002, 0x0a000001));
    ASSERT_EQ(out.size(), wanted.bytes().size());
    EXPECT_EQ(out[14], 3 << 5);
    EXPECT_EQ(out[19], 0x20);
}

TEST_F(FieldConflicts, PortsMaskedOutByDifferentGroupsAddUp)
{
    entry(kToHostB, {act_on(bcmFieldActionEgressMask, {2})});
    entry(kFromHostA, {act_on(bcmFieldActionEgressMask, {3})});
    EXPECT_EQ(send(1, frame), "4");
}

TEST_F(FieldConflicts, OfTwoNewAddressesOrVlansTheFirstGroupsIsTaken)
{
    vlan(20, {2});
    vlan(30, {2});
    entry(kToHostB, {act(bcmFieldActionOuterVlanNew, 20), set_mac(bcmFieldActionSrcMacNew, kHostC),
                     set_mac(bcmFieldActionDstMacNew, kHostA)});
    entry(kFromHostA,
          {act(bcmFieldActionOuterVlanNew, 30), set_mac(bcmFieldActionSrcMacNew, kHostB),
           set_mac(bcmFieldActionDstMacNew, kHostB)});
    EXPECT_EQ(sent(frame), TestFrame(kHostA, kHostC).tag(20).bytes());
}

TEST_F(FieldConflicts, OneEntryThatDropsAndRedirectsDrops)
{
    const int id = entry(kToHostB, {redirect({3}), kDropIt, kTrapIt});
    EXPECT_EQ(send(1, frame), "drop:field_drop");
    EXPECT_EQ(chip.field.delete_action(id, bcmFieldActionDrop), 0);
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(send(1, frame), "cpu");
    EXPECT_EQ(chip.field.delete_action(id, bcmFieldActionTrapToCpu), 0);
    EXPECT_EQ(chip.field.add_action(id, act(bcmFieldActionLoopback)), 0);
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(send(1, frame), "1");
}

TEST_F(FieldConflicts, TheTraceSaysWhatWasSearchedWhatMatchedAndWhatWon)
{
    entry(kToHostB, {redirect({3})});
    entry(kFromHostA, {kDropIt});
    entry(is(bcmFieldQualifySrcMac, kHostC), {kDropIt});
    const std::string text = trace_frame(chip, cpu, 1, frame, names).text;
    const std::string searched = "group 1, 1 installed: entry 1 of priority 0\n";
    EXPECT_NE(text.find("field lookup       " + searched), std::string::npos) << text;
    EXPECT_NE(text.find("group 3, 1 installed: none matches\n"), std::string::npos) << text;
    EXPECT_NE(text.find("entry 1: redirect to 3\n"), std::string::npos) << text;
    EXPECT_NE(text.find("entry 2: drop, overruled\n"), std::string::npos) << text;
    EXPECT_NE(text.find("entry 2: count\n"), std::string::npos) << text;
}

} // namespace

} // namespace vexosim
