// The driver's counters of a port, and what the driver does not tell.
#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/grammar.h"
#include "vexosim/calls.h"

using namespace vexosh;

namespace {

class CounterVerbs : public ShellTest {
protected:
    CounterVerbs()
    {
        run("attach 1-2=mem; wait 1s; send 1 type=0x88b5 len=1514; send 1 type=0x88b5 len=1514");
    }

    std::string calls_of(const std::string& line)
    {
        vexosim::log_calls(true);
        vexosim::clear_calls();
        run(line);
        return vexosim::calls();
    }
};

} // namespace

TEST_F(CounterVerbs, TheDriversCountersAreShownInFourWays)
{
    const std::string counters = run("show counters driver 1");
    EXPECT_NE(counters.find("snmpIfInOctets                       3036\n"), std::string::npos)
        << counters;
    for (const char* way : {"32", "array", "32 array"}) {
        EXPECT_EQ(run(std::string("show counters driver 1 ") + way), counters) << way;
    }
    EXPECT_EQ(run("show counters driver 3"), "nothing has been counted\n");
}

TEST_F(CounterVerbs, EachWidthAsksTheSdkForItsOwn)
{
    const std::pair<const char*, const char*> cases[] = {
        {"show counters driver 1", "bcmx_stat_get(1, 0"},
        {"show counters driver 1 array", "bcmx_stat_get(1, 0"},
        {"show counters driver 1 32", "bcmx_stat_get32(1, 0"},
        {"show counters driver 1 32 array", "bcmx_stat_get32(1, 0"},
        {"show counter 1 1", "bcmx_stat_get(1, 0"},
        {"show counter 1 1 32", "bcmx_stat_get32(1, 0"},
    };
    for (const auto& [line, call] : cases) {
        EXPECT_TRUE(calls_of(line).starts_with(call)) << line;
    }
}

TEST_F(CounterVerbs, AllCountersStandInTheDriversOrder)
{
    const std::string all = run("show counters driver 1 all");
    EXPECT_EQ(std::ranges::count(all, '\n'), 77);
    EXPECT_TRUE(all.starts_with("counter"));
    EXPECT_NE(all.find("\nsnmpEtherStatsOversizePkts"), std::string::npos);
    EXPECT_EQ(all.find("1519to1522"), std::string::npos) << "the driver has no such counter";
    EXPECT_EQ(run("show counters driver 1 array all"), all);
}

TEST_F(CounterVerbs, OneCounterIsReadByNameOrNumberInBothWidths)
{
    EXPECT_EQ(run("show counter 1 snmpIfInOctets"), "3036\n");
    EXPECT_EQ(run("show counter 1 1 32"), "3036\n");
    EXPECT_EQ(run("show counter 2 7"), run("show counter 2 snmpIfOutOctets"));
    EXPECT_EQ(run("show counter 1 snmpIfInBroadcastPkts"), "2\n");
    EXPECT_EQ(run("show counter 1 76"), "2\n");
}

TEST_F(CounterVerbs, TheShortSetIsShownInBothWidths)
{
    const std::string brief = run("show counters brief");
    EXPECT_NE(brief, "nothing has been counted\n");
    EXPECT_EQ(run("show counters brief 32"), brief);
    EXPECT_NE(calls_of("show counters brief"), calls_of("show counters brief 32"));
}

TEST_F(CounterVerbs, OneCounterOfTheShortSetIsAlwaysRefused)
{
    for (const char* width : {"", " 32"}) {
        EXPECT_EQ(error_of(std::string("show counter brief 1 in-packets") + width),
                  "show counter brief 1: the driver refused: it does not take these values");
    }
    EXPECT_EQ(run("fault bcmx_port_stat_get 1; show counter brief 1 in-packets"), "0\n")
        << "the answer that the driver waits for";
}

TEST_F(CounterVerbs, WhatTheDriverDoesNotTellIsSaidSo)
{
    EXPECT_EQ(property(1, "default-vlan"), "not told (see pvid)");
    EXPECT_EQ(property(1, "counting"), "not told");
}

TEST_F(CounterVerbs, WhatDoesNothingAsksForNothing)
{
    const std::string before = run("show port 1; show ports");
    EXPECT_EQ(calls_of("port default-vlan 1-2 7; port phy-state 1 down; port phy-state 1 up"), "");
    EXPECT_EQ(run("show port 1; show ports"), before);
}

TEST_F(CounterVerbs, MirroringIsStartedAnew)
{
    EXPECT_EQ(calls_of("mirror enable"), "bcmx_mirror_init()\nbcmx_mirror_pfmt_set(1)\n");
    EXPECT_EQ(error_of("fault bcmx_mirror_init -1; mirror enable"),
              "mirror enable: the driver refused: bcmx_mirror_init reported -1, Internal error");
}

TEST_F(CounterVerbs, BlocksTowardsTheCpuAreReadByTheirOwnOperation)
{
    run("port block 0-52 cpu none; port block 1 cpu broadcast");
    EXPECT_EQ(run("show blocks cpu"), "to   flood      from\ncpu  broadcast     1\n");
}

TEST_F(CounterVerbs, BadInputIsOneLine)
{
    const BadCommand cases[] = {
        {"show counters driver",
         "missing PORT; usage: show counters driver PORT [32] [array] [all]"},
        {"show counters driver 1 16",
         "unexpected '16'; usage: show counters driver PORT [32] [array] [all]"},
        {"show counters driver 9/9",
         "show counters driver 9: the driver refused: there is no port 9/9"},
        {"show counter 1 in", "bad counter 'in': `show counters driver 0 all` lists their names; 1 "
                              "to 76 will do"},
        {"show counter 1 77", "bad counter '77': a number from 1 to 76 is wanted"},
        {"show counter 1 0", "bad counter '0': a number from 1 to 76 is wanted"},
        {"show counter 1", "missing COUNTER; usage: show counter PORT COUNTER [32]"},
        {"show counter brief 1 packets", "bad counter 'packets': one of in-packets, in-bytes, "
                                         "out-packets, out-bytes is wanted"},
        {"port phy-state 1 on", "bad state 'on': one of down, up is wanted"},
        {"mirror enable 1", "unexpected '1'; usage: mirror enable"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
}

TEST(CounterGrammar, WordsAreCompleted)
{
    using Names = std::vector<std::string>;
    EXPECT_EQ(completions({"show", "counters", "driver", "1"}, ""), (Names{"32", "array", "all"}));
    EXPECT_EQ(completions({"show", "counter", "brief", "1"}, "out"),
              (Names{"out-packets", "out-bytes"}));
    EXPECT_EQ(completions({"show", "counters"}, ""), (Names{"brief", "driver", "all"}));
}
