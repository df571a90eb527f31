#include "core/line_card_init.h"

#include <bcm/error.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "core/factory.h"
#include "core/trace.h"
#include "flow/trap_filter.h"
#include "flow/udf_pool.h"
#include "l2/stat_tables.h"
#include "platform/port_map.h"
#include "tests/core/bring_up_calls.h"
#include "vexosim/board.h"
#include "vexosim/calls.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"

namespace {

void expect_lines(const std::string& text, std::size_t lines)
{
    EXPECT_EQ(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')), lines) << text;
}

/// A board with its nodes, time that stands still, and the calls written down.
struct BringUp : testing::Test {
    BringUp()
    {
        vexosim::board::enable();
        vexosim::use_manual_clock();
        vexosim::log_calls(true);
    }

    static VexoBcmSdk& create()
    {
        vexosdk_create_sdk_instance();
        return *bcm_sdk;
    }

    /// What creating an instance prints.
    static std::string printed_by_create()
    {
        testing::internal::CaptureStdout();
        create();
        return testing::internal::GetCapturedStdout();
    }

    /// Switches tracing on through an instance whose card did not come up, before the probe.
    static void trace_beforehand()
    {
        vexosim::inject({.call = "sal_core_init"});
        create().set_trace("trace_level_sdk", true);
        vexosim::clear_faults();
        vexosim::clear_calls();
    }
};

TEST_F(BringUp, MakesTheseCallsInThisOrder)
{
    create();
    EXPECT_EQ(calls_of_interest(), bring_up_calls());
}

TEST_F(BringUp, PrintsNothingWithoutTracing)
{
    EXPECT_EQ(printed_by_create(), "");
}

TEST_F(BringUp, AFailurePrintsNothingWithoutTracing)
{
    vexosim::inject({.call = "bcmx_field_control_set"});
    EXPECT_EQ(printed_by_create(), "");
}

TEST_F(BringUp, SaysThatItIsDoneWhileTracingIsOn)
{
    trace_beforehand();
    EXPECT_EQ(printed_by_create(), "line card init done\n");
}

TEST_F(BringUp, SaysThatItFailedWhileTracingIsOn)
{
    trace_beforehand();
    vexosim::inject({.call = "bcmx_field_group_create_id"});
    EXPECT_EQ(printed_by_create(), "line card init failed\n");
}

TEST_F(BringUp, AFailedOneStillGivesAnInstance)
{
    vexosim::inject({.call = "soc_reset_init"});
    EXPECT_TRUE(vexosdk_create_sdk_instance());
    EXPECT_TRUE(bcm_sdk->initialize());
    EXPECT_FALSE(bcm_sdk->create_vlan(7));
}

TEST_F(BringUp, ASecondOneInTheProcessFailsAtTheProbe)
{
    create();
    vexosim::clear_calls();
    create();
    EXPECT_EQ(calls_of_interest(), "sal_core_init()\n"
                                   "sal_appl_init()\n"
                                   "sysconf_debug_vectors_get(out)\n"
                                   "soc_cm_init(out)\n");
    EXPECT_TRUE(bcm_sdk->create_vlan(7));
}

TEST_F(BringUp, ASecondOneSaysThatItFailed)
{
    create().set_trace("trace_level_all", true);
    EXPECT_EQ(printed_by_create(), "line card init failed\n");
}

TEST_F(BringUp, FillsTheCounterTables)
{
    create();
    EXPECT_EQ(stat_to_stat_val[0], -1);
    for (int type = 1; type <= 33; ++type)
        EXPECT_EQ(stat_to_stat_val[type], type - 1);
    for (int type = 34; type <= 76; ++type)
        EXPECT_EQ(stat_to_stat_val[type], type + 1);
    EXPECT_EQ(brief_to_port_stat[0], 0);
    for (int type = 1; type <= 4; ++type)
        EXPECT_EQ(brief_to_port_stat[type], type - 1);
}

TEST_F(BringUp, FillsTheCounterTablesBeforeTheDriversOwnDefaults)
{
    vexosim::inject({.call = "bcmx_field_control_set"});
    create();
    EXPECT_EQ(stat_to_stat_val[34], 35);
    EXPECT_EQ(brief_to_port_stat[4], 3);
}

TEST_F(BringUp, LeavesTheCounterTablesAloneWhenThePortsFail)
{
    vexosim::inject({.call = "bcmx_port_vlan_member_set", .nth = 53});
    create();
    EXPECT_EQ(stat_to_stat_val[0], 0);
    EXPECT_EQ(brief_to_port_stat[4], 0);
}

TEST_F(BringUp, ResetsThePoolOfUserDefinedFields)
{
    std::fill(std::begin(vexo_udf_usage), std::end(vexo_udf_usage), uint8_t{1});
    vexo_udf_usage[0] = 0;
    vexo_udf_available = 5;
    create();
    EXPECT_EQ(vexo_udf_usage[0], 1);
    EXPECT_EQ(std::count(std::begin(vexo_udf_usage), std::end(vexo_udf_usage), 0), 92);
    EXPECT_EQ(vexo_udf_get_available(), 92u);
}

TEST_F(BringUp, LeavesThePoolAloneWhenTheFieldProcessorsControlFails)
{
    vexo_udf_available = 5;
    vexosim::inject({.call = "bcmx_field_control_set", .code = 1});
    create();
    EXPECT_EQ(vexo_udf_get_available(), 5u);
}

TEST_F(BringUp, ResetsThePoolBeforeTheTrapGroup)
{
    vexosim::inject({.call = "bcmx_field_group_create_id"});
    create();
    EXPECT_EQ(vexo_udf_get_available(), 92u);
}

TEST_F(BringUp, MakesTheTrapGroupUnderItsFixedId)
{
    EXPECT_EQ(filter_group_no_udf, -1);
    VexoBcmSdk& sdk = create();
    EXPECT_FALSE(sdk.init_filter_group_no_udf()); // it exists
}

TEST_F(BringUp, DoesNotSetTheCardsIdentity)
{
    create();
    EXPECT_EQ(self_slot_id, 0);
    EXPECT_EQ(number_lc_chips, 0);
    EXPECT_EQ(number_lc_ports, 0);
    EXPECT_EQ(number_lc_ppm, 0);
}

TEST(CardIdentity, IsSetWhenTheHostAsksForIt)
{
    int slot = -5;
    EXPECT_TRUE(vexo_init_line_card(slot));
    EXPECT_EQ(slot, 1);
    EXPECT_EQ(self_slot_id, 1);
    EXPECT_EQ(number_lc_chips, 1);
    EXPECT_EQ(number_lc_ports, 24);
    EXPECT_EQ(number_lc_ppm, 24);
}

/// A card that is up, and the calls from here on.
struct DefaultConfig : BringUp {
    DefaultConfig() : sdk(create()) { vexosim::clear_calls(); }

    VexoBcmSdk& sdk;
};

/// The calls of the other default set-up for the ports before `ports`.
std::string default_config_calls(unsigned ports)
{
    std::string text = "bcmx_linkscan_enable_set(-1)\n"
                       "bcmx_linkscan_device_add(0)\n"
                       "bcmx_l2_notify_start()\n"
                       "bcmx_rx_device_add(0)\n"
                       "bcmx_rx_start(null)\n";
    for (unsigned port = 0; port < ports; ++port) {
        const std::string name = port < 49 ? std::to_string(port) : "lport:-1";
        text += "bcmx_port_flood_block_set(" + name + ", 0, 7)\n";
    }
    return text;
}

TEST_F(DefaultConfig, EndsAtPort49WhichIsNotInModule0)
{
    vexosim::inject({.call = "bcmx_rx_start", .code = 0, .do_nothing = true}); // it is running
    EXPECT_FALSE(sdk.line_card_default_config_init());
    EXPECT_EQ(vexosim::calls(), default_config_calls(50));
}

TEST_F(DefaultConfig, CoversAll54PortsOfAChipThatRefusesNone)
{
    vexosim::inject({.call = "bcmx_rx_start", .code = 0, .do_nothing = true});
    vexosim::inject(
        {.call = "bcmx_port_flood_block_set", .sticky = true, .code = 0, .do_nothing = true});
    EXPECT_TRUE(sdk.line_card_default_config_init());
    EXPECT_EQ(vexosim::calls(), default_config_calls(54));
}

TEST_F(DefaultConfig, CoversAsManyPortsAsTheInstanceHas)
{
    sdk.port_count = 7;
    vexosim::inject({.call = "bcmx_rx_start", .code = 0, .do_nothing = true});
    EXPECT_TRUE(sdk.line_card_default_config_init());
    EXPECT_EQ(vexosim::calls(), default_config_calls(7));
}

TEST_F(DefaultConfig, StopsAtTheFirstResultThatIsNotZero)
{
    const char* const steps[] = {"bcmx_linkscan_enable_set", "bcmx_linkscan_device_add",
                                 "bcmx_l2_notify_start", "bcmx_rx_device_add", "bcmx_rx_start"};
    for (std::size_t step = 0; step < std::size(steps); ++step) {
        for (int code : {-1, 1}) {
            vexosim::clear_calls();
            vexosim::inject({.call = steps[step], .code = code});
            EXPECT_FALSE(sdk.line_card_default_config_init()) << steps[step];
            expect_lines(vexosim::calls(), step + 1);
            vexosim::clear_faults();
        }
    }
}

/// The reserved VLAN of a card that is up.
struct ReservedVlan : DefaultConfig {
    static std::string front_ports()
    {
        std::string list = "[";
        for (int uport = 0; uport <= 52; ++uport) {
            const int port = vexo_uport_to_user_port[uport];
            list += (uport == 0 ? "" : ", ") + (port == 53 ? "cpu" : std::to_string(port));
        }
        return list + "]";
    }

    std::string printed_by_init(bool expected)
    {
        testing::internal::CaptureStdout();
        EXPECT_EQ(sdk.init_reserved_vlan(), expected);
        return testing::internal::GetCapturedStdout();
    }

    ~ReservedVlan() override { EXPECT_EQ(vexosim::live_lplists(), 0u); }
};

const char* const reserved_vlan_start = "bcmx_vlan_create(4094)\n"
                                        "bcmx_l2_learn_limit_set({flags=2, vlan=4094, limit=0})\n";

TEST_F(ReservedVlan, HasTheFirst53PortsAsUntaggedMembersAndLearnsNothing)
{
    EXPECT_EQ(printed_by_init(true), "");
    EXPECT_EQ(vexosim::calls(), reserved_vlan_start + ("bcmx_vlan_port_add(4094, " + front_ports() +
                                                       ", " + front_ports() + ")\n"));
}

TEST_F(ReservedVlan, LetsTheSdkPrepareItsRecords)
{
    vexosim::inject({.call = "bcmx_vlan_port_add"});
    EXPECT_EQ(printed_by_init(false), "");
    const std::string log = vexosim::all_calls();
    EXPECT_NE(log.find("bcmx_l2_learn_limit_t_init("), std::string::npos) << log;
    EXPECT_NE(log.find("bcmx_lplist_t_init(out)\nbcmx_lplist_t_init(out)\nbcmx_lplist_add("),
              std::string::npos)
        << log;
}

TEST_F(ReservedVlan, MayExistAlready)
{
    vexosim::inject({.call = "bcmx_vlan_create", .code = BCM_E_EXISTS, .do_nothing = true});
    sdk.create_vlan(4094);
    EXPECT_EQ(printed_by_init(true), "");
}

TEST_F(ReservedVlan, StopsWhereTheChipFails)
{
    struct {
        const char* call;
        std::size_t lines;
    } const steps[] = {
        {"bcmx_vlan_create", 1}, {"bcmx_l2_learn_limit_set", 2}, {"bcmx_vlan_port_add", 3}};
    for (const auto& [call, lines] : steps) {
        for (int code : {-7, 1}) {
            vexosim::clear_calls();
            vexosim::inject({.call = call, .code = code});
            EXPECT_EQ(printed_by_init(false), "") << call;
            expect_lines(vexosim::calls(), lines);
            vexosim::clear_faults();
        }
    }
}

TEST_F(ReservedVlan, StopsAtAPortThatCannotBecomeAMember)
{
    vexosim::inject({.call = "bcmx_lplist_add", .nth = 3, .code = BCM_E_MEMORY});
    EXPECT_EQ(printed_by_init(false),
              "bcmx_lplist_add failed, rc = -2, reason = " + std::string(_shr_errmsg[2]) + "\n");
    EXPECT_EQ(vexosim::calls(), reserved_vlan_start);
}

TEST_F(ReservedVlan, GoesOnAfterAPortThatCannotBecomeUntagged)
{
    vexosim::inject({.call = "bcmx_lplist_add", .nth = 2, .code = 5});
    EXPECT_EQ(printed_by_init(true),
              "bcmx_lplist_add failed, rc = 5, reason = " + std::string(_shr_errmsg[19]) + "\n");
    std::string untagged = front_ports();
    untagged.erase(1, std::string("cpu, ").size());
    EXPECT_EQ(vexosim::calls(), reserved_vlan_start + ("bcmx_vlan_port_add(4094, " + front_ports() +
                                                       ", " + untagged + ")\n"));
}

} // namespace
