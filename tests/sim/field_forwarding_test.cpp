// Field entries decide where frames go.
#include <bcm/l2.h>
#include <bcm/rx.h>
#include <bcmx/rate.h>
#include <bcmx/trunk.h>

#include "tests/sim/field_path.h"

namespace vexosim {

namespace {

using FieldForwarding = FieldPath;

const FieldMatch kToHostB = is(bcmFieldQualifyDstMac, kHostB),
                 kFromHostA = is(bcmFieldQualifySrcMac, kHostA);

TEST_F(FieldForwarding, DropsWhatMatchesAndCountsIt)
{
    const int id = entry(kToHostB, {kDropIt});
    EXPECT_EQ(send(1, frame), "drop:field_drop");
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "2 3 4");
    EXPECT_EQ(send(1, frame), "drop:field_drop");
    EXPECT_EQ(counted(id), 2u);
    EXPECT_EQ(chip.counters[1].in_discards, 2u);
}

TEST_F(FieldForwarding, WhatIsNotInstalledDoesNotAct)
{
    const int id = entry(kToHostB, {});
    EXPECT_EQ(chip.field.add_action(id, kDropIt), 0);
    EXPECT_EQ(send(1, frame), "2 3 4");
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(send(1, frame), "drop:field_drop");
    EXPECT_EQ(chip.field.qualify(id, is(bcmFieldQualifyDstMac, kHostC)), 0);
    EXPECT_EQ(send(1, frame), "drop:field_drop");
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(send(1, frame), "2 3 4");
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "drop:field_drop");
    EXPECT_EQ(chip.field.remove(id), 0);
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "2 3 4");
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(chip.field.destroy_entry(id), 0);
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "2 3 4");
}

TEST_F(FieldForwarding, TheSourceOfADroppedFrameIsLearned)
{
    entry(kToHostB, {kDropIt});
    send(1, frame);
    EXPECT_EQ(send(2, TestFrame(kHostA, kHostC)), "1");
}

TEST_F(FieldForwarding, TrapsToTheCpuAlone)
{
    entry(kToHostB, {kTrapIt});
    EXPECT_EQ(send(1, frame), "cpu");
    const CpuFrame copy = take();
    EXPECT_EQ(copy.reason, bcmRxReasonFilterMatch);
    EXPECT_EQ(copy.port, 1);
    EXPECT_EQ(copy.data, frame.tag(1).bytes());
    EXPECT_EQ(send_from_cpu(frame), "1 2 3 4") << "the CPU has it already";
}

TEST_F(FieldForwarding, RedirectsInPlaceOfTheDestination)
{
    entry(kToHostB, {redirect({1, 3})});
    EXPECT_EQ(send(1, frame), "3") << "not back where it came from";
    send(2, TestFrame(kHostA, kHostB));
    EXPECT_EQ(send(1, frame), "3") << "wherever the host is";
    EXPECT_EQ(send(2, frame), "1 3");
    EXPECT_EQ(send(3, frame), "1");
    EXPECT_EQ(send(20, frame), "drop:not_member");
}

TEST_F(FieldForwarding, ARedirectedFrameMeetsTheEgressFilters)
{
    entry(kToHostB, {redirect({3, 20})});
    EXPECT_EQ(send(1, frame), "3");
    chip.ports.set_vlan_member(20, 0);
    EXPECT_EQ(send(1, frame), "3 20:v1");
    chip.ports.set_link(3, false);
    EXPECT_EQ(send(1, frame), "20:v1");
}

TEST_F(FieldForwarding, ARedirectedFrameMeetsStormControlButNoFloodBlock)
{
    entry(kToHostB, {redirect({3})});
    chip.flood_block.set(1, 3, 0xf);
    chip.flood_block.set(1, 2, 0xf);
    chip.flood_block.set(1, 4, 0xf);
    EXPECT_EQ(send(1, frame), "3");
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "drop:flood_blocked");
    ASSERT_EQ(chip.rates.set(1, StormClass::kDlf, 1, BCM_RATE_DLF), 0);
    EXPECT_EQ(send(1, frame), "3");
    EXPECT_EQ(send(1, frame), "drop:storm_unknown_unicast");
}

TEST_F(FieldForwarding, ARedirectOnlyBackLeavesNoPortAndIsCounted)
{
    const int id = entry(kToHostB, {redirect({1})});
    EXPECT_EQ(send(1, frame), "drop:field_no_port");
    EXPECT_EQ(counted(id), 1u);
}

TEST_F(FieldForwarding, BpdusThatAPortTrapsMeetNoEntry)
{
    const int id = entry(is(bcmFieldQualifyDstMac, kBridgeGroup), {kDropIt});
    chip.ports.set_bpdu_enable(1, 1);
    EXPECT_EQ(send(1, TestFrame(kBridgeGroup, kHostA)), "cpu");
    EXPECT_EQ(counted(id), 0u);
    chip.ports.set_bpdu_enable(1, 0);
    EXPECT_EQ(send(1, TestFrame(kBridgeGroup, kHostA)), "drop:field_drop");
}

TEST_F(FieldForwarding, RedirectsToTheCpu)
{
    entry(kToHostB, {redirect({kCpuPort, 4})});
    EXPECT_EQ(send(1, frame), "4 cpu");
    EXPECT_EQ(take().reason, bcmRxReasonFilterMatch);
}

TEST_F(FieldForwarding, MasksPortsOutOfWhateverTheFrameWouldReach)
{
    const int id = entry(kToHostB, {act_on(bcmFieldActionEgressMask, {2, 3})});
    EXPECT_EQ(send(1, frame), "4");
    EXPECT_EQ(chip.field.add_action(id, redirect({2, 4})), 0);
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(send(1, frame), "4");
    EXPECT_EQ(send(4, frame), "drop:field_no_port");
}

TEST_F(FieldForwarding, MasksTheCpuPortLikeAnyOther)
{
    chip.vlans.add_ports(1, {kCpuPort}, {});
    for (int port : {1, 2, 3, 4})
        chip.flood_block.set(port, kCpuPort, 0);
    EXPECT_EQ(send(1, frame), "2 3 4 cpu");
    const int id = entry(kToHostB, {act_on(bcmFieldActionEgressMask, {kCpuPort, 3})});
    EXPECT_EQ(send(1, frame), "2 4") << "of a flood";
    MacEntry at_cpu;
    at_cpu.key = mac_key(kHostB, 1);
    at_cpu.port = kCpuPort;
    at_cpu.flags = BCM_L2_STATIC;
    ASSERT_EQ(chip.macs.add(at_cpu, false, 0), 0);
    EXPECT_EQ(send(1, frame), "drop:field_no_port") << "where the MAC table sends it";
    EXPECT_EQ(chip.field.add_action(id, redirect({kCpuPort, 4})), 0);
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(send(1, frame), "4") << "of the entry's own list";
    EXPECT_EQ(chip.field.add_action(id, kTrapIt), 0);
    EXPECT_EQ(chip.field.install(id), 0);
    EXPECT_EQ(send(1, frame), "cpu") << "a trap is no port";
}

TEST_F(FieldForwarding, TrunkMembersInAListEachSendButNeverBackToTheTrunk)
{
    chip.trunks.create_id(7);
    ASSERT_EQ(chip.trunks.set(7, {true, BCM_TRUNK_PSC_SRCDSTMAC, {2, 3}, -1, -1, -1}), 0);
    entry(kToHostB, {redirect({1, 2, 3})});
    EXPECT_EQ(send(4, frame), "1 2 3");
    EXPECT_EQ(send(1, frame), "2 3");
    EXPECT_EQ(send(2, frame), "1");
    EXPECT_EQ(send(3, frame), "1");
    EXPECT_EQ(send(4, TestFrame(kBroadcastMac, kHostA)), "1 2") << "of a flood only one does";
}

TEST_F(FieldForwarding, LoopsBackToThePortItCameFrom)
{
    entry(kToHostB, {act(bcmFieldActionLoopback)});
    EXPECT_EQ(send(1, frame), "1");
    EXPECT_EQ(send(4, frame), "4");
}

TEST_F(FieldForwarding, BypassesSpanningTreeOnBothSides)
{
    chip.stgs.set(1, 1, static_cast<int>(StpState::kBlock));
    chip.stgs.set(1, 3, static_cast<int>(StpState::kBlock));
    const int dropping = entry(kFromHostA, {act(bcmFieldActionTosNew, 1)});
    EXPECT_EQ(send(1, frame), "drop:stp_blocking");
    EXPECT_EQ(counted(dropping), 0u) << "what spanning tree stops meets no entry";
    entry(kToHostB, {act(bcmFieldActionBypassStp)});
    EXPECT_EQ(send(1, frame), "2 3 4");
    EXPECT_EQ(counted(dropping), 1u);
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "drop:stp_blocking");
    chip.stgs.set(1, 1, static_cast<int>(StpState::kDisable));
    EXPECT_EQ(send(1, frame), "drop:stp_disabled");
}

TEST_F(FieldForwarding, BypassesAPortThatOnlyLearnsAndLetsItLearn)
{
    chip.stgs.set(1, 1, static_cast<int>(StpState::kLearn));
    entry(kToHostB, {act(bcmFieldActionBypassStp)});
    EXPECT_EQ(send(1, frame), "2 3 4");
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "drop:stp_learning");
    EXPECT_NE(chip.macs.find(mac_key(kHostA, 1)), nullptr);
}

TEST_F(FieldForwarding, AMulticastSourceIsStoppedForTheSameReasonWithEntriesAndWithout)
{
    const TestFrame from_group(kHostB, kGroup);
    for (const StpState state : {StpState::kBlock, StpState::kLearn, StpState::kForward}) {
        chip.stgs.set(1, 1, static_cast<int>(state));
        const std::string reason = send(1, from_group);
        const int id = entry(kToHostB, {act(bcmFieldActionBypassStp)});
        EXPECT_EQ(send(1, from_group), reason);
        EXPECT_EQ(counted(id), 0u);
        EXPECT_EQ(chip.field.destroy_entry(id), 0);
    }
}

TEST_F(FieldForwarding, BlockedPortsDoNotLearnWhatBypassesSpanningTree)
{
    chip.stgs.set(1, 1, static_cast<int>(StpState::kBlock));
    entry(kToHostB, {act(bcmFieldActionBypassStp)});
    EXPECT_EQ(send(1, frame), "2 3 4");
    EXPECT_EQ(chip.macs.find(mac_key(kHostA, 1)), nullptr);
}

} // namespace

} // namespace vexosim
