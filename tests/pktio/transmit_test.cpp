// What is handed to the SDK for transmission. The transmit calls and the DMA memory are stood in
// for, because the descriptor and the buffer are gone when the operation returns.
#include <gtest/gtest.h>

#include <bcmx/tx.h>
#include <sal/core.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

#include "core/factory.h"
#include "pktio/packet.h"
#include "platform/port_map.h"
#include "tests/platform/port_tables.h"
#include "vexosim/calls.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"

// Lists that the driver deliberately leaves to nobody; the tests count them instead.
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:bcmx_lplist_init\n";
}

namespace {

using Bytes = std::vector<uint8_t>;
using Lports = std::vector<int>;

struct Sent {
    std::string call;
    bcm_pkt_t pkt;
    bcm_pkt_blk_t block;
    Bytes frame;
    uint32_t flags;
    Lports all, untagged;
};
std::vector<Sent> sent;
int tx_result = 0;

int dma_allocs = 0;
uint8_t* dma_buffer = nullptr; // the one in use
std::size_t dma_size = 0;
std::string dma_description;
bool dma_fails = false;

Lports ports_of(const bcmx_lplist_t* list)
{
    if (list == nullptr)
        return {};
    return Lports(list->lp_ports, list->lp_ports + list->lp_last + 1);
}

int record(const char* call, const bcm_pkt_t* pkt, const bcmx_lplist_t* all,
           const bcmx_lplist_t* untagged, uint32_t flags)
{
    const bcm_pkt_blk_t block = pkt->pkt_data[0];
    EXPECT_EQ(block.data, dma_buffer) << "the frame must lie in memory that the chip can reach";
    sent.push_back({call, *pkt, block, Bytes(block.data, block.data + block.len), flags,
                    ports_of(all), ports_of(untagged)});
    return tx_result;
}

} // namespace

extern "C" int bcmx_tx(bcm_pkt_t* pkt, uint32_t flags)
{
    return record("bcmx_tx", pkt, nullptr, nullptr, flags);
}

extern "C" int bcmx_tx_lplist(bcm_pkt_t* pkt, bcmx_lplist_t* tx_ports, bcmx_lplist_t* untagged,
                              uint32_t flags)
{
    return record("bcmx_tx_lplist", pkt, tx_ports, untagged, flags);
}

extern "C" void* sal_dma_alloc(size_t size, const char* description)
{
    ++dma_allocs;
    dma_size = size;
    dma_description = description;
    EXPECT_EQ(dma_buffer, nullptr);
    if (dma_fails)
        return nullptr;
    dma_buffer = new uint8_t[size];
    std::fill_n(dma_buffer, size, uint8_t{0xee}); // what padding must not leave in a frame
    return dma_buffer;
}

extern "C" void sal_dma_free(void* memory)
{
    EXPECT_EQ(memory, dma_buffer);
    EXPECT_NE(memory, nullptr);
    delete[] dma_buffer;
    dma_buffer = nullptr;
}

namespace {

constexpr uint8_t unicast[] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};

// Addresses, an EtherType, and a payload without zeros.
Bytes frame_of(std::size_t size, unsigned ethertype)
{
    Bytes frame(size);
    for (std::size_t i = 0; i < size; ++i)
        frame[i] = static_cast<uint8_t>(1 + i % 250);
    std::copy_n(unicast, std::min<std::size_t>(size, 6), frame.begin());
    if (size >= 14) {
        frame[12] = static_cast<uint8_t>(ethertype >> 8);
        frame[13] = static_cast<uint8_t>(ethertype);
    }
    return frame;
}

Bytes untagged_frame(std::size_t size)
{
    return frame_of(size, 0x0800);
}

Bytes tagged_frame(std::size_t size)
{
    return frame_of(size, 0x8100);
}

// The frame with a tag for VLAN 1, padded.
Bytes with_tag(const Bytes& frame)
{
    Bytes result(frame.begin(), frame.begin() + 12);
    for (const int byte : {0x81, 0x00, 0x00, 0x01})
        result.push_back(static_cast<uint8_t>(byte));
    result.insert(result.end(), frame.begin() + 12, frame.end());
    if (result.size() < 64)
        result.resize(64, 0);
    return result;
}

Packet packet_of(const Bytes& frame)
{
    Packet packet;
    packet.set_data(frame);
    return packet;
}

int lport(int user_port)
{
    return vexo_user_port_to_lport[user_port];
}

enum class How { from_cpu, by_ports };

void PrintTo(How how, std::ostream* out)
{
    *out << (how == How::from_cpu ? "from the CPU" : "by ports");
}

struct Transmit : testing::Test {
    std::size_t lists_before = 0;

    Transmit()
    {
        vexosim::use_manual_clock();
        vexosdk_create_sdk_instance();
        build_port_tables();
        sent.clear();
        tx_result = 0;
        dma_fails = false;
        vexosim::clear_faults();
        lists_before = vexosim::live_lplists();
        dma_allocs = 0;
    }
    ~Transmit() override
    {
        EXPECT_EQ(dma_buffer, nullptr) << "the buffer must be freed";
        vexosdk_delete_sdk_instance(nullptr);
    }

    bool by_ports(const std::list<Mp>& tagged, const std::list<Mp>& untagged, const Bytes& frame)
    {
        return bcm_sdk->send_packet_by_ports(tagged, untagged, packet_of(frame));
    }
    bool from_cpu(const Bytes& frame) { return bcm_sdk->send_packet_from_cpu(packet_of(frame)); }

    std::size_t lists_left() const { return vexosim::live_lplists() - lists_before; }
};

// Rules of both operations.
struct EitherTransmit : Transmit, testing::WithParamInterface<How> {
    bool send(const Bytes& frame)
    {
        sent.clear();
        return GetParam() == How::from_cpu ? from_cpu(frame) : by_ports({Mp(0, 3)}, {}, frame);
    }
};
INSTANTIATE_TEST_SUITE_P(All, EitherTransmit, testing::Values(How::from_cpu, How::by_ports),
                         [](const auto& param) {
                             return param.param == How::from_cpu ? "FromCpu" : "ByPorts";
                         });

TEST_P(EitherTransmit, ATooLongPacketIsRefusedBeforeMemoryIsTaken)
{
    EXPECT_FALSE(send(tagged_frame(16385)));
    EXPECT_EQ(dma_allocs, 0);
    EXPECT_TRUE(sent.empty());
}

TEST_P(EitherTransmit, TheLongestTaggedPacketIsSentAsItIs)
{
    const Bytes frame = tagged_frame(16384);
    EXPECT_TRUE(send(frame));
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].frame, frame);
    EXPECT_EQ(sent[0].pkt.pkt_len, 16384);
}

TEST_P(EitherTransmit, AnUntaggedPacketMustLeaveRoomForTheTag)
{
    EXPECT_FALSE(send(untagged_frame(16384)));
    EXPECT_FALSE(send(untagged_frame(16381)));
    EXPECT_TRUE(sent.empty());
    EXPECT_TRUE(send(untagged_frame(16380)));
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].frame, with_tag(untagged_frame(16380)));
}

TEST_P(EitherTransmit, APacketBelow16BytesIsRefused)
{
    for (const unsigned size : {0u, 1u, 13u, 14u, 15u}) {
        EXPECT_FALSE(send(untagged_frame(size))) << size;
        EXPECT_FALSE(send(tagged_frame(size))) << size;
    }
    EXPECT_TRUE(sent.empty());
}

TEST_P(EitherTransmit, AnUntaggedPacketGetsATagOfVlan1AndZerosUpTo64Bytes)
{
    EXPECT_TRUE(send(untagged_frame(16)));
    ASSERT_EQ(sent.size(), 1u);
    Bytes expected = untagged_frame(16);
    const Bytes rest(expected.begin() + 12, expected.end());
    expected.resize(12);
    for (const int byte : {0x81, 0x00, 0x00, 0x01})
        expected.push_back(static_cast<uint8_t>(byte));
    expected.insert(expected.end(), rest.begin(), rest.end());
    expected.insert(expected.end(), 44, 0);
    EXPECT_EQ(sent[0].frame, expected);
}

TEST_P(EitherTransmit, UntaggedPacketsOfAnySizeKeepTheirBytesAroundTheTag)
{
    for (const unsigned size : {17u, 59u, 60u, 61u, 63u, 64u, 100u, 1514u}) {
        EXPECT_TRUE(send(untagged_frame(size)));
        ASSERT_EQ(sent.size(), 1u);
        EXPECT_EQ(sent[0].frame, with_tag(untagged_frame(size))) << size;
    }
}

TEST_P(EitherTransmit, ATaggedPacketKeepsItsTagAndIsPadded)
{
    for (const unsigned size : {16u, 60u, 63u, 64u, 65u, 1518u}) {
        Bytes frame = tagged_frame(size);
        frame[14] = 0xe0; // priority 7, VLAN 10
        frame[15] = 0x0a;
        EXPECT_TRUE(send(frame));
        ASSERT_EQ(sent.size(), 1u);
        frame.resize(std::max(size, 64u), 0);
        EXPECT_EQ(sent[0].frame, frame) << size;
    }
}

TEST_P(EitherTransmit, OnlyEtherType8100CountsAsATag)
{
    for (const unsigned ethertype : {0x0081u, 0x8101u, 0x9100u, 0x88a8u, 0x0100u}) {
        EXPECT_TRUE(send(frame_of(100, ethertype)));
        ASSERT_EQ(sent.size(), 1u);
        EXPECT_EQ(sent[0].frame, with_tag(frame_of(100, ethertype))) << ethertype;
    }
}

TEST_P(EitherTransmit, TheDescriptorHoldsOneBlockOfTheFinalLengthInClass7)
{
    EXPECT_TRUE(send(untagged_frame(16)));
    ASSERT_EQ(sent.size(), 1u);
    const bcm_pkt_t& pkt = sent[0].pkt;
    EXPECT_EQ(pkt.blk_count, 1);
    EXPECT_EQ(sent[0].block.len, 64);
    EXPECT_EQ(pkt.pkt_len, 64);
    EXPECT_EQ(pkt.cos, 7);
    EXPECT_EQ(pkt.flags, GetParam() == How::from_cpu ? 0x100000u : 0u);
}

TEST_P(EitherTransmit, TheRestOfTheDescriptorIsZero)
{
    EXPECT_TRUE(send(untagged_frame(100)));
    ASSERT_EQ(sent.size(), 1u);
    const bcm_pkt_t& pkt = sent[0].pkt;
    EXPECT_EQ(pkt.call_back, nullptr);
    EXPECT_EQ(pkt.cookie, nullptr);
    EXPECT_EQ(pkt.unit, 0);
    EXPECT_EQ(pkt.prio_int, 0);
    EXPECT_EQ(pkt.vlan, 0);
    EXPECT_EQ(pkt.rx_port, 0);
    EXPECT_EQ(pkt.rx_untagged, 0);
    EXPECT_EQ(pkt.tot_len, 0);
    EXPECT_EQ(pkt.rx_reason, 0u);
}

TEST_P(EitherTransmit, AsksForANamedBufferOf16384Bytes)
{
    EXPECT_TRUE(send(untagged_frame(16)));
    EXPECT_EQ(dma_allocs, 1);
    EXPECT_EQ(dma_size, 16384u);
    EXPECT_EQ(dma_description, "VEXON BCMSDK");
}

TEST_P(EitherTransmit, FailsWithoutABuffer)
{
    dma_fails = true;
    EXPECT_FALSE(send(untagged_frame(100)));
    EXPECT_TRUE(sent.empty());
    EXPECT_EQ(lists_left(), 0u);
}

TEST_P(EitherTransmit, FailsWhenTheSdkFails)
{
    for (const int code : {-1, -4, -7, -8, -16, -17, -18}) {
        tx_result = code;
        EXPECT_FALSE(send(untagged_frame(100))) << code;
        EXPECT_EQ(sent.size(), 1u);
        EXPECT_EQ(dma_buffer, nullptr);
    }
}

TEST_P(EitherTransmit, PrintsNothing)
{
    testing::internal::CaptureStdout();
    send(untagged_frame(100));
    send(untagged_frame(1));
    tx_result = -1;
    send(untagged_frame(100));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

using SendFromCpu = Transmit;
using SendByPorts = Transmit;

TEST_F(SendFromCpu, TellsTheSdkWhetherTheDestinationIsAGroup)
{
    const struct {
        Bytes mac;
        uint32_t kind;
    } rows[] = {
        {{0xff, 0xff, 0xff, 0xff, 0xff, 0xff}, 4}, {{0x01, 0x00, 0x5e, 0x00, 0x00, 0x05}, 4},
        {{0x33, 0x33, 0x00, 0x00, 0x00, 0x01}, 4}, {{0x00, 0x11, 0x22, 0x33, 0x44, 0x55}, 1},
        {{0xfe, 0xff, 0xff, 0xff, 0xff, 0xff}, 1}, {{0x00, 0x01, 0x01, 0x01, 0x01, 0x01}, 1}};
    for (const auto& row : rows) {
        Bytes frame = untagged_frame(100);
        std::copy(row.mac.begin(), row.mac.end(), frame.begin());
        sent.clear();
        EXPECT_TRUE(from_cpu(frame));
        ASSERT_EQ(sent.size(), 1u);
        EXPECT_EQ(sent[0].call, "bcmx_tx");
        EXPECT_EQ(sent[0].flags, row.kind);
    }
}

TEST_F(SendFromCpu, AnyResultThatIsNotNegativeIsSuccess)
{
    tx_result = 5;
    EXPECT_TRUE(from_cpu(untagged_frame(100)));
}

TEST_F(SendByPorts, OnlyZeroIsSuccess)
{
    tx_result = 5;
    EXPECT_FALSE(by_ports({Mp(0, 3)}, {}, untagged_frame(100)));
}

TEST_F(SendByPorts, ListsTheTaggedPortsAndThenTheUntaggedOnes)
{
    EXPECT_TRUE(by_ports({Mp(0, 5), Mp(0, 3)}, {Mp(2, 50), Mp(3, 53)}, untagged_frame(100)));
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].call, "bcmx_tx_lplist");
    EXPECT_EQ(sent[0].flags, 0x20u);
    EXPECT_EQ(sent[0].all, (Lports{lport(5), lport(3), lport(50), lport(53)}));
    EXPECT_EQ(sent[0].untagged, (Lports{lport(50), lport(53)}));
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(SendByPorts, APortOfBothListsIsListedTwice)
{
    EXPECT_TRUE(by_ports({Mp(0, 5)}, {Mp(0, 5)}, untagged_frame(100)));
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].all, (Lports{lport(5), lport(5)}));
    EXPECT_EQ(sent[0].untagged, (Lports{lport(5)}));
}

TEST_F(SendByPorts, SendsToNoPortsWhenAsked)
{
    EXPECT_TRUE(by_ports({}, {}, untagged_frame(100)));
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_TRUE(sent[0].all.empty() && sent[0].untagged.empty());
}

TEST_F(SendByPorts, AnUnmappedPortRepeatsTheOneBeforeIt)
{
    EXPECT_TRUE(by_ports({Mp(1, 0), Mp(0, 5), Mp(1, 0)}, {Mp(1, 1), Mp(0, 7), Mp(9, 9)},
                         untagged_frame(100)));
    ASSERT_EQ(sent.size(), 1u);
    EXPECT_EQ(sent[0].all, (Lports{-1, lport(5), lport(5), lport(5), lport(7), lport(7)}));
    EXPECT_EQ(sent[0].untagged, (Lports{lport(5), lport(7), lport(7)}));
}

TEST_F(SendByPorts, MakesTheListsInOrderAndFreesThemInOrder)
{
    vexosim::log_calls(true);
    vexosim::clear_calls();
    EXPECT_TRUE(by_ports({Mp(0, 5)}, {Mp(0, 7)}, untagged_frame(100)));
    EXPECT_EQ(vexosim::all_calls(), "bcmx_lplist_init(out, 54, 0)\n"
                                    "bcmx_lplist_init(out, 54, 0)\n"
                                    "bcmx_lplist_add([], 5)\n"
                                    "bcmx_lplist_add([5], 7)\n"
                                    "bcmx_lplist_add([], 7)\n"
                                    "bcmx_lplist_free([5, 7])\n"
                                    "bcmx_lplist_free([7])\n");
}

TEST_F(SendByPorts, DoesNotLookAtTheResultsOfListingPorts)
{
    for (const unsigned nth : {1u, 2u, 3u}) {
        vexosim::inject({.call = "bcmx_lplist_add", .nth = nth});
        EXPECT_TRUE(by_ports({Mp(0, 5)}, {Mp(0, 7)}, untagged_frame(100))) << nth;
        vexosim::clear_faults();
    }
    ASSERT_EQ(sent.size(), 3u);
    EXPECT_EQ(sent[0].all, (Lports{lport(7)}));
    EXPECT_EQ(sent[1].all, (Lports{lport(5)}));
    EXPECT_EQ(sent[2].untagged, Lports{});
}

TEST_F(SendByPorts, FailsWithoutTheFirstList)
{
    vexosim::inject({.call = "bcmx_lplist_init"});
    EXPECT_FALSE(by_ports({Mp(0, 5)}, {}, untagged_frame(100)));
    EXPECT_TRUE(sent.empty());
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(SendByPorts, FailsWithoutTheSecondListAndLeavesTheFirst)
{
    vexosim::inject({.call = "bcmx_lplist_init", .nth = 2});
    EXPECT_FALSE(by_ports({Mp(0, 5)}, {}, untagged_frame(100)));
    EXPECT_TRUE(sent.empty());
    EXPECT_EQ(lists_left(), 1u);
}

TEST_F(SendByPorts, LeavesBothListsWhenTheFrameIsNotSent)
{
    tx_result = -18;
    EXPECT_FALSE(by_ports({Mp(0, 5)}, {Mp(0, 7)}, untagged_frame(100)));
    EXPECT_EQ(lists_left(), 2u);
}

TEST_F(SendByPorts, FailsAndLeavesTheSecondListWhenTheFirstCannotBeFreed)
{
    vexosim::inject({.call = "bcmx_lplist_free"});
    vexosim::log_calls(true);
    vexosim::clear_calls();
    EXPECT_FALSE(by_ports({Mp(0, 5)}, {Mp(0, 7)}, untagged_frame(100)));
    EXPECT_EQ(sent.size(), 1u);
    EXPECT_EQ(vexosim::all_calls().find("bcmx_lplist_free([7])"), std::string::npos);
}

TEST_F(SendByPorts, SucceedsWhenTheSecondListCannotBeFreed)
{
    vexosim::inject({.call = "bcmx_lplist_free", .nth = 2});
    EXPECT_TRUE(by_ports({Mp(0, 5)}, {Mp(0, 7)}, untagged_frame(100)));
}

TEST_F(SendByPorts, TakesNoListsForAFrameThatCannotBeSent)
{
    vexosim::log_calls(true);
    vexosim::clear_calls();
    EXPECT_FALSE(by_ports({Mp(0, 5)}, {}, untagged_frame(15)));
    EXPECT_EQ(vexosim::all_calls(), "");
}

} // namespace
