// Configurations that are saved, sourced and compared, and driver calls that are made again: each
// card is a process of its own.
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/differences.h"

using namespace vexosh;

namespace {

/// Something of every subsystem.
constexpr const char* kEverything = R"(vlan access 10 1,2
vlan create 20; vlan add 20 tagged 3 untagged 4,5; port pvid 4,5 20; vlan cpu 20 out
vlan create 30; vlan add 30 tagged 1-8 untagged cpu; vlan create 4094
vlan mac 02:00:00:00:00:05 10 3
vlan subnet 192.0.2.0/24 10; vlan subnet 2001:db8::/32 10 5
vlan protocol 6,7 ethernet 0x8137 10; vlan protocol 6 snap 0x809b 20
port disable 17; port speed 7 100; port duplex 7 half; port jam 7 on; port pause 8 both
port pause-address 7 02:00:00:00:00:07; port advertise 8 100-full,autoneg,pause-rx
port autoneg 13 off; port mtu 7,9 9000; port discard 7 untagged; port accept 14 tagged
port priority 7 5; port queue 7,cpu 5 3; port bpdu 7 off
port l2 15 off; port egress 16 off; port block 7 8 broadcast unknown-unicast
port block 0-52 cpu none; port storm 7 broadcast 100; port storm 9 all 5000
port unknown-to-cpu 7 on; switch unknown-to-cpu on; switch forward-mode 3
fdb add 02:00:00:00:00:08 1 8; fdb add 01:00:5e:00:00:08 1 8; fdb system 02:00:00:00:00:53 1,10
fdb ageing 60; port learn 8 cpu; port learn 9 forward; port learn 10 learn
fdb limit system 1000; fdb limit vlan 10 100; fdb limit port 8 10
lag create 7; lag add 0 18-20; lag criterion 0 src-dst-ip; lag create; lag create; lag delete 1
call create_lag; call create_lag; fdb add 02:00:00:00:00:09 1 lag 0; fdb limit lag 0 100
stp port 8 blocking; stp group 1 8 forwarding; stp group 5 9 learning; stp group 6 9 discarding
stp port 10 listening; mirror from 1,2 to 21 both; mirror from 3 to 22 ingress
port block 0-52 22 none; counters enable 5 off
trap add arp 192.0.2.0/24; trap add protocol ospf; trap add l4-port 179
flow add match in-port 3 vlan 10 ip-proto tcp l4-dst 80 action redirect 4
flow add match src-ip 192.0.2.0/24 dst-mac 02:00:00:00:00:02 priority 5 action drop
flow add match udf 14:0102/ff0f action vlan 20 vlan-priority 3 # a comment
flow add match any; flow action add 0 redirect 5,cpu; flow action add 0 src-mac 02:00:00:00:00:aa
flow action remove 0 redirect 4; flow delete 1; flow add match vlan 30
call add_of_flow in_port=7,vlan=3 -; trap delete protocol ospf
try flow action add 0 output 6; flow add match vlan 31
l3 interface add 02:00:00:00:01:00 1; l3 interface add 02:00:00:00:02:00 10 id 5
l3 host add 192.0.2.7 02:00:00:00:00:07 0 1; l3 host add 192.0.2.8 02:00:00:00:00:08 5 lag 0
l3 host invalidate 192.0.2.7; fdb delete 02:00:00:00:02:00 10
l3 route add 10.0.0.0/8 02:00:00:00:00:09 5 2 via 198.51.100.1
l3 route add 2001:db8::/32 02:00:00:00:00:09 5 2; l3 route add default 02:00:00:00:00:09 0 cpu
)";

std::string contents(const std::string& path)
{
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What another vexosh prints, or its error.
std::string other_card(const std::string& arguments)
{
    const std::string command = std::string(VEXOSH_PROGRAM) + " -m " + arguments + " 2>&1";
    std::string said;
    FILE* const program = ::popen(command.c_str(), "r");
    for (char piece[512]; std::fgets(piece, sizeof piece, program) != nullptr;) {
        said += piece;
    }
    ::pclose(program);
    return said;
}

std::string last_line(const std::string& text)
{
    const std::size_t end = text.find_last_not_of('\n') + 1;
    return text.substr(text.rfind('\n', end - 1) + 1, end - text.rfind('\n', end - 1) - 1);
}

} // namespace

struct Saved : ShellTest {
    Saved() { set_card_program(VEXOSH_PROGRAM); }

    std::string digest() { return last_line(run("show digest")); }
    static std::string file(const std::string& name) { return script("") + "." + name; }
};

TEST_F(Saved, AFreshCardThatSourcesTheFileHasTheSameDigest)
{
    run("source " + script(kEverything) + "; wait 2s");
    run("save " + file("saved"));
    EXPECT_EQ(last_line(other_card(file("saved") + " -c 'show digest'")), digest())
        << contents(file("saved"));
}

TEST_F(Saved, APortMayBlockInAFewGroupsAndForwardInTheRest)
{
    run("stp port 11 blocking");
    for (int group = 1; group <= 200; ++group) {
        run("stp group " + std::to_string(group) + " 11 forwarding");
    }
    run("save " + file("saved"));
    EXPECT_EQ(last_line(other_card(file("saved") + " -c 'show digest'")), digest());
}

TEST_F(Saved, AFreshCardHasNothingToSave)
{
    EXPECT_EQ(run("save"),
              "# vexosh configuration, for `source` on a card that has just come up\n");
}

TEST_F(Saved, PortsWithLinksAreSavedAsWell)
{
    run("attach 1-4=mem 9-11=mem; wait 1s; lag create; lag add 0 9-11; partner 2 100-full; wait "
        "1s; "
        "link 3 down; wait 1s; save " +
        file("saved"));
    EXPECT_EQ(
        last_line(other_card("-a 1-4=mem -a 9-11=mem -c 'wait 1s; partner 2 100-full; wait 1s; "
                             "link 3 down; wait 1s; source " +
                             file("saved") + "; show digest'")),
        digest())
        << contents(file("saved"));
}

TEST_F(Saved, WhatCannotBeMadeAnewIsNamed)
{
    run("attach 1=mem 2=mem; wait 1s; send 1 src=02:00:00:00:00:0a type=0x88b5; forwarding off");
    run("fault bcmx_l3_host_t_init 1; l3 interface add 02:00:00:00:01:00 1; "
        "l3 host add 2001:db8::7 02:00:00:00:00:07 0 1");
    const std::string saved = run("save");
    EXPECT_NE(saved.find("# was plugged in: 2 mem\n"), std::string::npos) << saved;
    EXPECT_NE(saved.find("# left out: 1 learned address\n"), std::string::npos) << saved;
    EXPECT_NE(saved.find("# left out: host 2001:db8::7, for the driver refuses IPv6 hosts\n"),
              std::string::npos)
        << saved;
    EXPECT_NE(saved.find("\nforwarding off\n"), std::string::npos) << saved;
}

TEST_F(Saved, AFileThatCannotBeWrittenIsAnErrorAndLeavesNothing)
{
    EXPECT_EQ(error_of("save /does/not/exist"), "cannot write '/does/not/exist'");
    EXPECT_EQ(error_of("save /dev/full"), "cannot write '/dev/full'");
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
    run("save " + file("saved"));
    EXPECT_FALSE(std::filesystem::exists(file("saved") + ".new"));
}

TEST_F(Saved, AFileThatThereIsNoRoomForLeavesTheOldOne)
{
    run("save " + file("saved"));
    const std::string before = contents(file("saved"));
    run("source " + script(kEverything));
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit little{100, 100};
    ::setrlimit(RLIMIT_FSIZE, &little);
    EXPECT_EQ(error_of("save " + file("saved")), "cannot write '" + file("saved") + "'");
    EXPECT_EQ(contents(file("saved")), before);
    EXPECT_FALSE(std::filesystem::exists(file("saved") + ".new"));
}

TEST_F(Saved, FlowsThatWereChangedTooOftenAreNamed)
{
    for (std::size_t i = 0; i <= Session::kMostFieldCommands + 1; ++i) {
        session_->keep_field_command("flow clear");
    }
    EXPECT_NE(run("save").find("\n# left out: flows and traps, which were changed more than 100000 "
                               "times\n"),
              std::string::npos);
}

TEST_F(Saved, DiffIsSilentWhenNothingDiffers)
{
    run("source " + script(kEverything) + "; save " + file("saved"));
    EXPECT_EQ(run("diff " + file("saved")), "");
}

TEST_F(Saved, DiffSaysWhatTheCardHasMoreAndLess)
{
    const std::string wanted = script("vlan access 10 1,2   # as a person writes it\n"
                                      "fdb ageing 60\n");
    run("source " + wanted + "; fdb ageing 90; flow add match any");
    EXPECT_EQ(error_of("diff " + wanted), "the card differs from " + wanted + " by 3 commands");
    EXPECT_EQ(out_.str(), "- fdb ageing 60\n+ fdb ageing 90\n+ flow add match any\n");
}

TEST_F(Saved, DiffCountsWhatIsThereSeveralTimes)
{
    const std::string once = script("flow add match any\n");
    run("source " + once + "; flow add match any");
    EXPECT_EQ(error_of("diff " + once), "the card differs from " + once + " by 1 command");
    EXPECT_EQ(out_.str(), "+ flow add match any\n");
}

TEST_F(Saved, DiffTellsTheErrorOfAFile)
{
    const std::string bad = script("vlan create 10\nvlan create x\n");
    EXPECT_EQ(error_of("diff " + bad), "on a card of its own: vexosh: " + bad +
                                           ":2: bad VLAN 'x': a number from 0 to 65535 is wanted");
    EXPECT_EQ(error_of("diff /does/not/exist"), "cannot read '/does/not/exist'");
}

TEST_F(Saved, TryGoesOnAndSaysWhy)
{
    EXPECT_EQ(run("try vlan create 5000; echo next"),
              "vlan create 5000: the driver refused: bcmx_vlan_create reported -4, Invalid "
              "parameter\nnext\n");
    run("try flow add-with-id 5 match any");
    EXPECT_NE(run("save").find("\ntry flow add-with-id 5 match any\n"), std::string::npos);
    EXPECT_EQ(error_of("try"), "missing COMMAND; usage: try COMMAND...");
}

TEST_F(Saved, RecordedCallsLeadAFreshCardToTheSameDigest)
{
    run("record start " + file("calls") + "; attach 1-20=mem; wait 1s");
    run("source " + script(kEverything) + "; lag remove 0 19; lag delete 0; wait 1s; record stop");
    const std::string replayed =
        other_card("-c 'replay calls " + file("calls") + "; show digest; show lags'");
    EXPECT_NE(replayed.find(digest() + "\n"), std::string::npos) << replayed;
    EXPECT_NE(replayed.find(run("show lags")), std::string::npos) << replayed;
}

TEST_F(Saved, ARecordLeavesToTheCallsWhatTheManagerDidNotDo)
{
    run("forwarding off; record start " + file("calls") + "; attach 1-4=mem; wait 1s; record stop");
    EXPECT_EQ(last_line(other_card("-c 'replay calls " + file("calls") + "; show digest'")),
              digest());
}

TEST_F(Saved, AfterAReplayTheManagerGoesOn)
{
    run("record start " + file("calls") + "; attach 1-4=mem; wait 1s; lag create; lag add 0 1-3");
    run("record stop");
    const std::string after = "link 2 down; attach 5=mem; wait 1s; show digest";
    EXPECT_EQ(last_line(other_card("-c 'replay calls " + file("calls") + "; " + after + "'")),
              last_line(run(after)));
}

TEST_F(Saved, ARecordIsReadable)
{
    run("record start " + file("calls") + "; vlan create 10; vlan add 10 tagged 2,3; lag create");
    run("flow add match in-port 3 src-ip 10.0.0.0/8 udf 2:01 action src-mac 02:00:00:00:00:01");
    run("try vlan create 5000; wait 1s; fdb add 02:00:00:00:00:01 1 lag 0; show vlans");
    EXPECT_EQ(run("record stop"), "9 lines in " + file("calls") + "\n");
    EXPECT_EQ(contents(file("calls")),
              "# driver calls and what they answered, for `replay calls`\n"
              "call create_vlan 10 = true\n"
              "call add_ports_to_vlan 10 2,3 - = true\n"
              "call create_lag = true 0\n"
              "lag book 0 1 -\n"
              "call add_of_flow in_port=3,src_ip=10.0.0.0/8,udf 2:01/ff = true 0\n"
              "call add_of_flow_action 0 modify 3:02:00:00:00:00:01 0 = true\n"
              "call create_vlan 5000 = false\n"
              "wait 1s\n"
              "call add_mac_to_port 0 02:00:00:00:00:01 1 on = true\n");
}

TEST_F(Saved, WhatHappensToTheCardIsRecordedAsWell)
{
    const std::string happened = "attach 1-3=mem\nlink 1 down\npartner 2 100-full\n"
                                 "impair 1 loss 50 seed 7\nfault bcmx_vlan_create -6 nth 9\n"
                                 "send 2 type=0x88b5\nsend-file 2 " VEXO_DEMO_DIR "/h1.pcap\n"
                                 "replay " VEXO_DEMO_DIR "/h1.pcap 2 full\ndetach 3\n";
    run("forwarding off; record start " + file("calls"));
    run("source " + script(happened) + "; show ports; record stop");
    EXPECT_EQ(contents(file("calls")),
              "# driver calls and what they answered, for `replay calls`\n" + happened);
}

TEST_F(Saved, WhatFailedWhileItWasRecordedMayFailAgain)
{
    run("record start " + file("calls"));
    EXPECT_NE(error_of("link 9 up"), "no error");
    run("vlan create 10; record stop");
    EXPECT_NE(contents(file("calls")).find("\ntry link 9 up\ncall create_vlan 10"),
              std::string::npos);
    EXPECT_EQ(last_line(other_card("-c 'replay calls " + file("calls") + "; show digest'")),
              digest());
}

TEST_F(Saved, ACallThatAnswersSomethingElseIsNamedWithItsLine)
{
    const std::string path = script(
        "call create_vlan 10 = true\ncall create_lag = true 3\ncall create_vlan 11 = true\n");
    EXPECT_EQ(error_of("replay calls " + path),
              path + ":2: create_lag returned true 0, not true 3");
    EXPECT_EQ(run("show vlans").find("  11  "), std::string::npos);
    EXPECT_EQ(error_of("call create_vlan 5000 = true"), "create_vlan returned false, not true");
    EXPECT_EQ(error_of("call create_vlan 5000 = false"), "no error");
}

TEST_F(Saved, RecordsStartAndStopInOrder)
{
    EXPECT_EQ(error_of("record stop"), "no record is running");
    run("record start " + file("calls"));
    EXPECT_EQ(error_of("record start x"),
              "a record into " + file("calls") + " is running; stop it first");
    EXPECT_EQ(run("vlan create 10; record stop"), "1 line in " + file("calls") + "\n");
    run("record start " + file("calls"));
    EXPECT_EQ(run("record stop"), "0 lines in " + file("calls") + "\n");
    EXPECT_EQ(error_of("record start /does/not/exist"), "cannot write '/does/not/exist'");
    EXPECT_EQ(error_of("record start /dev/full; vlan create 10; record stop"),
              "cannot write all of '/dev/full'");
}
