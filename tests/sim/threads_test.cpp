// The SDK's own threads, on the system's clock.
#include <gtest/gtest.h>

#include <bcm/link.h>
#include <bcm/rx.h>
#include <bcmx/l2.h>
#include <bcmx/link.h>
#include <bcmx/port.h>
#include <bcmx/stg.h>

#include <condition_variable>
#include <mutex>
#include <thread>

#include "core/factory.h"
#include "tests/kit/kit.h"
#include "vexosim/board.h"

namespace {

const std::thread::id test_thread = std::this_thread::get_id();

/// Counts what handlers were told, and lets a test wait for it.
class Counter {
public:
    void add()
    {
        {
            const std::lock_guard lock(mutex_);
            ++count_;
            other_thread_ = std::this_thread::get_id() != test_thread;
        }
        changed_.notify_all();
    }
    bool reaches(int wanted)
    {
        std::unique_lock lock(mutex_);
        return changed_.wait_for(lock, 60s, [&] { return count_ >= wanted; });
    }
    bool on_another_thread()
    {
        const std::lock_guard lock(mutex_);
        return other_thread_;
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int count_ = 0;
    bool other_thread_ = false;
};

Counter& links()
{
    static Counter& counter = *new Counter;
    return counter;
}

Counter& addresses()
{
    static Counter& counter = *new Counter;
    return counter;
}

Counter& packets()
{
    static Counter& counter = *new Counter;
    return counter;
}

extern "C" void hear_link(bcmx_lport_t lport, bcm_port_info_t* info)
{
    bcmx_stg_stp_set(1, lport, 4);
    if (info->linkstatus == BCM_PORT_LINK_STATUS_UP)
        links().add();
}

extern "C" void hear_address(bcmx_l2_addr_t* /*addr*/, int /*insert*/, void* /*user_data*/)
{
    addresses().add();
}

extern "C" bcm_rx_t hear_packet(int /*unit*/, bcm_pkt_t* /*pkt*/, void* /*cookie*/)
{
    packets().add();
    return BCM_RX_HANDLED;
}

struct Threads : testing::Test {
    Threads()
    {
        board::enable();
        set_property("bcm_linkscan_interval", "2000");
        // The driver prints where it keeps LEDs, on the link-scan thread: leave that on the output.
        vexosdk_create_sdk_instance();
        bcmx_linkscan_register(hear_link);
        bcmx_l2_notify_register(hear_address, nullptr);
        bcm_rx_stop(0, nullptr);
        bcm_rx_init(0); // the driver's handler would handle every packet
        bcm_rx_register(0, "hear", hear_packet, 255, nullptr, 0xff);
        bcm_rx_start(0, nullptr);
        attach_memory_wires(); // last, so that no link comes up unheard
    }
    // The instance stays, as it does in a program that ends: its threads still use it.

    void bring_links_up() { ASSERT_TRUE(links().reaches(53)); }
    /// Whether the log has the line, or gets it within a minute.
    static bool logs(const std::string& line)
    {
        const auto end = std::chrono::steady_clock::now() + 60s;
        while (all_calls().find(line) == std::string::npos) {
            if (std::chrono::steady_clock::now() > end)
                return false;
            std::this_thread::yield();
        }
        return true;
    }
};

TEST_F(Threads, LinkScanTellsOfLinksOnAThreadOfItsOwn)
{
    bring_links_up();
    EXPECT_TRUE(links().on_another_thread());
    EXPECT_FALSE(manual_clock());
}

TEST_F(Threads, LearnedAddressesAreToldOnAThreadOfItsOwn)
{
    bring_links_up();
    receive(1, FrameView(udp(host1, host2)));
    EXPECT_TRUE(addresses().reaches(1));
    EXPECT_TRUE(addresses().on_another_thread());
}

TEST_F(Threads, PacketsForTheCpuComeOnAThreadOfItsOwn)
{
    bring_links_up();
    for (int i = 0; i < 20; ++i)
        receive(1, FrameView(bpdu(host1)));
    EXPECT_TRUE(packets().reaches(1));
    EXPECT_TRUE(packets().on_another_thread());
}

TEST_F(Threads, FramesOperationsAndHandlersRunSideBySide)
{
    bring_links_up();
    const auto send = [](int port) {
        for (int i = 0; i < 200; ++i)
            receive(port, FrameView(udp(host(static_cast<std::uint8_t>(i + 10)), host2)));
    };
    std::thread one(send, 1);
    std::thread two(send, 2);
    for (unsigned vid = 100; vid < 140; ++vid) {
        bcm_sdk->create_vlan(vid);
        bcm_sdk->add_ports_to_vlan(vid, mps({1, 2, 3}), {});
    }
    for (int i = 0; i < 20; ++i)
        wire(7).set_far_end(i % 2 == 1);
    one.join();
    two.join();
    EXPECT_TRUE(addresses().reaches(200));
    EXPECT_EQ(conservation(), "");
}

TEST_F(Threads, TheCallLogAndFaultsMayBeUsedMeanwhile)
{
    log_calls(true);
    inject({.call = "bcmx_l2_addr_delete_by_port", .sticky = true});
    bring_links_up(); // some perhaps before the log was on
    clear_calls();
    wire(3).set_far_end(false);
    ASSERT_TRUE(logs("bcmx_stg_stp_set(1, 3, 4)\n"));
    wire(3).set_far_end(true);
    EXPECT_TRUE(logs("bcmx_port_stp_set(3, 1)\n"));
    log_calls(false);
    clear_faults();
}

} // namespace
