#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/grammar.h"
#include "vexosim/calls.h"

using namespace vexosh;

namespace {

class L3Verbs : public ShellTest {
protected:
    L3Verbs()
    {
        run("l3 interface add 02:00:00:00:01:00 1; l3 interface add 02:00:00:00:02:00 2 id 5");
        run("lag create");
    }

    /// The SDK calls of a line, without the records' other fields.
    std::string calls_of(const std::string& line)
    {
        vexosim::log_calls(true);
        vexosim::clear_calls();
        run(line);
        return vexosim::calls();
    }
};

constexpr const char* kNoHosts = "there are no hosts\n";
constexpr const char* kNoRoutes = "there are no routes\n";

} // namespace

TEST_F(L3Verbs, InterfacesAreShownAsTheDriverReadsThem)
{
    EXPECT_EQ(run("show l3-interfaces"), "interface  mac                vlan\n"
                                         "        0  02:00:00:00:01:00     1\n"
                                         "        5  02:00:00:00:02:00     2\n");
    EXPECT_EQ(run("l3 interface delete all; show l3-interfaces"), "there are no interfaces\n");
}

TEST_F(L3Verbs, AnInterfaceHasTheIdTheDriverOrTheUserChose)
{
    EXPECT_EQ(run("l3 interface add 02:00:00:00:03:00 3"), "interface 1\n");
    EXPECT_EQ(run("l3 interface add 02:00:00:00:03:00 3"), "interface 1\n") << "it exists";
    EXPECT_EQ(run("l3 interface add 02:00:00:00:04:00 4 id 7"), "interface 7\n");
    EXPECT_EQ(run("l3 interface add 02:00:00:00:05:00 5 id 7 replace; l3 interface delete 0; "
                  "l3 interface delete 02:00:00:00:02:00 2; show l3-interfaces"),
              "interface 7\n"
              "interface  mac                vlan\n"
              "        1  02:00:00:00:03:00     3\n"
              "        7  02:00:00:00:05:00     5\n");
}

TEST_F(L3Verbs, HostsLeaveThroughPortsAndLags)
{
    EXPECT_EQ(run("show hosts"), kNoHosts);
    run("l3 host add 192.0.2.7 02:00:00:00:00:07 0 3");
    run("l3 host add 192.0.2.8 02:00:00:00:00:08 5 lag 0; l3 host invalidate 192.0.2.8");
    EXPECT_EQ(run("show hosts"), "host       mac                interface  port   hit  valid\n"
                                 "192.0.2.7  02:00:00:00:00:07          0  3      no   yes\n"
                                 "192.0.2.8  02:00:00:00:00:08          5  lag 0  no   no\n");
    EXPECT_EQ(run("l3 host find 192.0.2.8 lag 0"), "mac        02:00:00:00:00:08\n"
                                                   "interface  5\n");
    EXPECT_EQ(run("l3 host validate 192.0.2.8; l3 host delete 192.0.2.7 3; show hosts"),
              "host       mac                interface  port   hit  valid\n"
              "192.0.2.8  02:00:00:00:00:08          5  lag 0  no   yes\n");
}

TEST_F(L3Verbs, Ipv6HostsAreForAnSdkThatTakesThem)
{
    EXPECT_EQ(error_of("l3 host add 2001:db8::7 02:00:00:00:00:07 0 3"),
              "l3 host add 2001:db8::7: the driver refuses IPv6 hosts; a route to 2001:db8::7/128 "
              "does the same");
    run("fault bcmx_l3_host_t_init 1; l3 host add 2001:db8::7 02:00:00:00:00:07 0 3");
    EXPECT_EQ(run("show hosts"), "host         mac                interface  port  hit  valid\n"
                                 "2001:db8::7  02:00:00:00:00:07          0     3  no   yes\n");
    EXPECT_EQ(run("l3 host find 2001:db8::7 3"), "mac        02:00:00:00:00:07\ninterface  0\n");
    EXPECT_EQ(run("l3 host delete 2001:db8::7 3; show hosts"), kNoHosts);
}

TEST_F(L3Verbs, HostsAreDeletedByInterfaceNetworkOrAll)
{
    const std::string two = "l3 host add 192.0.2.7 02:00:00:00:00:07 0 3; "
                            "l3 host add 192.0.2.8 02:00:00:00:00:08 5 3; ";
    const std::string head = "host       mac                interface  port  hit  valid\n";
    const std::string seven = "192.0.2.7  02:00:00:00:00:07          0     3  no   yes\n";
    const std::string eight = "192.0.2.8  02:00:00:00:00:08          5     3  no   yes\n";
    EXPECT_EQ(run(two + "l3 host delete interface 0; show hosts"), head + eight);
    EXPECT_EQ(run(two + "l3 host delete interface 0 others; show hosts"), head + seven);
    EXPECT_EQ(run(two + "l3 host delete network 2001:db8::; show hosts"), head + seven + eight);
    EXPECT_EQ(run(two + "l3 host delete network 10.0.0.0; show hosts"), kNoHosts);
    EXPECT_EQ(run(two + "l3 host delete all; show hosts"), kNoHosts);
}

TEST_F(L3Verbs, RoutesAreOfBothFamiliesAndWrittenAsPrefixes)
{
    EXPECT_EQ(run("show routes"), kNoRoutes);
    run("l3 route add 10.0.0.0/8 02:00:00:00:00:09 5 2 via 198.51.100.1");
    run("l3 route add 10.1.0.0/255.255.0.0 02:00:00:00:00:09 5 lag 0");
    run("l3 route add default 02:00:00:00:00:09 0 2; l3 route add ::/0 02:00:00:00:00:09 0 2");
    run("l3 route add 2001:db8::/32 02:00:00:00:00:09 5 2");
    EXPECT_EQ(run("show routes"),
              "network        via           mac                interface  port   hit\n"
              "0.0.0.0/0      -             02:00:00:00:00:09          0  2      no\n"
              "10.0.0.0/8     198.51.100.1  02:00:00:00:00:09          5  2      no\n"
              "10.1.0.0/16    -             02:00:00:00:00:09          5  lag 0  no\n"
              "::/0           -             02:00:00:00:00:09          0  2      no\n"
              "2001:db8::/32  -             02:00:00:00:00:09          5  2      no\n");
    EXPECT_EQ(run("l3 route find 10.0.0.0/8 2"), "mac        02:00:00:00:00:09\n"
                                                 "interface  5\n"
                                                 "via        198.51.100.1\n");
    EXPECT_EQ(run("l3 route find 2001:db8::/32 2"), "mac        02:00:00:00:00:09\n"
                                                    "interface  5\n");
    run("l3 route delete 10.0.0.0/8 2; l3 route delete 10.1.0.0/16 lag 0");
    EXPECT_EQ(run("l3 route delete 2001:db8::/32 2; l3 route delete ::/0 2; show routes"),
              "network    via  mac                interface  port  hit\n"
              "0.0.0.0/0  -    02:00:00:00:00:09          0     2  no\n");
}

TEST_F(L3Verbs, RoutesAreDeletedByInterfaceOrAll)
{
    const std::string two = "l3 route add 10.0.0.0/8 02:00:00:00:00:09 0 2; "
                            "l3 route add 11.0.0.0/8 02:00:00:00:00:09 5 2; ";
    const std::string head = "network     via  mac                interface  port  hit\n";
    const std::string ten = "10.0.0.0/8  -    02:00:00:00:00:09          0     2  no\n";
    const std::string eleven = "11.0.0.0/8  -    02:00:00:00:00:09          5     2  no\n";
    EXPECT_EQ(run(two + "l3 route delete interface 0; show routes"), head + eleven);
    EXPECT_EQ(run(two + "l3 route delete interface 0 others; show routes"), head + ten);
    EXPECT_EQ(run(two + "l3 route delete all; show routes"), kNoRoutes);
}

TEST_F(L3Verbs, ADefaultRouteLeadsNobodyAstray)
{
    run("l3 route add 10.0.0.0/8 02:00:00:00:00:09 0 2; l3 route add default 02:00:00:00:00:09 5 "
        "2");
    const std::string routes = run("show routes");
    const std::string error = "l3 route delete interface: the driver would delete the routes of "
                              "interface 5, that of the default route; delete `default` first";
    EXPECT_EQ(error_of("l3 route delete interface 0"), error);
    EXPECT_EQ(error_of("l3 route delete interface 5 others"), error);
    EXPECT_EQ(run("show routes"), routes);
    EXPECT_EQ(run("l3 route delete interface 5; show routes"),
              "network     via  mac                interface  port  hit\n"
              "10.0.0.0/8  -    02:00:00:00:00:09          0     2  no\n");
}

TEST_F(L3Verbs, BadInputIsOneLineAndReachesNoSdk)
{
    const BadCommand cases[] = {
        {"l3 interface add 02:00:00:00:01 1",
         "bad MAC address '02:00:00:00:01': six bytes like 02:00:00:00:00:01 are wanted"},
        {"l3 interface add 02:00:00:00:01:00",
         "missing VID; usage: l3 interface add MAC VID [id INTERFACE [replace]]"},
        {"l3 interface add 02:00:00:00:01:00 1 replace",
         "unexpected 'replace'; usage: l3 interface add MAC VID [id INTERFACE [replace]]"},
        {"l3 interface delete 02:00:00:00:01:00",
         "missing VID; usage: l3 interface delete INTERFACE|MAC [VID]"},
        {"l3 interface delete x", "bad INTERFACE 'x': a number from 0 to 4294967295 is wanted"},
        {"l3 host add 10.0.0 02:00:00:00:00:09 0 3",
         "bad IPv4 address '10.0.0': four numbers like 192.0.2.1 are wanted"},
        {"l3 host add 10.0.0.1 02:00:00:00:00:09 0",
         "missing PORT or lag; usage: l3 host add ADDRESS MAC INTERFACE PORT|lag [LAG]"},
        {"l3 host add 10.0.0.1 02:00:00:00:00:09 0 54", "bad port '54': 0 to 52 or cpu is wanted"},
        {"l3 host add 10.0.0.1 02:00:00:00:00:09 0 9/9",
         "l3 host add 10.0.0.1: the driver refused: there is no port 9/9"},
        {"l3 host delete network 10.0.0.0/8",
         "bad address '10.0.0.0/8': the driver hands no prefix on and deletes the whole family; "
         "leave it out"},
        {"l3 host invalidate 2001:db8::1",
         "bad IPv4 address '2001:db8::1': four numbers like 192.0.2.1 are wanted"},
        {"l3 route add 10.0.0.0 02:00:00:00:00:09 0 3",
         "bad network '10.0.0.0': a prefix like 10.0.0.0/8 or 2001:db8::/32 is wanted"},
        {"l3 route add 10.1.0.0/8 02:00:00:00:00:09 0 3",
         "bad network '10.1.0.0/8': it has bits behind its prefix; 10.0.0.0/8 is the network"},
        {"l3 route add 2001:db8::1/33 02:00:00:00:00:09 0 3",
         "bad network '2001:db8::1/33': it has bits behind its prefix; 2001:db8::/33 is the "
         "network"},
        {"l3 route add 10.0.0.0/255.0.255.0 02:00:00:00:00:09 0 3",
         "bad network '10.0.0.0/255.0.255.0': the mask has holes"},
        {"l3 route add 10.0.0.0/33 02:00:00:00:00:09 0 3",
         "bad prefix length '33': a number from 0 to 32 is wanted"},
        {"l3 route add ::/129 02:00:00:00:00:09 0 3",
         "bad prefix length '129': a number from 0 to 128 is wanted"},
        {"l3 route add 2001:db8::/32 02:00:00:00:00:09 0 3 via 10.0.0.1",
         "l3 route add 2001:db8::/32: the driver takes no `via` for IPv6"},
    };
    vexosim::log_calls(true);
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
        EXPECT_EQ(vexosim::calls(), "") << line;
    }
}

TEST_F(L3Verbs, RefusalsNameWhatWasRefused)
{
    const BadCommand cases[] = {
        {"l3 interface add 03:00:00:00:00:01 1",
         "l3 interface add 03:00:00:00:00:01: the driver refused: bcmx_l3_intf_create reported -4, "
         "Invalid parameter"},
        {"l3 host add 10.0.0.1 02:00:00:00:00:09 99 3",
         "l3 host add 10.0.0.1: the driver refused: there is no L3 interface 99 (bcmx_l3_host_add "
         "reported -7, Entry not found)"},
        {"l3 host delete 10.0.0.1 3", "l3 host delete 10.0.0.1: the driver refused: "
                                      "bcmx_l3_host_delete reported -7, Entry not found"},
        {"l3 host find 10.0.0.1 3", "there is no host 10.0.0.1"},
        {"l3 route add 10.0.0.0/8 02:00:00:00:00:09 0 lag 7",
         "l3 route add 10.0.0.0/8: the driver refused: there is no lag 7 (bcmx_l3_route_add "
         "reported -7, Entry not found)"},
        {"l3 route find 10.0.0.0/8 3", "there is no route to 10.0.0.0/8"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
    EXPECT_EQ(run("show hosts; show routes"), std::string(kNoHosts) + kNoRoutes);
}

TEST_F(L3Verbs, PrefixesReachTheDriverAsMasks)
{
    EXPECT_EQ(calls_of("l3 route add 2001:db8:8000::/33 02:00:00:00:00:09 0 3"),
              "bcmx_l3_route_add({flags=0x20000, net=20010db8800000000000000000000000, "
              "mask=ffffffff800000000000000000000000, intf=0, nexthop_mac=02:00:00:00:00:09, "
              "nexthop_ip=0.0.0.0, port=3})\n");
    EXPECT_EQ(calls_of("l3 route add 10.128.0.0/9 02:00:00:00:00:09 0 3 via 192.0.2.1"),
              "bcmx_l3_route_add({flags=0, net=10.128.0.0, mask=255.128.0.0, intf=0, "
              "nexthop_mac=02:00:00:00:00:09, nexthop_ip=192.0.2.1, port=3})\n");
}

TEST(L3Grammar, WordsAreCompleted)
{
    using Names = std::vector<std::string>;
    EXPECT_EQ(completions({"l3"}, ""), (Names{"interface", "host", "route"}));
    EXPECT_EQ(completions({"l3", "host", "delete"}, ""), (Names{"interface", "network", "all"}));
    EXPECT_EQ(completions({"l3", "route", "add", "10.0.0.0/8", "02:00:00:00:00:09", "0"}, ""),
              Names{"lag"});
    EXPECT_EQ(completions({"l3", "interface", "add", "02:00:00:00:00:09", "1"}, ""),
              (Names{"id", "replace"}));
}
