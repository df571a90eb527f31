// Linux hosts joined by the card, programmed through the driver, with the SDK's threads running.

#include <condition_variable>
#include <list>
#include <thread>

#include "core/factory.h"
#include "core/line_card_init.h"
#include "pktio/event_records.h"
#include "tests/hosts/network.h"
#include "vexosim/board.h"
#include "vexosim/ports.h"
#include "vexosim/wire.h"

namespace {

constexpr unsigned kPortA = 1, kPortB = 2;

// What a manager must do: ports that come up are left blocking by the driver.
class Manager {
public:
    explicit Manager(VexoSdkBase& sdk) : sdk_(sdk), thread_([this] { serve(); }) {}
    Manager(const Manager&) = delete;
    Manager& operator=(const Manager&) = delete;
    ~Manager()
    {
        notify([this] { stopping_ = true; });
        thread_.join();
    }

    void link_changed()
    {
        notify([this] { changed_ = true; });
    }

private:
    template <typename Change>
    void notify(Change change)
    {
        const std::lock_guard lock(mutex_);
        change();
        wake_.notify_all();
    }

    void serve()
    {
        std::unique_lock lock(mutex_);
        while (!stopping_) {
            wake_.wait(lock, [this] { return stopping_ || changed_; });
            changed_ = false;
            lock.unlock();
            for (const unsigned port : {kPortA, kPortB}) {
                sdk_.set_port_stp_state(Mp(0, port), STP_FORWARDING);
            }
            lock.lock();
        }
    }

    VexoSdkBase& sdk_;
    std::mutex mutex_;
    std::condition_variable wake_;
    bool stopping_ = false, changed_ = false;
    std::thread thread_;
};

Manager* manager = nullptr;

void on_link(LinkStatus*, Usp*)
{
    manager->link_changed();
}

class CardBetweenHosts : public HostTest {
protected:
    void SetUp() override
    {
        HostTest::SetUp();
        if (IsSkipped() || HasFailure()) {
            return;
        }
        vexosim::board::enable();
        vexosdk_create_sdk_instance();
        ASSERT_TRUE(vexosdk_get_sdk_instance(sdk));
        int slot = 0;
        vexo_init_line_card(slot);
        vexosim::connect_wires();
        the_manager = std::make_unique<Manager>(*sdk);
        manager = the_manager.get();
        sdk->register_link_change_callback(on_link, nullptr);
        ASSERT_EQ(vexosim::attach(kPortA, "tap:ta"), "");
        ASSERT_EQ(vexosim::attach(kPortB, "tap:tb"), "");
        vexosim::start_wires();
        a = std::make_unique<Host>();
        b = std::make_unique<Host>();
        a->take("ta", "192.0.2.1/24");
        b->take("tb", "192.0.2.2/24");
    }

    void TearDown() override
    {
        vexosim::stop_wires();
        vexosim::detach_all();
    }

    void put_into_vlan(unsigned port, unsigned vid)
    {
        sdk->create_vlan(vid);
        EXPECT_TRUE(sdk->add_ports_to_vlan(vid, {}, {Mp(0, port)}));
        EXPECT_TRUE(sdk->set_port_vlan_pvid(Mp(0, port), vid));
    }

    // Three answers within twenty seconds.
    bool reaches() { return a->run("ping -q -c 3 -i 0.2 -w 20 192.0.2.2").status == 0; }
    // No answer to any of five.
    bool is_cut_off()
    {
        const Ran ping = a->run("ping -q -c 5 -i 0.2 -W 1 192.0.2.2");
        return ping.output.find(" 0 received") != std::string::npos;
    }
    // Whether a condition comes true within twenty seconds.
    template <typename Condition>
    static bool comes_true(Condition condition)
    {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!condition() && std::chrono::steady_clock::now() < end) {
            std::this_thread::yield();
        }
        return condition();
    }
    bool a_sees_link()
    {
        return a->run("ip link show ta").output.find("NO-CARRIER") == std::string::npos;
    }

    VexoSdkBase* sdk = nullptr;
    std::unique_ptr<Manager> the_manager;
    std::unique_ptr<Host> a, b;
};

} // namespace

TEST_F(CardBetweenHosts, HostsInOneVlanPingEachOther)
{
    put_into_vlan(kPortA, 10);
    put_into_vlan(kPortB, 10);
    EXPECT_TRUE(reaches());
}

TEST_F(CardBetweenHosts, HostsInTwoVlansDoNot)
{
    put_into_vlan(kPortA, 10);
    put_into_vlan(kPortB, 10);
    EXPECT_TRUE(reaches());
    put_into_vlan(kPortB, 20);
    EXPECT_TRUE(sdk->delete_ports_from_vlan(10, {Mp(0, kPortB)}));
    EXPECT_TRUE(is_cut_off());
    put_into_vlan(kPortB, 10);
    EXPECT_TRUE(reaches());
}

TEST_F(CardBetweenHosts, APortSwitchedOffIsALinkDownForItsHost)
{
    EXPECT_TRUE(comes_true([&] { return a_sees_link(); }));
    EXPECT_TRUE(sdk->set_port_enable(Mp(0, kPortA), false));
    EXPECT_TRUE(comes_true([&] { return !a_sees_link(); }));
    EXPECT_TRUE(sdk->set_port_enable(Mp(0, kPortA), true));
    EXPECT_TRUE(comes_true([&] { return a_sees_link(); }));
    EXPECT_TRUE(reaches());
}

TEST_F(CardBetweenHosts, AHostThatGoesDownIsALinkDownForThePort)
{
    const auto has_link = [&] {
        phy_state_t state = PHY_LINK_DOWN;
        return sdk->get_port_phy_state(Mp(0, kPortA), state) && state == PHY_LINK_UP;
    };
    EXPECT_TRUE(comes_true(has_link));
    a->run("ip link set ta down");
    EXPECT_TRUE(comes_true([&] { return !has_link(); }));
    a->run("ip link set ta up");
    EXPECT_TRUE(comes_true(has_link));
}
