// Transmit entry points, and port lists.
#include <gtest/gtest.h>

#include <bcmx/tx.h>

#include "tests/sim/lport_test.h"

namespace {

struct Transmit : LportTest {
    Frame data = broadcast(host1).tagged(1).sized(64).bytes();
    bcm_pkt_blk_t block{data.data(), 64};
    bcm_pkt_t packet{};

    Transmit()
    {
        packet.pkt_data = &block;
        packet.blk_count = 1;
        packet.pkt_len = 64;
        take_sent();
    }
    std::string reached()
    {
        std::string text;
        for (const auto& [port, frames] : take_sent())
            text += std::to_string(port) + (frames.front().is_tagged() ? "t" : "u") +
                    std::to_string(frames.size()) + " ";
        return text;
    }
};

TEST_F(Transmit, APortListIsServedWhateverTheTablesSay)
{
    bcmx_lplist_t ports = list({port3, port4, port3}), untagged = list({port4});
    EXPECT_EQ(bcmx_tx_lplist(&packet, &ports, &untagged, BCMX_TX_F_PORT_LIST), 0);
    EXPECT_EQ(reached(), "3t1 4u1 ");
    EXPECT_EQ(bcmx_tx_lplist(&packet, &ports, nullptr, BCMX_TX_F_PORT_LIST), 0);
    EXPECT_EQ(reached(), "3t1 4t1 ");
}

TEST_F(Transmit, BadArgumentsSendNothing)
{
    bcmx_lplist_t ports = list({port3}), bad = list({port3, kNoPort});
    EXPECT_EQ(bcmx_tx_lplist(&packet, &bad, nullptr, BCMX_TX_F_PORT_LIST), BCM_E_PORT);
    EXPECT_EQ(bcmx_tx_lplist(&packet, &ports, &bad, BCMX_TX_F_PORT_LIST), BCM_E_PORT);
    EXPECT_EQ(bcmx_tx_lplist(&packet, nullptr, nullptr, BCMX_TX_F_PORT_LIST), BCM_E_PARAM);
    EXPECT_EQ(bcmx_tx_lplist(&packet, &ports, nullptr, 0x40), BCM_E_PARAM);
    EXPECT_EQ(bcmx_tx(&packet, 0x40), BCM_E_PARAM);
    EXPECT_EQ(bcmx_tx(nullptr, BCMX_TX_F_FLOOD), BCM_E_PARAM);
    block.len = 63;
    EXPECT_EQ(bcmx_tx(&packet, BCMX_TX_F_FLOOD), BCM_E_PARAM);
    EXPECT_EQ(bcmx_tx_lplist(&packet, &ports, nullptr, BCMX_TX_F_PORT_LIST), BCM_E_PARAM);
    packet.pkt_data = nullptr;
    EXPECT_EQ(bcmx_tx(&packet, BCMX_TX_F_FLOOD), BCM_E_PARAM);
    EXPECT_EQ(reached(), "");
}

extern "C" void note_that_it_was_sent(int /*unit*/, bcm_pkt_t* /*pkt*/, void* cookie)
{
    ++*static_cast<int*>(cookie);
}

TEST_F(Transmit, ACallbackIsCalledOnceTheFrameIsSent)
{
    int sent = 0;
    packet.call_back = note_that_it_was_sent;
    packet.cookie = &sent;
    EXPECT_EQ(bcmx_tx(&packet, BCMX_TX_F_FLOOD), 0);
    EXPECT_EQ(sent, 1);
    EXPECT_EQ(bcmx_tx(&packet, 0x40), BCM_E_PARAM);
    EXPECT_EQ(sent, 1);
}

struct Lists : testing::Test {};

TEST_F(Lists, OwnTheirStorageUntilTheyAreFreed)
{
    bcmx_lplist_t list;
    EXPECT_EQ(bcmx_lplist_init(&list, 2, 0), 0);
    EXPECT_EQ(live_lplists(), 1u);
    for (int port : {5, 6, 5, 7})
        EXPECT_EQ(bcmx_lplist_add(&list, port), 0);
    EXPECT_EQ(bcmx_lplist_count(&list), 4);
    EXPECT_EQ(bcmx_lplist_remove(&list, 5), 0) << "the first";
    EXPECT_EQ(list.lp_ports[0], 6);
    EXPECT_EQ(bcmx_lplist_add(&list, 5), 0);
    EXPECT_EQ(bcmx_lplist_port_remove(&list, 5, 1), 0) << "all";
    EXPECT_EQ(bcmx_lplist_count(&list), 2);
    EXPECT_EQ(bcmx_lplist_port_remove(&list, 5, 0), BCM_E_NOT_FOUND);
    EXPECT_EQ(bcmx_lplist_free(&list), 0);
    EXPECT_EQ(bcmx_lplist_free(&list), 0) << "an empty list may be freed again";
    EXPECT_EQ(live_lplists(), 0u);
}

TEST_F(Lists, AreRefusedWhenTheyAreNone)
{
    bcmx_lplist_t list;
    EXPECT_EQ(bcmx_lplist_init(nullptr, 1, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_lplist_init(&list, -1, 0), BCM_E_PARAM);
    EXPECT_EQ(bcmx_lplist_free(nullptr), BCM_E_PARAM);
    EXPECT_EQ(bcmx_lplist_add(nullptr, 1), BCM_E_PARAM);
    EXPECT_EQ(bcmx_lplist_remove(nullptr, 1), BCM_E_PARAM);
    EXPECT_EQ(bcmx_lplist_port_remove(nullptr, 1, 1), BCM_E_PARAM);
    EXPECT_EQ(bcmx_lplist_count(nullptr), 0);
}

} // namespace
