#include "platform/port_map.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <vector>

#include "tests/platform/port_tables.h"

namespace {

std::vector<int> rows(const int32_t (&table)[vexo_port_rows])
{
    return {std::begin(table), std::end(table)};
}

std::vector<int> range(int first, int last)
{
    std::vector<int> numbers;
    for (int i = first; i <= last; ++i)
        numbers.push_back(i);
    return numbers;
}

std::vector<int> join(const std::vector<std::vector<int>>& parts)
{
    std::vector<int> all;
    for (const auto& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

constexpr int untouched = 4711;

} // namespace

TEST(PortMap, UportsToChipPortsAreFixed)
{
    EXPECT_EQ(rows(vexo_uport_to_bcmport), join({{53, 48},
                                                 range(8, 15),
                                                 range(20, 27),
                                                 range(32, 39),
                                                 range(49, 52),
                                                 range(0, 7),
                                                 range(16, 19),
                                                 range(28, 31),
                                                 range(40, 47)}));
}

TEST(PortMap, ChipPortsToUserPortsCrossTheTwoPairsOfTenGigabitPorts)
{
    EXPECT_EQ(rows(vexo_bcmport_to_user_port), join({range(0, 48), {50, 49, 52, 51, 53}}));
}

TEST(PortMap, ComputedTablesAreEmptyAtLoad)
{
    EXPECT_EQ(rows(vexo_uport_to_user_port), std::vector<int>(54, 0));
    EXPECT_EQ(rows(vexo_user_port_to_lport), std::vector<int>(54, 0));
    EXPECT_TRUE(std::all_of(std::begin(vexo_user_port_to_module_port),
                            std::end(vexo_user_port_to_module_port),
                            [](const Mp& mp) { return mp == Mp(0, 0); }));
}

TEST(PortMap, BeforeTheBuildOnlyModule0Port0IsFound)
{
    int user_port = untouched;
    EXPECT_TRUE(map_mp_to_user_port(Mp(0, 0), user_port));
    EXPECT_EQ(user_port, 0);
    EXPECT_FALSE(map_mp_to_user_port(Mp(0, 1), user_port));
}

TEST(PortMap, BeforeTheBuildTheCpuPortReadsAsLport0)
{
    int lport = untouched;
    EXPECT_TRUE(vexo_bcm_sdk_get_cpu_lport(lport));
    EXPECT_EQ(lport, 0);
}

TEST(PortMap, CardIdentityIsZeroAtLoad)
{
    EXPECT_EQ(self_slot_id, 0);
    EXPECT_EQ(number_lc_chips, 0);
    EXPECT_EQ(number_lc_ports, 0);
    EXPECT_EQ(number_lc_ppm, 0);
    EXPECT_EQ(vexo_bcm_unit, 0);
}

TEST(PortMap, UportBuildGoesThroughBothFixedTables)
{
    EXPECT_TRUE(map_build_uport_to_user_port());
    EXPECT_EQ(rows(vexo_uport_to_user_port), join({{53, 48},
                                                   range(8, 15),
                                                   range(20, 27),
                                                   range(32, 39),
                                                   {50, 49, 52, 51},
                                                   range(0, 7),
                                                   range(16, 19),
                                                   range(28, 31),
                                                   range(40, 47)}));
}

TEST(PortMap, ModulePortBuildPutsUserPorts49To52IntoModule2AndTheCpuIntoModule3)
{
    build_port_tables();
    for (unsigned port = 0; port < 54; ++port) {
        const unsigned module = port <= 48 ? 0 : port <= 52 ? 2 : 3;
        EXPECT_EQ(vexo_user_port_to_module_port[port], Mp(module, port)) << port;
    }
}

TEST(PortMap, ModulePortBuildStopsAtAUserPortAbove52AndLeavesTheCpuRow)
{
    map_build_uport_to_user_port();
    vexo_uport_to_user_port[3] = 53;
    map_build_user_port_to_module_port();
    EXPECT_EQ(vexo_user_port_to_module_port[48], Mp(0, 48)); // uport 1
    EXPECT_EQ(vexo_user_port_to_module_port[8], Mp(0, 8));   // uport 2
    EXPECT_EQ(vexo_user_port_to_module_port[10], Mp(0, 0));  // uport 4
    EXPECT_EQ(vexo_user_port_to_module_port[53], Mp(0, 0));
}

TEST(PortMap, EveryMpFindsItsUserPortAndBack)
{
    build_port_tables();
    for (int port = 0; port < 54; ++port) {
        Mp mp(9, 9);
        int user_port = untouched;
        ASSERT_TRUE(map_user_port_to_mp(port, mp)) << port;
        ASSERT_TRUE(map_mp_to_user_port(mp, user_port)) << port;
        EXPECT_EQ(user_port, port);
    }
}

TEST(PortMap, AnMpOfTheWrongModuleFindsNothingAndWritesNothing)
{
    build_port_tables();
    int out = untouched;
    for (const Mp& mp : {Mp(1, 5), Mp(2, 48), Mp(0, 49), Mp(0, 53), Mp(3, 52), Mp(0, 54)}) {
        EXPECT_FALSE(map_mp_to_user_port(mp, out)) << mp.module() << "/" << mp.port();
        EXPECT_FALSE(map_mp_to_lport(mp, out)) << mp.module() << "/" << mp.port();
    }
    EXPECT_EQ(out, untouched);
}

TEST(PortMap, UserPortsOutside0To53AreRefused)
{
    build_port_tables();
    Mp mp(9, 9);
    EXPECT_FALSE(map_user_port_to_mp(-1, mp));
    EXPECT_FALSE(map_user_port_to_mp(54, mp));
    EXPECT_EQ(mp, Mp(9, 9));
    EXPECT_TRUE(map_user_port_to_mp(0, mp));
    EXPECT_TRUE(map_user_port_to_mp(53, mp));
}

TEST(PortMap, AnUnattachedPortMapsToLportMinus1)
{
    build_port_tables();
    vexo_user_port_to_lport[5] = -1;
    int lport = untouched;
    EXPECT_TRUE(map_mp_to_lport(Mp(0, 5), lport));
    EXPECT_EQ(lport, -1);
}

TEST(PortMap, AnMpFindsTheLportOfItsUserPort)
{
    build_port_tables();
    vexo_user_port_to_lport[53] = 900;
    int lport = untouched;
    EXPECT_TRUE(map_mp_to_lport(Mp(3, 53), lport));
    EXPECT_EQ(lport, 900);
}

TEST(PortMap, AnLportFindsTheFirstRowThatHoldsIt)
{
    build_port_tables();
    vexo_user_port_to_lport[7] = 1000;
    vexo_user_port_to_lport[50] = 1000;
    Mp mp;
    EXPECT_TRUE(map_lport_to_mp(1000, mp));
    EXPECT_EQ(mp, Mp(0, 7));
}

TEST(PortMap, LportMinus1FindsTheFirstUnattachedRow)
{
    build_port_tables();
    vexo_user_port_to_lport[49] = -1;
    Mp mp;
    EXPECT_TRUE(map_lport_to_mp(-1, mp));
    EXPECT_EQ(mp, Mp(2, 49));
}

TEST(PortMap, AnUnknownLportIsRefused)
{
    build_port_tables();
    Mp mp(9, 9);
    EXPECT_FALSE(map_lport_to_mp(4000, mp));
    EXPECT_FALSE(map_lport_to_mp(-1, mp)); // everything is attached
    EXPECT_EQ(mp, Mp(9, 9));
}

TEST(PortMap, AUportMapsThroughItsUserPort)
{
    build_port_tables();
    int lport = untouched;
    vexo_user_port_to_lport[50] = 900; // the user port of uport 26
    EXPECT_TRUE(map_uport_to_lport(26, lport));
    EXPECT_EQ(lport, 900);
}

TEST(PortMap, UportsOutside0To53AreRefused)
{
    build_port_tables();
    int lport = untouched;
    EXPECT_FALSE(map_uport_to_lport(-1, lport));
    EXPECT_FALSE(map_uport_to_lport(54, lport));
    EXPECT_EQ(lport, untouched);
    EXPECT_TRUE(map_uport_to_lport(0, lport));
    EXPECT_TRUE(map_uport_to_lport(53, lport));
}

TEST(PortMap, TheCpuLportIsThatOfRow53AndMinus1IsNone)
{
    build_port_tables();
    int lport = untouched;
    vexo_user_port_to_lport[53] = -1;
    EXPECT_FALSE(vexo_bcm_sdk_get_cpu_lport(lport));
    EXPECT_EQ(lport, untouched);
    for (const int cpu : {256, -2}) { // of negative numbers only -1 is none
        vexo_user_port_to_lport[53] = cpu;
        EXPECT_TRUE(vexo_bcm_sdk_get_cpu_lport(lport));
        EXPECT_EQ(lport, cpu);
    }
}
