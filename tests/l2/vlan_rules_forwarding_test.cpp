// What VLANs by source address, subnet and protocol do to frames. Ports 3 to 6 are in VLANs 10, 20
// and 30 tagged; frames come untagged, and port 3's own VLAN is 1.
#include "tests/kit/kit.h"

namespace {

struct VlanRulesForwarding : CardTest {
    const TestFrame frame = udp(host1, host2);

    VlanRulesForwarding()
    {
        for (const unsigned vid : {10u, 20u, 30u}) {
            EXPECT_TRUE(sdk().create_vlan(vid));
            EXPECT_TRUE(sdk().add_ports_to_vlan(vid, mps({3, vid / 10 + 3}), {}));
        }
        EXPECT_TRUE(sdk().delete_ports_from_vlan(1, mps({4, 5, 6})));
    }
};

TEST_F(VlanRulesForwarding, ASourceAddressNamesTheVlanAndThePriority)
{
    EXPECT_TRUE(sdk().set_mac_vlan(host1.mac.data(), 10, 5));
    expect_copies(frame, 3, {{4, frame.tagged(10, 5)}});
}

TEST_F(VlanRulesForwarding, AnIpv4SubnetNamesTheVlanAndThePriority)
{
    EXPECT_TRUE(sdk().set_ipv4_subnet_vlan(0x0A000000, 0xFFFFFF00, 20, 4));
    expect_copies(frame, 3, {{5, frame.tagged(20, 4)}});
    EXPECT_TRUE(sdk().set_ipv4_subnet_vlan(0x0A000001, 0xFFFFFFFF, 30, 3));
    expect_copies(frame, 3, {{6, frame.tagged(30, 3)}});
}

TEST_F(VlanRulesForwarding, AnIpv6SubnetNamesTheVlanAndThePriority)
{
    vexosim::Frame packet(48);
    packet[0] = 0x60;
    packet[8] = 0xfd;
    packet[9] = 0x01;
    const TestFrame ip6 = ethernet(host2.mac, host1.mac, 0x86dd, packet);
    const unsigned char subnet[16] = {0xfd};
    EXPECT_TRUE(sdk().set_ipv6_subnet_vlan(subnet, 8, 10, 2));
    expect_copies(ip6, 3, {{4, ip6.tagged(10, 2)}});
    const unsigned char longer[16] = {0xfd, 0x01};
    EXPECT_TRUE(sdk().set_ipv6_subnet_vlan(longer, 16, 20, 1));
    expect_copies(ip6, 3, {{5, ip6.tagged(20, 1)}});
}

TEST_F(VlanRulesForwarding, AProtocolNamesTheVlanAtItsPort)
{
    EXPECT_TRUE(sdk().set_port_protocol_vlan(mp(3), FRAME_ETHERNET_II, 0x0800, 30));
    expect_copies(frame, 3, {{6, frame.tagged(30)}});
    EXPECT_TRUE(sdk().delete_port_protocol_vlan(mp(3), FRAME_ETHERNET_II, 0x0800));
    EXPECT_EQ(ports_reached(frame, 3).substr(0, 5), "0 1 2");
}

TEST_F(VlanRulesForwarding, BothLlcValuesOfAFrameTypeAreOne)
{
    const TestFrame spanning_tree = ethernet(host2.mac, host1.mac, 3, {0x42, 0x42, 3});
    EXPECT_TRUE(sdk().set_port_protocol_vlan(mp(3), FRAME_802_3_LLC, 0x4242, 20));
    expect_copies(spanning_tree, 3, {{5, spanning_tree.tagged(20)}});
    EXPECT_TRUE(sdk().set_port_protocol_vlan(mp(3), FRAME_802_3, 0x4242, 30));
    expect_copies(spanning_tree, 3, {{6, spanning_tree.tagged(30)}});
}

TEST_F(VlanRulesForwarding, ASnapFramesTypeIsBehindItsOrganisation)
{
    const TestFrame snap = ethernet(host2.mac, host1.mac, 40, {0xaa, 0xaa, 3, 0, 0, 0, 0x80, 0x9b});
    EXPECT_TRUE(sdk().set_port_protocol_vlan(mp(3), FRAME_SNAP, 0x809b, 20));
    expect_copies(snap, 3, {{5, snap.tagged(20)}});
}

TEST_F(VlanRulesForwarding, WithoutProtocolsThePortsOwnVlanIsBack)
{
    EXPECT_TRUE(sdk().set_port_protocol_vlan(mp(3), FRAME_ETHERNET_II, 0x0800, 30));
    EXPECT_TRUE(sdk().set_port_protocol_vlan(mp(3), FRAME_ETHERNET_II, 0x0806, 30));
    EXPECT_TRUE(sdk().delete_port_protocol_vlan_all(mp(3)));
    EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(3), 10));
    EXPECT_TRUE(sdk().set_port_vlan_priority(mp(3), 0, 6));
    expect_copies(frame, 3, {{4, frame.tagged(10, 6)}});
    expect_copies(arp(host1, host2), 3, {{4, arp(host1, host2).tagged(10, 6)}});
}

} // namespace
