// Every spanning-tree state, on data, learning and BPDUs, in and out. VLAN 10 is in group 1, VLAN
// 20 in group 2; ports 1 to 3 are in both.
#include <bcm/error.h>

#include <functional>

#include "path.h"

namespace vexosim {
namespace {

struct State {
    StpState state;
    std::string data; ///< where data goes that enters at port 1
    bool learns;
    bool sends; ///< data that enters elsewhere
    std::string bpdu;
};

const std::vector<State> kStates = {
    {StpState::kDisable, "drop:stp_disabled", false, false, "drop:stp_disabled"},
    {StpState::kBlock, "drop:stp_blocking", false, false, "cpu"},
    {StpState::kListen, "drop:stp_blocking", false, false, "cpu"},
    {StpState::kLearn, "drop:stp_learning", true, false, "cpu"},
    {StpState::kForward, "2:v10 3:v10", true, true, "cpu"},
};

struct Groups : Path {
    Groups()
    {
        vlan(10, {1, 2, 3});
        vlan(20, {1, 2, 3});
        chip.vlans.set_group(20, 2);
        for (int port : PortSet::front())
            chip.stgs.set_all(port, 4);
    }
    void set(int group, StpState state)
    {
        EXPECT_EQ(chip.stgs.set(group, 1, static_cast<int>(state)), 0);
    }
    bool knows(int vid) const { return chip.macs.find(mac_key(kHostA, vid)) != nullptr; }
};

const TestFrame kData(kHostB, kHostA), kBpdu(kBridgeGroup, kHostA), kBack(kHostA, kHostC);

TEST(StpForwarding, EachStateActsOnDataAndLearning)
{
    for (const State& row : kStates) {
        Groups card;
        card.set(1, row.state);
        const char* name = stp_state_name(row.state);
        EXPECT_EQ(card.send(1, kData.tag(10)), row.data) << name;
        EXPECT_EQ(card.knows(10), row.learns) << name;
    }
}

TEST(StpForwarding, EachStateActsOnWhatThePortWouldSend)
{
    for (const State& row : kStates) {
        Groups card;
        card.set(1, row.state);
        const char* name = stp_state_name(row.state);
        EXPECT_EQ(card.send(2, kData.tag(10)), row.sends ? "1:v10 3:v10" : "3:v10") << name;
        card.set(1, StpState::kForward);
        card.send(1, kData.tag(10));
        card.set(1, row.state);
        EXPECT_EQ(card.send(2, kBack.tag(10)), row.sends ? "1:v10" : "drop:egress_stp") << name;
    }
}

TEST(StpForwarding, BpdusReachTheCpuUnlessThePortIsDisabled)
{
    for (const State& row : kStates) {
        Groups card;
        card.set(1, row.state);
        EXPECT_EQ(card.send(1, kBpdu.tag(10)), row.bpdu) << stp_state_name(row.state);
        EXPECT_FALSE(card.knows(10));
    }
}

TEST(StpForwarding, WhatTheCpuSendsThroughAPortLeavesInEveryState)
{
    for (const State& row : kStates) {
        Groups card;
        card.set(1, row.state);
        send_to_ports(card.chip, card.cpu, kBpdu.tag(10), {1}, {1}, card.outputs);
        EXPECT_EQ(card.outputs.frames(1).size(), 1u) << stp_state_name(row.state);
        card.outputs.clear();
        EXPECT_EQ(card.send_from_cpu(kData.tag(10)),
                  row.sends ? "1:v10 2:v10 3:v10" : "2:v10 3:v10")
            << "through the tables it meets the state";
    }
}

TEST(StpForwarding, TheCpuPortForwardsInEveryState)
{
    for (const State& row : kStates) {
        Groups card;
        EXPECT_EQ(card.chip.stgs.set(1, kCpuPort, static_cast<int>(row.state)), 0);
        EXPECT_EQ(card.send_from_cpu(kData.tag(10)), "1:v10 2:v10 3:v10")
            << stp_state_name(row.state);
    }
}

TEST(StpForwarding, ATraceNamesTheStateAndTheGroup)
{
    const char* names[] = {"disabled", "blocking", "listening", "learning", "forwarding"};
    for (const State& row : kStates) {
        Groups card;
        card.set(2, row.state);
        const std::string text =
            trace_frame(card.chip, card.cpu, 1, kData.tag(20), card.names).text;
        const std::string name = names[static_cast<std::size_t>(row.state)];
        EXPECT_NE(text.find("the port is " + name + " in group 2\n"), std::string::npos) << text;
    }
}

TEST(StpForwarding, WithoutTheTrapABpduIsData)
{
    for (const State& row : kStates) {
        Groups card;
        card.chip.ports.set_bpdu_enable(1, 0);
        card.set(1, row.state);
        EXPECT_EQ(card.send(1, kBpdu.tag(10)), row.data) << stp_state_name(row.state);
    }
}

TEST(StpForwarding, AGroupActsOnItsVlansOnly)
{
    for (const State& row : kStates) {
        Groups card;
        card.set(2, row.state);
        const char* name = stp_state_name(row.state);
        EXPECT_EQ(card.send(1, kData.tag(10)), "2:v10 3:v10") << name;
        EXPECT_EQ(card.send(2, kBack.tag(10)), "1:v10") << name;
        EXPECT_EQ(card.send(1, kData.tag(20)).starts_with("drop:"), !row.sends) << name;
        EXPECT_EQ(card.knows(20), row.learns) << name;
        EXPECT_EQ(card.send(1, kBpdu.tag(20)), row.bpdu) << name;
        EXPECT_EQ(card.send(2, kData.tag(20)).find("1:v20") != std::string::npos, row.sends);
    }
}

TEST(StpForwarding, AVlanThatChangesItsGroupMeetsTheStatesThere)
{
    Groups card;
    card.set(2, StpState::kBlock);
    EXPECT_EQ(card.send(1, kData.tag(10)), "2:v10 3:v10");
    EXPECT_EQ(card.chip.vlans.set_group(10, 2), 0);
    EXPECT_EQ(card.send(1, kData.tag(10)), "drop:stp_blocking");
}

// The digest is how a run that shall change nothing is known to have changed nothing.
TEST(ChipDigest, TellsSpanningTreeMirrorsAndLearningLimits)
{
    const std::function<void(Chip&)> changes[] = {
        [](Chip& chip) { chip.stgs.set(1, 1, 1); },
        [](Chip& chip) { chip.stgs.set(255, 53, 2); },
        [](Chip& chip) { chip.mirrors.set(1, 2, 0x3); },
        [](Chip& chip) { chip.mirrors.set_format(1); },
        [](Chip& chip) { chip.learn_limits.system = 1; },
        [](Chip& chip) { chip.learn_limits.by_vlan[1] = 1; },
        [](Chip& chip) { chip.learn_limits.by_port[1] = 1; },
        [](Chip& chip) { chip.learn_limits.by_trunk[1] = 1; },
    };
    Chip chip;
    for (const auto& change : changes) {
        const std::uint64_t before = chip.digest();
        change(chip);
        EXPECT_NE(chip.digest(), before) << &change - changes;
    }
}

TEST(VlanGroups, AreOneTo255OfVlansThatExist)
{
    VlanTable vlans;
    EXPECT_EQ(vlans.set_group(1, 0), BCM_E_PARAM);
    EXPECT_EQ(vlans.set_group(1, 256), BCM_E_PARAM);
    EXPECT_EQ(vlans.set_group(5, 2), BCM_E_NOT_FOUND);
    EXPECT_EQ(vlans.set_group(0, 2), BCM_E_PARAM);
    EXPECT_EQ(vlans, VlanTable{});
    EXPECT_EQ(vlans.set_group(1, 255), 0);
    EXPECT_EQ(vlans[1].stg, 255);
}

} // namespace
} // namespace vexosim
