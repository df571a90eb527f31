#include "tests/tools/shell_test_fixture.h"

using namespace vexosh;

using StpVerbs = ShellTest;
using MirrorVerbs = ShellTest;

TEST_F(StpVerbs, PortsAreShownByState)
{
    EXPECT_EQ(run("stp port 1-2 blocking; port stp 3 learning; stp port 4 listening; "
                  "stp port 5 disabled; show stp"),
              "state       ports\n"
              "forwarding  0,6-52\n"
              "blocking    1,2\n"
              "learning    3\n"
              "listening   4\n"
              "disabled    5\n");
    EXPECT_EQ(run("stp port 1-5 forwarding; show stp"), "state       ports\nforwarding  0-52\n");
}

TEST_F(StpVerbs, AGroupHasStatesOfItsOwn)
{
    EXPECT_EQ(run("show stp 2"), "state     ports\ndisabled  0-52\n");
    EXPECT_EQ(run("stp group 2 1 forwarding; stp group 2 2 learning; stp group 2 3 discarding; "
                  "show stp 2"),
              "state       ports\n"
              "disabled    0,4-52\n"
              "forwarding  1\n"
              "learning    2\n"
              "discarding  3\n");
    EXPECT_EQ(run("show stp"), "state       ports\nforwarding  0-52\n");
    EXPECT_EQ(run("stp group 2 1-3 disabled; show stp 2"), "state     ports\ndisabled  0-52\n");
}

TEST_F(StpVerbs, BadInputIsOneLine)
{
    const BadCommand cases[] = {
        {"stp port 1 open", "bad state 'open': one of blocking, listening, learning, forwarding, "
                            "disabled is wanted"},
        {"stp group 2 1 blocking",
         "bad state 'blocking': one of discarding, learning, forwarding, disabled is wanted"},
        {"stp group 0 1 learning",
         "stp group 1: the driver refused: bcmx_stg_stp_set reported -7, Entry not found"},
        {"stp group 256 1 learning",
         "stp group 1: the driver refused: bcmx_stg_stp_set reported -7, Entry not found"},
        {"show stp 256",
         "show stp 256: the driver refused: bcmx_stg_stp_get reported -7, Entry not found"},
        {"stp", "'stp' is followed by one of: port, group"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
}

TEST_F(MirrorVerbs, MirrorsAreShownWithTheirDirection)
{
    EXPECT_EQ(run("show mirrors"), "no port is mirrored\n");
    EXPECT_EQ(run("mirror from 1 to 5 ingress; mirror from 2 to 5 egress; "
                  "mirror from 3 to 6 both; show mirrors"),
              "from  to  direction\n"
              "   1   5  ingress\n"
              "   2   5  egress\n"
              "   3   6  both\n");
    EXPECT_EQ(property(2, "mirror"), "egress to 5");
    EXPECT_EQ(run("mirror off 1-3; show mirrors"), "no port is mirrored\n");
}

TEST_F(MirrorVerbs, ADestinationIsIsolatedUntilItsLastSourceIsOff)
{
    EXPECT_EQ(run("show blocks 5"), "no floods are blocked\n");
    const std::string isolated = run("mirror from 1 to 5 both; show blocks 5");
    EXPECT_NE(isolated, "no floods are blocked\n");
    EXPECT_EQ(run("mirror from 2 to 5 both; mirror off 1; show blocks 5"), isolated);
    EXPECT_EQ(run("mirror off 2; show blocks 5"), "no floods are blocked\n");
}

TEST_F(MirrorVerbs, AMirrorThatMovesLeavesItsOldDestination)
{
    EXPECT_EQ(run("mirror from 1 to 5 both; mirror from 1 to 6 ingress; show mirrors"),
              "from  to  direction\n"
              "   1   6  ingress\n");
    EXPECT_EQ(run("show blocks 5"), "no floods are blocked\n");
}

TEST_F(MirrorVerbs, BadInputIsOneLine)
{
    const BadCommand cases[] = {
        {"mirror from 1 5 both",
         "missing to; usage: mirror from PORTS to PORT ingress|egress|both"},
        {"mirror from 1 to 5",
         "missing direction; usage: mirror from PORTS to PORT ingress|egress|both"},
        {"mirror from 1 to 5 off", "`mirror off` stops a mirror; usage: mirror from PORTS to PORT "
                                   "ingress|egress|both"},
        {"mirror from 1-2 to 1 both", "port 1 cannot be mirrored to itself"},
        {"mirror off 3", "port 3 is not mirrored"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
}
