// Two cables between the card and a switch that is not ours: a loop.

#include "tests/hosts/lab.h"

namespace {

using Clock = std::chrono::steady_clock;

class Loop : public TwoHosts {
protected:
    /// Beside the hosts, ports 3 and 4 go to one switch. Port 4 is blocked from the start.
    void build() override
    {
        TwoHosts::build();
        Host& neighbour = host(3);
        wait_for_ports("1-3");
        sh("forwarding off");
        plug(neighbour, 4);
        wait_for_links("4");
        other = std::make_unique<OpenSwitch>(neighbour);
        other->set("add-port br0 h3 -- add-port br0 h4");
    }

    void TearDown() override
    {
        other.reset();
        Lab::TearDown();
    }

    std::uint64_t broadcasts_out(int port) { return counter(port, "snmpIfHCOutBroadcastPkts"); }

    /// Broadcasts a second that leave through port 2.
    double rate()
    {
        const auto start = Clock::now();
        const std::uint64_t before = broadcasts_out(2);
        while (Clock::now() - start < std::chrono::milliseconds(500)) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
        const std::chrono::duration<double> seconds = Clock::now() - start;
        return static_cast<double>(broadcasts_out(2) - before) / seconds.count();
    }

    std::unique_ptr<OpenSwitch> other;
};

} // namespace

TEST_F(Loop, IsBrokenByBlockingOneOfItsPorts)
{
    EXPECT_TRUE(reaches(*a, "192.0.2.2"));
    const std::uint64_t before = broadcasts_out(2);
    a->run("ping -q -b -c 5 -i 0.05 -W 0.1 192.0.2.255");
    EXPECT_EQ(broadcasts_out(2) - before, 5u);
}

TEST_F(Loop, StormsUntilStormControlHoldsItDown)
{
    EXPECT_TRUE(reaches(*a, "192.0.2.2"));
    sh("stp port 4 forwarding");
    a->run("ping -q -b -c 1 -W 0.1 192.0.2.255");
    ASSERT_TRUE(comes_true([&] { return broadcasts_out(2) > 5000; })) << "no storm";
    const double unlimited = rate();
    sh("port storm 3,4 broadcast 50");
    rate(); // what was let in before is gone
    const double limited = rate();
    EXPECT_LE(limited, 2 * 50 * 2) << "of " << unlimited << " a second";
    EXPECT_GT(unlimited, 10 * limited);
}
