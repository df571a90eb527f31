// What the SDK does by itself, on the manual clock: ageing, L2 notification, packet receive.
#include <gtest/gtest.h>

#include <bcm/rx.h>
#include <bcmx/l2.h>
#include <bcmx/port.h>
#include <bcmx/rx.h>

#include "tests/kit/kit.h"

namespace {

std::string& heard()
{
    static std::string text;
    return text;
}

extern "C" void hear_address(bcmx_l2_addr_t* addr, int insert, void* user_data)
{
    heard() += (insert != 0 ? "+" : "-") + std::to_string(addr->mac[5]) + "@" +
               std::to_string(user_port_of(addr->lport - kFirstLport)) +
               static_cast<const char*>(user_data);
}

extern "C" void flush_the_port(bcmx_l2_addr_t* addr, int insert, void* /*user_data*/)
{
    if (insert != 0)
        bcmx_l2_addr_delete_by_port(addr->lport, 0);
}

int& packets()
{
    static int count = 0;
    return count;
}

extern "C" bcm_rx_t count_packet(int /*unit*/, bcm_pkt_t* pkt, void* /*cookie*/)
{
    ++packets();
    heard() += std::to_string(pkt->cos);
    return BCM_RX_HANDLED;
}

extern "C" bcm_rx_t pass_on(int /*unit*/, bcm_pkt_t* /*pkt*/, void* cookie)
{
    heard() += *static_cast<const char*>(cookie);
    return BCM_RX_NOT_HANDLED;
}

struct Time : CardTest {
    std::string take_heard() { return std::exchange(heard(), ""); }

    void hear_addresses(const char* mark = " ")
    {
        ASSERT_EQ(bcmx_l2_notify_register(hear_address, const_cast<char*>(mark)), 0);
    }
    void arrive(const TestFrame& frame, int port) { receive(port, FrameView(frame)); }
};

TEST_F(Time, StandsStillUntilItIsAdvanced)
{
    const auto start = now();
    EXPECT_TRUE(manual_clock());
    EXPECT_EQ(now(), start);
    advance(1500us);
    EXPECT_EQ(now(), start + 1500us);
    advance(-5us);
    EXPECT_EQ(now(), start + 1500us);
}

TEST_F(Time, ForgetsAddressesThatAreNotHeard)
{
    hear_addresses();
    EXPECT_EQ(bcmx_l2_age_timer_set(10), 0);
    arrive(udp(host1, host2), 1);
    advance(5s);
    arrive(udp(host3, host2), 3);
    EXPECT_EQ(take_heard(), "+1@1 ");
    advance(4s);
    EXPECT_EQ(take_heard(), "+3@3 ");
    advance(2s);
    EXPECT_EQ(take_heard(), "-1@1 ");
    arrive(udp(host3, host2), 3);
    advance(8s);
    EXPECT_EQ(take_heard(), "") << "an address that is heard again stays";
    advance(3s);
    EXPECT_EQ(take_heard(), "-3@3 ");
}

TEST_F(Time, ForgetsNothingWithoutAnAge)
{
    hear_addresses();
    EXPECT_EQ(bcmx_l2_age_timer_set(0), 0);
    arrive(udp(host1, host2), 1);
    advance(1000s);
    EXPECT_EQ(take_heard(), "+1@1 ");
}

TEST_F(Time, AddressesAreToldInOrderAndToEveryHandlerInTurn)
{
    hear_addresses("a ");
    hear_addresses("b ");
    arrive(udp(host1, host2), 1);
    arrive(udp(host1, host2), 2); // the station has moved
    EXPECT_EQ(take_heard(), "") << "not on the caller's thread";
    drain();
    EXPECT_EQ(take_heard(), "+1@1a +1@1b -1@1a -1@1b +1@2a +1@2b ");
}

TEST_F(Time, WhatAHandlerChangesIsToldToo)
{
    bcmx_l2_notify_register(flush_the_port, nullptr);
    hear_addresses();
    arrive(udp(host1, host2), 1);
    drain();
    EXPECT_EQ(take_heard(), "+1@1 -1@1 ");
}

TEST_F(Time, ANotificationHandlerIsRegisteredOnce)
{
    static char mark[] = "x";
    EXPECT_EQ(bcmx_l2_notify_register(hear_address, mark), 0);
    EXPECT_EQ(bcmx_l2_notify_register(hear_address, mark), BCM_E_EXISTS);
    EXPECT_EQ(bcmx_l2_notify_register(nullptr, mark), BCM_E_PARAM);
    EXPECT_EQ(bcmx_l2_notify_start(), 0) << "a second start is no error";
}

struct Receiving : Time {
    Receiving()
    {
        EXPECT_EQ(bcm_rx_stop(0, nullptr), 0);
        EXPECT_EQ(bcm_rx_init(0), 0);
    }
    void start(int cos_rate)
    {
        ASSERT_EQ(bcm_rx_register(0, "count", count_packet, 100, nullptr, 0xff), 0);
        ASSERT_EQ(bcm_rx_cos_rate_set(0, 7, cos_rate), 0);
        ASSERT_EQ(bcm_rx_start(0, nullptr), 0);
    }
    void arrive_bpdus(int count)
    {
        for (int i = 0; i < count; ++i)
            arrive(bpdu(host1), 1);
    }
};

TEST_F(Receiving, FramesWaitUntilReceiveRuns)
{
    start(0);
    arrive_bpdus(3);
    EXPECT_EQ(packets(), 0);
    drain();
    EXPECT_EQ(packets(), 3);
}

TEST_F(Receiving, ARateLimitLetsAsManyThroughInASecond)
{
    start(10);
    arrive_bpdus(40);
    drain();
    EXPECT_EQ(packets(), 10) << "one second's worth at once";
    advance(99ms);
    EXPECT_EQ(packets(), 10);
    advance(1ms);
    EXPECT_EQ(packets(), 11);
    advance(1s);
    EXPECT_EQ(packets(), 21);
    advance(10s);
    EXPECT_EQ(packets(), 40);
}

TEST_F(Receiving, HandlersAreAskedInTheOrderOfPriorityUntilOneHandlesTheFrame)
{
    static char low[] = "l", high[] = "h";
    start(0);
    ASSERT_EQ(bcm_rx_register(0, "low", pass_on, 10, low, 0xff), 0);
    ASSERT_EQ(bcm_rx_register(0, "high", pass_on, 200, high, 0xff), 0);
    arrive_bpdus(1);
    drain();
    EXPECT_EQ(take_heard(), "h7");
}

TEST_F(Receiving, AHandlerGetsTheClassesItAskedFor)
{
    static char mark[] = "x";
    start(0);
    ASSERT_EQ(bcm_rx_register(0, "others", pass_on, 200, mark, 0x7f), 0);
    arrive_bpdus(1);
    drain();
    EXPECT_EQ(take_heard(), "7");
}

TEST_F(Receiving, AStoppedReceiverKeepsWhatCame)
{
    start(0);
    EXPECT_EQ(bcm_rx_stop(0, nullptr), 0);
    arrive_bpdus(2);
    drain();
    EXPECT_EQ(packets(), 0);
    EXPECT_EQ(bcmx_rx_start(nullptr), 0);
    drain();
    EXPECT_EQ(packets(), 2);
}

TEST_F(Receiving, BadArgumentsAreRefused)
{
    start(0);
    bcm_rx_cfg_t config{};
    EXPECT_EQ(bcm_rx_start(0, nullptr), BCM_E_BUSY);
    EXPECT_EQ(bcmx_rx_start(nullptr), BCM_E_BUSY);
    EXPECT_EQ(bcm_rx_stop(1, &config), BCM_E_UNIT);
    EXPECT_EQ(bcm_rx_stop(0, &config), 0);
    EXPECT_GT(config.pkt_size, 0) << "the configuration that ran";
    config.chan_cfg[1].cos_bmp = 0x100;
    EXPECT_EQ(bcm_rx_start(0, &config), BCM_E_PARAM);
    EXPECT_EQ(bcm_rx_register(0, "none", nullptr, 1, nullptr, 0xff), BCM_E_PARAM);
    EXPECT_EQ(bcm_rx_register(0, "twice", count_packet, 100, nullptr, 0xff), BCM_E_EXISTS);
    EXPECT_EQ(bcm_rx_cos_rate_set(0, 8, 1), BCM_E_PARAM);
    EXPECT_EQ(bcm_rx_cos_rate_set(0, 7, -1), BCM_E_PARAM);
    EXPECT_EQ(bcm_rx_queue_channel_set(0, 8, 1), BCM_E_PARAM);
    EXPECT_EQ(bcm_rx_queue_channel_set(0, 7, 4), BCM_E_PARAM);
    EXPECT_EQ(bcm_rx_cosq_mapping_set(0, 64, {}, {}, 0, 0, 0, 0, 1), BCM_E_PARAM);
    EXPECT_EQ(bcm_rx_cosq_mapping_set(0, 63, {}, {}, 0, 0, 0, 0, 8), BCM_E_PARAM);
    EXPECT_EQ(bcmx_rx_device_add(1), BCM_E_UNIT);
}

} // namespace
