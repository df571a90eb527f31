#include "sim/chip/mac_table.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

#include <bcm/error.h>
#include <bcm/l2.h>

namespace vexosim {
namespace {

constexpr std::uint64_t kSecond = 1'000'000;

MacEntry at(MacAddress mac, int vid, int port, std::uint16_t flags = 0)
{
    MacEntry entry;
    entry.key = mac_key(mac, vid);
    entry.port = static_cast<std::uint8_t>(port);
    entry.flags = flags;
    return entry;
}

MacEntry on_trunk(MacAddress mac, int vid, int trunk, std::uint16_t flags = 0)
{
    MacEntry entry = at(mac, vid, 0, flags | BCM_L2_TRUNK_MEMBER);
    entry.trunk = static_cast<std::uint8_t>(trunk);
    return entry;
}

std::string events_of(MacTable& table)
{
    std::vector<MacEvent> events;
    table.take_events(events);
    std::string text;
    for (const MacEvent& e : events)
        text += (e.inserted ? "+" : "-") + std::to_string(e.entry.mac()) + "@" +
                std::to_string(e.entry.port) + " ";
    return text;
}

TEST(MacTable, AddingAPresentAddressIsRefused)
{
    MacTable table;
    EXPECT_EQ(table.add(at(1, 1, 5), false, 0), BCM_E_NONE);
    EXPECT_EQ(table.add(at(1, 1, 6), false, 0), BCM_E_EXISTS);
    EXPECT_EQ(table.find(mac_key(1, 1))->port, 5);
    EXPECT_EQ(table.add(at(1, 2, 6), false, 0), BCM_E_NONE) << "another VLAN";
}

TEST(MacTable, AStaticEntryReplacesALearnedOneOnlyWhenAskedTo)
{
    MacTable table;
    table.learn(at(1, 1, 5), 0);
    EXPECT_EQ(table.add(at(1, 1, 6, BCM_L2_STATIC), false, 0), BCM_E_EXISTS);
    EXPECT_EQ(table.add(at(1, 1, 6, BCM_L2_STATIC), true, 0), BCM_E_NONE);
    EXPECT_EQ(table.add(at(1, 1, 7, BCM_L2_STATIC), true, 0), BCM_E_EXISTS);
    EXPECT_EQ(table.find(mac_key(1, 1))->port, 6);
    EXPECT_EQ(table.size(), 1u);
}

TEST(MacTable, OutOfRangeIsRefused)
{
    MacTable table;
    EXPECT_EQ(table.add(at(1, 4095, 5), false, 0), BCM_E_NONE);
    EXPECT_EQ(table.add(at(1, 0, 5), false, 0), BCM_E_NONE);
    EXPECT_EQ(table.add(at(1, 4096, 5), false, 0), BCM_E_PARAM);
    EXPECT_EQ(table.add(at(2, 1, 53), false, 0), BCM_E_NONE);
    EXPECT_EQ(table.add(at(3, 1, 54), false, 0), BCM_E_PARAM);
    EXPECT_EQ(table.add(on_trunk(4, 1, 127), false, 0), BCM_E_NONE);
    EXPECT_EQ(table.add(on_trunk(5, 1, 128), false, 0), BCM_E_PARAM);
}

TEST(MacTable, Holds32768EntriesAndThenIsFull)
{
    MacTable table;
    for (unsigned n = 0; n < 32768; ++n)
        ASSERT_EQ(table.add(at(n, 1 + static_cast<int>(n % 7), 1), false, 0), BCM_E_NONE) << n;
    EXPECT_EQ(table.add(at(40000, 1, 1), false, 0), BCM_E_FULL);
    EXPECT_FALSE(table.learn(at(40000, 1, 1), 0));
    EXPECT_TRUE(table.learn(at(7, 1, 2), 0)) << "a move needs no room";
    EXPECT_EQ(table.erase(mac_key(0, 1)), BCM_E_NONE);
    EXPECT_EQ(table.add(at(40000, 1, 1), false, 0), BCM_E_NONE);
}

TEST(MacTable, BulkDeletesTakeTheirScopeAndLeaveStaticEntriesUnlessTold)
{
    MacTable table;
    table.learn(at(1, 1, 5), 0);
    table.learn(at(2, 2, 5), 0);
    table.learn(at(3, 2, 6), 0);
    table.add(at(4, 2, 5, BCM_L2_STATIC), false, 0);
    table.learn(on_trunk(5, 2, 5), 0);
    EXPECT_EQ(table.erase_by_port(5, false), 2u);
    EXPECT_EQ(table.erase_by_port(5, true), 1u) << "the static one; the trunk is no port";
    EXPECT_EQ(table.erase_by_vlan(2, false), 2u);
    EXPECT_EQ(table.size(), 0u);
    table.learn(on_trunk(5, 2, 5), 0);
    table.add(on_trunk(6, 2, 5, BCM_L2_STATIC), false, 0);
    EXPECT_EQ(table.erase_by_trunk(5, false), 1u);
    EXPECT_EQ(table.erase_by_trunk(5, true), 1u);
}

TEST(MacTable, DeletingThePortThatTrunkEntriesNameLeavesThemAlone)
{
    MacTable table;
    table.learn(on_trunk(1, 1, 5), 0);
    table.learn(at(2, 1, 0), 0);
    table.learn(on_trunk(3, 1, 5), 0);
    EXPECT_EQ(table.erase_by_port(0, true), 1u);
    EXPECT_EQ(table.find(mac_key(2, 1)), nullptr);
    EXPECT_EQ(table.count_trunk(5), 2u);
}

TEST(MacTable, DeletingByAddressReachesEveryVlan)
{
    MacTable table;
    table.learn(at(9, 1, 5), 0);
    table.add(at(9, 4095, 5, BCM_L2_STATIC), false, 0);
    table.learn(at(8, 1, 5), 0);
    EXPECT_EQ(table.erase_by_mac(9, false), 1u);
    EXPECT_EQ(table.erase_by_mac(9, true), 1u);
    EXPECT_EQ(table.erase_by_mac(9, true), 0u);
    EXPECT_EQ(table.size(), 1u);
}

TEST(MacTable, AnEntryGoesWhenNotHeardForTheAgeAndStaysWhenHeardAgain)
{
    MacTable table;
    table.set_age_seconds(10);
    table.learn(at(1, 1, 5), 0);
    table.learn(at(2, 1, 5), 0);
    table.add(at(3, 1, 5, BCM_L2_STATIC), false, 0);
    EXPECT_EQ(table.age(10 * kSecond - 1000), 0u);
    table.learn(at(2, 1, 5), 9 * kSecond);
    EXPECT_EQ(table.age(10 * kSecond), 1u);
    EXPECT_EQ(table.find(mac_key(1, 1)), nullptr);
    EXPECT_EQ(table.age(19 * kSecond - 1000), 0u);
    EXPECT_EQ(table.age(19 * kSecond), 1u);
    EXPECT_NE(table.find(mac_key(3, 1)), nullptr);
}

TEST(MacTable, AnAgeOfZeroKeepsEverything)
{
    MacTable table;
    table.learn(at(1, 1, 5), 0);
    EXPECT_EQ(table.set_age_seconds(-1), BCM_E_PARAM);
    EXPECT_EQ(table.age_seconds(), 300);
    EXPECT_EQ(table.set_age_seconds(0), BCM_E_NONE);
    EXPECT_EQ(table.age(1'000'000 * kSecond), 0u);
    table.set_age_seconds(1);
    EXPECT_EQ(table.age(1'000'000 * kSecond), 1u);
}

TEST(MacTable, AShorterAgeIsNoticedAtOnce)
{
    MacTable table;
    table.learn(at(1, 1, 5), 0);
    EXPECT_EQ(table.age(kSecond), 0u);
    table.set_age_seconds(2);
    EXPECT_EQ(table.age(2 * kSecond), 1u);
}

TEST(MacTable, EventsTellEveryInsertionAndRemovalInOrder)
{
    MacTable table;
    table.learn(at(1, 1, 5), 0);
    EXPECT_EQ(events_of(table), "") << "nobody asked yet";
    table.start_events();
    table.learn(at(1, 1, 5), 0);
    table.learn(at(1, 1, 6), 0);
    table.add(at(1, 1, 7, BCM_L2_STATIC), true, 0);
    table.learn(at(1, 1, 8), 0);
    table.erase(mac_key(1, 1));
    EXPECT_EQ(events_of(table), "-1@5 +1@6 -1@6 +1@7 -1@7 ");
    EXPECT_FALSE(table.has_events());
}

TEST(MacTable, EqualContentsAreEqualWhateverTheirHistory)
{
    MacTable a, b;
    for (unsigned n = 0; n < 1000; ++n)
        a.learn(at(n, 1, 5), 0);
    for (unsigned n = 2000; n-- > 0;)
        b.learn(at(n, 1, 5), 0);
    Digest da, db, dc;
    da.add(a);
    db.add(b);
    EXPECT_NE(a, b);
    EXPECT_NE(da.value(), db.value());
    for (unsigned n = 1000; n < 2000; ++n)
        b.erase(mac_key(n, 1));
    dc.add(b);
    EXPECT_EQ(a, b);
    EXPECT_EQ(da.value(), dc.value());
}

/// Few slots and many addresses, so that entries are displaced and move when others go.
TEST(MacTable, BehavesAsAMapUnderRandomUse)
{
    std::mt19937 random(7);
    MacTable table(24);
    std::map<std::uint64_t, int> model;
    for (int i = 0; i < 200'000; ++i) {
        MacAddress mac = random() % 40;
        int port = static_cast<int>(random() % 4), vid = 1 + static_cast<int>(random() % 2);
        switch (random() % 8) {
        case 0:
            EXPECT_EQ(table.erase_by_port(port, true),
                      std::erase_if(model, [&](auto& e) { return e.second == port; }));
            break;
        case 1:
        case 2:
            EXPECT_EQ(table.erase(mac_key(mac, vid)) == BCM_E_NONE,
                      model.erase(mac_key(mac, vid)) == 1);
            break;
        default:
            if (table.learn(at(mac, vid, port), 0))
                model[mac_key(mac, vid)] = port;
            else
                EXPECT_EQ(model.size(), 24u);
        }
        ASSERT_EQ(table.size(), model.size());
    }
    for (auto& [key, port] : model)
        EXPECT_EQ(table.find(key)->port, port);
    EXPECT_EQ(table.snapshot().size(), model.size());
}

} // namespace
} // namespace vexosim
