#include "tests/tools/shell_test_fixture.h"
#include "vexosim/profile.h"

using namespace vexosh;

namespace {

class FdbVerbs : public ShellTest {
protected:
    FdbVerbs()
    {
        run("attach 1-4=mem; wait 1s; vlan create 10; vlan create 600; lag create; lag add 0 3");
    }

    /// Two learned and three static entries.
    void fill()
    {
        run("vlan add 10 tagged 2; fdb add 02:00:00:00:00:0a 1 1; fdb add 02:00:00:00:00:0b 10 2");
        run("fdb add 02:00:00:00:00:0c 1 lag 0; send 1 src=02:00:00:00:00:01 type=0x88b5");
        run("send 2 vlan=10 src=02:00:00:00:00:02 type=0x88b5");
    }
};

constexpr const char* kHead = "vlan  mac                port   kind\n";
constexpr const char* kA = "   1  02:00:00:00:00:0a  1      static\n";
constexpr const char* kB = "  10  02:00:00:00:00:0b  2      static\n";
constexpr const char* kC = "   1  02:00:00:00:00:0c  lag 0  static\n";
constexpr const char* k1 = "   1  02:00:00:00:00:01  1      learned\n";
constexpr const char* k2 = "  10  02:00:00:00:00:02  2      learned\n";

std::string table(std::initializer_list<const char*> rows)
{
    std::string text = kHead;
    for (const char* row : rows) {
        text += row;
    }
    return text;
}

} // namespace

TEST_F(FdbVerbs, EntriesGoToPortsLagsAndTheCpu)
{
    EXPECT_EQ(run("show fdb"), "no MAC entries\n");
    run("fdb add 02:00:00:00:00:0a 1 1; fdb add 02:00:00:00:00:0c 1 lag 0");
    run("fdb add 01:00:5e:00:00:01 1 2; fdb system 02:00:00:00:00:53 1");
    EXPECT_EQ(run("show fdb"), table({"   1  01:00:5e:00:00:01  2      static\n", kA, kC,
                                      "   1  02:00:00:00:00:53  cpu    static\n"}));
}

TEST_F(FdbVerbs, ASystemAddressIsAddedAndDeletedInAListOfVlans)
{
    EXPECT_EQ(run("fdb system 02:00:00:00:00:53 1,10; show fdb"),
              "vlan  mac                port  kind\n"
              "   1  02:00:00:00:00:53  cpu   static\n"
              "  10  02:00:00:00:00:53  cpu   static\n");
    EXPECT_EQ(run("fdb delete 02:00:00:00:00:53 1,10; show fdb"), "no MAC entries\n");
}

TEST_F(FdbVerbs, AnAddressIsDeletedInOneVlanOrEverywhere)
{
    run("fdb add 02:00:00:00:00:0a 1 1; fdb add 02:00:00:00:00:0a 10 1");
    run("fdb add 02:00:00:00:00:0a 600 1; fdb delete 02:00:00:00:00:0a 10");
    EXPECT_EQ(run("show fdb"), "vlan  mac                port  kind\n"
                               "   1  02:00:00:00:00:0a     1  static\n"
                               " 600  02:00:00:00:00:0a     1  static\n");
    EXPECT_EQ(run("fdb delete 02:00:00:00:00:0a; show fdb"), "no MAC entries\n");
}

TEST_F(FdbVerbs, FlushesReachAPortAVlanALagOrEverything)
{
    const std::pair<const char*, std::string> cases[] = {
        {"fdb flush port 1", table({kA, kC, k2, kB})},
        {"fdb flush port 1 static", table({kC, k2, kB})},
        {"fdb flush vlan 10", table({k1, kA, kC, kB})},
        {"fdb flush vlan 10 static", table({k1, kA, kC})},
        {"fdb flush lag 0", table({k1, kA, kC, k2, kB})},
        {"fdb flush all", table({kA, kC, kB})},
        {"fdb flush all static", "no MAC entries\n"},
    };
    for (const auto& [line, left] : cases) {
        fill();
        EXPECT_EQ(run(std::string(line) + "; show fdb"), left) << line;
    }
    run("fdb add 02:00:00:00:00:0c 1 lag 0");
    EXPECT_EQ(run("fdb flush lag 0 static; show fdb"), "no MAC entries\n");
}

TEST_F(FdbVerbs, ShowFiltersByVlanPortLagAddressAndKind)
{
    fill();
    EXPECT_EQ(run("show fdb"), table({k1, kA, kC, k2, kB}));
    EXPECT_EQ(run("show fdb lag 0"), table({kC}));
    const std::string narrow = "vlan  mac                port  kind\n";
    EXPECT_EQ(run("show fdb vlan 10"), narrow + "  10  02:00:00:00:00:02     2  learned\n"
                                                "  10  02:00:00:00:00:0b     2  static\n");
    EXPECT_EQ(run("show fdb port 1 static"), narrow + "   1  02:00:00:00:00:0a     1  static\n");
    EXPECT_EQ(run("show fdb learned vlan 1"), narrow + "   1  02:00:00:00:00:01     1  learned\n");
    EXPECT_EQ(run("show fdb mac 2:0:0:0:0:b"), narrow + "  10  02:00:00:00:00:0b     2  static\n");
    EXPECT_EQ(run("show fdb vlan 11"), "no MAC entries\n");
}

TEST_F(FdbVerbs, AWalkListsWhatTheDriverTellsSubscribers)
{
    fill();
    run("fdb system 02:00:00:00:00:53 1; fdb add 01:00:5e:00:00:01 1 2");
    EXPECT_EQ(run("fdb walk"), "mac listed 02:00:00:00:00:01 vlan 1 port 1\n"
                               "mac listed 02:00:00:00:00:0a vlan 1 port 1 static\n"
                               "mac listed 02:00:00:00:00:0c vlan 1 lag 0 static\n"
                               "mac listed 02:00:00:00:00:02 vlan 10 port 2\n"
                               "mac listed 02:00:00:00:00:0b vlan 10 port 2 static\n");
}

TEST_F(FdbVerbs, ChangesOfTheTableAreEvents)
{
    EXPECT_EQ(run("events on; send 1 src=02:00:00:00:00:01 type=0x88b5; wait 1s; fdb flush all"),
              "mac added 02:00:00:00:00:01 vlan 1 port 1\n"
              "mac removed 02:00:00:00:00:01 vlan 1 port 1\n");
}

TEST_F(FdbVerbs, TheAgeingTimeIsSetAndShown)
{
    EXPECT_EQ(run("show learning").substr(0, 12), "ageing 300 s");
    EXPECT_EQ(run("fdb ageing 60; show learning").substr(0, 11), "ageing 60 s");
    EXPECT_EQ(run("fdb ageing 0; show learning").substr(0, 10), "ageing off");
}

TEST_F(FdbVerbs, LearningModesAreSetByName)
{
    EXPECT_EQ(run("port learn 1 learn; port learn 2 forward; port learn 3 cpu; show learning"),
              "ageing 300 s\n"
              "learn    ports\n"
              "on       0,4-52\n"
              "learn    1\n"
              "forward  2\n"
              "cpu      3\n");
    EXPECT_EQ(run("port learn 1-3 on; show learning"), "ageing 300 s\nlearn  ports\non     0-52\n");
}

TEST_F(FdbVerbs, LimitsAreSetInEveryScopeAndTakenAway)
{
    EXPECT_EQ(run("show limits"), "no learning limits are set\n");
    run("fdb limit system 100; fdb limit vlan 10 5; fdb limit port 1-2 0; fdb limit lag 0 7");
    EXPECT_EQ(run("show limits"), "where    limit\n"
                                  "system     100\n"
                                  "vlan 10      5\n"
                                  "port 1       0\n"
                                  "port 2       0\n"
                                  "lag 0        7\n");
    EXPECT_EQ(property(2, "limit"), "0");
    run("fdb limit system none; fdb limit vlan 10 none; fdb limit port 1-2 none");
    EXPECT_EQ(run("fdb limit lag 0 none; show limits"), "no learning limits are set\n");
}

TEST_F(FdbVerbs, BadInputIsOneLine)
{
    const BadCommand cases[] = {
        {"fdb", "'fdb' is followed by one of: add, system, delete, flush, ageing, limit, walk"},
        {"fdb limit", "'fdb limit' is followed by one of: system, vlan, port, lag"},
        {"fdb add 02:00", "bad MAC address '02:00': six bytes like 02:00:00:00:00:01 are wanted"},
        {"fdb add 02:00:00:00:00:01 1 7/99",
         "fdb add 02:00:00:00:00:01: the driver refused: there is no port 7/99 (bcmx_l2_addr_add "
         "reported -18, Invalid port)"},
        {"fdb add 02:00:00:00:00:01 1",
         "missing PORT or lag; usage: fdb add MAC VID PORT|lag [LAG]"},
        {"fdb add 02:00:00:00:00:01 1 lag 5",
         "fdb add 02:00:00:00:00:01: the driver refused: there is no lag 5 (bcmx_l2_addr_add "
         "reported -7, Entry not found)"},
        {"fdb system 01:00:5e:00:00:01 1",
         "fdb system 01:00:5e:00:00:01: the driver refused: a group address cannot be the CPU's"},
        {"fdb system 02:00:00:00:00:01 5-4", "bad VLAN '4': a number from 5 to 4095 is wanted"},
        {"fdb delete 02:00:00:00:00:01 1,600",
         "bad VLANs '1,600': the driver deletes by list in VLANs 0 to 511; name a higher one "
         "alone"},
        {"fdb flush lag 5", "fdb flush lag: the driver refused: there is no lag 5 "
                            "(bcmx_l2_addr_delete_by_trunk reported -7, Entry not found)"},
        {"fdb ageing -1", "bad SECONDS '-1': a number from 0 to 2147483647 is wanted"},
        {"fdb limit vlan 11 5", "fdb limit vlan: the driver refused: there is no VLAN 11 "
                                "(bcmx_l2_learn_limit_set reported -7, Entry not found)"},
        {"fdb limit port 1", "missing COUNT; usage: fdb limit port PORTS COUNT|none"},
        {"port learn 1 never",
         "bad learning mode 'never'; usage: port learn PORTS on|learn|forward|cpu"},
        {"show fdb vlans", "unexpected 'vlans'; usage: show fdb [vlan VID] [port PORT] [lag LAG] "
                           "[mac MAC] [static|learned]"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
}

TEST(NoLearningLimits, AreALineAndNotATable)
{
    vexosim::Profile profile;
    profile.learn_limits = false;
    vexosim::set_profile(profile);
    vexosim::use_manual_clock();
    std::ostringstream out;
    StreamConsole console(out);
    Session session;
    Shell shell(session, console);
    EXPECT_THROW(shell.run_line("show limits"), BadInput);
    EXPECT_THROW(shell.run_line("fdb limit system 5"), BadInput);
}
