// What the rates of storm control do to frames, on the card's clock.
#include "tests/kit/kit.h"

namespace {

struct StormControl : CardTest {
    const TestFrame unknown = udp(host1, host2);

    /// How many of 100 frames that arrive at port 3 now leave through port 4.
    std::size_t passing(const TestFrame& frame)
    {
        take_sent();
        for (int i = 0; i < 100; ++i)
            receive(3, frame);
        EXPECT_EQ(conservation(), "");
        return take_sent()[4].size();
    }
};

TEST_F(StormControl, UnknownUnicastsPassAtTheirRate)
{
    EXPECT_TRUE(sdk().set_port_unicast_control(mp(3), 20));
    EXPECT_EQ(passing(unknown), 20u);
    advance(500ms);
    EXPECT_EQ(passing(unknown), 10u);
    EXPECT_EQ(passing(broadcast(host1)), 100u);
    EXPECT_EQ(passing(multicast(host1)), 100u);
    expect_dropped(unknown, 3, "storm_unknown_unicast");
}

TEST_F(StormControl, MulticastsPassAtTheirRate)
{
    EXPECT_TRUE(sdk().set_port_multicast_control(mp(3), 20));
    EXPECT_EQ(passing(multicast(host1)), 20u);
    advance(500ms);
    EXPECT_EQ(passing(multicast(host1)), 10u);
    EXPECT_EQ(passing(broadcast(host1)), 100u);
    EXPECT_EQ(passing(unknown), 100u);
    expect_dropped(multicast(host1), 3, "storm_multicast");
}

TEST_F(StormControl, BroadcastsPassAtTheirRate)
{
    EXPECT_TRUE(sdk().set_port_broadcast_control(mp(3), 20));
    EXPECT_EQ(passing(broadcast(host1)), 20u);
    advance(500ms);
    EXPECT_EQ(passing(broadcast(host1)), 10u);
    EXPECT_EQ(passing(multicast(host1)), 100u);
    EXPECT_EQ(passing(unknown), 100u);
    expect_dropped(broadcast(host1), 3, "storm_broadcast");
}

TEST_F(StormControl, AnsweredAddressesAreNoLongerLimited)
{
    EXPECT_TRUE(sdk().set_port_unicast_control(mp(3), 1));
    EXPECT_EQ(passing(unknown), 1u);
    receive(4, udp(host2, host1));
    EXPECT_EQ(passing(unknown), 100u);
}

TEST_F(StormControl, ARateOfZeroLetsAllPass)
{
    EXPECT_TRUE(sdk().set_port_broadcast_control(mp(3), 1));
    EXPECT_EQ(passing(broadcast(host1)), 1u);
    EXPECT_TRUE(sdk().set_port_broadcast_control(mp(3), 0));
    EXPECT_EQ(passing(broadcast(host1)), 100u);
    EXPECT_FALSE(sdk().set_port_broadcast_control(mp(3), ~0u)) << "negative in the SDK";
    EXPECT_EQ(passing(broadcast(host1)), 100u);
}

} // namespace
