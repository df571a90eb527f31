#include <bcm/error.h>
#include <gtest/gtest.h>

#include "platform/sysconf.h"
#include "vexosim/calls.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"
#include "vexosim/profile.h"

namespace {

/// A unit 0 that has been attached but not initialised, and the calls written down.
struct SystemInit : testing::Test {
    /// The chip calls of an initialisation that returns `expected`.
    static std::string calls_of_init(int expected)
    {
        vexosim::use_manual_clock();
        vexo_sysconf_init();
        vexo_sysconf_probe();
        vexo_sysconf_attach(0);
        vexosim::log_calls(true);
        EXPECT_EQ(vexo_bcm_sdk_system_init(0), expected);
        return vexosim::calls();
    }

    static void set_l2_shadow(bool present)
    {
        vexosim::Profile profile = vexosim::profile();
        profile.l2_shadow = present;
        vexosim::set_profile(profile);
    }
};

std::string line_with(const std::string& text, const std::string& start)
{
    const std::size_t at = text.find(start);
    return at == std::string::npos ? "" : text.substr(at, text.find('\n', at) - at);
}

std::string linkscan_of(std::initializer_list<int> ports)
{
    std::string text;
    for (int port : ports) {
        text += "bcm_linkscan_mode_set(0, " + std::to_string(port) + ", 1)\n";
        text += "bcm_stat_clear(0, " + std::to_string(port) + ")\n";
    }
    return text;
}

TEST_F(SystemInit, StartsTheL2MessageThreadWithTheDefaultPeriod)
{
    EXPECT_EQ(line_with(calls_of_init(0), "soc_l2x_start"), "soc_l2x_start(0, 0, 3000000)");
}

TEST_F(SystemInit, StartsTheL2MessageThreadWithThePeriodOfTheProperty)
{
    vexosim::set_property("l2xmsg_thread_usec", "1234");
    EXPECT_EQ(line_with(calls_of_init(0), "soc_l2x_start"), "soc_l2x_start(0, 0, 1234)");
}

TEST_F(SystemInit, NeedsNoL2MessageThreadWithoutAShadowTable)
{
    set_l2_shadow(false);
    const std::string calls = calls_of_init(0);
    EXPECT_EQ(line_with(calls, "soc_l2x_start"), "");
    EXPECT_EQ(line_with(calls, "bcm_init"), "bcm_init(0)");
}

TEST_F(SystemInit, ScansExactlyThePortsOfTheProperty)
{
    vexosim::set_property("bcm_linkscan_pbmp", "0x4000000000000012");
    const std::string calls = calls_of_init(BCM_E_PORT); // the chip has no port 62
    const std::string all = linkscan_of({1, 4}) + "bcm_linkscan_mode_set(0, 62, 1)\n";
    EXPECT_EQ(calls.substr(calls.find("bcm_linkscan")), all);
}

TEST_F(SystemInit, ReadsThePortSetOfTheUnitWithoutADefault)
{
    vexosim::set_property("bcm_linkscan_pbmp.0", "0x6");
    const std::string calls = calls_of_init(0);
    EXPECT_EQ(calls.substr(calls.find("bcm_linkscan")),
              linkscan_of({1, 2}) + "bcm_linkscan_enable_set(0, 250000)\n");
    EXPECT_NE(vexosim::all_calls().find("soc_property_get_pbmp(0, \"bcm_linkscan_pbmp\", 0)\n"),
              std::string::npos);
}

TEST_F(SystemInit, AnEmptyPortSetIsNotThePortsOfTheChip)
{
    vexosim::set_property("bcm_linkscan_pbmp", "0x0");
    const std::string calls = calls_of_init(0);
    EXPECT_EQ(calls.substr(calls.find("bcm_linkscan")), "bcm_linkscan_enable_set(0, 250000)\n");
}

TEST_F(SystemInit, StartsAtPort0)
{
    vexosim::set_property("bcm_linkscan_pbmp", "0x3");
    vexosim::inject({.call = "bcm_linkscan_mode_set", .code = -5});
    const std::string calls = calls_of_init(-5);
    EXPECT_EQ(calls.substr(calls.find("bcm_linkscan")), "bcm_linkscan_mode_set(0, 0, 1)\n");
}

TEST_F(SystemInit, GoesUpToPort95)
{
    vexosim::set_property("bcm_linkscan_pbmp", "0x800000000000000000000000");
    const std::string calls = calls_of_init(BCM_E_PORT);
    EXPECT_EQ(calls.substr(calls.find("bcm_linkscan")), "bcm_linkscan_mode_set(0, 95, 1)\n");
}

TEST_F(SystemInit, PassesTheIntervalOnAsItIs)
{
    vexosim::set_property("bcm_linkscan_interval", "0");
    EXPECT_EQ(line_with(calls_of_init(0), "bcm_linkscan_enable_set"),
              "bcm_linkscan_enable_set(0, 0)");
}

TEST_F(SystemInit, ReturnsTheCodeOfTheStepThatFails)
{
    vexosim::inject({.call = "soc_mmu_init", .code = -9});
    const std::string calls = calls_of_init(-9);
    EXPECT_EQ(calls, "soc_reset_init(0)\nsoc_misc_init(0)\nsoc_mmu_init(0)\n");
}

TEST_F(SystemInit, ReturnsTheCodeOfThePortThatFails)
{
    vexosim::inject({.call = "bcm_stat_clear", .nth = 2, .code = -6});
    const std::string calls = calls_of_init(-6);
    EXPECT_EQ(calls.substr(calls.find("bcm_linkscan")), linkscan_of({1, 2}));
}

TEST_F(SystemInit, ReturnsAPortConfigurationThatIsNotZero)
{
    vexosim::inject({.call = "bcm_port_config_get", .code = 2});
    EXPECT_EQ(line_with(calls_of_init(2), "bcm_linkscan"), "");
}

TEST_F(SystemInit, ReturnsZeroForAPositiveEnd)
{
    vexosim::inject({.call = "bcm_linkscan_enable_set", .code = 7});
    calls_of_init(0);
}

TEST_F(SystemInit, ReturnsANegativeEnd)
{
    vexosim::inject({.call = "bcm_linkscan_enable_set", .code = -7});
    calls_of_init(-7);
}

} // namespace
