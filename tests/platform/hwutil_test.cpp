#include "platform/hwutil.h"

#include <bcm/error.h>
#include <bcm/rx.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <sstream>

#include "platform/port_map.h"
#include "sim/card/card.h"
#include "sim/chip/chip.h"
#include "vexosim/board.h"
#include "vexosim/calls.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"

namespace {

/// A board, time that stands still, and the calls written down.
struct Hwutil : testing::Test {
    Hwutil()
    {
        vexosim::board::enable();
        vexosim::use_manual_clock();
        vexosim::log_calls(true);
    }

    static std::string after(const std::string& start)
    {
        const std::string calls = vexosim::calls();
        const std::size_t at = calls.find(start);
        return at == std::string::npos ? "" : calls.substr(at);
    }
};

TEST_F(Hwutil, ChoosesUnit0)
{
    vexo_bcm_unit = 5;
    EXPECT_TRUE(vexo_hwutil_init());
    EXPECT_EQ(vexo_bcm_unit, 0);
}

TEST_F(Hwutil, FillsThePortTables)
{
    ASSERT_TRUE(vexo_hwutil_init());
    EXPECT_EQ(vexo_uport_to_user_port[26], 50);
    EXPECT_EQ(vexo_user_port_to_lport[53], vexosim::kFirstLport);
    EXPECT_EQ(
        std::count(std::begin(vexo_user_port_to_lport), std::end(vexo_user_port_to_lport), -1), 0);
    EXPECT_EQ(vexo_user_port_to_module_port[53], Mp(3, 53));
    EXPECT_EQ(vexo_user_port_to_module_port[49], Mp(2, 49));
    EXPECT_EQ(vexo_user_port_to_module_port[48], Mp(0, 48));
}

TEST_F(Hwutil, ARegistrationThatFailsDoesNotFailIt)
{
    vexosim::inject({.call = "bcmx_uport_create_callback_set"});
    EXPECT_TRUE(vexo_hwutil_init());
    EXPECT_EQ(
        std::count(std::begin(vexo_user_port_to_lport), std::end(vexo_user_port_to_lport), -1), 54);
}

TEST_F(Hwutil, FailsWhenThePortsCannotBeAttached)
{
    vexosim::inject({.call = "bcmx_device_attach", .code = 1});
    EXPECT_FALSE(vexo_hwutil_init());
    EXPECT_EQ(vexo_user_port_to_module_port[53], Mp(0, 0));
    EXPECT_EQ(after("soc_ledproc_config"), "");
}

TEST_F(Hwutil, NamesTheXePortsBeforeTheDeviceIsAttached)
{
    vexosim::inject({.call = "soc_cm_device_init"});
    EXPECT_FALSE(vexo_hwutil_init());
    EXPECT_EQ(vexosim::property("pbmp_xport_xe.0"), "0x3c000000");
}

TEST_F(Hwutil, LeavesTheExpanderAloneWithoutSfpModule)
{
    for (unsigned field : {0u, 2u, 3u}) {
        vexosim::board::select_daughter_module(field);
        vexo_hwutil_init();
        EXPECT_EQ(vexosim::board::i2c_log(), "") << field;
    }
}

TEST_F(Hwutil, SpeaksUpWhenThereIsNoBoard)
{
    vexosim::board::set_present("/dev/cpuDev", false);
    testing::internal::CaptureStdout();
    EXPECT_TRUE(vexo_hwutil_init());
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "/dev/cpuDev Open Error!\n/dev/cpuDev Open Error!\n"); // detection, LED program
}

/// A card whose chip is up, with its ports at the SDK's defaults.
struct CardInsert : Hwutil {
    CardInsert()
    {
        vexo_hwutil_init();
        vexosim::clear_calls();
    }

    static std::string port_defaults(int uport)
    {
        const std::string name = std::to_string(vexo_uport_to_user_port[uport]);
        return "bcmx_port_autoneg_set(" + name + ", 1)\n" + "bcmx_stg_stp_set(1, " + name +
               ", 4)\n" + "bcmx_port_vlan_member_set(" + name + ", 3)\n";
    }

    static std::string printed(bool (*act)(), bool expected)
    {
        testing::internal::CaptureStdout();
        EXPECT_EQ(act(), expected);
        return testing::internal::GetCapturedStdout();
    }
};

TEST_F(CardInsert, GivesEveryPortButTheCpusItsDefaults)
{
    EXPECT_TRUE(vexo_hwutil_card_insert());
    std::string expected;
    for (int uport = 1; uport <= 53; ++uport)
        expected += port_defaults(uport);
    EXPECT_EQ(after("bcmx_port_autoneg_set"), expected);
}

TEST_F(CardInsert, StopsAtTheFirstPortThatFails)
{
    vexosim::inject({.call = "bcmx_stg_stp_set", .nth = 2, .code = 1});
    EXPECT_FALSE(vexo_hwutil_card_insert());
    EXPECT_EQ(after("bcmx_port_autoneg_set"),
              port_defaults(1) + "bcmx_port_autoneg_set(8, 1)\n" + "bcmx_stg_stp_set(1, 8, 4)\n");
}

TEST_F(CardInsert, TouchesNoPortWhenTheDefaultSetUpFails)
{
    vexosim::inject({.call = "bcmx_cosq_mapping_set"});
    EXPECT_FALSE(vexo_hwutil_card_insert());
    EXPECT_EQ(after("bcmx_port_autoneg_set"), "");
}

TEST_F(CardInsert, StopsInTheMiddleOfFloodBlocking)
{
    vexosim::inject({.call = "bcm_port_flood_block_set", .nth = 3});
    EXPECT_FALSE(vexo_hwutil_default_port_config_init());
    EXPECT_EQ(after("bcm_port_flood_block_set"), "bcm_port_flood_block_set(0, 1, 0, 7)\n"
                                                 "bcm_port_flood_block_set(0, 2, 0, 7)\n"
                                                 "bcm_port_flood_block_set(0, 3, 0, 7)\n");
}

TEST_F(CardInsert, PrintsNothing)
{
    EXPECT_EQ(printed(vexo_hwutil_card_insert, true), "");
}

TEST_F(CardInsert, SaysThatArpPacketsCannotBeMapped)
{
    vexosim::inject({.call = "bcm_rx_cosq_mapping_set", .code = 1});
    EXPECT_EQ(printed(vexo_hwutil_default_port_config_init, false),
              "set arp packet rx cos map failed\n");
    EXPECT_EQ(after("bcm_rx_cosq_mapping_set"),
              "bcm_rx_cosq_mapping_set(0, 0, reasons:[1], reasons:[1], 0, 0, 0, 0, 3)\n");
}

TEST_F(CardInsert, SaysThatBpdusCannotBeMapped)
{
    vexosim::inject({.call = "bcm_rx_cosq_mapping_set", .nth = 2});
    EXPECT_EQ(printed(vexo_hwutil_default_port_config_init, false), "set bpdu rx cos map failed\n");
    EXPECT_EQ(after("bcm_rx_queue_channel_set"),
              "bcm_rx_queue_channel_set(0, 3, 3)\n"
              "bcm_rx_cosq_mapping_set(0, 0, reasons:[2], reasons:[2], 0, 0, 0, 0, 7)\n");
}

TEST_F(CardInsert, LeavesTheBpdusMappingInTheEntryThatBothUse)
{
    constexpr int bpdus = 7;
    constexpr int otherwise = 0;
    EXPECT_TRUE(vexo_hwutil_card_insert());
    const vexosim::ChipLock chip;
    EXPECT_EQ(chip->cpu.queue_of(1u << bcmRxReasonBpdu, 0, otherwise), bpdus);
    EXPECT_EQ(chip->cpu.queue_of(1u << bcmRxReasonArp, 0, otherwise), otherwise);
    EXPECT_EQ(chip->cpu.channel_of(bpdus), 2);
    EXPECT_EQ(chip->cpu.channel_of(3), 3);
}

TEST_F(CardInsert, UsesTheChosenUnitInEveryCallThatTakesOne)
{
    vexo_bcm_unit = 3;
    vexosim::inject({.call = "", .sticky = true, .code = 0, .do_nothing = true});
    EXPECT_TRUE(vexo_hwutil_default_port_config_init());
    std::istringstream calls(vexosim::calls());
    int lines = 0;
    for (std::string line; std::getline(calls, line); ++lines) {
        const bool takes_one =
            line.rfind("bcm_", 0) == 0 || line.find("_device_add(") != std::string::npos;
        EXPECT_EQ(line.find("(3") != std::string::npos &&
                      line != "bcmx_switch_control_set(35, 3)" &&
                      line != "bcmx_cosq_mapping_set(3, 3)",
                  takes_one)
            << line;
    }
    EXPECT_EQ(lines, 10 + 53 + 3 + 7 + 5);
}

TEST_F(CardInsert, StopsAtAUnitThatTheChipDoesNotHave)
{
    vexo_bcm_unit = 3;
    EXPECT_FALSE(vexo_hwutil_default_port_config_init());
    EXPECT_EQ(vexosim::calls(), "bcmx_linkscan_enable_set(-1)\nbcmx_linkscan_device_add(3)\n");
}

} // namespace
