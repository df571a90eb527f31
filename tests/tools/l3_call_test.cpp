// L3 interfaces, hosts and routes through the shell's `call`.
#include "tests/tools/shell_test_fixture.h"

using namespace vexosh;

namespace {

struct L3Call : ShellTest {
    std::string call(const std::string& line) { return run("call " + line); }

    /// The error without the reason behind it.
    std::string failed(const std::string& line)
    {
        const std::string error = error_of("call " + line);
        return error.substr(0, error.find(": "));
    }
};

const std::string no_route = "get_l3_route_by_subnet_ip4 returned false";

} // namespace

TEST_F(L3Call, AnInterfaceIsCreatedReadReplacedAndDeleted)
{
    EXPECT_EQ(call("create_l3_interface 02:00:00:00:00:01 10"), "ID = 0\n");
    EXPECT_EQ(call("get_l3_interface 0"), "VID = 10\nMAC = 02:00:00:00:00:01\n");
    EXPECT_EQ(call("create_l3_interface_with_id 02:00:00:00:00:02 11 0 on"), "");
    EXPECT_EQ(call("get_l3_interface 0"), "VID = 11\nMAC = 02:00:00:00:00:02\n");
    EXPECT_EQ(call("delete_l3_interface 02:00:00:00:00:02 11"), "");
    EXPECT_EQ(failed("get_l3_interface 0"), "get_l3_interface returned false");
    EXPECT_EQ(call("delete_l3_interface_by_id 0"), "");
    EXPECT_EQ(call("delete_l3_interface_all"), "");
}

TEST_F(L3Call, AHostIsAddedReadSwitchedAndDeleted)
{
    call("create_l3_interface 02:00:00:00:00:01 10");
    EXPECT_EQ(call("add_l3_host_ip4 3 off 10.0.0.7 02:00:00:00:00:09 0"), "");
    EXPECT_EQ(call("get_l3_host_ip4 10.0.0.7 3 off"),
              "MAC = 02:00:00:00:00:09\nINTERFACE_ID = 0\n");
    EXPECT_EQ(call("invalidate_l3_entry 10.0.0.7"), "");
    EXPECT_EQ(call("validate_l3_entry 10.0.0.7"), "");
    EXPECT_EQ(call("delete_l3_host_by_addr_ip4 10.0.0.7 3 off"), "");
    EXPECT_EQ(failed("delete_l3_host_by_addr_ip4 10.0.0.7 3 off"),
              "delete_l3_host_by_addr_ip4 returned false");
    for (const char* line :
         {"delete_l3_host_by_network_ip4 10.0.0.0", "delete_l3_host_by_network_ip6 2001:db8::",
          "delete_l3_host_by_interface 0 on", "delete_l3_host_all"})
        EXPECT_EQ(call(line), "") << line;
}

TEST_F(L3Call, AnIpv6HostIsAddedWhenTheSdkIsMadeToAnswer1Only)
{
    call("create_l3_interface 02:00:00:00:00:01 10");
    const std::string add = "add_l3_host_ip6 3 off 2001:db8::7 02:00:00:00:00:09 0";
    EXPECT_EQ(failed(add), "add_l3_host_ip6 returned false");
    run("fault bcmx_l3_host_t_init 1");
    EXPECT_EQ(call(add), "");
    EXPECT_EQ(call("get_l3_host_ip6 2001:db8::7 3 off"),
              "MAC = 02:00:00:00:00:09\nINTERFACE_ID = 0\n");
    EXPECT_EQ(call("delete_l3_host_by_addr_ip6 2001:db8::7 3 off"), "");
}

TEST_F(L3Call, ARouteIsAddedReadAndDeleted)
{
    call("create_l3_interface 02:00:00:00:00:01 10");
    EXPECT_EQ(call("add_l3_route_ip4 3 off 10.0.0.0 255.0.0.0 02:00:00:00:00:09 0 192.0.2.1"), "");
    EXPECT_EQ(call("get_l3_route_by_subnet_ip4 10.0.0.0 255.0.0.0 3 off"),
              "MAC = 02:00:00:00:00:09\nINTERFACE_ID = 0\nNEXTHOP_IP = 192.0.2.1\n");
    EXPECT_EQ(call("delete_l3_route_by_subnet_ip4 10.0.0.0 255.0.0.0 3 off"), "");
    EXPECT_EQ(failed("get_l3_route_by_subnet_ip4 10.0.0.0 255.0.0.0 3 off"), no_route);
    EXPECT_EQ(call("delete_l3_route_by_interface 0 on"), "");
    EXPECT_EQ(call("delete_l3_route_all"), "");
}

TEST_F(L3Call, AnIpv6RouteIsAddedBehindALagReadAndDeleted)
{
    call("create_l3_interface 02:00:00:00:00:01 10");
    call("create_lag");
    EXPECT_EQ(call("add_l3_route_ip6 0/0 on 2001:db8:: ffff:ffff:: 02:00:00:00:00:09 0"), "");
    EXPECT_EQ(call("get_l3_route_by_subnet_ip6 2001:db8:: ffff:ffff:: 0/0 on"),
              "INTERFACE_ID = 0\nMAC = 02:00:00:00:00:09\n");
    EXPECT_EQ(call("delete_l3_route_by_subnet_ip6 2001:db8:: ffff:ffff:: 0/0 on"), "");
    EXPECT_EQ(failed("add_l3_route_ip6 0/77 on 2001:db8:: ffff:ffff:: 02:00:00:00:00:09 0"),
              "add_l3_route_ip6 returned false");
}
