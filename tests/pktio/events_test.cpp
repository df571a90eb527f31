// Events of the card on their whole way: from frames and far ends to the driver's subscribers.
#include "tests/kit/kit.h"

#include <algorithm>

#include "pktio/event_records.h"
#include "platform/port_map.h"

namespace {

struct Heard {
    std::string text;
    std::vector<std::uint8_t> bytes;
};
std::vector<Heard> heard;

std::string text_of(const Usp& usp)
{
    return std::to_string(usp.unit()) + "/" + std::to_string(usp.slot()) + "/" +
           std::to_string(usp.port());
}

void on_packet(RxPacket* packet, void*)
{
    heard.push_back(
        {"packet at " + text_of(packet->port()) + " in VLAN " + std::to_string(packet->vlan()),
         packet->data()});
}

void on_link(LinkStatus* status, Usp*)
{
    heard.push_back({"link at " + text_of(status->port()) + ": " +
                         std::to_string(status->status()) + ", speed " +
                         std::to_string(status->speed()) + ", duplex " +
                         std::to_string(status->duplex()),
                     {}});
}

void on_mac(L2Addr* addr, int type, void*)
{
    heard.push_back({"address at " + text_of(addr->port()) + " in VLAN " +
                         std::to_string(addr->vlan()) + ": " + std::to_string(type) +
                         (addr->learn_type() ? ", learned" : ", static"),
                     {addr->mac(), addr->mac() + 6}});
}

std::string texts()
{
    std::string text;
    for (const Heard& each : heard)
        text += each.text + "\n";
    heard.clear();
    return text;
}

struct Events : CardTest {
    Events()
    {
        self_slot_id = 1;
        drain();
    }
    ~Events() override { self_slot_id = 0; }
};

TEST_F(Events, APacketForTheCpuReachesSubscribersWithItsUserPortAndVlan)
{
    sdk().register_rx_packet_callback(on_packet, nullptr);
    sdk().add_mac_to_port(mp(53), host2.mac.data(), 1, false);
    const TestFrame frame = udp(host1, host2);
    for (const int port : {0, 3, 50, 52}) {
        heard.clear();
        receive(port, frame);
        drain();
        ASSERT_EQ(heard.size(), 1u) << port;
        EXPECT_EQ(heard[0].text, "packet at 1/1/" + std::to_string(port + 1) + " in VLAN 1");
        EXPECT_EQ(heard[0].bytes, frame.tagged(1).bytes());
    }
}

TEST_F(Events, ALearnedAddressIsReportedWithTheUserPortItIsOn)
{
    sdk().register_mac_update_callback(on_mac, nullptr);
    receive(50, udp(host1, host2));
    drain();
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].bytes, std::vector<std::uint8_t>(host1.mac.begin(), host1.mac.end()));
    EXPECT_EQ(texts(), "address at 1/1/51 in VLAN 1: 1, learned\n");
}

TEST_F(Events, ADeletedAddressIsReportedAsRemoved)
{
    sdk().add_mac_to_port(mp(3), host2.mac.data(), 1, false);
    drain();
    sdk().register_mac_update_callback(on_mac, nullptr);
    sdk().delete_mac(host2.mac.data(), 1);
    drain();
    EXPECT_EQ(texts(), "address at 1/1/4 in VLAN 1: 0, static\n");
}

TEST_F(Events, ALinkThatGoesDownForgetsTheAddressesLearnedOnIt)
{
    receive(3, udp(host1, host2));
    receive(4, udp(host3, host2));
    drain();
    sdk().register_link_change_callback(on_link, nullptr);
    sdk().register_mac_update_callback(on_mac, nullptr);
    wire(3).set_far_end(false);
    advance(1s);
    drain();
    const std::string told = texts();
    EXPECT_EQ(told.substr(0, told.find(',')), "link at 1/1/4: 0");
    EXPECT_NE(told.find("\naddress at 1/1/4 in VLAN 1: 0, learned\n"), std::string::npos) << told;
    expect_forwarded(udp(host2, host3), 5, {4}); // the other port's address stays
}

TEST_F(Events, ALinkThatComesUpIsBlockedUntilAManagerLetsItForward)
{
    wire(3).set_far_end(false);
    advance(1s);
    drain();
    sdk().register_link_change_callback(on_link, nullptr);
    wire(3).set_far_end(true);
    advance(1s);
    drain();
    EXPECT_EQ(texts(), "link at 1/1/4: 1, speed 3, duplex 2\n");
    expect_dropped(udp(host1, host2), 3, "stp_blocking");
    EXPECT_TRUE(sdk().set_port_stp_state(mp(3), STP_FORWARDING));
    EXPECT_NE(ports_reached(udp(host1, host2), 3), "none");
}

TEST_F(Events, AWalkListsTheTable)
{
    sdk().add_mac_to_port(mp(3), host2.mac.data(), 1, false);
    receive(50, udp(host1, host2));
    drain();
    sdk().register_mac_update_callback(on_mac, nullptr);
    sdk().traverse_mac_table(nullptr);
    std::string told = texts();
    EXPECT_NE(told.find("address at 1/1/4 in VLAN 1: 2, static\n"), std::string::npos) << told;
    EXPECT_NE(told.find("address at 1/1/51 in VLAN 1: 2, learned\n"), std::string::npos) << told;
    EXPECT_EQ(std::count(told.begin(), told.end(), '\n'), 2);
}

} // namespace
