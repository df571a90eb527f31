// Flows and trap filters through the shell's `call`.
#include <gtest/gtest.h>

#include <optional>
#include <sstream>

#include "tests/kit/captured_output.h"
#include "tools/vexosh/shell.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"

using namespace vexosh;

namespace {

struct FlowCall : testing::Test {
    FlowCall()
    {
        vexosim::use_manual_clock();
        session_.emplace();
        shell_.emplace(*session_, console_);
        vexosim::log_calls(true);
    }

    /// What `call` says, without the reason behind an error, and keeps what the driver printed in
    /// `driver`.
    std::string call(const std::string& line)
    {
        out_.str("");
        std::string error;
        driver = vexokit::printed([&] {
            try {
                shell_->run_line("call " + line);
            } catch (const BadInput& problem) {
                error = problem.what();
            }
        });
        error = error.substr(0, error.find(": "));
        return out_.str() + error;
    }

    std::string driver;

private:
    std::ostringstream out_;
    StreamConsole console_{out_};
    std::optional<Session> session_;
    std::optional<Shell> shell_;
};

TEST_F(FlowCall, AFlowIsAddedRankedCountedAndDeleted)
{
    EXPECT_EQ(call("add_of_flow in_port=5,src_ip=10.0.0.0/8 -"), "ID = 0\n");
    EXPECT_EQ(driver, "add qualify InPort = (0, 5)\nadd qualify SrcIp = 0x0a000000\n");
    EXPECT_EQ(call("add_of_flow any -"), "ID = 1\n");
    EXPECT_EQ(call("set_of_flow_priority 1 5"), "");
    EXPECT_EQ(call("get_of_flow_priority 1"), "PRIORITY = 5\n");
    EXPECT_EQ(call("get_of_flow_stat_counter64 1"), "VALUE = 0\n");
    EXPECT_EQ(call("get_of_flow_stat_counter32 1"), "VALUE = 0\n");
    EXPECT_EQ(call("delete_of_flow 1"), "");
    EXPECT_EQ(call("get_of_flow_stat_counter64 1"), "get_of_flow_stat_counter64 returned false");
    EXPECT_EQ(driver, "cannot find flow entry, id = 1\n");
    EXPECT_EQ(call("clear_of_flow_table"), "");
    EXPECT_EQ(call("add_of_flow any -"), "ID = 2\n");
    EXPECT_EQ(call("add_of_flow_with_id any 7"), "add_of_flow_with_id returned false");
}

TEST_F(FlowCall, AFlowMatchesBytesAnywhere)
{
    EXPECT_EQ(call("add_of_flow udf 14:0102/ff0f"), "ID = 0\n");
    EXPECT_EQ(driver, "bcmx_field_qset_add_udf: udf_ids[0] = 1, offset = 14, bcm_offset = 4\n"
                      "bcmx_field_qualify_UserDefined: entry = 0x1, udf_id = 1, data = 01 02 00 "
                      "00, mask = ff 0f 00 00\n");
    EXPECT_EQ(call("add_of_flow udf -"), "add_of_flow returned false");
}

TEST_F(FlowCall, ActionsComeAndGo)
{
    call("add_of_flow any -");
    EXPECT_EQ(call("add_of_flow_action 0 0 7 3"), "");
    EXPECT_EQ(driver, "add = 1, redirect to port, mp = (0, 3)\n");
    vexosim::clear_calls();
    EXPECT_EQ(call("add_of_flow_action 0 3 0:100 1"), "");
    EXPECT_EQ(call("add_of_flow_action 0 3 3:02:00:00:00:00:0c 1"), "");
    EXPECT_EQ(call("delete_of_flow_action 0 3 0:100 1"), "");
    EXPECT_EQ(vexosim::calls(), "bcmx_field_action_add(1, 119, 100, 0)\n"
                                "bcmx_field_entry_reinstall(1)\n"
                                "bcmx_field_action_mac_add(1, 187, 02:00:00:00:00:0c)\n"
                                "bcmx_field_entry_reinstall(1)\n"
                                "bcmx_field_action_delete(1, 119, 100, 0)\n"
                                "bcmx_field_entry_reinstall(1)\n");
    EXPECT_EQ(call("clear_of_flow_action 0"), "");
    EXPECT_EQ(call("add_of_flow_action 9 2 0 1"), "add_of_flow_action returned false");
}

TEST_F(FlowCall, TrapsComeAndGo)
{
    for (const char* line :
         {"add_arp_filter 10.0.0.1 255.255.255.0", "delete_arp_filter 10.0.0.1 255.255.255.0",
          "delete_arp_filter_all", "add_ip_protocol_filter 17", "delete_ip_protocol_filter 17",
          "delete_ip_protocol_filter_all", "add_l4_destination_port_filter 80",
          "delete_l4_destination_port_filter 80", "delete_l4_destination_port_filter_all"})
        EXPECT_EQ(call(line), "") << line;
    EXPECT_NE(vexosim::calls().find("UserDefined(1, 0, 0a000000, ffffff00)"), std::string::npos);
}

} // namespace
