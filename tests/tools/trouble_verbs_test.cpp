// Cables and SDK calls that fail, as a user asks for it.
#include "tests/tools/shell_test_fixture.h"
#include "vexosim/faults.h"

using namespace vexosh;

namespace {

struct TroubleVerbs : ShellTest {
    TroubleVerbs() { run("attach 1-3=mem; wait 1s"); }
};

} // namespace

TEST_F(TroubleVerbs, ALinkFlapsUntilItIsUpOrDown)
{
    run("link 2 flap 2s");
    EXPECT_EQ(run("wait 500ms; call get_port_phy_state 2"), "STATE = down\n");
    EXPECT_EQ(run("wait 1s; call get_port_phy_state 2"), "STATE = up\n");
    EXPECT_EQ(run("wait 1s; call get_port_phy_state 2"), "STATE = down\n");
    EXPECT_EQ(run("show impairments"),
              "port  cable           way  loss  delay  seed  lost  waiting\n"
              "   2  down, flaps 2s  in   0%    0s        1     0        0\n"
              "   2  down, flaps 2s  out  0%    0s        1     0        0\n");
    EXPECT_EQ(run("link 2 up; show impairments"), "all cables are in order\n");
}

TEST_F(TroubleVerbs, ACableLosesTheSameFramesWithTheSameSeed)
{
    const auto lost = [this](const std::string& seed) {
        run("impair 2 out loss 40 seed " + seed + "; replay " VEXO_DEMO_DIR "/h1.pcap 1 full");
        return run("show impairments");
    };
    const std::string first = lost("5");
    EXPECT_EQ(lost("5"), first);
    EXPECT_EQ(first, "port  cable  way  loss  delay  seed  lost  waiting\n"
                     "   2  up     in   0%    0s        1     0        0\n"
                     "   2  up     out  40%   0s        5     3        0\n");
}

TEST_F(TroubleVerbs, ImpairmentsAreShownAndSwitchedOff)
{
    run("impair 1 loss 2.5% delay 1500us seed 7; impair 2 in delay 30ms");
    EXPECT_EQ(run("show impairments"), "port  cable  way  loss  delay   seed  lost  waiting\n"
                                       "   1  up     in   2.5%  1500us     7     0        0\n"
                                       "   1  up     out  2.5%  1500us     7     0        0\n"
                                       "   2  up     in   0%    30ms       1     0        0\n"
                                       "   2  up     out  0%    0s         1     0        0\n");
    EXPECT_EQ(run("impair 1,2 off; show impairments"), "all cables are in order\n");
}

TEST_F(TroubleVerbs, FaultsAreShownWithWhatTheyHit)
{
    run("fault bcmx_vlan_create -6 nth 2; fault any 0 nth 1000 sticky");
    run("vlan create 10");
    EXPECT_EQ(error_of("vlan create 11"),
              "vlan create 11: the driver refused: bcmx_vlan_create reported -6, Table full");
    EXPECT_EQ(run("show faults"), "call              code   nth  sticky  seen  hits\n"
                                  "bcmx_vlan_create    -6     2  no         2     1\n"
                                  "any                  0  1000  yes        6     0\n");
    EXPECT_EQ(run("fault clear; show faults"), "no SDK call is made to fail\n");
}

TEST_F(TroubleVerbs, OnlySdkCallsThatCanFailAreMadeTo)
{
    const BadCommand bad[] = {
        {"fault bcmx_vlan_creat -1", "no SDK call 'bcmx_vlan_creat' that can fail; the nearest are "
                                     "bcmx_vlan_create, bcmx_vlan_port_get, bcmx_l3_intf_create"},
        {"fault vlan_create -1", "no SDK call 'vlan_create' that can fail; the nearest are "
                                 "bcmx_vlan_create, linux_bde_create, bcmx_l3_intf_create"},
        {"fault sal_dma_free -1", "no SDK call 'sal_dma_free' that can fail; the nearest are "
                                  "sal_dma_alloc, sal_memory_check, sal_appl_init"},
        {"fault pthread_create -1", "no SDK call 'pthread_create' that can fail; the nearest are "
                                    "bcmx_trunk_create, bcmx_vlan_create, linux_bde_create"},
    };
    for (const auto& [line, error] : bad) {
        EXPECT_EQ(error_of(line), error);
    }
    for (const std::string& call : vexosim::calls_that_can_fail()) {
        EXPECT_EQ(error_of("fault " + call + " -1"), "no error");
    }
    EXPECT_EQ(vexosim::armed_faults().size(), vexosim::calls_that_can_fail().size());
}

TEST_F(TroubleVerbs, BadInputIsOneLine)
{
    const BadCommand bad[] = {
        {"link 9 up", "port 9: nothing is attached"},
        {"link 1 flap 0", "a cable cannot flap that fast; the shortest period is 1 ms"},
        {"link 1 flap", "missing PERIOD; usage: link PORTS up|down|flap [PERIOD]"},
        {"impair 1", "missing loss, delay or off; usage: impair PORTS [in|out] off|loss|delay|seed "
                     "..."},
        {"impair 1 loss 101", "bad loss '101': a percentage from 0 to 100 is wanted"},
        {"impair 1 loss nan", "bad loss 'nan': a percentage from 0 to 100 is wanted"},
        {"impair 1 loss 1x", "bad loss '1x': a percentage from 0 to 100 is wanted"},
        {"impair 1 loss", "missing PERCENT; usage: impair PORTS [in|out] off|loss|delay|seed ..."},
        {"impair 9 loss 1", "port 9: nothing is attached"},
        {"impair 1 off 2", "unexpected '2'; usage: impair PORTS [in|out] off|loss|delay|seed ..."},
    };
    for (const auto& [line, error] : bad) {
        EXPECT_EQ(error_of(line), error);
    }
    EXPECT_EQ(run("show impairments; show faults"),
              "all cables are in order\nno SDK call is made to fail\n");
}

TEST_F(TroubleVerbs, ACommandOfTheSystemPrintsAndFails)
{
    EXPECT_EQ(run("shell echo one '>&2;' echo two"), "one\ntwo\n");
    EXPECT_EQ(error_of("shell exit 3"), "the command ended with status 3");
    EXPECT_EQ(error_of("shell"), "missing COMMAND; usage: shell COMMAND...");
}
