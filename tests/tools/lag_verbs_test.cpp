#include "l2/lag.h"
#include "tests/tools/shell_test_fixture.h"
#include "vexosim/wire.h"

using namespace vexosh;

namespace {

/// The ports that are active in LAG 0.
std::string active()
{
    return vexosim::lags_table().rows.at(0).at(2);
}

class LagVerbs : public ShellTest {
protected:
    LagVerbs() { run("attach 1-9=mem; wait 1s"); }
};

} // namespace

TEST_F(LagVerbs, ALagIsCreatedWithItsBookkeepingAndItsName)
{
    EXPECT_EQ(run("show lags"), "there are no lags\n");
    EXPECT_EQ(run("lag create; lag create 9"), "lag 0\nlag 1\n");
    EXPECT_EQ(run("lag add 1 2,3; show lags"), "lag  usp    criterion    ports  active\n"
                                               "  0  1/2/1  src-dst-mac  -      none\n"
                                               "  1  1/2/9  src-dst-mac  2,3    2,3\n");
    unsigned id = 0;
    EXPECT_TRUE(vexosdk_lag_usp_to_lag_id(Usp(1, 2, 9), id));
    EXPECT_EQ(id, 1u);
    std::list<Mp> members;
    EXPECT_TRUE(get_lag_member(1, members));
    EXPECT_EQ(text(members), "2,3");
}

TEST_F(LagVerbs, DeletingALagForgetsItsBookkeepingToo)
{
    run("lag create; lag add 0 1; lag delete 0");
    EXPECT_EQ(run("show lags"), "there are no lags\n");
    EXPECT_TRUE(lag_list.empty());
    EXPECT_TRUE(lag_id_usp_map.empty());
    EXPECT_EQ(run("lag create; lag add 0 1; show lags"),
              "lag 0\n"
              "lag  usp    criterion    ports  active\n"
              "  0  1/2/1  src-dst-mac      1       1\n");
}

TEST_F(LagVerbs, AddingPortsKeepsTheOnesThatAreThere)
{
    run("lag create; lag add 0 1; lag add 0 2-3,2");
    EXPECT_EQ(active(), "1,2,3");
}

TEST_F(LagVerbs, APortIsActiveWhileItHasALink)
{
    run("link 2 down; wait 1s; lag create; lag add 0 1-3");
    EXPECT_EQ(active(), "1,3");
    run("link 2 up; wait 1s");
    EXPECT_EQ(active(), "1,3,2");
    run("link 1 down; wait 1s");
    EXPECT_EQ(active(), "3,2");
    run("port disable 2; wait 1s");
    EXPECT_EQ(active(), "3");
}

TEST_F(LagVerbs, APortWhoseLinkReturnsIsActiveOnceAndForwards)
{
    run("lag create; lag add 0 1,2; link 1 down; wait 1s; link 1 up; wait 1s; wait 1s");
    EXPECT_EQ(active(), "2,1");
    EXPECT_EQ(run("show stp"), "state       ports\nforwarding  0-52\n");
}

TEST_F(LagVerbs, ALinkThatComesUpWhileItsPortIsAddedCountsOnce)
{
    run("lag create; lag add 0 1");
    ASSERT_EQ(vexosim::attach(10, "mem"), "");
    vexosim::drain(); // link scan has seen it, the manager has not
    run("lag add 0 10");
    EXPECT_EQ(active(), "1,10");
}

TEST_F(LagVerbs, AnEmptiedLagKeepsItsIdAndItsCriterion)
{
    run("lag create; lag add 0 1,2; lag criterion 0 src-ip; link 1,2 down; wait 1s");
    EXPECT_EQ(run("show lags"), "lag  usp    criterion  ports  active\n"
                                "  0  1/2/1  src-ip     1,2    none\n");
    run("link 2 up; wait 1s");
    EXPECT_EQ(run("show lags"), "lag  usp    criterion  ports  active\n"
                                "  0  1/2/1  src-ip     1,2         2\n");
    run("lag remove 0 2");
    EXPECT_EQ(run("show lags"), "lag  usp    criterion  ports  active\n"
                                "  0  1/2/1  src-ip         1  none\n");
}

TEST_F(LagVerbs, ARemovedPortIsLeftBlocking)
{
    run("lag create; lag add 0 1-3; lag remove 0 2");
    EXPECT_EQ(active(), "1,3");
    EXPECT_EQ(run("show stp"), "state       ports\nforwarding  0,1,3-52\nblocking    2\n");
    EXPECT_EQ(property(1, "lag"), "0");
    EXPECT_EQ(property(2, "lag"), "-");
}

TEST_F(LagVerbs, CriteriaAreSetByName)
{
    run("lag create");
    for (const char* criterion :
         {"src-mac", "dst-mac", "src-dst-mac", "src-ip", "dst-ip", "src-dst-ip"}) {
        run(std::string("lag criterion 0 ") + criterion);
        EXPECT_EQ(run("call get_lag_psc 0"), std::string("PSC = ") + criterion + "\n");
    }
}

TEST_F(LagVerbs, AFailedAddLeavesTheBookkeepingAsItWas)
{
    run("lag create; lag add 0 1; fault bcmx_trunk_set -5");
    EXPECT_EQ(error_of("lag add 0 2,3"),
              "lag add 0: the driver refused: bcmx_trunk_set reported -5, Table empty");
    EXPECT_EQ(run("fault clear; show lags"), "lag  usp    criterion    ports  active\n"
                                             "  0  1/2/1  src-dst-mac      1       1\n");
}

TEST_F(LagVerbs, ALagWhoseCriterionIsRefusedIsTakenAway)
{
    EXPECT_EQ(error_of("fault bcmx_trunk_psc_set -1; lag create"),
              "lag create: the driver refused: bcmx_trunk_psc_set reported -1, Internal error");
    EXPECT_EQ(run("show lags"), "there are no lags\n");
}

TEST_F(LagVerbs, BadInputIsOneLine)
{
    run("lag create; lag create 7; lag add 0 1");
    const BadCommand cases[] = {
        {"lag", "'lag' is followed by one of: create, delete, add, remove, criterion, book, "
                "unbook"},
        {"lag create x", "bad NUMBER 'x': a number from 1 to 4294967295 is wanted"},
        {"lag create 7", "1/2/7 is lag 1 already"},
        {"lag delete 5", "there is no lag 5; `show lags` lists them"},
        {"lag add 5 1", "there is no lag 5; `show lags` lists them"},
        {"lag add 0", "missing PORTS; usage: lag add LAG PORTS"},
        {"lag add 1 1", "port 1 is in lag 0"},
        {"lag add 0 1-9", "lag 0 would have 9 ports; 8 is the most"},
        {"lag add 0 99", "bad port '99': 0 to 52 or cpu is wanted"},
        {"lag remove 0 2", "port 2 is not in lag 0"},
        {"lag criterion 0 7", "bad criterion '7': one of src-mac, dst-mac, src-dst-mac, src-ip, "
                              "dst-ip, src-dst-ip is wanted"},
        {"lag criterion 5 src-ip", "there is no lag 5; `show lags` lists them"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
}
