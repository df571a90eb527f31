// Limits on learned addresses, met by frames. Trunk 7 is ports 4 and 5.
#include <bcm/l2.h>
#include <bcm/port.h>

#include "path.h"

namespace vexosim {
namespace {

struct Limits : ::testing::Test, Path {
    Limits()
    {
        only({1, 2, 3, 4, 5});
        chip.trunks.create_id(7);
        chip.trunks.set(7, {true, 3, {4, 5}, -1, -1, -1});
    }
    std::string from(int port, unsigned station)
    {
        return send(port, TestFrame(kBroadcastMac, kHostA + station));
    }
    bool knows(unsigned station, int vid = 1) const
    {
        return chip.macs.find(mac_key(kHostA + station, vid)) != nullptr;
    }
    /// How many of the stations 1 to 9 are learned at a port.
    int learned_at(int port)
    {
        int known = 0;
        for (unsigned n = 1; n < 10; ++n) {
            from(port, n);
            known += knows(n) ? 1 : 0;
        }
        return known;
    }
    void add_static(unsigned station, int port)
    {
        MacEntry e;
        e.key = mac_key(kHostA + station, 1);
        e.port = static_cast<std::uint8_t>(port);
        e.flags = BCM_L2_STATIC;
        ASSERT_EQ(chip.macs.add(e, false, 0), 0);
    }
};

TEST_F(Limits, EachScopeLimitsWhatIsLearned)
{
    chip.learn_limits.by_port[1] = 3;
    chip.learn_limits.by_trunk[7] = 4;
    EXPECT_EQ(learned_at(1), 3);
    chip.macs.erase_by_vlan(1, true);
    EXPECT_EQ(learned_at(4), 4);
    chip.macs.erase_by_vlan(1, true);
    chip.learn_limits.by_vlan[1] = 5;
    EXPECT_EQ(learned_at(2), 5);
    chip.macs.erase_by_vlan(1, true);
    chip.learn_limits.system = 2;
    EXPECT_EQ(learned_at(2), 2);
    chip.macs.erase_by_vlan(1, true);
    chip.learn_limits = {};
    EXPECT_EQ(learned_at(2), 9);
}

TEST_F(Limits, OneScopeDoesNotLimitAnother)
{
    vlan(10, {1, 2});
    chip.learn_limits.by_port[1] = 0;
    chip.learn_limits.by_port[4] = 0;
    chip.learn_limits.by_vlan[10] = 0;
    chip.learn_limits.by_trunk[6] = 0;
    from(1, 1);
    EXPECT_FALSE(knows(1));
    from(2, 2);
    EXPECT_TRUE(knows(2));
    from(4, 3);
    EXPECT_TRUE(knows(3)) << "what a member hears is the trunk's";
    send(2, TestFrame(kBroadcastMac, kHostA + 4).tag(10));
    EXPECT_FALSE(knows(4, 10));
}

TEST_F(Limits, AScopeCountsTheAddressesInItAndNoOthers)
{
    auto tagged_from = [this](int port, unsigned station) {
        send(port, TestFrame(kBroadcastMac, kHostA + station).tag(10));
    };
    vlan(10, {1, 2});
    chip.learn_limits.system = 2;
    from(1, 1);
    tagged_from(1, 2);
    from(2, 3);
    EXPECT_FALSE(knows(3)) << "two are known in the system, one in each VLAN";
    chip.learn_limits = {};
    chip.learn_limits.by_vlan[10] = 2;
    from(1, 4);
    tagged_from(2, 5);
    EXPECT_TRUE(knows(5, 10));
    tagged_from(2, 6);
    EXPECT_FALSE(knows(6, 10));
}

TEST_F(Limits, FramesOverTheLimitGoByThePortsMode)
{
    chip.learn_limits.system = 0;
    EXPECT_EQ(from(1, 1), "2 3 4");
    chip.ports.set_learn(1, BCM_PORT_LEARN_ARL | BCM_PORT_LEARN_CPU);
    EXPECT_EQ(from(1, 1), "cpu");
    chip.ports.set_learn(1, BCM_PORT_LEARN_ARL);
    EXPECT_EQ(from(1, 1), "drop:source_unknown");
    chip.learn_limits.system = 1;
    from(1, 1);
    EXPECT_EQ(from(1, 1), "2 3 4") << "now it is known";
}

TEST_F(Limits, AMoveNeedsRoomAtItsNewPlaceOnly)
{
    chip.learn_limits.system = 1;
    chip.learn_limits.by_vlan[1] = 1;
    from(1, 1);
    from(2, 1);
    EXPECT_EQ(chip.macs.find(mac_key(kHostA + 1, 1))->port, 2);
    chip.learn_limits.by_port[3] = 0;
    from(3, 1);
    EXPECT_EQ(chip.macs.find(mac_key(kHostA + 1, 1))->port, 2) << "stays where it was";
    from(4, 1);
    EXPECT_TRUE(chip.macs.find(mac_key(kHostA + 1, 1))->on_trunk());
}

TEST_F(Limits, StaticEntriesNeitherCountNorAreLimited)
{
    chip.learn_limits.by_port[1] = 1;
    chip.learn_limits.system = 1;
    add_static(1, 1);
    add_static(2, 1);
    from(1, 3);
    EXPECT_TRUE(knows(3));
    from(1, 4);
    EXPECT_FALSE(knows(4));
}

TEST_F(Limits, WhatGoesMakesRoom)
{
    chip.learn_limits.by_port[1] = 1;
    chip.macs.set_age_seconds(10);
    from(1, 1);
    from(1, 2);
    EXPECT_FALSE(knows(2));
    chip.macs.age(chip.now_us = 10'000'000);
    from(1, 2);
    EXPECT_TRUE(knows(2));
    chip.macs.erase_by_port(1, false);
    from(1, 3);
    EXPECT_TRUE(knows(3));
    from(2, 3);
    from(1, 4);
    EXPECT_TRUE(knows(4)) << "a station that moved away makes room too";
}

TEST_F(Limits, ALowerLimitKeepsWhatIsKnown)
{
    from(1, 1);
    from(1, 2);
    chip.learn_limits.by_port[1] = 1;
    from(1, 1);
    from(1, 3);
    EXPECT_TRUE(knows(1));
    EXPECT_TRUE(knows(2));
    EXPECT_FALSE(knows(3));
}

TEST_F(Limits, ATraceTellsThatALimitIsReached)
{
    chip.learn_limits.by_vlan[1] = 0;
    std::string text = trace_frame(chip, cpu, 1, TestFrame(kHostB, kHostA), names).text;
    EXPECT_NE(text.find("as many addresses as may be learned are known\n"), std::string::npos);
    EXPECT_NE(text.find("00:aa:00:00:00:01 is unknown; not learned\n"), std::string::npos);
    chip.learn_limits = {};
    chip.macs = MacTable(0);
    text = trace_frame(chip, cpu, 1, TestFrame(kHostB, kHostA), names).text;
    EXPECT_NE(text.find("the MAC table is full\n"), std::string::npos);
}

} // namespace
} // namespace vexosim
