// Where flows send frames.
#include "tests/flow/flow_forwarding_fixture.h"

namespace {

TEST_F(FlowForwarding, AFlowThatDropsStopsItsFramesUntilItIsDeleted)
{
    const unsigned flow = add_to_host2();
    expect_forwarded(tagged, 3, {4, 5, 6});
    act(flow, OF_ACTION_DROP);
    expect_dropped(tagged, 3, "field_drop");
    expect_dropped(frame, 5, "field_drop");
    expect_forwarded(udp(host1, host3), 5, {3, 4, 6});
    EXPECT_EQ(counted(flow), 3u);
    EXPECT_TRUE(sdk().delete_of_flow(flow));
    expect_forwarded(tagged, 3, {4, 5, 6});
}

TEST_F(FlowForwarding, TakingTheDropBackLetsFramesPass)
{
    const unsigned flow = add_to_host2();
    act(flow, OF_ACTION_DROP);
    unact(flow, OF_ACTION_DROP);
    expect_forwarded(tagged, 3, {4, 5, 6});
    EXPECT_EQ(counted(flow), 1u);
}

TEST_F(FlowForwarding, RedirectsOneHostsUdpPort)
{
    of_flow_mp_s match = {};
    match.src_ip = host1.ip;
    match.src_ip_mask = 0xffffffff;
    match.l4_dst_port = 2000;
    match.ip_protocol = 17;
    match.flags = OF_QUALIFY_SRC_IP | OF_QUALIFY_L4_DST_PORT | OF_QUALIFY_IP_PROTOCOL;
    const unsigned flow = add(match);
    output(flow, 6);
    expect_copies(tagged, 3, {{6, frame}});
    expect_copies(frame, 5, {{6, frame}});
    expect_forwarded(udp(host2, host1).tagged(10), 4, {5}); // learned there
    expect_forwarded(arp(host1, host2).tagged(10), 3, {4, 5, 6});
    EXPECT_EQ(counted(flow), 2u);
}

TEST_F(FlowForwarding, RemovingAnOutputStopsItForGood)
{
    const unsigned flow = add_to_host2();
    output(flow, 4);
    output(flow, 6);
    expect_forwarded(tagged, 3, {4, 6});
    unact(flow, OF_ACTION_OUTPUT, of_type(OF_OUTPUT_PORT), 4);
    expect_forwarded(tagged, 3, {6});
    output(flow, 5);
    expect_forwarded(tagged, 3, {5, 6});
    unact(flow, OF_ACTION_OUTPUT, of_type(OF_OUTPUT_PORT), 5);
    unact(flow, OF_ACTION_OUTPUT, of_type(OF_OUTPUT_PORT), 6);
    expect_dropped(tagged, 3, "field_no_port");
}

TEST_F(FlowForwarding, RemovingAnOutputThatWasNeverAddedKeepsFloodsFromIt)
{
    unact(add_to_host2(), OF_ACTION_OUTPUT, of_type(OF_OUTPUT_PORT), 4);
    expect_forwarded(tagged, 3, {5, 6});
}

TEST_F(FlowForwarding, OutputToAllPortsStaysInTheVlan)
{
    const unsigned flow = add_to_host2();
    EXPECT_TRUE(sdk().add_mac_to_port(mp(4), host2.mac.data(), 10, false));
    expect_forwarded(tagged, 3, {4});
    act(flow, OF_ACTION_OUTPUT, of_type(OF_OUTPUT_ALL));
    expect_forwarded(tagged, 3, {4, 5, 6});
}

TEST_F(FlowForwarding, OnlyTheBypassGetsFramesPastSpanningTree)
{
    EXPECT_TRUE(sdk().set_port_stp_state(mp(3), STP_BLOCKING));
    EXPECT_TRUE(sdk().set_port_stp_state(mp(4), STP_BLOCKING));
    const unsigned flow = add_to_host2();
    act(flow, OF_ACTION_OUTPUT, of_type(OF_OUTPUT_ALL));
    expect_dropped(tagged, 3, "stp_blocking");
    expect_forwarded(frame, 5, {6});
    act(flow, OF_ACTION_BYPASS_STP);
    expect_forwarded(tagged, 3, {4, 5, 6});
    unact(flow, OF_ACTION_BYPASS_STP);
    expect_dropped(tagged, 3, "stp_blocking");
}

TEST_F(FlowForwarding, OutputToTheCpuReachesTheCpuOnly)
{
    const unsigned flow = add_to_host2();
    act(flow, OF_ACTION_OUTPUT, of_type(OF_OUTPUT_CPU));
    expect_to_cpu(tagged, 3);
    expect_forwarded(tagged, 3, {});
}

TEST_F(FlowForwarding, LoopsFramesBack)
{
    act(add_to_host2(), OF_ACTION_OUTPUT, of_type(OF_OUTPUT_LOOPBACK));
    expect_copies(tagged, 3, {{3, tagged}});
    expect_copies(frame, 5, {{5, frame}});
}

TEST_F(FlowForwarding, ClearedActionsActUntilTheFlowIsInstalledAgain)
{
    const unsigned flow = add_to_host2();
    act(flow, OF_ACTION_DROP);
    EXPECT_TRUE(sdk().clear_of_flow_action(flow));
    expect_dropped(tagged, 3, "field_drop");
    act(flow, OF_ACTION_REINSTALL);
    expect_forwarded(tagged, 3, {4, 5, 6});
    EXPECT_EQ(counted(flow), 1u) << "the counter action is gone too";
}

TEST_F(FlowForwarding, OfTwoFlowsOfAGroupTheOneOfHigherPriorityActs)
{
    const unsigned first = add_to_host2(), second = add_to_host2();
    output(first, 4);
    output(second, 6);
    expect_forwarded(tagged, 3, {4});
    EXPECT_TRUE(sdk().set_of_flow_priority(second, 1));
    expect_forwarded(tagged, 3, {6});
    EXPECT_EQ(counted(first), 1u);
    EXPECT_EQ(counted(second), 1u);
}

TEST_F(FlowForwarding, OfTwoGroupsTheFirstDecidesAndBothCount)
{
    of_flow_mp_s everything = {};
    const unsigned to_host2 = add_to_host2(), any = add(everything);
    output(to_host2, 6);
    act(any, OF_ACTION_DROP);
    expect_forwarded(tagged, 3, {6});
    expect_dropped(udp(host1, host3).tagged(10), 3, "field_drop");
    EXPECT_EQ(counted(to_host2), 1u);
    EXPECT_EQ(counted(any), 2u);
}

TEST_F(FlowForwarding, AClearedTableActsOnNothing)
{
    const unsigned flow = add_to_host2();
    act(flow, OF_ACTION_DROP);
    EXPECT_TRUE(sdk().clear_of_flow_table());
    expect_forwarded(tagged, 3, {4, 5, 6});
}

} // namespace
