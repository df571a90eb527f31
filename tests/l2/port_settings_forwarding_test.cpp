// What the properties of ports do to frames. Ports 3 to 6 are alone in VLAN 10, tagged; port 3's
// own VLAN is 10 as well.
#include "tests/kit/kit.h"
#include "vexosim/state.h"
#include "vexosim/trace.h"

namespace {

struct PortSettingsForwarding : CardTest {
    const TestFrame unknown = udp(host1, host2), everyone = broadcast(host1),
                    group = multicast(host1);

    PortSettingsForwarding()
    {
        EXPECT_TRUE(sdk().create_vlan(10));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({3, 4, 5, 6}), {}));
        EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(3), 10));
    }
    void block(unsigned in, unsigned out, int flags)
    {
        EXPECT_TRUE(
            sdk().set_port_flood_blocking(mp(in), mp(out), static_cast<flood_block_type_t>(flags)));
    }
    static std::string counter(int port, const std::string& name)
    {
        for (const auto& row : port_counters_table(port).rows) {
            if (row[0] == name)
                return row[1];
        }
        return "0";
    }
};

TEST_F(PortSettingsForwarding, TheMtuHoldsOnIngressAndOnEgress)
{
    EXPECT_TRUE(sdk().set_port_mtu(mp(3), 100));
    expect_forwarded(unknown.sized(96), 3, {4, 5, 6});
    expect_dropped(unknown.sized(97), 3, "too_long");
    expect_forwarded(unknown.sized(96).tagged(10), 4, {3, 5, 6});
    expect_forwarded(unknown.sized(97).tagged(10), 4, {5, 6});
}

TEST_F(PortSettingsForwarding, LongFramesPassWhereEveryPortTakesThem)
{
    expect_dropped(unknown.sized(9212).tagged(10), 4, "too_long");
    for (const unsigned port : {3u, 4u, 5u, 6u})
        EXPECT_TRUE(sdk().set_port_mtu(mp(port), 9216));
    expect_forwarded(unknown.sized(9212).tagged(10), 4, {3, 5, 6});
}

TEST_F(PortSettingsForwarding, IngressDiscardingRefusesByTag)
{
    const TestFrame tagged = unknown.tagged(10), priority = unknown.tagged(0, 5);
    EXPECT_TRUE(sdk().set_port_ingress_discarding(mp(3), INGRESS_DISCARD_TAGGED));
    expect_dropped(tagged, 3, "discard_tagged");
    expect_forwarded(unknown, 3, {4, 5, 6});
    EXPECT_TRUE(sdk().set_port_ingress_discarding(mp(3), INGRESS_DISCARD_UNTAGGED));
    expect_dropped(unknown, 3, "discard_untagged");
    expect_dropped(priority, 3, "discard_untagged");
    expect_forwarded(tagged, 3, {4, 5, 6});
    EXPECT_TRUE(sdk().set_port_ingress_discarding(mp(3), INGRESS_DISCARD_ALL));
    expect_dropped(unknown, 3, "discard_all");
    expect_dropped(tagged, 3, "discard_all");
    EXPECT_TRUE(sdk().set_port_ingress_discarding(mp(3), INGRESS_DISCARD_NONE));
    expect_forwarded(unknown, 3, {4, 5, 6});
}

TEST_F(PortSettingsForwarding, AcceptingTaggedFramesOnlyRefusesTheOthers)
{
    EXPECT_TRUE(sdk().set_port_vlan_accept_frame(mp(3), true));
    expect_dropped(unknown, 3, "discard_untagged");
    EXPECT_TRUE(sdk().set_port_vlan_accept_frame(mp(3), false));
    expect_forwarded(unknown, 3, {4, 5, 6});
}

TEST_F(PortSettingsForwarding, UntaggedFramesGetThePortsVlanAndPriority)
{
    EXPECT_TRUE(sdk().set_port_vlan_priority(mp(3), 0, 3));
    const TestFrame sent = unknown.tagged(10, 3);
    expect_copies(unknown, 3, {{4, sent}, {5, sent}, {6, sent}});
}

TEST_F(PortSettingsForwarding, FloodsOfABlockedClassDoNotCrossFromPortToPort)
{
    struct Case {
        int flag;
        TestFrame frame;
    };
    const Case cases[] = {{FLOOD_BLOCK_BROADCAST, everyone},
                          {FLOOD_BLOCK_UNKNOWN_UNICAST, unknown},
                          {FLOOD_BLOCK_UNKNOWN_MULTICAST, group}};
    for (const Case& c : cases) {
        block(3, 4, c.flag);
        for (const Case& other : cases)
            expect_forwarded(other.frame, 3,
                             other.flag == c.flag ? std::set<int>{5, 6} : std::set<int>{4, 5, 6});
        expect_forwarded(c.frame.tagged(10), 5, {3, 4, 6});
    }
    block(3, 4, FLOOD_BLOCK_NONE);
    expect_forwarded(everyone, 3, {4, 5, 6});
}

TEST_F(PortSettingsForwarding, KnownUnicastsCrossBlockedPairs)
{
    block(3, 4, 0xF);
    EXPECT_TRUE(sdk().add_mac_to_port(mp(4), host2.mac.data(), 10, false));
    expect_forwarded(unknown, 3, {4});
    expect_forwarded(everyone, 3, {5, 6});
}

TEST_F(PortSettingsForwarding, FloodsReachTheCpuUnlessBlocked)
{
    EXPECT_TRUE(sdk().set_port_flood_blocking_cpu(mp(3), FLOOD_BLOCK_NONE));
    expect_to_cpu(everyone, 3, true);
    EXPECT_TRUE(sdk().set_port_flood_blocking_cpu(mp(3), FLOOD_BLOCK_BROADCAST));
    expect_to_cpu(everyone, 3, false);
    expect_to_cpu(unknown, 3, true);
}

TEST_F(PortSettingsForwarding, APortWithoutLayer2GetsNoFloodsAndForgetsItsAddresses)
{
    EXPECT_TRUE(sdk().add_mac_to_port(mp(4), host2.mac.data(), 10, false));
    expect_forwarded(unknown, 3, {4});
    EXPECT_TRUE(sdk().set_port_l2_enable(mp(4), false));
    for (const TestFrame& frame : {unknown, everyone, group})
        expect_forwarded(frame, 3, {5, 6});
    EXPECT_TRUE(sdk().set_port_l2_enable(mp(4), true));
    for (const TestFrame& frame : {unknown, everyone, group})
        expect_forwarded(frame, 3, {4, 5, 6});
}

TEST_F(PortSettingsForwarding, APortWithEgressDownGetsNoFlood)
{
    EXPECT_TRUE(sdk().set_port_egress_admin_state(mp(4), false));
    for (const TestFrame& frame : {unknown, everyone, group})
        expect_forwarded(frame, 3, {5, 6});
    EXPECT_TRUE(sdk().set_port_egress_admin_state(mp(4), true));
    for (const TestFrame& frame : {unknown, everyone, group})
        expect_forwarded(frame, 3, {4, 5, 6});
}

TEST_F(PortSettingsForwarding, APrioritysQueueIsThatOfTheIngressPort)
{
    EXPECT_TRUE(sdk().set_port_cos_mapping(mp(3), 5, 7));
    EXPECT_TRUE(sdk().set_port_cos_mapping(mp(3), 0, 2));
    receive(3, unknown.tagged(10, 5));
    receive(3, unknown.tagged(10, 5));
    receive(3, unknown);
    EXPECT_EQ(counter(4, "egress queue 7"), "2");
    EXPECT_EQ(counter(4, "egress queue 2"), "1");
    EXPECT_TRUE(sdk().set_port_cos_mapping(mp(3), 5, 1));
    receive(3, unknown.tagged(10, 5));
    EXPECT_EQ(counter(4, "egress queue 1"), "1");
    EXPECT_TRUE(sdk().clear_port_stat_counter(mp(4)));
    EXPECT_EQ(counter(4, "egress queue 7"), "0");
}

TEST_F(PortSettingsForwarding, BpdusGoToTheCpuAloneWhileThePortProcessesThem)
{
    EXPECT_TRUE(sdk().set_port_bpdu_processing(mp(3), true));
    expect_to_cpu(bpdu(host1), 3, true);
    expect_forwarded(bpdu(host1), 3, {});
    EXPECT_TRUE(sdk().set_port_bpdu_processing(mp(3), false));
    EXPECT_TRUE(sdk().set_port_flood_blocking_cpu(mp(3), static_cast<flood_block_type_t>(0xF)));
    expect_to_cpu(bpdu(host1), 3, false);
    expect_forwarded(bpdu(host1), 3, {4, 5, 6});
}

TEST_F(PortSettingsForwarding, UnknownUnicastsAreCopiedToTheCpuForOnePortOrAll)
{
    for (const unsigned port : {3u, 4u})
        EXPECT_TRUE(
            sdk().set_port_flood_blocking_cpu(mp(port), static_cast<flood_block_type_t>(0xF)));
    EXPECT_TRUE(sdk().set_switch_unknown_unicast_to_cpu(false));
    expect_to_cpu(unknown, 3, false);
    EXPECT_TRUE(sdk().set_port_switch_unknown_unicast_to_cpu(mp(3), true));
    expect_to_cpu(unknown, 3, true);
    expect_to_cpu(unknown.tagged(10), 4, false);
    expect_to_cpu(everyone, 4, false);
    EXPECT_TRUE(sdk().set_port_switch_unknown_unicast_to_cpu(mp(3), false));
    EXPECT_TRUE(sdk().set_switch_unknown_unicast_to_cpu(true));
    expect_to_cpu(unknown, 3, true);
    expect_to_cpu(unknown.tagged(10), 4, true);
    EXPECT_TRUE(sdk().add_mac_to_port(mp(5), host2.mac.data(), 10, false));
    expect_to_cpu(unknown, 3, false);
}

TEST_F(PortSettingsForwarding, ControlFramesToThePortsOwnAddressEndThere)
{
    const TestFrame pause = ethernet(host4.mac, host1.mac, 0x8808, {0, 1});
    expect_forwarded(pause, 3, {4, 5, 6});
    EXPECT_TRUE(sdk().set_port_pause_addr(mp(3), host4.mac.data()));
    expect_dropped(pause, 3, "pause");
    unsigned long long heard = 0;
    EXPECT_TRUE(sdk().get_port_stat_counter(mp(3), STAT_DOT3_IN_PAUSE_FRAMES, heard));
    EXPECT_EQ(heard, 1u);
    expect_forwarded(pause.tagged(10), 4, {3, 5, 6});
}

TEST_F(PortSettingsForwarding, TheLastOfTwoNamesOfTheDiscardModeHolds)
{
    EXPECT_TRUE(sdk().set_port_ingress_discarding(mp(3), INGRESS_DISCARD_ALL));
    EXPECT_TRUE(sdk().set_port_vlan_accept_frame(mp(3), false));
    expect_forwarded(unknown, 3, {4, 5, 6});
}

TEST_F(PortSettingsForwarding, APortWithEgressDownStillSendsKnownUnicasts)
{
    EXPECT_TRUE(sdk().set_port_egress_admin_state(mp(4), false));
    EXPECT_TRUE(sdk().add_mac_to_port(mp(4), host2.mac.data(), 10, false));
    expect_forwarded(unknown, 3, {4});
}

TEST_F(PortSettingsForwarding, APortWithoutLayer2IsStillHeard)
{
    EXPECT_TRUE(sdk().set_port_l2_enable(mp(4), false));
    expect_forwarded(udp(host2, host3).tagged(10), 4, {3, 5, 6});
    expect_forwarded(unknown, 3, {4});
}

TEST_F(PortSettingsForwarding, NeitherJammingNorTheForwardingModeChangesWhereFramesGo)
{
    EXPECT_TRUE(sdk().set_port_jaming(mp(3), true));
    EXPECT_TRUE(sdk().set_switch_forward_mode(1));
    expect_forwarded(unknown, 3, {4, 5, 6});
}

TEST_F(PortSettingsForwarding, ThePortFiltersByMembershipBothWays)
{
    EXPECT_TRUE(sdk().delete_ports_from_vlan(10, mps({4})));
    expect_dropped(unknown.tagged(10), 4, "not_member");
    EXPECT_TRUE(sdk().add_mac_to_port(mp(4), host2.mac.data(), 10, false));
    expect_dropped(unknown, 3, "egress_not_member");
}

} // namespace
