// What mirroring does to frames. VLAN 10 is ports 3 and 4 tagged and 5 and 6 untagged; copies go
// to port 6 or, out of the VLAN, to port 20.
#include "pktio/packet.h"

#include "tests/kit/kit.h"
#include "vexosim/drops.h"
#include "vexosim/state.h"

namespace {

struct MirrorForwarding : CardTest {
    const TestFrame frame = udp(host1, host2), tagged = frame.tagged(10);

    MirrorForwarding()
    {
        EXPECT_TRUE(sdk().create_vlan(10));
        EXPECT_TRUE(sdk().delete_cpu_port_from_vlan(10));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({3, 4}), mps({5, 6})));
        for (const unsigned port : {5u, 6u})
            EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(port), 10));
    }
    bool mirror(unsigned to, unsigned of, mirror_type_t type)
    {
        return sdk().set_mirror_port(mp(to), mp(of), type);
    }
};

TEST_F(MirrorForwarding, IngressCopiesFramesAsReceived)
{
    EXPECT_TRUE(mirror(20, 3, MIRROR_INGRESS));
    expect_copies(tagged, 3, {{4, tagged}, {5, frame}, {6, frame}, {20, tagged}});
    expect_forwarded(udp(host2, host1).tagged(10), 4, {3});
    EXPECT_TRUE(mirror(20, 5, MIRROR_INGRESS));
    const TestFrame plain = broadcast(host3);
    expect_copies(plain, 5,
                  {{3, plain.tagged(10)}, {4, plain.tagged(10)}, {6, plain}, {20, plain}});
}

TEST_F(MirrorForwarding, EgressCopiesFramesAsSent)
{
    EXPECT_TRUE(mirror(20, 5, MIRROR_EGRESS));
    expect_copies(tagged, 3, {{4, tagged}, {5, frame}, {6, frame}, {20, frame}});
    const TestFrame answer = udp(host2, host1);
    expect_copies(answer, 5, {{3, answer.tagged(10)}});
    EXPECT_TRUE(mirror(20, 3, MIRROR_EGRESS));
    expect_copies(answer, 5, {{3, answer.tagged(10)}, {20, answer.tagged(10)}});
}

TEST_F(MirrorForwarding, BothCopiesBothDirections)
{
    EXPECT_TRUE(mirror(20, 5, MIRROR_BOTH));
    expect_copies(tagged, 3, {{4, tagged}, {5, frame}, {6, frame}, {20, frame}});
    const TestFrame answer = udp(host2, host1);
    expect_copies(answer, 5, {{3, answer.tagged(10)}, {20, answer}});
    EXPECT_TRUE(mirror(20, 5, MIRROR_OFF));
    expect_copies(answer, 5, {{3, answer.tagged(10)}});
}

TEST_F(MirrorForwarding, TheDestinationCarriesNothingElseFlooded)
{
    EXPECT_TRUE(mirror(6, 3, MIRROR_INGRESS));
    expect_forwarded(broadcast(host4).tagged(10), 4, {3, 5});
    expect_forwarded(udp(host4, host(77)).tagged(10), 4, {3, 5});
    expect_forwarded(broadcast(host1).tagged(10), 3, {4, 5, 6}); // at port 6 the copy only
    EXPECT_TRUE(mirror(6, 3, MIRROR_OFF));
    expect_forwarded(broadcast(host4).tagged(10), 4, {3, 5, 6});
    expect_forwarded(broadcast(host1).tagged(10), 3, {4, 5, 6});
}

TEST_F(MirrorForwarding, KnownUnicastStillReachesTheDestination)
{
    EXPECT_TRUE(mirror(6, 3, MIRROR_INGRESS));
    EXPECT_TRUE(sdk().add_mac_to_port(mp(6), host2.mac.data(), 10, false));
    expect_forwarded(udp(host4, host2).tagged(10), 4, {6});
    take_sent();
    receive(3, FrameView(tagged));
    EXPECT_EQ(take_sent()[6], (std::vector<TestFrame>{frame, tagged})) << "itself, and the copy";
}

TEST_F(MirrorForwarding, FramesThatGoNowhereAreCopiedAllTheSame)
{
    EXPECT_TRUE(mirror(20, 3, MIRROR_INGRESS));
    EXPECT_TRUE(sdk().set_port_stp_state(mp(3), STP_BLOCKING));
    expect_copies(tagged, 3, {{20, tagged}});
    EXPECT_TRUE(sdk().set_port_stp_state(mp(3), STP_FORWARDING));
    expect_copies(tagged.untagged().tagged(99), 3, {{20, frame.tagged(99)}});
}

TEST_F(MirrorForwarding, WhatTheCpuSendsIsCopied)
{
    EXPECT_TRUE(mirror(20, 5, MIRROR_EGRESS));
    Packet packet;
    packet.set_data(frame.bytes());
    take_sent();
    EXPECT_TRUE(sdk().send_packet_by_ports({}, mps({5, 7}), packet));
    const auto sent = take_sent();
    EXPECT_EQ(sent.size(), 3u);
    EXPECT_EQ(sent.at(20), sent.at(5));
}

TEST_F(MirrorForwarding, ADestinationWithoutLinkLosesCopiesOnly)
{
    EXPECT_TRUE(mirror(20, 3, MIRROR_BOTH));
    wire(20).set_far_end(false);
    advance(2s);
    drain();
    expect_forwarded(tagged, 3, {4, 5, 6});
    EXPECT_EQ(drop_counters().mirrors_meant, 1u);
    EXPECT_EQ(drop_counters().mirrors_sent, 0u);
}

TEST_F(MirrorForwarding, TheDestinationsCountersCountTheCopies)
{
    EXPECT_TRUE(mirror(20, 3, MIRROR_INGRESS));
    receive(3, FrameView(tagged));
    const TextTable counters = counters_table();
    const auto row = std::find_if(counters.rows.begin(), counters.rows.end(),
                                  [](const auto& each) { return each.front() == "20"; });
    ASSERT_NE(row, counters.rows.end());
    EXPECT_EQ(row->at(5), "1");
}

TEST_F(MirrorForwarding, AMirrorToItselfIsRefused)
{
    EXPECT_FALSE(mirror(3, 3, MIRROR_INGRESS));
    expect_forwarded(tagged, 3, {4, 5, 6});
}

TEST_F(MirrorForwarding, StartingTheMirrorsAnewStopsThem)
{
    EXPECT_TRUE(mirror(20, 3, MIRROR_INGRESS));
    EXPECT_TRUE(sdk().enable_mirror(1));
    expect_forwarded(tagged, 3, {4, 5, 6});
}

} // namespace
