// What VLAN operations do to frames. VLAN 10 has ports 3 and 4 tagged and 5 and 6 untagged; the
// CPU port is not in it unless a test says so.
#include "tests/kit/kit.h"

namespace {

struct VlanForwarding : CardTest {
    const TestFrame frame = udp(host1, host2);
    const TestFrame frame_of_10 = frame.tagged(10);

    VlanForwarding()
    {
        EXPECT_TRUE(sdk().create_vlan(10));
        EXPECT_TRUE(sdk().delete_cpu_port_from_vlan(10));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({3, 4}), mps({5, 6})));
        for (const unsigned port : {5u, 6u})
            EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(port), 10));
    }
};

TEST_F(VlanForwarding, TaggedMembersSendWithTheTagAndUntaggedOnesWithout)
{
    expect_copies(frame, 5, {{3, frame_of_10}, {4, frame_of_10}, {6, frame}});
    expect_copies(frame_of_10, 3, {{4, frame_of_10}, {5, frame}, {6, frame}});
}

TEST_F(VlanForwarding, APortListedWithTheOtherTaggingSendsThatWay)
{
    EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({6}), mps({3})));
    expect_copies(frame, 5, {{3, frame}, {4, frame_of_10}, {6, frame_of_10}});
}

TEST_F(VlanForwarding, MembersThatAreNotNamedKeepTheirTagging)
{
    EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({50}), mps({51})));
    expect_copies(frame, 5,
                  {{3, frame_of_10}, {4, frame_of_10}, {6, frame}, {50, frame_of_10}, {51, frame}});
}

TEST_F(VlanForwarding, APortOfBothListsSendsWithoutTheTag)
{
    EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({7}), mps({7})));
    expect_copies(frame_of_10, 3, {{4, frame_of_10}, {5, frame}, {6, frame}, {7, frame}});
}

TEST_F(VlanForwarding, ADeletedPortNeitherSendsNorIsHeard)
{
    EXPECT_TRUE(sdk().delete_ports_from_vlan(10, mps({4})));
    expect_forwarded(frame_of_10, 3, {5, 6});
    expect_dropped(frame_of_10, 4, "not_member");
    EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({4}), {}));
    expect_forwarded(frame_of_10, 4, {3, 5, 6});
}

TEST_F(VlanForwarding, ADeletedVlanDropsItsFrames)
{
    EXPECT_TRUE(sdk().delete_vlan(10));
    expect_dropped(frame_of_10, 3, "vlan_unknown");
    EXPECT_TRUE(sdk().create_vlan(10));
    EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({3, 4}), {}));
    expect_forwarded(frame_of_10, 3, {4});
}

TEST_F(VlanForwarding, ADeletedVlanForgetsItsAddresses)
{
    EXPECT_TRUE(sdk().add_mac_to_port(mp(4), host2.mac.data(), 10, false));
    expect_forwarded(frame_of_10, 3, {4});
    EXPECT_TRUE(sdk().delete_vlan(10));
    EXPECT_TRUE(sdk().create_vlan(10));
    EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({3, 4, 7}), {}));
    expect_forwarded(frame_of_10, 3, {4, 7});
}

TEST_F(VlanForwarding, TheCpuHearsAVlanThatItsPortIsIn)
{
    const TestFrame everyone = broadcast(host1).tagged(10);
    EXPECT_TRUE(sdk().set_port_flood_blocking_cpu(mp(3), FLOOD_BLOCK_NONE));
    expect_to_cpu(everyone, 3, false);
    EXPECT_TRUE(sdk().add_cpu_port_to_vlan(10));
    expect_to_cpu(everyone, 3, true);
    EXPECT_TRUE(sdk().delete_cpu_port_from_vlan(10));
    expect_to_cpu(everyone, 3, false);
}

TEST_F(VlanForwarding, AFailedRetaggingLeavesThePortOut)
{
    vexosim::inject({.call = "bcmx_vlan_port_add"});
    EXPECT_FALSE(sdk().add_ports_to_vlan(10, {}, mps({3})));
    expect_forwarded(frame_of_10, 4, {5, 6});
    expect_dropped(frame_of_10, 3, "not_member");
}

} // namespace
