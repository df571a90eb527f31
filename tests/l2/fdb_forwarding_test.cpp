// What the operations of the MAC table do to frames. VLAN 10 is ports 3, 4 and 5; LAG 0, in the
// VLAN too, is port 10.
#include "l2/lag.h"
#include "pktio/event_records.h"

#include "tests/kit/kit.h"

namespace {

struct FdbForwarding : CardTest {
    unsigned lag = 77;

    FdbForwarding()
    {
        EXPECT_TRUE(sdk().create_vlan(10));
        EXPECT_TRUE(sdk().delete_cpu_port_from_vlan(10));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, {}, mps({3, 4, 5, 10})));
        for (const unsigned port : {3u, 4u, 5u, 10u})
            EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(port), 10));
        EXPECT_TRUE(sdk().create_lag(lag));
        EXPECT_TRUE(add_lag_to_list(lag, lag_list));
        EXPECT_TRUE(sdk().add_ports_to_lag(lag, mps({10})));
    }
    void hear(const Host& station, int port) { receive(port, udp(station, host(99))); }
    /// Where host 1 at port 3 is sent to reach a station.
    std::string way_to(const Host& station) { return ports_reached(udp(host1, station), 3); }
    bool add(const Host& station, unsigned port)
    {
        return sdk().add_mac_to_port(mp(port), station.mac.data(), 10, false);
    }
    bool add_to_lag(const Host& station)
    {
        return sdk().add_mac_to_port(Mp(0, lag), station.mac.data(), 10, true);
    }
};

const std::string kFlood = "4 5 10";

TEST_F(FdbForwarding, AStaticEntryTakesThePlaceOfALearnedOneAndStays)
{
    hear(host2, 4);
    EXPECT_EQ(way_to(host2), "4");
    EXPECT_TRUE(add(host2, 5));
    EXPECT_EQ(way_to(host2), "5");
    hear(host2, 4);
    EXPECT_EQ(way_to(host2), "5");
    EXPECT_TRUE(add(host2, 4)) << "there already";
    EXPECT_EQ(way_to(host2), "5");
}

TEST_F(FdbForwarding, AMulticastEntryReachesItsPortOnly)
{
    const TestFrame frame = multicast(host1);
    EXPECT_TRUE(sdk().add_mac_to_port(mp(5), frame.bytes().data(), 10, false));
    expect_forwarded(frame, 3, {5});
    EXPECT_TRUE(sdk().delete_mac(frame.bytes().data(), 10));
    expect_forwarded(frame, 3, {4, 5, 10});
}

TEST_F(FdbForwarding, AMulticastEntryOfALagReachesItsDesignatedPort)
{
    const TestFrame frame = multicast(host1);
    EXPECT_TRUE(sdk().add_mac_to_port(Mp(0, lag), frame.bytes().data(), 10, true));
    expect_forwarded(frame, 3, {10});
}

TEST_F(FdbForwarding, ASystemMacReachesTheCpuOnly)
{
    EXPECT_TRUE(sdk().add_system_mac(host2.mac.data(), 10));
    EXPECT_TRUE(sdk().add_cpu_port_to_vlan(10));
    expect_to_cpu(udp(host1, host2), 3);
    EXPECT_EQ(way_to(host2), "none");
    std::array<unsigned char, 512> bitmap{};
    bitmap[10 / 8] = 1 << 10 % 8;
    EXPECT_TRUE(sdk().delete_mac_vlan_bitmap(host2.mac.data(), bitmap.data()));
    EXPECT_EQ(way_to(host2), kFlood);
    EXPECT_TRUE(sdk().add_system_mac_vlan_bitmap(host2.mac.data(), bitmap.data()));
    EXPECT_EQ(way_to(host2), "none");
}

TEST_F(FdbForwarding, DeletesTakeWhatTheirScopeSays)
{
    struct Row {
        const char* what;
        std::function<bool(VexoBcmSdk&)> act;
        std::string learned, fixed, on_lag; // the ways afterwards
    };
    const auto none = [](VexoBcmSdk&) { return true; };
    const std::vector<Row> rows = {
        {"nothing", none, "4", "5", "10"},
        {"by address", [](auto& s) { return s.delete_mac(host3.mac.data(), 10); }, "4", kFlood,
         "10"},
        {"other VLAN", [](auto& s) { return s.delete_mac(host3.mac.data(), 1); }, "4", "5", "10"},
        {"all VLANs", [](auto& s) { return s.delete_mac_by_mac(host3.mac.data()); }, "4", kFlood,
         "10"},
        {"port", [](auto& s) { return s.clear_mac_by_port(mp(4), false, false); }, kFlood, "5",
         "10"},
        {"port of a static", [](auto& s) { return s.clear_mac_by_port(mp(5), false, false); }, "4",
         "5", "10"},
        {"port with static", [](auto& s) { return s.clear_mac_by_port(mp(5), false, true); }, "4",
         kFlood, "10"},
        {"LAG", [](auto& s) { return s.clear_mac_by_port(Mp(0, 0), true, false); }, "4", "5", "10"},
        {"LAG with static", [](auto& s) { return s.clear_mac_by_port(Mp(0, 0), true, true); }, "4",
         "5", kFlood},
        {"VLAN", [](auto& s) { return s.clear_mac_by_vlan(10, false); }, kFlood, "5", "10"},
        {"VLAN with static", [](auto& s) { return s.clear_mac_by_vlan(10, true); }, kFlood, kFlood,
         kFlood},
        {"table", [](auto& s) { return s.clear_fdb_table(false); }, kFlood, "5", "10"},
        {"table with static", [](auto& s) { return s.clear_fdb_table(true); }, kFlood, kFlood,
         kFlood},
    };
    for (const Row& row : rows) {
        EXPECT_TRUE(sdk().clear_fdb_table(true));
        hear(host2, 4);
        EXPECT_TRUE(add(host3, 5));
        EXPECT_TRUE(add_to_lag(host4));
        EXPECT_TRUE(row.act(sdk())) << row.what;
        EXPECT_EQ(way_to(host2), row.learned) << row.what;
        EXPECT_EQ(way_to(host3), row.fixed) << row.what;
        EXPECT_EQ(way_to(host4), row.on_lag) << row.what;
    }
}

TEST_F(FdbForwarding, AddressesAgeUnlessHeardAgain)
{
    EXPECT_TRUE(sdk().set_fdb_aging_time(10));
    hear(host2, 4);
    hear(host3, 5);
    EXPECT_TRUE(add(host4, 5));
    advance(8s);
    drain();
    hear(host2, 4);
    advance(4s);
    drain();
    EXPECT_EQ(way_to(host2), "4");
    EXPECT_EQ(way_to(host3), kFlood);
    EXPECT_EQ(way_to(host4), "5") << "static";
    EXPECT_TRUE(sdk().set_fdb_aging_time(0));
    advance(1h);
    drain();
    EXPECT_EQ(way_to(host2), "4");
    EXPECT_FALSE(sdk().set_fdb_aging_time(-1));
}

struct LearningMode {
    const char* name;
    std::function<bool(VexoBcmSdk&)> set; ///< at port 4
    bool forwards, to_cpu, learns;
};

const std::vector<LearningMode> kLearningModes = {
    {"unlocked", [](auto& s) { return s.set_port_mac_lock(mp(4), false); }, true, false, true},
    {"locked", [](auto& s) { return s.set_port_mac_lock(mp(4), true); }, false, true, false},
    {"only learns", [](auto& s) { return s.set_port_mac_lock_ext(mp(4), false, false); }, false,
     false, true},
    {"locked, forwards", [](auto& s) { return s.set_port_mac_lock_ext(mp(4), true, true); }, true,
     false, false},
    {"locked, to the CPU", [](auto& s) { return s.set_port_mac_lock_ext(mp(4), true, false); },
     false, true, false},
};

TEST_F(FdbForwarding, TheLearningModesActOnFramesOfUnknownSource)
{
    for (const LearningMode& mode : kLearningModes) {
        EXPECT_TRUE(sdk().clear_fdb_table(true));
        EXPECT_TRUE(mode.set(sdk()));
        expect_to_cpu(udp(host2, host(99)), 4, mode.to_cpu);
        EXPECT_EQ(way_to(host2), mode.learns ? "4" : kFlood) << mode.name;
        const TestFrame second = udp(host3, host(99));
        EXPECT_EQ(ports_reached(second, 4), mode.forwards ? "3 5 10" : "none") << mode.name;
    }
}

TEST_F(FdbForwarding, AStationThatMovesHereIsOfUnknownSourceToEveryLearningMode)
{
    for (const LearningMode& mode : kLearningModes) {
        EXPECT_TRUE(sdk().clear_fdb_table(true));
        EXPECT_TRUE(mode.set(sdk()));
        for (const Host& station : {host2, host3})
            hear(station, 5);
        expect_to_cpu(udp(host2, host(99)), 4, mode.to_cpu);
        EXPECT_EQ(way_to(host2), mode.learns ? "4" : "5") << mode.name;
        const TestFrame second = udp(host3, host(99));
        EXPECT_EQ(ports_reached(second, 4), mode.forwards ? "3 5 10" : "none") << mode.name;
    }
}

TEST_F(FdbForwarding, LimitsOfEveryKindStopLearningAndNotForwarding)
{
    struct Row {
        Mp port;
        int kind, in_port;
    };
    for (const Row& row :
         {Row{mp(4), 1, 4}, Row{Mp(0, lag), 2, 10}, Row{Mp(0, 10), 3, 4}, Row{Mp(0, 0), 4, 4}}) {
        EXPECT_TRUE(sdk().clear_fdb_table(true));
        EXPECT_TRUE(sdk().set_port_mac_limit(row.port, 1, row.kind));
        hear(host2, row.in_port);
        EXPECT_EQ(ports_reached(udp(host3, host(99)), row.in_port),
                  row.in_port == 4 ? "3 5 10" : "3 4 5");
        EXPECT_EQ(ports_reached(udp(host4, host2), 5), std::to_string(row.in_port)) << row.kind;
        EXPECT_NE(ports_reached(udp(host4, host3), 5), std::to_string(row.in_port)) << row.kind;
        EXPECT_TRUE(sdk().set_port_mac_limit(row.port, -1, row.kind));
        hear(host3, row.in_port);
        EXPECT_EQ(ports_reached(udp(host4, host3), 5), std::to_string(row.in_port)) << row.kind;
    }
}

TEST_F(FdbForwarding, TheTableHolds32768AddressesAndForwardsTheRest)
{
    MacBytes mac = {2, 1, 0, 0, 0, 0};
    const auto address = [&](unsigned n) {
        mac[4] = static_cast<std::uint8_t>(n >> 8);
        mac[5] = static_cast<std::uint8_t>(n);
        return mac;
    };
    log_calls(false);
    for (unsigned n = 0; n < 32768; ++n)
        ASSERT_TRUE(sdk().add_mac_to_port(mp(4), address(n).data(), 10, false)) << n;
    EXPECT_FALSE(sdk().add_mac_to_port(mp(4), address(40000).data(), 10, false));
    EXPECT_TRUE(sdk().add_mac_to_port(mp(4), address(5).data(), 10, false)) << "is there";
    hear(host2, 5);
    EXPECT_EQ(way_to(host2), kFlood) << "not learned";
    EXPECT_TRUE(sdk().delete_mac(address(7).data(), 10));
    hear(host2, 5);
    EXPECT_EQ(way_to(host2), "5");
}

/// What was told of the table: "+2@4 " for host 2 that came at user port 4, port 5 of its Usp.
std::string told;

void on_mac(L2Addr* addr, int type, void*)
{
    const bool is_trunk = addr->is_trunk();
    told += (type == 1   ? "+"
             : type == 0 ? "-"
                         : "=") +
            std::to_string(addr->mac()[5]) + "@" +
            (is_trunk ? "lag" + std::to_string(addr->trunk())
                      : std::to_string(addr->port().port() - 1)) +
            " ";
}

struct FdbEvents : FdbForwarding {
    FdbEvents()
    {
        drain();
        told.clear();
        EXPECT_TRUE(sdk().register_mac_update_callback(on_mac, nullptr));
    }
    /// What has been told since the last time.
    static std::string heard()
    {
        drain();
        return std::exchange(told, "");
    }
};

TEST_F(FdbEvents, EveryInsertionAndRemovalIsToldInOrder)
{
    hear(host2, 4);
    hear(host3, 10);
    EXPECT_EQ(heard(), "+2@4 +3@lag0 ");
    hear(host2, 4);
    EXPECT_EQ(heard(), "") << "heard again";
    hear(host2, 5);
    EXPECT_EQ(heard(), "-2@4 +2@5 ") << "a move";
    hear(host2, 10);
    EXPECT_EQ(heard(), "-2@5 +2@lag0 ");
    EXPECT_TRUE(add(host2, 3));
    EXPECT_EQ(heard(), "-2@lag0 +2@3 ") << "replaced";
    EXPECT_TRUE(sdk().delete_mac(host2.mac.data(), 10));
    EXPECT_TRUE(sdk().set_fdb_aging_time(5));
    advance(10s);
    EXPECT_EQ(heard(), "-2@3 -3@lag0 ");
    EXPECT_FALSE(add(Host{host2.mac, 0}, 54)) << "no such port";
    EXPECT_EQ(heard(), "");
}

TEST_F(FdbEvents, AWalkTellsOfEveryEntryByVlanAndAddress)
{
    hear(host3, 4);
    hear(host2, 10);
    EXPECT_TRUE(add(host4, 5));
    heard();
    sdk().traverse_mac_table(nullptr);
    EXPECT_EQ(std::exchange(told, ""), "=2@lag0 =3@4 =4@5 ");
}

} // namespace
