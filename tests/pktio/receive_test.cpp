#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "core/factory.h"
#include "core/trace.h"
#include "pktio/event_records.h"
#include "pktio/receive.h"
#include "platform/port_map.h"
#include "tests/platform/port_tables.h"
#include "vexosim/clock.h"

namespace {

bool no_memory = false;            // for the driver's own copy
bool no_memory_for_vector = false; // for the record's

} // namespace

// In place of the library's, so that a test can run out of memory where the driver allows for it.
void* operator new(std::size_t size)
{
    void* memory = no_memory_for_vector ? nullptr : std::malloc(size);
    if (memory == nullptr)
        throw std::bad_alloc();
    return memory;
}
void operator delete(void* memory) noexcept
{
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept
{
    std::free(memory);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return no_memory ? nullptr : ::operator new[](size);
}

namespace {

using Bytes = std::vector<uint8_t>;

struct Received {
    std::string form;
    Bytes bytes;
    unsigned length, type, vlan;
    Usp port;
    void* cookie;
};
std::vector<Received> received;
uint8_t* c_data = nullptr;

void on_packet(RxPacket* packet, void* cookie)
{
    received.push_back({"class", packet->data(), packet->length(), packet->type(), packet->vlan(),
                        packet->port(), cookie});
}

void on_packet_c(ctype_rx_packet_s* packet, void* cookie)
{
    c_data = packet->data;
    received.push_back({"plain", Bytes(packet->data, packet->data + packet->length), packet->length,
                        packet->type, packet->vlan, Usp(packet->unit, packet->slot, packet->port),
                        cookie});
}

void spoil_data(ctype_rx_packet_s* packet, void*)
{
    std::fill_n(packet->data, packet->length, uint8_t{0xee});
}

int own_cookie = 0;
int sdk_cookie = 0;

// A packet for the CPU, as the SDK describes it.
struct Packet64 {
    Bytes bytes;
    bcm_pkt_blk_t blocks[2];
    bcm_pkt_t pkt = {};

    explicit Packet64(uint8_t rx_port, std::size_t size = 64) : bytes(size)
    {
        for (std::size_t i = 0; i < size; ++i)
            bytes[i] = static_cast<uint8_t>(i * 7 + 1);
        blocks[0] = {bytes.data(), static_cast<int>(size)};
        blocks[1] = {nullptr, 0};
        pkt.pkt_data = blocks;
        pkt.blk_count = 1;
        pkt.vlan = 0xffee;
        pkt.rx_port = rx_port;
        pkt.pkt_len = static_cast<uint16_t>(size);
    }

    int deliver() { return vexo_recv_pkt(0, &pkt, &sdk_cookie); }
};

struct Receive : testing::Test {
    Receive()
    {
        vexosim::use_manual_clock();
        vexosdk_create_sdk_instance();
        build_port_tables();
        received.clear();
        hw_util_dbg = 0;
        bcm_sdk->register_rx_packet_callback_c(on_packet_c, &own_cookie);
        bcm_sdk->register_rx_packet_callback(on_packet, &own_cookie);
    }
    ~Receive() override { vexosdk_delete_sdk_instance(nullptr); }
};

std::string output_of(bcm_pkt_t* pkt)
{
    testing::internal::CaptureStdout();
    vexo_recv_pkt(0, pkt, nullptr);
    return testing::internal::GetCapturedStdout();
}

TEST_F(Receive, HandsThePacketToTheClassFormAndThenToTheCStyleSubscriber)
{
    Packet64 packet(2);
    EXPECT_EQ(packet.deliver(), 2);
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].form, "class");
    EXPECT_EQ(received[1].form, "plain");
    for (const Received& each : received) {
        EXPECT_EQ(each.bytes, packet.bytes);
        EXPECT_EQ(each.length, 64u);
        EXPECT_EQ(each.type, 0u);
        EXPECT_EQ(each.vlan, 0xffeeu);
        EXPECT_EQ(each.port, Usp(1, 1, 9));
        EXPECT_EQ(each.cookie, &own_cookie);
    }
}

TEST_F(Receive, TakesTheReceivePortAsAUport)
{
    const struct {
        uint8_t rx_port;
        unsigned usp_port;
    } rows[] = {{0, 54}, {1, 49}, {2, 9}, {26, 51}, {27, 50}, {29, 52}, {30, 1}, {53, 48}};
    for (const auto& row : rows) {
        received.clear();
        EXPECT_EQ(Packet64(row.rx_port).deliver(), 2);
        ASSERT_EQ(received.size(), 2u);
        EXPECT_EQ(received[0].port, Usp(1, 1, row.usp_port)) << unsigned{row.rx_port};
        EXPECT_EQ(received[1].port, Usp(1, 1, row.usp_port)) << unsigned{row.rx_port};
    }
}

TEST_F(Receive, NamesTheSlotOfTheCard)
{
    self_slot_id = 4;
    EXPECT_EQ(Packet64(2).deliver(), 2);
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].port, Usp(1, 4, 9));
    EXPECT_EQ(received[1].port, Usp(1, 4, 9));
}

TEST_F(Receive, LeavesAPacketOnAPortWithoutUserPortToOthers)
{
    for (const int rx_port : {54, 55, 255}) {
        EXPECT_EQ(Packet64(static_cast<uint8_t>(rx_port)).deliver(), 1);
        EXPECT_TRUE(received.empty());
    }
}

TEST_F(Receive, TakesAnUnattachedPortForTheFirstUnattachedOne)
{
    vexo_user_port_to_lport[8] = -1; // uport 2
    vexo_user_port_to_lport[3] = -1;
    EXPECT_EQ(Packet64(2).deliver(), 2);
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].port, Usp(1, 1, 4));
}

TEST_F(Receive, CountsAnEmptyPacketAsHandledAndTellsNobody)
{
    Packet64 packet(2);
    packet.pkt.pkt_len = 0;
    EXPECT_EQ(packet.deliver(), 2);
    EXPECT_TRUE(received.empty());
}

TEST_F(Receive, ChecksThePortBeforeTheLength)
{
    Packet64 packet(54);
    packet.pkt.pkt_len = 0;
    EXPECT_EQ(packet.deliver(), 1);
}

TEST_F(Receive, ReadsThePacketLengthFromTheFirstBlockAlone)
{
    Packet64 packet(2, 100);
    Bytes second(10, 0xdd);
    packet.blocks[0].len = 1;
    packet.blocks[1] = {second.data(), 10};
    packet.pkt.blk_count = 2;
    packet.pkt.tot_len = 110;
    EXPECT_EQ(packet.deliver(), 2);
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].bytes, packet.bytes);
    EXPECT_EQ(received[1].bytes, packet.bytes);
}

TEST_F(Receive, TakesTheShortestAndTheLongestPacket)
{
    for (const std::size_t size : {std::size_t{1}, std::size_t{65535}}) {
        received.clear();
        Packet64 packet(2, size);
        EXPECT_EQ(packet.deliver(), 2);
        ASSERT_EQ(received.size(), 2u);
        EXPECT_EQ(received[0].bytes, packet.bytes);
        EXPECT_EQ(received[1].bytes, packet.bytes);
    }
}

TEST_F(Receive, GivesCStyleSubscribersACopy)
{
    bcm_sdk->register_rx_packet_callback_c(spoil_data, nullptr);
    Packet64 packet(2);
    const Bytes before = packet.bytes;
    EXPECT_EQ(packet.deliver(), 2);
    EXPECT_NE(c_data, packet.bytes.data());
    EXPECT_EQ(packet.bytes, before);
}

TEST_F(Receive, LeavesTheDescriptorAsItWas)
{
    Packet64 packet(2);
    packet.pkt.flags = 5;
    packet.deliver();
    EXPECT_EQ(packet.pkt.pkt_data, packet.blocks);
    EXPECT_EQ(packet.blocks[0].data, packet.bytes.data());
    EXPECT_EQ(packet.pkt.pkt_len, 64);
    EXPECT_EQ(packet.pkt.flags, 5u);
}

TEST_F(Receive, HandlesAPacketThatNobodySubscribedTo)
{
    bcm_sdk->rx_packet_callbacks.clear();
    bcm_sdk->rx_packet_c_callbacks.clear();
    EXPECT_EQ(Packet64(2).deliver(), 2);
    EXPECT_TRUE(received.empty());
}

TEST_F(Receive, LeavesThePacketToOthersWhenMemoryRunsOut)
{
    Packet64 packet(2);
    for (bool* gone : {&no_memory, &no_memory_for_vector}) {
        *gone = true;
        EXPECT_EQ(packet.deliver(), 1);
        *gone = false;
        EXPECT_TRUE(received.empty());
    }
    EXPECT_EQ(packet.deliver(), 2);
    EXPECT_EQ(received.size(), 2u);
}

TEST_F(Receive, LeavesAPacketWithoutDataToOthers)
{
    EXPECT_EQ(vexo_recv_pkt(0, nullptr, nullptr), 1);
    Packet64 without_blocks(2);
    without_blocks.pkt.pkt_data = nullptr;
    EXPECT_EQ(without_blocks.deliver(), 1);
    Packet64 without_bytes(2);
    without_bytes.blocks[0].data = nullptr;
    EXPECT_EQ(without_bytes.deliver(), 1);
    EXPECT_TRUE(received.empty());
}

TEST_F(Receive, LeavesThePacketToOthersWithoutAnInstance)
{
    vexosdk_delete_sdk_instance(nullptr);
    EXPECT_EQ(Packet64(2).deliver(), 1);
    EXPECT_TRUE(received.empty());
}

TEST_F(Receive, PrintsNothingByDefault)
{
    Packet64 packet(2);
    EXPECT_EQ(output_of(&packet.pkt), "");
    EXPECT_EQ(output_of(nullptr), "");
}

TEST_F(Receive, PrintsALineForEachPacketWhileDebugging)
{
    Packet64 packet(2);
    Packet64 empty(2);
    empty.pkt.pkt_len = 0;
    Packet64 unmapped(54);
    for (const int on : {1, 2, 255}) { // any value but 0 is on
        hw_util_dbg = static_cast<unsigned char>(on);
        EXPECT_EQ(output_of(&packet.pkt), "packet recv\n");
        EXPECT_EQ(output_of(&empty.pkt), "packet recv\n");
        EXPECT_EQ(output_of(&unmapped.pkt), "packet recv\n");
    }
}

TEST_F(Receive, PrintsAnErrorForMissingDataWhileDebugging)
{
    hw_util_dbg = 1;
    Packet64 packet(2);
    packet.blocks[0].data = nullptr;
    EXPECT_EQ(output_of(&packet.pkt), "packet recv\npacket rx error\n");
    EXPECT_EQ(output_of(nullptr), "packet recv\npacket rx error\n");
}

TEST_F(Receive, LooksForTheInstanceBeforeTheData)
{
    hw_util_dbg = 1;
    vexosdk_delete_sdk_instance(nullptr);
    EXPECT_EQ(output_of(nullptr), "packet recv\n");
}

} // namespace
