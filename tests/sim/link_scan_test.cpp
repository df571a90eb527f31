// Link scan: when it looks, what it tells, and what the chip makes of it.
#include <gtest/gtest.h>

#include <bcm/link.h>
#include <bcmx/link.h>
#include <bcmx/port.h>

#include "tests/kit/kit.h"

namespace {

std::string& heard()
{
    static std::string text;
    return text;
}

extern "C" void hear(bcmx_lport_t lport, bcm_port_info_t* info)
{
    const int port = user_port_of(lport - kFirstLport);
    heard() += std::to_string(port) + (info->linkstatus == BCM_PORT_LINK_STATUS_UP ? "+" : "-");
}

extern "C" void hear_details(bcmx_lport_t lport, bcm_port_info_t* info)
{
    if (user_port_of(lport - kFirstLport) != 3)
        return;
    heard() += std::to_string(info->enable) + "/" + std::to_string(info->linkstatus) + "/" +
               std::to_string(info->autoneg) + "/" + std::to_string(info->speed) + "/" +
               std::to_string(info->duplex) + "/" + std::to_string(info->frame_max) + " ";
}

extern "C" void ask_the_sdk(bcmx_lport_t lport, bcm_port_info_t* /*info*/)
{
    int status = -1;
    bcmx_port_link_status_get(lport, &status);
    heard() += std::to_string(status);
}

int lport(int user_port)
{
    return kFirstLport + chip_port_of(user_port);
}

int link_status(int user_port)
{
    int status = -1;
    EXPECT_EQ(bcmx_port_link_status_get(lport(user_port), &status), 0);
    return status;
}

struct LinkScanning : CardTest {
    LinkScanning() { EXPECT_EQ(bcmx_linkscan_register(hear), 0); }

    std::string take_heard() { return std::exchange(heard(), ""); }
};

TEST_F(LinkScanning, AChangeIsToldOnce)
{
    wire(3).set_far_end(false);
    printed([] { drain(); });
    EXPECT_EQ(take_heard(), "3-");
    drain();
    EXPECT_EQ(take_heard(), "");
    wire(3).set_far_end(true);
    drain();
    EXPECT_EQ(take_heard(), "3+");
}

TEST_F(LinkScanning, ChangesAreToldInTheOrderOfChipPorts)
{
    wire(48).set_far_end(false); // chip-local port 1
    wire(3).set_far_end(false);  // 33
    wire(8).set_far_end(false);  // 2
    drain();
    EXPECT_EQ(take_heard(), "48-8-3-");
}

TEST_F(LinkScanning, LinksAreLookedAtOnceAPeriod)
{
    advance(250ms);
    wire(3).set_far_end(false);
    advance(249ms);
    EXPECT_EQ(take_heard(), "");
    EXPECT_EQ(link_status(3), 1);
    advance(1ms);
    EXPECT_EQ(take_heard(), "3-");
    EXPECT_EQ(link_status(3), 0);
}

TEST_F(LinkScanning, ThePeriodCanBeChanged)
{
    EXPECT_EQ(bcmx_linkscan_enable_set(1000), 0);
    wire(3).set_far_end(false);
    advance(999us);
    EXPECT_EQ(take_heard(), "");
    advance(1us);
    EXPECT_EQ(take_heard(), "3-");
}

TEST_F(LinkScanning, ZeroStopsItAndAnyNegativePeriodStartsItAgain)
{
    wire(3).set_far_end(false);
    EXPECT_EQ(bcmx_linkscan_enable_set(0), 0);
    advance(10s);
    drain();
    EXPECT_EQ(take_heard(), "");
    EXPECT_EQ(bcmx_linkscan_enable_set(-1), 0);
    advance(10s);
    EXPECT_EQ(take_heard(), "") << "a stopped unit keeps that";
    EXPECT_EQ(bcm_linkscan_enable_set(0, -1), 0);
    advance(250ms);
    EXPECT_EQ(take_heard(), "3-");
}

TEST_F(LinkScanning, PortsWithoutScanKeepTheirLink)
{
    EXPECT_EQ(bcm_linkscan_mode_set(0, chip_port_of(3), BCM_LINKSCAN_MODE_NONE), 0);
    wire(3).set_far_end(false);
    drain();
    EXPECT_EQ(take_heard(), "");
    EXPECT_EQ(bcm_linkscan_mode_set(0, chip_port_of(3), BCM_LINKSCAN_MODE_HW), 0);
    drain();
    EXPECT_EQ(take_heard(), "3-");
}

TEST_F(LinkScanning, ADisabledPortHasNoLinkAndItsFarEndSeesThat)
{
    EXPECT_TRUE(wire(3).link());
    EXPECT_EQ(bcmx_port_enable_set(lport(3), 0), 0);
    drain();
    EXPECT_EQ(take_heard(), "3-");
    EXPECT_FALSE(wire(3).link());
    EXPECT_EQ(bcmx_port_enable_set(lport(3), 1), 0);
    drain();
    EXPECT_EQ(take_heard(), "3+");
    EXPECT_TRUE(wire(3).link());
}

TEST_F(LinkScanning, APortCarriesFramesOnceItsLinkIsSeen)
{
    expect_forwarded(broadcast(host1).from(host3.mac), 1, [] {
        std::set<int> others;
        for (int port = 0; port < 53; ++port)
            if (port != 1)
                others.insert(port);
        return others;
    }());
    wire(3).set_far_end(false);
    drain();
    wire(3).set_far_end(true);
    expect_dropped(broadcast(host2), 3, "port_link_down");
}

TEST_F(LinkScanning, HandlersGetTheWholeState)
{
    bcmx_linkscan_register(hear_details);
    bcmx_port_speed_set(lport(3), 100);
    bcmx_port_frame_max_set(lport(3), 9000);
    wire(3).set_far_end(false);
    drain();
    EXPECT_EQ(take_heard(), "3-1/0/0/100/1/9000 ");
}

TEST_F(LinkScanning, AHandlerMayCallTheSdk)
{
    bcmx_linkscan_register(ask_the_sdk);
    wire(3).set_far_end(false);
    drain();
    EXPECT_EQ(take_heard(), "3-0");
}

TEST_F(LinkScanning, AHandlerIsRegisteredOnce)
{
    EXPECT_EQ(bcmx_linkscan_register(hear), BCM_E_EXISTS);
    EXPECT_EQ(bcmx_linkscan_register(nullptr), BCM_E_PARAM);
}

TEST_F(LinkScanning, BadArgumentsAreRefused)
{
    EXPECT_EQ(bcm_linkscan_mode_set(0, 54, 1), BCM_E_PORT);
    EXPECT_EQ(bcm_linkscan_mode_set(0, -1, 1), BCM_E_PORT);
    EXPECT_EQ(bcm_linkscan_mode_set(0, 1, 3), BCM_E_PARAM);
    EXPECT_EQ(bcm_linkscan_mode_set(1, 1, 1), BCM_E_UNIT);
    EXPECT_EQ(bcm_linkscan_enable_set(1, 1000), BCM_E_UNIT);
    EXPECT_EQ(bcmx_linkscan_device_add(1), BCM_E_UNIT);
    EXPECT_EQ(bcmx_linkscan_device_add(0), 0) << "a second time is no error";
}

struct LinksBeforeHandlers : QuietCardTest {};

TEST_F(LinksBeforeHandlers, LinksThatWereUpBeforeAHandlerCameAreToldToo)
{
    bcmx_linkscan_register(hear);
    printed([] { drain(); });
    EXPECT_EQ(std::count(heard().begin(), heard().end(), '+'), 53);
    EXPECT_EQ(std::count(heard().begin(), heard().end(), '-'), 0);
}

} // namespace
