#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/call.h"
#include "vexosim/state.h"

using namespace vexosh;

TEST_F(ShellTest, VlanVerbsChangeWhatShowVlansSays)
{
    EXPECT_EQ(run("vlan create 10; vlan add 10 untagged 1 tagged 2,4-5; show vlans"),
              "vlan  tagged     untagged\n"
              "   1  cpu        0-52\n"
              "  10  cpu,2,4,5  1\n");
    EXPECT_EQ(run("vlan remove 10 4; vlan access 10 7; show vlans"), "vlan  tagged   untagged\n"
                                                                     "   1  cpu      0-6,8-52\n"
                                                                     "  10  cpu,2,5  1,7\n");
    EXPECT_EQ(run("vlan delete 10; show vlans"), "vlan  tagged  untagged\n"
                                                 "   1  cpu     0-6,8-52\n");
}

TEST_F(ShellTest, AMistypedCommandIsAnsweredWithWhatItIsMostLike)
{
    const BadCommand commands[] = {
        {"shw vlans", "unknown command 'shw'; did you mean 'show'?"},
        {"show vlan", "unknown command 'show vlan'; did you mean 'show vlans'?"},
        {"lag remvoe 0 1", "unknown command 'lag remvoe'; did you mean 'lag remove'?"},
        {"mirror 1 2", "'mirror' is followed by one of: from, enable, off"},
        {"xyzzy", "unknown command 'xyzzy'; try help"},
    };
    for (const auto& [line, error] : commands) {
        EXPECT_EQ(error_of(line), error) << line;
    }
}

TEST_F(ShellTest, WhatIsToEndRunsNoMoreOfItsLineOrScript)
{
    shell_->stop();
    EXPECT_EQ(run("echo 1; echo 2"), "1\n");
    const std::string path = script("echo 1\necho 2\n");
    shell_->keep_going(true); // behind lines that fail, but not behind the end
    EXPECT_EQ(error_of("source " + path), path + ":1: ended before its time");
    EXPECT_EQ(out_.str(), "1\n");
    shell_->resume();
    EXPECT_EQ(run("source " + path), "1\n2\n");
}

TEST_F(ShellTest, AFrameThatIsSentTeachesTheMacTable)
{
    run("attach 1-3=mem; wait 1s");
    EXPECT_EQ(run("send 1 src=02:00:00:00:00:0a type=0x88b5; show fdb"),
              "vlan  mac                port  kind\n"
              "   1  02:00:00:00:00:0a     1  learned\n");
}

TEST_F(ShellTest, PortsThatComeUpForwardUnlessToldNotTo)
{
    run("attach 1=mem 2=mem; wait 1s");
    EXPECT_EQ(run("call get_port_stp_state 1"), "STATE = forwarding\n");
    run("forwarding off; attach 3=mem; wait 1s");
    EXPECT_EQ(run("call get_port_stp_state 3"), "STATE = blocking\n");
}

TEST_F(ShellTest, ACableIsPulledAndPluggedIn)
{
    run("attach 1=mem; wait 1s");
    EXPECT_EQ(run("call get_port_phy_state 1"), "STATE = up\n");
    EXPECT_EQ(run("link 1 down; wait 1s; call get_port_phy_state 1"), "STATE = down\n");
    EXPECT_EQ(run("link 1 up; wait 1s; call get_port_phy_state 1"), "STATE = up\n");
}

TEST_F(ShellTest, TraceChangesNothing)
{
    run("attach 1=mem 2=mem; wait 1s");
    const std::string before = vexosim::state_digest();
    EXPECT_NE(run("trace 1 type=0x88b5").find("result"), std::string::npos);
    EXPECT_EQ(vexosim::state_digest(), before);
}

TEST_F(ShellTest, PacketsForTheCpuAreShown)
{
    run("attach 1=mem; wait 1s; send 1 dst=01:80:c2:00:00:0e type=0x88cc; wait 1s");
    EXPECT_EQ(run("show cpu"), "     1  port 1: vlan 1 LLDP\n1 packets reached the CPU\n");
}

TEST_F(ShellTest, EventsArePrintedWhenAskedFor)
{
    EXPECT_EQ(run("events on; attach 1=mem; wait 1s"), "link port 1 up 1000 Mb/s full\n");
}

TEST_F(ShellTest, TransmitReachesThePortsItNames)
{
    run("attach 1-3=mem; wait 1s; transmit untagged 1 tagged 2 type=0x88b5");
    EXPECT_EQ(run("show wires"), "port  carrier  in  out  lost  wire\n"
                                 "   1  up        0    1     0  mem\n"
                                 "   2  up        0    1     0  mem\n"
                                 "   3  up        0    0     0  mem\n");
}

TEST_F(ShellTest, CallShowsOutputsAndSaysWhatReturnedFalse)
{
    EXPECT_EQ(run("call create_vlan 7"), "");
    EXPECT_EQ(run("call get_vlan_info 7"), "TAGGED = cpu\nUNTAGGED = -\n");
    EXPECT_EQ(error_of("call create_vlan 5000"),
              "create_vlan returned false: bcmx_vlan_create reported -4, Invalid parameter");
    EXPECT_EQ(error_of("call create_vlan"),
              "create_vlan takes 1 argument, not 0; usage: call create_vlan VID");
    EXPECT_EQ(error_of("call nope"), "no operation 'nope'; `operations` lists them all");
}

TEST_F(ShellTest, EveryOperationCanBeCalledAndNoneEndsTheShell)
{
    ASSERT_EQ(operations().size(), 179u);
    for (const Operation& operation : operations()) {
        std::string line = "call " + operation.name;
        for (const std::string& input : split_words(operation.usage)) {
            if (input.find("MAC") != std::string::npos) {
                line += " 02:00:00:00:00:01";
            } else if (input.find("IP6") == 0 || input.find("NET6") == 0 || input == "MASK6") {
                line += " 2001:db8::";
            } else if (input == "FLOW") {
                line += " any";
            } else if (input == "UDF" || input == "PORTS" || input == "TAGGED" ||
                       input == "UNTAGGED") {
                line += " -";
            } else if (input == "PACKET") {
                line += " 0102";
            } else if (input == "CALLBACK") {
                line += " rx";
            } else {
                line += " 1";
            }
        }
        const std::string error = error_of(line);
        EXPECT_TRUE(error == "no error" || error.starts_with(operation.name + " returned false: "))
            << line << ": " << error;
    }
}

TEST_F(ShellTest, BadInputIsOneLineThatNamesIt)
{
    const std::pair<const char*, const char*> cases[] = {
        {"foo", "unknown command 'foo'; try help"},
        {"vlan",
         "'vlan' is followed by one of: create, delete, add, remove, access, cpu, mac, subnet, "
         "protocol, no-protocol"},
        {"vlan create", "missing VID; usage: vlan create VID"},
        {"vlan create 1 2", "unexpected '2'; usage: vlan create VID"},
        {"vlan create x", "bad VLAN 'x': a number from 0 to 65535 is wanted"},
        {"vlan create 5000",
         "vlan create 5000: the driver refused: bcmx_vlan_create reported -4, Invalid parameter"},
        {"vlan add 1", "missing tagged or untagged; usage: vlan add VID tagged|untagged PORTS ..."},
        {"port pvid 54 1", "bad port '54': 0 to 52 or cpu is wanted"},
        {"port speed 1 5", "bad speed '5': one of 10, 100, 1000, 10000 is wanted"},
        {"attach 1=nothing:x", ""},
        {"attach 1=pcap:/does/not/exist,", ""},
        {"send 1", ""},
        {"send 1 \"open", "a quote is not closed"},
        {"fault bcmx_vlan_create x", "bad code 'x': a number from -1000 to 1000 is wanted"},
        {"link 1 up", "port 1: nothing is attached"},
        {"detach 1", ""},
        {"wait 5x", "bad duration '5x': a number with us, ms or s is wanted"},
        {"show capture /does/not/exist", ""},
        {"source /does/not/exist", "cannot read script '/does/not/exist'"},
        {"help nothing", "no command 'nothing'; help lists them all"},
    };
    for (const auto& [line, expected] : cases) {
        const std::string error = error_of(line);
        EXPECT_NE(error, "no error") << line;
        EXPECT_EQ(error.find('\n'), std::string::npos) << line;
        if (*expected != '\0') {
            EXPECT_EQ(error, expected) << line;
        }
    }
}

TEST_F(ShellTest, AScriptStopsAtItsFirstErrorAndNamesTheLine)
{
    const std::string path = script("vlan create 10\n\nvlan create x # bad\nvlan create 11\n");
    EXPECT_EQ(error_of("source " + path),
              path + ":3: bad VLAN 'x': a number from 0 to 65535 is wanted");
    EXPECT_EQ(run("show vlans").find("  11  "), std::string::npos);
}

TEST_F(ShellTest, AScriptThatRunsItselfIsStopped)
{
    const std::string path = script("");
    std::ofstream(path) << "source " << path << "\n";
    EXPECT_NE(error_of("source " + path).find("scripts are nested too deep"), std::string::npos);
}

TEST_F(ShellTest, FaultsMakeTheDriverFailUntilCleared)
{
    EXPECT_EQ(error_of("fault bcmx_vlan_create -6; vlan create 10"),
              "vlan create 10: the driver refused: bcmx_vlan_create reported -6, Table full");
    EXPECT_EQ(error_of("fault clear; vlan create 10"), "no error");
}

TEST_F(ShellTest, LoggedCallsAreShownWithTheirResults)
{
    EXPECT_EQ(run("calls on; vlan create 10; show calls"),
              "bcmx_vlan_create(10) = 0\nbcmx_vlan_port_add(10, [cpu], []) = 0\n");
}

TEST_F(ShellTest, QuitEndsTheLine)
{
    EXPECT_EQ(run("echo one; quit; echo two"), "one\n");
    EXPECT_TRUE(shell_->finished());
}
