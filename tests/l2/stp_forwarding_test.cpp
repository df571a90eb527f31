// What spanning-tree operations do to frames. Ports 3, 4 and 5 are in VLAN 10.
#include "tests/kit/kit.h"

namespace {

struct StpForwarding : CardTest {
    const TestFrame data = udp(host1, host2), back = udp(host3, host1);

    StpForwarding()
    {
        EXPECT_TRUE(sdk().create_vlan(10));
        EXPECT_TRUE(sdk().delete_cpu_port_from_vlan(10));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, {}, mps({3, 4, 5})));
        for (const unsigned port : {3u, 4u, 5u})
            EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(port), 10));
    }
    /// Frames into port 3 and through it, whose state has just been set.
    void expect_state(bool learns, bool forwards, const std::string& reason)
    {
        if (forwards)
            expect_forwarded(data, 3, {4, 5});
        else
            expect_dropped(data, 3, reason);
        EXPECT_EQ(ports_reached(broadcast(host3), 4), forwards ? "3 5" : "5");
        const std::string known = forwards ? "3" : "none"; // the way to what port 3 has learned
        EXPECT_EQ(ports_reached(back, 4), learns ? known : "5");
        expect_to_cpu(bpdu(host1), 3, reason != "stp_disabled");
    }
};

TEST_F(StpForwarding, EveryStateOfAPortActsOnDataLearningAndBpdus)
{
    const std::vector<std::tuple<stp_state_t, bool, bool, std::string>> rows = {
        {STP_BLOCKING, false, false, "stp_blocking"}, {STP_LISTENING, false, false, "stp_blocking"},
        {STP_LEARNING, true, false, "stp_learning"},  {STP_FORWARDING, true, true, ""},
        {STP_DISABLED, false, false, "stp_disabled"},
    };
    for (const auto& [state, learns, forwards, reason] : rows) {
        SCOPED_TRACE(state);
        EXPECT_TRUE(sdk().clear_fdb_table(true));
        EXPECT_TRUE(sdk().set_port_stp_state(mp(3), state));
        expect_state(learns, forwards, reason);
    }
}

TEST_F(StpForwarding, EveryStateInTheGroupOfTheVlanActsTheSameWay)
{
    const std::vector<std::tuple<mstp_state_t, bool, bool, std::string>> rows = {
        {MSTP_DISCARDING, false, false, "stp_blocking"},
        {MSTP_LEARNING, true, false, "stp_learning"},
        {MSTP_FORWARDING, true, true, ""},
        {MSTP_DISABLED, false, false, "stp_disabled"},
        {MSTP_FORWARDING_ALIAS, true, true, ""},
    };
    for (const auto& [state, learns, forwards, reason] : rows) {
        SCOPED_TRACE(state);
        EXPECT_TRUE(sdk().clear_fdb_table(true));
        EXPECT_TRUE(sdk().set_stg_stp_state(1, mp(3), state));
        expect_state(learns, forwards, reason);
    }
}

TEST_F(StpForwarding, AnotherGroupDoesNotAct)
{
    for (int state = MSTP_DISCARDING; state <= MSTP_FORWARDING_ALIAS; ++state) {
        EXPECT_TRUE(sdk().set_stg_stp_state(2, mp(3), static_cast<mstp_state_t>(state)));
        expect_forwarded(data, 3, {4, 5});
        expect_forwarded(broadcast(host3), 4, {3, 5});
    }
}

TEST_F(StpForwarding, AStateOfThePortIsOneOfAllGroups)
{
    EXPECT_TRUE(sdk().set_stg_stp_state(1, mp(3), MSTP_DISCARDING));
    expect_dropped(data, 3, "stp_blocking");
    EXPECT_TRUE(sdk().set_port_stp_state(mp(3), STP_FORWARDING));
    expect_forwarded(data, 3, {4, 5});
}

TEST_F(StpForwarding, ALoopOfTwoCablesIsBrokenByBlockingOnePort)
{
    // Ports 4 and 5 lead to the same neighbour, which sends back what it gets.
    EXPECT_TRUE(sdk().set_port_stp_state(mp(5), STP_BLOCKING));
    expect_forwarded(broadcast(host1), 3, {4});
    expect_dropped(broadcast(host1), 5, "stp_blocking");
    expect_forwarded(udp(host3, host1), 4, {3});
}

TEST_F(StpForwarding, APortWhoseLinkComesUpBlocksUntilTheManagerLetsItForward)
{
    wire(3).set_far_end(false);
    advance(2s);
    drain();
    wire(3).set_far_end(true);
    advance(2s);
    drain();
    expect_dropped(data, 3, "stp_blocking");
    EXPECT_TRUE(sdk().set_port_stp_state(mp(3), STP_FORWARDING));
    expect_forwarded(data, 3, {4, 5});
}

} // namespace
