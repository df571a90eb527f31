#include "tests/tools/shell_test_fixture.h"

using namespace vexosh;

namespace {

class PortVerbs : public ShellTest {
protected:
    PortVerbs() { run("attach 1-3=mem; wait 1s"); }
};

/// A verb, the property of port 1 that it sets, and its text before and after.
struct Change {
    const char* line;
    const char* property;
    const char* before;
    const char* after;
};

} // namespace

TEST_F(PortVerbs, EachSetsItsProperty)
{
    const Change cases[] = {
        {"port disable 1", "admin", "up", "down"},
        {"port enable 1", "admin", "down", "up"},
        {"port autoneg 1 off", "autoneg", "on", "off"},
        {"port speed 1 100", "speed", "1000/full", "100/full"},
        {"port duplex 1 half", "speed", "100/full", "100/half"},
        {"port pause 1 off", "pause", "both", "off"}, // both was negotiated
        {"port pause 1 rx", "pause", "off", "rx"},
        {"port pause 1 tx", "pause", "rx", "tx"},
        {"port pause 1 both", "pause", "tx", "both"},
        {"port pause-address 1 02:00:00:00:00:07", "pause-address", "00:00:00:00:00:00",
         "02:00:00:00:00:07"},
        {"port jam 1 on", "jam", "off", "on"},
        {"port mtu 1 9000", "mtu", "1518", "9000"},
        {"vlan create 10; port pvid 1 10", "pvid", "1", "10"},
        {"port priority 1 5", "priority", "0", "5"},
        {"port queue 1 0 7", "queues", "0,1,2,3,4,5,6,7", "7,1,2,3,4,5,6,7"},
        {"port accept 1 tagged", "accept", "all", "restricted"},
        {"port accept 1 all", "accept", "restricted", "all"},
        {"port discard 1 tagged", "discard", "none", "tagged"},
        {"port discard 1 untagged", "discard", "tagged", "untagged"},
        {"port discard 1 all", "discard", "untagged", "all"},
        {"port discard 1 none", "discard", "all", "none"},
        {"port bpdu 1 off", "bpdu", "on", "off"},
        {"port unknown-to-cpu 1 on", "unknown-to-cpu", "off", "on"},
        {"port egress 1 off", "egress", "on", "off"},
        {"port egress 1 on", "egress", "off", "on"},
        {"port storm 1 broadcast 10", "storm broadcast", "off", "10"},
        {"port storm 1 multicast 20", "storm multicast", "off", "20"},
        {"port storm 1 unicast 30", "storm unicast", "off", "30"},
        {"port storm 1 all off", "storm broadcast", "10", "off"},
    };
    for (const auto& [line, name, before, after] : cases) {
        EXPECT_EQ(property(1, name), before) << line;
        run(line);
        EXPECT_EQ(property(1, name), after) << line;
    }
    EXPECT_EQ(property(1, "storm unicast"), "off");
}

TEST_F(PortVerbs, AListSetsEachOfItsPortsAndNoOther)
{
    run("port mtu 1,3-4 2000");
    const std::pair<int, const char*> sizes[] = {
        {1, "2000"}, {2, "1518"}, {3, "2000"}, {4, "2000"}};
    for (const auto& [port, size] : sizes) {
        EXPECT_EQ(property(port, "mtu"), size) << port;
    }
}

TEST_F(PortVerbs, AbilitiesAreAdvertisedByName)
{
    run("port advertise 1 100-full,autoneg,pause-rx,copper");
    EXPECT_EQ(property(1, "advertises"), "100-full,copper,autoneg,pause-rx");
}

TEST_F(PortVerbs, ALinkIsNegotiatedWithThePartnerOfAPort)
{
    run("partner 1 10-half,100-full,autoneg,pause-rx; partner 2 10-half; wait 1s");
    EXPECT_EQ(property(1, "speed"), "100/full");
    EXPECT_EQ(property(2, "speed"), "10/half");
    EXPECT_EQ(error_of("partner cpu autoneg").find('\n'), std::string::npos);
    EXPECT_NE(error_of("partner cpu autoneg"), "no error");
}

TEST_F(PortVerbs, ShowPortsIsOneLineForEachPort)
{
    EXPECT_EQ(run("port speed 1 100; show ports").substr(0, 69 + 76 + 76),
              "port  admin  link  speed       auto  pvid   mtu  learn  discard  stp\n"
              "0     up     down  1000/full   on       1  1518  on     none     forwarding\n"
              "1     up     up    100/full    off      1  1518  on     none     forwarding\n");
}

TEST_F(PortVerbs, MembershipsAreAmongAPortsProperties)
{
    run("vlan create 10; vlan add 10 tagged 1; vlan create 11; vlan add 11 tagged 1");
    EXPECT_EQ(property(1, "tagged"), "10,11");
    EXPECT_EQ(property(1, "untagged"), "1");
    EXPECT_EQ(property(5, "tagged"), "-");
}

TEST_F(PortVerbs, AValueThatCannotBeReadIsAQuestionMark)
{
    run("fault bcmx_port_frame_max_get -1 sticky");
    EXPECT_EQ(property(1, "mtu"), "?");
}

TEST_F(PortVerbs, BlocksAreSetForAPairAndReplaced)
{
    run("port block 1,2 3 broadcast unknown-multicast");
    EXPECT_EQ(run("show blocks 3"), "to  flood              from\n"
                                    " 3  broadcast          1,2\n"
                                    " 3  unknown-multicast  1,2\n");
    EXPECT_EQ(run("port block 1 3 none; port block 2 3 known-multicast; show blocks 3"),
              "to  flood            from\n"
              " 3  known-multicast     2\n");
    EXPECT_EQ(run("port block 2 3 none; show blocks 3"), "no floods are blocked\n");
}

TEST_F(PortVerbs, FloodsToTheCpuAreBlockedToo)
{
    run("port block 1 cpu none; port block 2 cpu all");
    EXPECT_NE(run("show blocks cpu").find("unknown-multicast  2\n"), std::string::npos);
    EXPECT_NE(run("show blocks cpu").find("broadcast          0,2-52\n"), std::string::npos);
}

TEST_F(PortVerbs, LayerTwoOffKeepsFloodsFromAPort)
{
    run("port l2 1 off");
    EXPECT_NE(run("show blocks 1"), "no floods are blocked\n");
    EXPECT_EQ(run("port l2 1 on; show blocks 1"), "no floods are blocked\n");
}

TEST_F(PortVerbs, StormControlIsListedForPortsThatHaveIt)
{
    EXPECT_EQ(run("show storm-control"), "no port has storm control\n");
    EXPECT_EQ(run("port storm 1-2 all 100; port storm 2 multicast off; show storm-control"),
              "port  broadcast  multicast  unicast\n"
              "   1        100  100            100\n"
              "   2        100  off            100\n");
}

TEST_F(PortVerbs, SettingsOfTheSwitch)
{
    EXPECT_EQ(run("show switch"), "switch\nunknown-to-cpu  off\nforward-mode    1\n");
    EXPECT_EQ(run("switch unknown-to-cpu on; switch forward-mode 2; show switch"),
              "switch\nunknown-to-cpu  on\nforward-mode    2\n");
}

TEST_F(PortVerbs, CountersAreShownAndCleared)
{
    EXPECT_EQ(run("show counters; show counters 1"),
              "nothing has been counted\nnothing has been counted\n");
    EXPECT_EQ(run("send 1 dst=02:00:00:00:00:09 type=0x88b5; show counters"),
              "port  in_frames  in_octets  in_drop  in_err  out_frames  out_octets  out_drop\n"
              "   1          1         64        0       0           0           0         0\n"
              "   2          0          0        0       0           1          64         0\n"
              "   3          0          0        0       0           1          64         0\n");
    EXPECT_NE(run("show counters 1").find("snmpIfInUcastPkts"), std::string::npos);
    EXPECT_EQ(run("show counters 1").find("snmpIfInErrors"), std::string::npos);
    EXPECT_EQ(run("counters clear 1,3; show counters"),
              "port  in_frames  in_octets  in_drop  in_err  out_frames  out_octets  out_drop\n"
              "   2          0          0        0       0           1          64         0\n");
    EXPECT_EQ(run("counters clear all; show counters"), "nothing has been counted\n");
}

TEST_F(PortVerbs, AllSeventyEightCountersOfAPortAreShown)
{
    const std::string all = run("show counters 1 all");
    EXPECT_EQ(std::count(all.begin(), all.end(), '\n'), 1 + 78);
    EXPECT_NE(all.find("snmpIfInErrors"), std::string::npos);
}

TEST_F(PortVerbs, TheShortSetOfCountersStandsStillWhenSwitchedOff)
{
    run("counters enable 2 off; send 1 dst=02:00:00:00:00:09 type=0x88b5");
    EXPECT_EQ(run("show counters brief"), "port  in-packets  in-bytes  out-packets  out-bytes\n"
                                          "   1           1        64            0          0\n"
                                          "   3           0         0            1         64\n");
}

TEST_F(PortVerbs, BadInputIsOneLine)
{
    const BadCommand cases[] = {
        {"port speed 1 2500", "bad speed '2500': one of 10, 100, 1000, 10000 is wanted"},
        {"port speed 1 10000",
         "port speed 1: the driver refused: bcmx_port_speed_set reported -4, Invalid parameter"},
        {"port duplex 1 quarter", "bad duplex 'quarter': one of half, full is wanted"},
        {"port enable", "missing PORTS; usage: port enable PORTS"},
        {"port enable 1 2", "unexpected '2'; usage: port enable PORTS"},
        {"port autoneg 1 maybe", "bad switch 'maybe': on or off is wanted"},
        {"port pause 1 some", "bad pause 'some'; usage: port pause PORTS off|rx|tx|both"},
        {"port advertise 1 fast",
         "bad ability 'fast': one of 10-half, 10-full, 100-half, 100-full, 1000-half, 1000-full, "
         "10000-half, 10000-full, copper, fibre, autoneg, pause-tx, pause-rx, pause-asymmetric is "
         "wanted"},
        {"port advertise 1 10000-full",
         "port advertise 1: the driver refused: bcmx_port_ability_advert_set reported -4, Invalid "
         "parameter"},
        {"port mtu 1 70000", "bad frame size '70000': a number from 0 to 65535 is wanted"},
        {"port mtu 1 63",
         "port mtu 1: the driver refused: bcmx_port_frame_max_set reported -4, Invalid parameter"},
        {"port pvid 1 0", "port pvid 1: the driver refused: bcmx_port_untagged_vlan_set reported "
                          "-4, Invalid parameter"},
        {"port priority 1 8", "bad priority '8': a number from 0 to 7 is wanted"},
        {"port queue 1 0 8", "bad queue '8': a number from 0 to 7 is wanted"},
        {"port discard 1 some",
         "bad discard mode 'some': one of none, tagged, untagged, all is wanted"},
        {"port accept 1 some", "bad kind of frame 'some'; usage: port accept PORTS all|tagged"},
        {"port storm 1 all 0", "bad rate '0': a number from 1 to 2147483647 is wanted"},
        {"port storm 1 some 5", "bad kind of frame 'some'; usage: port storm PORTS "
                                "broadcast|multicast|unicast|all RATE|off"},
        {"port block 1 2", "missing FLOOD; usage: port block PORTS EGRESS "
                           "none|all|broadcast|unknown-unicast|known-multicast|unknown-multicast "
                           "..."},
        {"port block 1 2 some", "bad kind of flood 'some': one of broadcast, unknown-unicast, "
                                "known-multicast, unknown-multicast is wanted"},
        {"show port", "missing PORT; usage: show port PORT"},
        {"show port 53", "bad port '53': 0 to 52 or cpu is wanted"},
        {"counters clear", "missing PORTS or all; usage: counters clear PORTS|all"},
        {"show counters 1 some", "unexpected 'some'; usage: show counters [PORT [all]]"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
}

TEST_F(PortVerbs, TheFirstPortThatIsRefusedEndsTheList)
{
    EXPECT_EQ(
        error_of("fault bcmx_port_frame_max_set -1 nth 2; port mtu 1-3 2000"),
        "port mtu 2: the driver refused: bcmx_port_frame_max_set reported -1, Internal error");
    EXPECT_EQ(property(1, "mtu"), "2000");
    EXPECT_EQ(property(3, "mtu"), "1518");
}
