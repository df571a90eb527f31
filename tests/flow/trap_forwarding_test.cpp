// Frames that trap filters hand to the CPU's subscribers.
#include "pktio/packet.h"
#include "tests/flow/flow_forwarding_fixture.h"
#include "tests/flow/trap_fixture.h"

namespace {

/// "port/vlan" of each packet that a subscriber got; its ports count from 1.
std::vector<std::string> received;

void on_packet(ctype_rx_packet_s* packet, void*)
{
    received.push_back(std::to_string(packet->port - 1) + "/" + std::to_string(packet->vlan));
}

struct TrapForwarding : FlowForwarding {
    TrapForwarding() { sdk().register_rx_packet_callback_c(on_packet, nullptr); }

    /// What the subscriber gets of a frame; nothing else may get anything then.
    static std::string to_cpu(const TestFrame& frame, int port)
    {
        received.clear();
        const std::string ports = ports_reached(frame, port);
        drain();
        if (received.empty())
            return "ports " + ports;
        return received[0] + (received.size() > 1 ? " again" : "") +
               (ports != "none" ? " and ports " + ports : "");
    }
};

TEST_F(TrapForwarding, ArpFiltersTrapTheTargetsOfTheirPrefixWithAndWithoutATag)
{
    EXPECT_EQ(to_cpu(arp(host1, host2), 5), "ports 3 4 6");
    EXPECT_TRUE(sdk().add_arp_filter(host2.ip, 0xffffffff));
    EXPECT_EQ(to_cpu(arp(host1, host2), 5), "5/10");
    EXPECT_EQ(to_cpu(arp(host1, host2).tagged(10), 3), "3/10");
    EXPECT_EQ(to_cpu(arp(host1, host3), 5), "ports 3 4 6");
    EXPECT_EQ(to_cpu(arp(host1, host2).tagged(7).tagged(10), 3), "ports 4 5 6");
    EXPECT_TRUE(sdk().add_arp_filter(ip4(10, 0, 0, 0), 0xffffff00));
    EXPECT_EQ(to_cpu(arp(host1, host3), 5), "5/10");
    EXPECT_TRUE(sdk().delete_arp_filter_all());
    EXPECT_EQ(to_cpu(arp(host1, host2), 5), "ports 3 4 6");
    EXPECT_EQ(to_cpu(arp(host1, host2).tagged(10), 3), "ports 4 5 6");
}

TEST_F(TrapForwarding, ArpFiltersLookAtArpOnly)
{
    EXPECT_TRUE(sdk().add_arp_filter(host2.ip, 0xffffffff));
    const TestFrame same_bytes = arp(host1, host2).with(12, 0x88).with(13, 0xb5);
    EXPECT_EQ(to_cpu(same_bytes, 5), "ports 3 4 6");
}

TEST_F(TrapForwarding, IpProtocolFiltersTrapTheirProtocol)
{
    EXPECT_TRUE(sdk().add_ip_protocol_filter(17));
    EXPECT_EQ(to_cpu(frame, 5), "5/10");
    EXPECT_EQ(to_cpu(tagged, 3), "3/10");
    EXPECT_EQ(to_cpu(frame.with(23, 6), 5), "ports 3 4 6");
    EXPECT_EQ(to_cpu(arp(host1, host2), 5), "ports 3 4 6");
    EXPECT_TRUE(sdk().delete_ip_protocol_filter(17));
    EXPECT_EQ(to_cpu(frame, 5), "ports 3 4 6");
}

TEST_F(TrapForwarding, L4PortFiltersTrapTheDestinationPort)
{
    EXPECT_TRUE(sdk().add_l4_destination_port_filter(2000));
    EXPECT_EQ(to_cpu(frame, 5), "5/10");
    EXPECT_EQ(to_cpu(tagged, 3), "3/10");
    EXPECT_EQ(to_cpu(frame.with(37, 1), 5), "ports 3 4 6");
    EXPECT_EQ(to_cpu(frame.with(20, 0x20), 5), "5/10") << "the first fragment has the ports";
    EXPECT_EQ(to_cpu(frame.with(21, 1), 5), "ports 3 4 6") << "another fragment does not";
    EXPECT_TRUE(sdk().delete_l4_destination_port_filter_all());
    EXPECT_EQ(to_cpu(frame, 5), "ports 3 4 6");
}

TEST_F(TrapForwarding, ATrapComesBeforeAFlowThatDrops)
{
    act(add_to_host2(), OF_ACTION_DROP);
    EXPECT_EQ(to_cpu(frame, 5), "ports none");
    EXPECT_TRUE(sdk().add_ip_protocol_filter(17));
    EXPECT_EQ(to_cpu(frame, 5), "5/10");
}

} // namespace
