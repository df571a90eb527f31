#include "tests/kit/captured_output.h"
#include "tests/tools/shell_test_fixture.h"

using namespace vexosh;

using TrapVerbs = ShellTest;

TEST_F(TrapVerbs, TrapsAreShownWithWhatTheyAreFor)
{
    EXPECT_EQ(run("show traps"), "there are no traps\n");
    run("trap add arp 10.0.0.1/24; trap add protocol ospf; trap add l4-port 80");
    EXPECT_EQ(run("show traps"),
              "trap         for          entry  state      match                actions\n"
              "arp          10.0.0.0/24      1  installed  ip-type arp udf      trap to the CPU\n"
              "                                            38:0a0000\n"
              "arp, tagged  10.0.0.0/24      2  installed  ip-type arp udf      trap to the CPU\n"
              "                                            42:0a0000\n"
              "protocol     89               3  installed  ip-type ip ip-proto  trap to the CPU\n"
              "                                            ospf\n"
              "l4-port      80               4  installed  ip-type ip l4-dst    trap to the CPU\n"
              "                                            80\n");
}

TEST_F(TrapVerbs, MasksOfArpTrapsAreReadBack)
{
    const std::pair<const char*, const char*> cases[] = {
        {"10.1.2.3", "10.1.2.3/32"},
        {"10.1.2.3/20", "10.1.0.0/20"},
        {"10.1.2.3/255.0.255.0", "10.0.2.0/255.0.255.0"},
        {"10.1.2.3/0", "0.0.0.0/0"},
    };
    for (const auto& [words, shown] : cases) {
        run(std::string("trap add arp ") + words);
        const std::string traps = run("show traps");
        const std::string address = std::string("  ") + shown + " ";
        const std::size_t untagged = traps.find(address);
        ASSERT_NE(untagged, std::string::npos) << traps;
        EXPECT_NE(traps.find(address, untagged + 1), std::string::npos) << traps;
        EXPECT_EQ(run(std::string("trap delete arp ") + words + "; show traps"),
                  "there are no traps\n");
    }
}

TEST_F(TrapVerbs, TrapsHandTheirFramesToTheCpu)
{
    run("attach 1-2=mem; wait 1s; trap add arp 10.0.0.9; trap add protocol udp");
    run("trap add l4-port 22; send 1 src=02:00:00:00:00:01 arp=10.0.0.1>10.0.0.9");
    run("send 1 ip=10.0.0.1>10.0.0.2 udp=5>6; send 1 ip=10.0.0.1>10.0.0.2 tcp=5>22");
    run("send 1 ip=10.0.0.1>10.0.0.2 tcp=5>23");
    const std::string cpu = run("show cpu");
    EXPECT_NE(cpu.find("3 packets reached the CPU"), std::string::npos) << cpu;
}

TEST_F(TrapVerbs, AllTrapsOfAKindAreDeleted)
{
    run("trap add arp 10.0.0.1; trap add arp 10.0.0.2; trap add protocol 6; trap add protocol 7");
    run("trap add l4-port 1; trap add l4-port 2; trap delete arp all; trap delete protocol all");
    EXPECT_EQ(run("trap delete l4-port all; show traps; show field-entries"),
              "there are no traps\nthere are no field entries\n");
}

TEST_F(TrapVerbs, ATrapDeletedAloneIsRememberedUntilAllAre)
{
    EXPECT_EQ(run("trap add protocol 17; trap delete protocol udp; show traps"),
              "trap      for  entry  state  match  actions\n"
              "protocol   17      1  gone   -      -\n");
    EXPECT_EQ(error_of("trap add protocol 17"),
              "trap add protocol 17: the driver still remembers the trap that was deleted; `trap "
              "delete protocol all` makes it forget");
    EXPECT_EQ(run("trap delete protocol all; trap add protocol 17; show traps"),
              "trap      for  entry  state      match                    actions\n"
              "protocol   17      2  installed  ip-type ip ip-proto udp  trap to the CPU\n");
}

TEST_F(TrapVerbs, AFlowWithUdfKeepsTheFirstArpTrapOut)
{
    vexokit::printed([&] { run("flow add match udf 14:01"); });
    EXPECT_EQ(error_of("trap add arp 10.0.0.1"),
              "trap add arp: a flow with udf has its place in the chip; add the first ARP trap "
              "before any such flow");
    EXPECT_EQ(run("flow clear; flow add match any; show traps"), "flow 1\nthere are no traps\n");
}

TEST_F(TrapVerbs, BadInputIsOneLine)
{
    run("trap add arp 10.0.0.1");
    const BadCommand cases[] = {
        {"trap", "'trap' is followed by one of: add, delete"},
        {"trap add", "'trap add' is followed by one of: arp, protocol, l4-port"},
        {"trap add arp", "missing ADDRESS; usage: trap add arp ADDRESS[/BITS]"},
        {"trap add arp 10.0.0",
         "bad IPv4 address '10.0.0': four numbers like 192.0.2.1 are wanted"},
        {"trap add arp 10.0.0.0/33", "bad prefix length '33': a number from 0 to 32 is wanted"},
        {"trap add protocol 256", "bad protocol '256': a number from 0 to 255 is wanted"},
        {"trap add l4-port 65536", "bad L4PORT '65536': a number from 0 to 65535 is wanted"},
        {"trap delete arp 10.0.0.2", "there is no ARP trap for 10.0.0.2/32"},
        {"trap delete protocol 17", "trap delete protocol 17: there is no such trap"},
        {"trap delete l4-port 80", "trap delete l4-port 80: there is no such trap"},
        {"trap delete arp all 1", "unexpected '1'; usage: trap delete arp ADDRESS[/BITS]|all"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
    EXPECT_NE(error_of("fault bcmx_field_entry_install -1; trap add l4-port 80"), "no error");
}
