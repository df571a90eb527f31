// A LAG of three between the card and a bond that is not ours, under a TCP transfer.

#include <algorithm>
#include <array>

#include "tests/hosts/lab.h"
#include "tests/hosts/transfer.h"

namespace {

constexpr std::uint64_t kMegabyte = 1 << 20;

class LagBetweenHosts : public Lab {
protected:
    /// A host with three cables in ports 1 to 3, bonded, and one without in port 4.
    void build() override
    {
        bonded = &host(1);
        plug(*bonded, 2);
        plug(*bonded, 3);
        single = &host(4, "192.0.2.4/24");
        bond = std::make_unique<OpenSwitch>(*bonded);
        // A bond takes broadcasts from one member only, so that addresses are not asked for.
        bond->set("add-bond br0 bond0 h1 h2 h3 bond_mode=balance-slb -- set bridge br0 "
                  "other-config:hwaddr=\\\"02:00:00:00:00:b0\\\"");
        bonded->run("ip link set br0 up; ip addr add 192.0.2.1/24 dev br0");
        bonded->run("ip neigh replace 192.0.2.4 lladdr " + mac_of(4) + " dev br0");
        single->run("ip neigh replace 192.0.2.1 lladdr 02:00:00:00:00:b0 dev h4");
        sh("lag create; lag add 0 1-3");
        wait_for_ports("1-4");
    }

    void TearDown() override
    {
        bond.reset();
        Lab::TearDown();
    }

    std::string active() { return vexosim::lags_table().rows.at(0).at(2); }

    /// What helps to find out what went wrong.
    std::string state()
    {
        return sh("show lags; show fdb; show counters; show drops; show wires") +
               bond->ask("bond/show") + bond->ask("fdb/show br0") +
               bonded->run("ip -s addr").output;
    }

    /// The member that sent most.
    int busiest()
    {
        return *std::ranges::max_element(members, {}, [&](int port) { return out_octets(port); });
    }

    const std::array<int, 3> members = {1, 2, 3};
    Host* bonded = nullptr;
    Host* single = nullptr;
    std::unique_ptr<OpenSwitch> bond;
};

} // namespace

TEST_F(LagBetweenHosts, ATransferSurvivesThePullingOfTheMemberThatCarriesIt)
{
    Transfer transfer(*single, *bonded, "192.0.2.1");
    ASSERT_TRUE(comes_true([&] { return transfer.received() > kMegabyte; })) << state();
    const int pulled = busiest();
    EXPECT_GT(out_octets(pulled), kMegabyte);

    bonded->run("ip link set h" + std::to_string(pulled) + " down");
    EXPECT_TRUE(comes_true([&] { return active().size() == std::string("1,2").size(); }));
    EXPECT_EQ(active().find(std::to_string(pulled)), std::string::npos) << active();
    const std::uint64_t before = transfer.received();
    const std::uint64_t pulled_before = out_octets(pulled);
    EXPECT_TRUE(comes_true([&] { return transfer.received() > before + kMegabyte; }));
    EXPECT_EQ(out_octets(pulled), pulled_before);
    EXPECT_TRUE(transfer.finish());
}
