// What LAG operations do to frames. The LAG is ports 10, 11 and 12 in VLAN 10, whose other ports
// are 3 and 4.
#include "l2/lag.h"

#include "tests/kit/kit.h"

namespace {

struct LagForwarding : CardTest {
    unsigned id = 77;
    const std::vector<unsigned> lag_ports = {10, 11, 12};

    LagForwarding()
    {
        EXPECT_TRUE(sdk().create_vlan(10));
        EXPECT_TRUE(sdk().delete_cpu_port_from_vlan(10));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, {}, mps({3, 4, 10, 11, 12})));
        for (const unsigned port : {3u, 4u, 10u, 11u, 12u})
            EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(port), 10));
        std::list<Mp> members = mps(lag_ports);
        EXPECT_TRUE(sdk().create_lag(id));
        EXPECT_TRUE(add_lag_to_list(id, lag_list));
        EXPECT_TRUE(add_lag_member(id, lag_list, members));
        EXPECT_TRUE(sdk().add_ports_to_lag(id, members));
    }

    /// The station behind the LAG to which frames of these tests go.
    static Host behind(unsigned n) { return host(static_cast<std::uint8_t>(100 + n)); }
    /// The ports that send when host 1 at port 3 talks to 32 stations behind the LAG.
    std::set<std::string> used()
    {
        std::set<std::string> ports;
        for (unsigned n = 0; n < 32; ++n)
            ports.insert(ports_reached(udp(host1, behind(n)), 3));
        return ports;
    }
    void learn_stations(int in_port)
    {
        for (unsigned n = 0; n < 32; ++n)
            receive(in_port, udp(behind(n), host(9)));
    }
    /// The cable of a member is pulled or plugged, and the manager hears of it from link scan.
    void cable(unsigned port, bool up)
    {
        wire(static_cast<int>(port)).set_far_end(up);
        advance(2s);
        drain();
    }
};

const std::set<std::string> kAllMembers = {"10", "11", "12"};

TEST_F(LagForwarding, AddressesLearnedThroughOneMemberAreReachedThroughAll)
{
    learn_stations(11);
    EXPECT_EQ(used(), kAllMembers);
    EXPECT_EQ(used(), kAllMembers);
}

TEST_F(LagForwarding, AStaticAddressOfTheLagIsReachedThroughAMember)
{
    for (unsigned n = 0; n < 32; ++n)
        EXPECT_TRUE(sdk().add_mac_to_port(Mp(0, id), behind(n).mac.data(), 10, true));
    EXPECT_EQ(used(), kAllMembers);
    expect_dropped(udp(host1, behind(0)), 10, "same_trunk");
}

TEST_F(LagForwarding, OneFlowTakesOneMemberUnderEveryCriterion)
{
    learn_stations(10);
    for (int psc = LAG_PSC_SRC_MAC; psc <= LAG_PSC_SRC_DST_IP; ++psc) {
        EXPECT_TRUE(sdk().set_lag_psc(id, static_cast<lag_psc_t>(psc)));
        const std::string member = ports_reached(udp(host1, behind(1)), 3);
        EXPECT_TRUE(kAllMembers.contains(member)) << member;
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(ports_reached(udp(host1, behind(1)), 3), member) << psc;
    }
}

TEST_F(LagForwarding, TheCriterionChoosesWhatSpreads)
{
    learn_stations(10);
    for (const lag_psc_t psc : {LAG_PSC_SRC_MAC, LAG_PSC_SRC_IP}) {
        EXPECT_TRUE(sdk().set_lag_psc(id, psc));
        EXPECT_EQ(used().size(), 1u) << "all frames come from host 1";
    }
    for (const lag_psc_t psc :
         {LAG_PSC_DST_MAC, LAG_PSC_SRC_DST_MAC, LAG_PSC_DST_IP, LAG_PSC_SRC_DST_IP}) {
        EXPECT_TRUE(sdk().set_lag_psc(id, psc));
        EXPECT_EQ(used(), kAllMembers) << psc;
    }
}

TEST_F(LagForwarding, FloodsLeaveOnceThroughTheFirstPortThatWasUp)
{
    expect_forwarded(broadcast(host1), 3, {4, 10});
    expect_forwarded(udp(host1, host2), 3, {4, 10});
    expect_forwarded(multicast(host1), 3, {4, 10});
    EXPECT_TRUE(sdk().add_ports_to_lag(id, mps({12, 11, 10})));
    expect_forwarded(broadcast(host1), 3, {4, 12});
}

TEST_F(LagForwarding, NothingComesBackIntoTheLag)
{
    for (const int in_port : {10, 11, 12}) {
        expect_forwarded(broadcast(host2), in_port, {3, 4});
        expect_forwarded(udp(host2, host3), in_port, {3, 4});
        expect_forwarded(multicast(host2), in_port, {3, 4});
    }
}

TEST_F(LagForwarding, AMemberThatIsTakenOutLeavesItsFlowsToTheOthers)
{
    learn_stations(11);
    cable(11, false);
    EXPECT_EQ(used(), (std::set<std::string>{"10", "12", "none"})) << "until the manager acts";
    EXPECT_TRUE(sdk().port_remove_from_egress_list(mp(11)));
    EXPECT_EQ(used(), (std::set<std::string>{"10", "12"})) << "the addresses are the LAG's";
    cable(11, true);
    EXPECT_TRUE(sdk().set_port_stp_state(mp(11), STP_FORWARDING));
    EXPECT_TRUE(sdk().port_add_to_egress_list(mp(11)));
    EXPECT_EQ(used(), kAllMembers);
}

TEST_F(LagForwarding, TakingOutTheDesignatedPortMovesTheFloodsToTheFirstMemberLeft)
{
    EXPECT_TRUE(sdk().port_remove_from_egress_list(mp(10)));
    expect_forwarded(broadcast(host1), 3, {4, 10, 11}); // port 10 now is a port of its own
    cable(10, false);
    expect_forwarded(broadcast(host1), 3, {4, 11});
}

TEST_F(LagForwarding, AnEmptiedLagForgetsItsAddresses)
{
    learn_stations(11);
    for (const unsigned port : lag_ports) {
        cable(port, false);
        EXPECT_TRUE(sdk().port_remove_from_egress_list(mp(port)));
    }
    expect_forwarded(udp(host1, behind(1)), 3, {4});
    EXPECT_TRUE(sdk().add_mac_to_port(Mp(0, id), behind(1).mac.data(), 10, true));
    expect_dropped(udp(host1, behind(1)), 3, "trunk_empty");
    cable(12, true);
    EXPECT_TRUE(sdk().set_port_stp_state(mp(12), STP_FORWARDING));
    EXPECT_TRUE(sdk().port_add_to_egress_list(mp(12)));
    expect_forwarded(udp(host1, behind(1)), 3, {12});
}

TEST_F(LagForwarding, APortThatLeavesTheLagBlocks)
{
    learn_stations(11);
    EXPECT_TRUE(sdk().delete_ports_from_lag(id, mps({11, 12})));
    EXPECT_EQ(used(), (std::set<std::string>{"10"}));
    expect_dropped(udp(host2, host1), 11, "stp_blocking");
    expect_forwarded(broadcast(host1), 3, {4, 10});
}

TEST_F(LagForwarding, ADeletedLagLeavesSinglePortsAndNoAddresses)
{
    learn_stations(11);
    EXPECT_TRUE(sdk().delete_lag(id));
    expect_forwarded(udp(host1, behind(1)), 3, {4, 10, 11, 12});
    receive(11, udp(behind(1), host(9)));
    expect_forwarded(udp(host1, behind(1)), 3, {11});
}

TEST_F(LagForwarding, JoiningFlushesWhatThePortsHaveLearned)
{
    EXPECT_TRUE(sdk().delete_lag(id));
    EXPECT_TRUE(sdk().create_lag(id));
    learn_stations(11);
    EXPECT_EQ(used(), (std::set<std::string>{"11"}));
    EXPECT_TRUE(sdk().add_ports_to_lag(id, mps(lag_ports)));
    expect_forwarded(udp(host1, behind(1)), 3, {4, 10});
}

TEST_F(LagForwarding, AStationMovesFromTheLagToAPortAtOnce)
{
    receive(11, udp(behind(1), host(9)));
    receive(4, udp(behind(1), host(9)));
    expect_forwarded(udp(host1, behind(1)), 3, {4});
    receive(12, udp(behind(1), host(9)));
    EXPECT_TRUE(kAllMembers.contains(ports_reached(udp(host1, behind(1)), 3)));
}

} // namespace
