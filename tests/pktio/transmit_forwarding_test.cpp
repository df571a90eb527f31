// What becomes of frames that the driver sends, and of its port lists when SDK calls fail.
#include "tests/kit/kit.h"

#include "pktio/packet.h"

// Lists that the driver deliberately leaves to nobody when a frame is not sent.
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:bcmx_lplist_init\nleak:bcmx_lplist_add\n";
}

namespace {

struct TransmitForwarding : CardTest {
    const TestFrame frame = udp(host1, host2);

    TransmitForwarding()
    {
        sdk().create_vlan(10);
        sdk().add_ports_to_vlan(10, mps({3, 4}), mps({5, 6}));
        take_sent();
    }

    static Packet packet_of(const TestFrame& bytes)
    {
        Packet packet;
        packet.set_data(bytes.bytes());
        return packet;
    }
};

std::string text_of(const std::map<int, std::vector<TestFrame>>& sent)
{
    std::string text;
    for (const auto& [port, frames] : sent) {
        for (const TestFrame& each : frames)
            text += std::to_string(port) + (each.is_tagged() ? " tagged, " : " untagged, ");
    }
    return text;
}

TEST_F(TransmitForwarding, ByPortsSendsWithTheTagOrWithoutAsListed)
{
    EXPECT_TRUE(sdk().send_packet_by_ports(mps({3, 50}), mps({7}), packet_of(frame)));
    drain();
    const auto sent = take_sent();
    EXPECT_EQ(text_of(sent), "3 tagged, 7 untagged, 50 tagged, ");
    EXPECT_EQ(sent.at(3).front(), frame.tagged(1));
    EXPECT_EQ(sent.at(7).front(), frame);
}

TEST_F(TransmitForwarding, ByPortsKeepsATagOfItsOwn)
{
    EXPECT_TRUE(sdk().send_packet_by_ports(mps({3}), {}, packet_of(frame.tagged(77, 5))));
    drain();
    EXPECT_EQ(take_sent().at(3).front(), frame.tagged(77, 5));
}

TEST_F(TransmitForwarding, ByPortsSendsOnceThroughAPortOfBothLists)
{
    EXPECT_TRUE(sdk().send_packet_by_ports(mps({3}), mps({3}), packet_of(frame)));
    drain();
    EXPECT_EQ(text_of(take_sent()), "3 untagged, ");
}

TEST_F(TransmitForwarding, ByPortsSendsNothingWhenTheFirstPortDoesNotMap)
{
    EXPECT_FALSE(sdk().send_packet_by_ports({Mp(1, 0), mp(3)}, {}, packet_of(frame)));
    drain();
    EXPECT_EQ(text_of(take_sent()), "");
}

TEST_F(TransmitForwarding, FromCpuFloodsTheVlanOfTheTag)
{
    EXPECT_TRUE(sdk().send_packet_from_cpu(packet_of(broadcast(host1).tagged(10))));
    drain();
    EXPECT_EQ(text_of(take_sent()), "3 tagged, 4 tagged, 5 untagged, 6 untagged, ");
}

TEST_F(TransmitForwarding, FromCpuSendsAFrameWithoutTagInVlan1)
{
    EXPECT_TRUE(sdk().send_packet_from_cpu(packet_of(broadcast(host1))));
    drain();
    const auto sent = take_sent();
    EXPECT_EQ(sent.size(), 53u);
    EXPECT_EQ(sent.at(7).front(), broadcast(host1));
}

TEST_F(TransmitForwarding, FromCpuSendsAKnownUnicastThroughItsPort)
{
    EXPECT_TRUE(sdk().add_mac_to_port(mp(4), host2.mac.data(), 10, false));
    EXPECT_TRUE(sdk().send_packet_from_cpu(packet_of(frame.tagged(10))));
    drain();
    EXPECT_EQ(text_of(take_sent()), "4 tagged, ");
}

TEST_F(TransmitForwarding, FromCpuFailsWhenAnyCallFails)
{
    fault_sweep([&] { return sdk().send_packet_from_cpu(packet_of(frame)); });
    EXPECT_EQ(live_dma_buffers(), 0u);
}

TEST_F(TransmitForwarding, ByPortsFailsWhenACallFailsThatCounts)
{
    // That a failed second free is harmless is checked call by call.
    FaultSweep([&] { return sdk().send_packet_by_ports(mps({3}), mps({5}), packet_of(frame)); })
        .harmless("bcmx_lplist_add")
        .spare("bcmx_lplist_free")
        .leaves_lists()
        .run();
    EXPECT_EQ(live_dma_buffers(), 0u);
}

} // namespace
