#include "tests/kit/captured_output.h"
#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/grammar.h"
#include "vexosim/calls.h"

using namespace vexosh;

namespace {

class FlowVerbs : public ShellTest {
protected:
    /// What a line prints, without the driver's own lines.
    std::string quiet(const std::string& line)
    {
        std::string text;
        vexokit::printed([&] { text = run(line); });
        return text;
    }

    std::string quiet_error(const std::string& line)
    {
        std::string text;
        vexokit::printed([&] { text = error_of(line); });
        return text;
    }

    /// The SDK calls of a line.
    std::string calls_of(const std::string& line)
    {
        vexosim::log_calls(true);
        vexosim::clear_calls();
        quiet(line);
        return vexosim::calls();
    }

    /// A line of `show flow FLOW`, without its name.
    std::string of_flow(unsigned flow, const std::string& name)
    {
        std::istringstream lines(quiet("show flow " + std::to_string(flow)));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with(name + "  ")) {
                return line.substr(line.find_first_not_of(' ', name.size()));
            }
        }
        return "no " + name;
    }
};

std::string calls_with(const std::string& middle)
{
    return middle + "bcmx_field_entry_reinstall(1)\n";
}

} // namespace

TEST_F(FlowVerbs, AFlowIsShownWithItsMatchAndActionsInWords)
{
    EXPECT_EQ(run("show flows"), "there are no flows\n");
    EXPECT_EQ(quiet("flow add match in-port 3 vlan 10 ip-proto tcp l4-dst 80 priority 5 "
                    "action redirect 4"),
              "flow 0\n");
    EXPECT_EQ(quiet("flow add match any"), "flow 1\n");
    EXPECT_EQ(quiet("show flows"),
              "flow  priority  packets  state      match                   actions\n"
              "   0         5        0  installed  in-port 3 vlan 10       redirect to 4; count\n"
              "                                    ip-proto tcp l4-dst 80\n"
              "   1         0        0  installed  any                     count\n");
    EXPECT_EQ(quiet("show flow 0"), "flow              0\n"
                                    "entry             1\n"
                                    "group             1\n"
                                    "priority          5\n"
                                    "packets           0\n"
                                    "packets, 32 bits  0\n"
                                    "state             installed\n"
                                    "match             in-port 3 vlan 10 ip-proto tcp l4-dst 80\n"
                                    "actions           redirect to 4; count\n");
}

TEST_F(FlowVerbs, EveryFieldIsMatchedAsItIsWritten)
{
    const std::pair<const char*, const char*> cases[] = {
        {"any", "any"},
        {"in-port 3", "in-port 3"},
        {"in-port cpu", "in-port cpu"},
        {"src-mac 02:00:00:00:00:01", "src-mac 02:00:00:00:00:01"},
        {"dst-mac 02:00:00:00:00:02", "dst-mac 02:00:00:00:00:02"},
        {"ether-type arp", "ether-type 0x0806"},
        {"ether-type 0x88b5", "ether-type 0x88b5"},
        {"vlan 4095", "vlan 4095"},
        {"vlan-priority 7", "vlan-priority 7"},
        {"src-ip 10.0.0.0/8", "src-ip 10.0.0.0/8"},
        {"src-ip 192.0.2.1", "src-ip 192.0.2.1"},
        {"dst-ip 10.0.0.1/255.0.0.255", "dst-ip 10.0.0.1/255.0.0.255"},
        {"dst-ip 0.0.0.0/0", "dst-ip 0.0.0.0/0"},
        {"ip-proto udp", "ip-proto udp"},
        {"ip-proto 255", "ip-proto 255"},
        {"tos 0x10", "tos 0x10"},
        {"l4-src 1", "l4-src 1"},
        {"l4-dst 65535", "l4-dst 65535"},
        {"udf 14:0102/ff0f", "udf 14:0102/ff0f"},
        {"udf 13:01020304050607", "udf 13:01020304050607"},
        {"udf 0:ff00/fff0 in-port 2", "in-port 2 udf 0:ff00/fff0"},
    };
    unsigned id = 0;
    for (const auto& [words, shown] : cases) {
        const std::string said = "flow " + std::to_string(id) + "\n";
        EXPECT_EQ(quiet(std::string("flow add match ") + words), said) << words;
        EXPECT_EQ(of_flow(id, "match"), shown);
        quiet("flow delete " + std::to_string(id++));
    }
}

TEST_F(FlowVerbs, EveryActionAsksForTheDriversOwn)
{
    quiet("flow add match any");
    const std::pair<const char*, const char*> cases[] = {
        {"drop", "bcmx_field_action_add(1, 35, 0, 0)\n"},
        {"bypass-stp", "bcmx_field_action_add(1, 168, 0, 0)\n"},
        {"loopback", "bcmx_field_action_add(1, 166, 0, 0)\n"},
        {"vlan 20", "bcmx_field_action_add(1, 119, 20, 0)\n"},
        {"vlan-priority 7", "bcmx_field_action_add(1, 8, 7, 0)\n"},
        {"delete-inner-tag", "bcmx_field_action_add(1, 116, 0, 0)\n"},
        {"src-mac 02:00:00:00:00:01", "bcmx_field_action_mac_add(1, 187, 02:00:00:00:00:01)\n"},
        {"dst-mac 02:00:00:00:00:02", "bcmx_field_action_mac_add(1, 188, 02:00:00:00:00:02)\n"},
        {"tos 0x10", "bcmx_field_action_add(1, 15, 16, 0)\n"},
        {"reinstall", ""},
        {"output 3", ""},
        {"output 5", ""},
    };
    for (const auto& [words, calls] : cases) {
        EXPECT_EQ(calls_of(std::string("flow action add 0 ") + words), calls_with(calls)) << words;
    }
}

TEST_F(FlowVerbs, RedirectionsAreToPortsTheCpuOrAll)
{
    const std::pair<const char*, const char*> cases[] = {
        {"redirect 4", "redirect to 4; count"},
        {"redirect 4-6,cpu", "redirect to cpu,4-6; count"},
        {"output 1", "redirect to cpu; count"},
        {"output 2", "redirect to cpu; count"},
        {"redirect all", "redirect to 0-46,48-52; count"},
        {"output 6", "redirect to 0-46,48-52; count"},
        {"redirect all-bypass-stp", "redirect to 0-46,48-52; count; bypass spanning tree"},
        {"output 0", "redirect to 0-46,48-52; count; bypass spanning tree"},
        {"output 4", "count; loop back"},
    };
    unsigned id = 0;
    for (const auto& [words, shown] : cases) {
        quiet(std::string("flow add match any action ") + words);
        EXPECT_EQ(of_flow(id++, "actions"), shown) << words;
    }
}

TEST_F(FlowVerbs, ActionsJoinThoseThereAreAndAreTakenOut)
{
    quiet("flow add match any action redirect 4 vlan 20 drop");
    EXPECT_EQ(of_flow(0, "actions"), "redirect to 4; drop; count; VLAN 20");
    quiet("flow action add 0 redirect 5; flow action remove 0 drop");
    EXPECT_EQ(of_flow(0, "actions"), "redirect to 4,5; count; VLAN 20");
    quiet("flow action remove 0 redirect 4");
    EXPECT_EQ(of_flow(0, "actions"), "not out of 4; redirect to 4,5; count; VLAN 20");
}

TEST_F(FlowVerbs, ClearedActionsActUntilTheNextChange)
{
    quiet("flow add match any action drop; flow action clear 0");
    EXPECT_EQ(of_flow(0, "actions"), "none");
    EXPECT_EQ(of_flow(0, "state"), "changed");
    quiet("flow action add 0 reinstall");
    EXPECT_EQ(of_flow(0, "state"), "installed");
}

TEST_F(FlowVerbs, FlowsCountInBothWidths)
{
    run("attach 1-2=mem; wait 1s");
    quiet("flow add match in-port 1; send 1 type=0x88b5; send 1 type=0x88b5; send 2 type=0x88b5");
    EXPECT_EQ(of_flow(0, "packets"), "2");
    EXPECT_EQ(of_flow(0, "packets, 32 bits"), "2");
}

TEST_F(FlowVerbs, PrioritiesAreSetAtOnce)
{
    quiet("flow add match any");
    EXPECT_EQ(calls_of("flow priority 0 -7"), "bcmx_field_entry_prio_set(1, -7)\n");
    EXPECT_EQ(of_flow(0, "priority"), "-7");
}

TEST_F(FlowVerbs, FlowsAreDeletedAloneOrTogether)
{
    quiet("flow add match any; flow add match any; flow add match in-port 1");
    EXPECT_EQ(quiet("flow delete 0; show flows"),
              "flow  priority  packets  state      match      actions\n"
              "   1         0        0  installed  any        count\n"
              "   2         0        0  installed  in-port 1  count\n");
    EXPECT_EQ(quiet("flow clear; show flows"), "there are no flows\n");
    EXPECT_EQ(quiet("flow add match any"), "flow 3\n");
}

TEST_F(FlowVerbs, AFlowWhoseActionIsRefusedIsGoneAgain)
{
    EXPECT_EQ(quiet_error("flow add match any action redirect 4 redirect all"),
              "flow add: the driver refused action redirect, so the flow is gone again: "
              "bcmx_field_action_ports_add reported -8, Entry exists");
    EXPECT_EQ(quiet_error("fault bcmx_field_entry_prio_set -4; flow add match any priority 1"),
              "flow add: the driver refused priority, so the flow is gone again: "
              "bcmx_field_entry_prio_set reported -4, Invalid parameter");
    EXPECT_EQ(run("show flows"), "there are no flows\n");
    EXPECT_EQ(run("show field-entries"), "there are no field entries\n");
}

TEST_F(FlowVerbs, WhatAFailureLeftBehindIsSeenAmongTheEntries)
{
    quiet_error("fault bcmx_field_counter_create -6; flow add match any");
    quiet("flow add match any; trap add protocol udp");
    EXPECT_EQ(run("show field-entries"),
              "entry  group  for     state      match                    actions\n"
              "    1      1  -       out        any                      none\n"
              "    2      1  flow 0  installed  any                      count\n"
              "    3     -1  trap    installed  ip-type ip ip-proto udp  trap to the CPU\n");
}

TEST_F(FlowVerbs, AFlowWhoseEntryIsGoneIsShownSo)
{
    quiet("flow add match any; fault bcmx_field_counter_destroy -1");
    quiet_error("flow delete 0");
    EXPECT_EQ(quiet("show flows"), "flow  priority  packets  state  match  actions\n"
                                   "   0  ?         ?        gone   -      -\n");
}

TEST_F(FlowVerbs, GroupsAreShownWithTheirFieldsAndWhoseTheyAre)
{
    EXPECT_EQ(run("show field-groups"), "group  for    priority  entries  fields\n"
                                        "   -1  traps         0        0  ip-type, ip-proto, "
                                        "l4-dst\n");
    run("trap add arp 10.0.0.1");
    quiet("flow add match in-port 1 src-mac 02:00:00:00:00:01; flow add match any");
    quiet("flow add match udf 14:01; flow add match tos 1 l4-dst 5 udf 14:01");
    EXPECT_EQ(run("show field-groups"),
              "group  for    priority  entries  fields\n"
              "   -1  traps         0        0  ip-type, ip-proto, l4-dst\n"
              "    1  traps         0        1  ip-type, bytes 38-41 of untagged frames (udf 0)\n"
              "    2  traps         0        1  ip-type, bytes 42-45 of frames with one tag\n"
              "                                 (udf 1)\n"
              "    3  flows         0        1  in-port, src-mac\n"
              "    4  flows         0        1  none\n"
              "    5  flows         0        1  bytes 14-17 of untagged frames (udf 2)\n"
              "    6  flows         0        1  tos, l4-dst, bytes 14-17 (udf 3)\n");
}

TEST_F(FlowVerbs, AFlowWithUdfIsAddedAlsoBesideArpTraps)
{
    run("trap add arp 10.0.0.1");
    EXPECT_EQ(quiet("flow add match udf 14:010203040506"), "flow 0\n");
    EXPECT_EQ(quiet("flow add match udf 15:01"), "flow 1\n");
}

TEST_F(FlowVerbs, BadInputIsOneLineAndAddsNothing)
{
    quiet("flow add match any");
    const BadCommand cases[] = {
        {"flow add", "missing match; `help flow add` says more"},
        {"flow add match", "missing field; `help flow add` says more"},
        {"flow add match foo 1",
         "bad field 'foo': one of in-port, src-mac, dst-mac, ether-type, vlan, vlan-priority, "
         "src-ip, dst-ip, l4-src, l4-dst, ip-proto, tos, udf is wanted, or any alone"},
        {"flow add match vlan", "missing value of vlan; `help flow add` says more"},
        {"flow add match vlan 1 any",
         "bad field 'any': one of in-port, src-mac, dst-mac, ether-type, vlan, vlan-priority, "
         "src-ip, dst-ip, l4-src, l4-dst, ip-proto, tos, udf is wanted, or any alone"},
        {"flow add match vlan 1 vlan 2", "vlan is given twice"},
        {"flow add match vlan 4096", "bad vlan '4096': a number from 0 to 4095 is wanted"},
        {"flow add match vlan-priority 8", "bad vlan-priority '8': a number from 0 to 7 is wanted"},
        {"flow add match tos 256", "bad tos '256': a number from 0 to 255 is wanted"},
        {"flow add match ip-proto 256", "bad protocol '256': a number from 0 to 255 is wanted"},
        {"flow add match ether-type 65536",
         "bad ether-type '65536': a number from 0 to 65535 is wanted"},
        {"flow add match in-port 54", "bad port '54': 0 to 52 or cpu is wanted"},
        {"flow add match src-ip 10.0.0.0/33",
         "bad prefix length '33': a number from 0 to 32 is wanted"},
        {"flow add match udf 14",
         "bad udf '14': OFFSET:DATA/MASK in hexadecimal, OFFSET:DATA or - is wanted"},
        {"flow add match udf 14:", "bad udf '14:': there are no bytes to match"},
        {"flow add match udf -", "bad udf '-': there are no bytes to match"},
        {"flow add match udf 14:0102/ff", "bad udf '14:0102/ff': data and mask differ in length"},
        {"flow add match any drop", "unexpected 'drop'; `help flow add` says more"},
        {"flow add match any priority", "missing N; `help flow add` says more"},
        {"flow add match any action", "missing action; `help flow add` says more"},
        {"flow add match any action fly",
         "bad action 'fly': one of drop, redirect, loopback, output, vlan, vlan-priority, "
         "delete-inner-tag, src-mac, dst-mac, tos, bypass-stp, reinstall is wanted"},
        {"flow action add 0 vlan", "missing value of vlan; usage: flow action add FLOW "
                                   "drop|redirect|loopback|output|vlan|vlan-priority|"
                                   "delete-inner-tag|src-mac|dst-mac|tos|bypass-stp|reinstall "
                                   "[VALUE]"},
        {"flow action add 0 vlan 4095", "bad vlan '4095': a number from 0 to 4094 is wanted"},
        {"flow action add 0 redirect -",
         "bad redirection '-': there is no port in it; `drop` sends frames nowhere"},
        {"flow action add 0 output 7", "bad kind of output '7': a number from 0 to 6 is wanted"},
        {"flow action remove 0 drop", "flow action remove 0: the driver refused: "
                                      "bcmx_field_action_delete reported -7, Entry not found"},
        {"flow action add 9 drop", "there is no flow 9"},
        {"flow action clear 9", "there is no flow 9"},
        {"flow priority 9 1", "there is no flow 9"},
        {"flow delete 9", "there is no flow 9"},
        {"show flow 9", "there is no flow 9"},
        {"flow add-with-id 3 match any", "flow add-with-id 3: the driver refused: it takes no flow "
                                         "with an id that was chosen for it"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(quiet_error(line), error) << line;
    }
    EXPECT_EQ(run("show field-entries"), "entry  group  for     state      match  actions\n"
                                         "    1      1  flow 0  installed  any    count\n");
}

TEST(FlowGrammar, WordsOfMatchesAndActionsAreCompleted)
{
    using Names = std::vector<std::string>;
    EXPECT_EQ(completions({"flow", "add"}, ""), Names{"match"});
    EXPECT_EQ(completions({"flow", "add", "match"}, "src"), (Names{"src-mac", "src-ip"}));
    EXPECT_EQ(completions({"flow", "add", "match", "vlan"}, ""), Names{});
    EXPECT_EQ(completions({"flow", "add", "match", "vlan", "1"}, "a"), (Names{"any", "action"}));
    EXPECT_EQ(completions({"flow", "action", "add", "0"}, "d"),
              (Names{"drop", "delete-inner-tag", "dst-mac"}));
}
