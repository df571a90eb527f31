#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/factory.h"
#include "core/trace.h"
#include "pktio/event_records.h"
#include "pktio/receive.h"
#include "platform/led.h"
#include "platform/port_map.h"
#include "tests/platform/port_tables.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"

namespace {

// What happened, in order.
std::string events;
bool led_fails = false;
bool led_is_ours = false;
std::vector<LinkStatus> heard;
std::vector<ctype_link_status_s> heard_c;

void note_new_calls()
{
    events += vexosim::calls();
    vexosim::clear_calls();
}

} // namespace

// In place of the library's, which cannot fail.
bool vexo_set_port_led(int unit, int port, bcm_port_info_s* info)
{
    if (!led_is_ours)
        return true;
    note_new_calls();
    events += "led(" + std::to_string(unit) + ", " + std::to_string(port) + ", " +
              std::to_string(info->linkstatus) + ")\n";
    return !led_fails;
}

namespace {

void on_link(LinkStatus* status, Usp* port)
{
    note_new_calls();
    events += "link\n";
    EXPECT_EQ(*port, status->port());
    heard.push_back(*status);
}

void on_link_c(ctype_link_status_s* status, usp_s* port)
{
    note_new_calls();
    events += "link_c\n";
    EXPECT_EQ(port->unit, status->port.unit);
    EXPECT_EQ(port->slot, status->port.slot);
    EXPECT_EQ(port->port, status->port.port);
    heard_c.push_back(*status);
}

struct LinkEvents : testing::Test {
    bcm_port_info_t info = {};
    int lport = 0; // user port 8, chip-local port 2

    LinkEvents()
    {
        vexosim::use_manual_clock();
        vexosdk_create_sdk_instance();
        build_port_tables();
        heard.clear();
        heard_c.clear();
        led_fails = false;
        hw_util_dbg = 0;
        vexosim::clear_faults();
        bcm_sdk->register_link_change_callback_c(on_link_c, nullptr);
        bcm_sdk->register_link_change_callback(on_link, nullptr);
        led_is_ours = true;
        lport = vexo_user_port_to_lport[8];
        info.linkstatus = 1;
        info.speed = 1000;
        info.duplex = 1;
        vexosim::log_calls(true);
        vexosim::clear_calls();
    }
    ~LinkEvents() override { vexosdk_delete_sdk_instance(nullptr); }

    std::string change()
    {
        events.clear();
        vexo_link_change_handler(lport, &info);
        note_new_calls();
        return events;
    }

    std::string output_of_change()
    {
        testing::internal::CaptureStdout();
        change();
        return testing::internal::GetCapturedStdout();
    }
};

const std::string looked_up = "bcmx_lport_bcm_unit(8)\nbcmx_lport_bcm_port(8)\n";

TEST_F(LinkEvents, LinkUpSetsTheLedBlocksThePortAndTellsBothForms)
{
    EXPECT_EQ(change(), looked_up + "led(0, 2, 1)\nbcmx_port_stp_set(8, 1)\nlink\nlink_c\n");
}

TEST_F(LinkEvents, LinkDownSetsTheLedFlushesThePortAndTellsBothForms)
{
    info.linkstatus = 0;
    EXPECT_EQ(change(),
              looked_up + "led(0, 2, 0)\nbcmx_l2_addr_delete_by_port(8, 0)\nlink\nlink_c\n");
}

TEST_F(LinkEvents, AnotherStatusOnlySetsTheLed)
{
    info.linkstatus = 2;
    EXPECT_EQ(change(), looked_up + "led(0, 2, 2)\nlink\nlink_c\n");
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].status(), 2);
    EXPECT_EQ(heard_c[0].status, 2);
}

TEST_F(LinkEvents, AFailedLedSkipsTheOtherEffectsButSubscribersAreTold)
{
    led_fails = true;
    EXPECT_EQ(change(), looked_up + "led(0, 2, 1)\nlink\nlink_c\n");
    info.linkstatus = 0;
    EXPECT_EQ(change(), looked_up + "led(0, 2, 0)\nlink\nlink_c\n");
}

TEST_F(LinkEvents, FailedEffectsChangeNothingForSubscribers)
{
    vexosim::inject({.call = "bcmx_port_stp_set"});
    change();
    info.linkstatus = 0;
    vexosim::inject({.call = "bcmx_l2_addr_delete_by_port"});
    change();
    EXPECT_EQ(heard.size(), 2u);
    EXPECT_EQ(heard_c.size(), 2u);
}

TEST_F(LinkEvents, SideEffectsSucceedUnlessTheLedFails)
{
    EXPECT_TRUE(vexo_link_side_effects(lport, &info));
    vexosim::inject({.call = "bcmx_port_stp_set"});
    EXPECT_TRUE(vexo_link_side_effects(lport, &info));
    info.linkstatus = 0;
    vexosim::inject({.call = "bcmx_l2_addr_delete_by_port"});
    EXPECT_TRUE(vexo_link_side_effects(lport, &info));
    led_fails = true;
    EXPECT_FALSE(vexo_link_side_effects(lport, &info));
    EXPECT_TRUE(heard.empty() && heard_c.empty());
}

TEST_F(LinkEvents, ReportsPortStatusSpeedAndDuplexInBothForms)
{
    change();
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].port(), Usp(1, 1, 9));
    EXPECT_EQ(heard[0].status(), 1);
    EXPECT_EQ(heard[0].speed(), 3u);
    EXPECT_EQ(heard[0].duplex(), 2u);
    ASSERT_EQ(heard_c.size(), 1u);
    EXPECT_EQ(Usp(heard_c[0].port.unit, heard_c[0].port.slot, heard_c[0].port.port), Usp(1, 1, 9));
    EXPECT_EQ(heard_c[0].status, 1);
    EXPECT_EQ(heard_c[0].speed, 3u);
    EXPECT_EQ(heard_c[0].duplex, 2u);
}

TEST_F(LinkEvents, ReportsTheSlotOfTheCard)
{
    self_slot_id = 4;
    change();
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].port(), Usp(1, 4, 9));
    ASSERT_EQ(heard_c.size(), 1u);
    EXPECT_EQ(Usp(heard_c[0].port.unit, heard_c[0].port.slot, heard_c[0].port.port), Usp(1, 4, 9));
}

TEST_F(LinkEvents, ReportsSpeedsByCodeAndOthersAsUnknown)
{
    const struct {
        int mbps;
        unsigned code;
    } rows[] = {{10, 1}, {100, 2}, {1000, 3}, {10000, 4}, {2500, 0}, {40000, 0}, {0, 0}, {-1, 0}};
    for (const auto& row : rows) {
        info.speed = row.mbps;
        change();
        EXPECT_EQ(heard.back().speed(), row.code) << row.mbps;
        EXPECT_EQ(heard_c.back().speed, row.code) << row.mbps;
    }
}

TEST_F(LinkEvents, ReportsDuplexByCodeAndOthersAsUnknown)
{
    const struct {
        int duplex;
        unsigned code;
    } rows[] = {{0, 1}, {1, 2}, {2, 0}, {-1, 0}};
    for (const auto& row : rows) {
        info.duplex = row.duplex;
        change();
        EXPECT_EQ(heard.back().duplex(), row.code) << row.duplex;
        EXPECT_EQ(heard_c.back().duplex, row.code) << row.duplex;
    }
}

TEST_F(LinkEvents, AnUnknownPortChangesNothingAndReachesNobody)
{
    lport = 12345;
    hw_util_dbg = 1;
    EXPECT_EQ(output_of_change(), "");
    EXPECT_EQ(events, "");
}

TEST_F(LinkEvents, NothingHappensWithoutAnInstance)
{
    vexosdk_delete_sdk_instance(nullptr);
    hw_util_dbg = 1;
    EXPECT_EQ(output_of_change(), "");
    EXPECT_EQ(events, "");
}

TEST_F(LinkEvents, PrintsTheUserPortAndTheStatusWhileDebugging)
{
    EXPECT_EQ(output_of_change(), "");
    hw_util_dbg = 1;
    EXPECT_EQ(output_of_change(), "Link changed: port 8, status 1\n");
    info.linkstatus = 0;
    EXPECT_EQ(output_of_change(), "Link changed: port 8, status 0\n");
    hw_util_dbg = 2; // any value but 0 is on
    lport = vexo_user_port_to_lport[53];
    EXPECT_EQ(output_of_change(), "Link changed: port 53, status 0\n");
}

TEST_F(LinkEvents, TheCpuPortIsReportedLikeAnyOther)
{
    lport = vexo_user_port_to_lport[53];
    change();
    ASSERT_EQ(heard.size(), 1u);
    EXPECT_EQ(heard[0].port(), Usp(1, 1, 54));
}

} // namespace
