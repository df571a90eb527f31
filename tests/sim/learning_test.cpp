#include <bcm/l2.h>
#include <bcm/port.h>

#include "path.h"

namespace vexosim {
namespace {

const TestFrame kAToB(kHostB, kHostA), kBToA(kHostA, kHostB);

MacEntry entry(MacAddress mac, int port, std::uint16_t flags = BCM_L2_STATIC)
{
    MacEntry e;
    e.key = mac_key(mac, 1);
    e.port = static_cast<std::uint8_t>(port);
    e.flags = flags;
    return e;
}

struct Learning : ::testing::Test, Path {
    Learning() { only({1, 2, 3}); }
    /// Port at which the address is, -1 for unknown.
    int at(MacAddress mac) const
    {
        const MacEntry* e = chip.macs.find(mac_key(mac, 1));
        return e == nullptr ? -1 : e->port;
    }
};

TEST_F(Learning, UnknownUnicastFloodsAndTheAnswerDoesNot)
{
    EXPECT_EQ(send(1, kAToB), "2 3");
    EXPECT_EQ(send(2, kBToA), "1");
    EXPECT_EQ(send(1, kAToB), "2");
}

TEST_F(Learning, AStationThatMovesIsFoundAtItsNewPort)
{
    send(1, kAToB);
    EXPECT_EQ(send(3, kAToB), "1 2");
    EXPECT_EQ(send(2, kBToA), "3");
}

TEST_F(Learning, AddressesAreLearnedByVlan)
{
    vlan(10, {1, 2, 3});
    send(1, kAToB);
    send(2, kAToB.tag(10));
    EXPECT_EQ(send(3, kBToA), "1");
    EXPECT_EQ(send(3, kBToA.tag(10)), "2:v10");
}

TEST_F(Learning, AStationDoesNotMoveAwayFromAStaticEntry)
{
    chip.macs.add(entry(kHostA, 1), false, 0);
    EXPECT_EQ(send(3, kAToB), "1 2") << "and its frames pass";
    EXPECT_EQ(at(kHostA), 1);
}

TEST_F(Learning, ALockedPortDoesNotTakeAStaticAddressOfAnotherPort)
{
    chip.macs.add(entry(kHostA, 1), false, 0);
    chip.ports.set_learn(3, 0);
    EXPECT_EQ(send(3, kAToB), "drop:source_unknown");
    chip.macs.erase(mac_key(kHostA, 1));
    chip.macs.add(entry(kHostA, 3), false, 0);
    EXPECT_EQ(send(3, kAToB), "1 2");
}

TEST_F(Learning, EveryModeDoesWhatItsBitsSay)
{
    for (std::uint32_t mode = 0; mode < 8; ++mode) {
        Path path;
        path.only({1, 2, 3});
        path.chip.ports.set_learn(1, mode);
        std::string to_cpu = (mode & BCM_PORT_LEARN_CPU) != 0 ? "cpu" : "";
        std::string forwarded = to_cpu.empty() ? "2 3" : "2 3 cpu";
        std::string held = to_cpu.empty() ? "drop:source_unknown" : "cpu";
        EXPECT_EQ(path.send(1, kAToB), (mode & BCM_PORT_LEARN_FWD) != 0 ? forwarded : held) << mode;
        bool learned = path.chip.macs.find(mac_key(kHostA, 1)) != nullptr;
        EXPECT_EQ(learned, (mode & BCM_PORT_LEARN_ARL) != 0) << mode;
        EXPECT_EQ(path.take().reason, to_cpu.empty() ? 0 : bcmRxReasonCpuLearn) << mode;
    }
}

TEST_F(Learning, APortThatOnlyLearnsForwardsWhatItHasLearned)
{
    chip.ports.set_learn(1, BCM_PORT_LEARN_ARL);
    EXPECT_EQ(send(1, kAToB), "drop:source_unknown");
    EXPECT_EQ(send(1, kAToB), "2 3");
}

TEST_F(Learning, AMoveIsAnUnknownSourceToALockedPort)
{
    send(1, kAToB);
    chip.ports.set_learn(3, BCM_PORT_LEARN_CPU);
    EXPECT_EQ(send(3, kAToB), "cpu");
    EXPECT_EQ(at(kHostA), 1);
}

TEST_F(Learning, SpanningTreeLearnsInTheLearningStateOnly)
{
    for (int state = 0; state <= 4; ++state) {
        Path path;
        path.chip.stgs.set(1, 1, state);
        path.send(1, kAToB);
        EXPECT_EQ(path.chip.macs.size(), state >= 3 ? 1u : 0u) << state;
    }
}

TEST_F(Learning, AnAddressThatIsHeardAgainLivesOn)
{
    chip.macs.set_age_seconds(10);
    send(1, kAToB);
    chip.now_us = 9'000'000;
    send(1, kAToB);
    chip.macs.age(chip.now_us = 18'000'000);
    EXPECT_EQ(at(kHostA), 1);
    chip.macs.age(chip.now_us = 19'000'000);
    EXPECT_EQ(at(kHostA), -1);
}

TEST_F(Learning, AFullTableStopsLearningAndNotForwarding)
{
    chip.macs = MacTable(1);
    send(1, kAToB);
    EXPECT_EQ(send(2, kBToA), "1");
    EXPECT_EQ(at(kHostB), -1);
    EXPECT_EQ(send(3, kAToB), "1 2") << "a move needs no room";
    EXPECT_EQ(at(kHostA), 3);
}

TEST_F(Learning, FramesThatDoNotEnterTeachNothing)
{
    chip.vlans.remove_ports(1, {1});
    EXPECT_EQ(send(1, kAToB), "drop:not_member");
    EXPECT_EQ(at(kHostA), -1);
}

TEST_F(Learning, WhatTheCpuSendsTeachesWhereTheCpuIs)
{
    send_from_cpu(kAToB.tag(1));
    EXPECT_EQ(at(kHostA), kCpuPort);
    chip.vlans.add_ports(1, {kCpuPort}, {});
    EXPECT_EQ(send(2, kBToA), "cpu");
    EXPECT_EQ(take().reason, bcmRxReasonL2Cpu);
}

TEST_F(Learning, AnUnknownSourceThatTheCpuSendsIsNotCopiedBackToIt)
{
    chip.ports.set_learn(kCpuPort, BCM_PORT_LEARN_CPU | BCM_PORT_LEARN_FWD);
    EXPECT_EQ(send_from_cpu(kAToB.tag(1)), "1 2 3");
}

} // namespace
} // namespace vexosim
