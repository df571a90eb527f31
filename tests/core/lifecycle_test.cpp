// The instance on a card: what creating, replacing and deleting it asks of the SDK.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "core/factory.h"
#include "core/line_card_init.h"
#include "l2/lag.h"
#include "platform/port_map.h"
#include "vexosim/calls.h"
#include "vexosim/clock.h"

namespace {

// Creates an instance and gives every SDK call it made.
std::string calls_of_create()
{
    vexosim::use_manual_clock();
    vexosim::clear_calls();
    vexosim::log_calls(true);
    vexosdk_create_sdk_instance();
    std::string calls = vexosim::all_calls();
    vexosim::clear_calls();
    return calls;
}

bool contains(const std::string& text, const char* part)
{
    return text.find(part) != std::string::npos;
}

} // namespace

TEST(Lifecycle, CreatingBringsTheCardUpBeforeItReturns)
{
    const std::string calls = calls_of_create();
    EXPECT_TRUE(contains(calls, "sal_core_init()"));
    EXPECT_TRUE(contains(calls, "bcmx_device_attach(0)"));
    EXPECT_TRUE(contains(calls, "bcmx_field_group_create_id("));
}

TEST(Lifecycle, DeletingMakesNoSdkCall)
{
    calls_of_create();
    vexosdk_delete_sdk_instance(nullptr);
    EXPECT_EQ(vexosim::all_calls(), "");
}

TEST(Lifecycle, WhatTheLibraryKeepsOutlivesTheInstance)
{
    calls_of_create();
    add_lag_to_list(3, lag_list);
    vexosdk_add_lag_mapping(Usp(1, 2, 7), 3);
    vexosdk_delete_sdk_instance(nullptr);
    EXPECT_TRUE(is_lag_exist(3, lag_list));
    EXPECT_EQ(lag_id_usp_map.count(3), 1u);
    EXPECT_EQ(vexo_max_physical_port_per_slot, 53);
    EXPECT_EQ(vexo_user_port_to_module_port[53], Mp(3, 53));
}

TEST(Lifecycle, OperationsWithAFixedResultAskNothingOfTheChip)
{
    calls_of_create();
    unsigned vid = 77;
    bool enabled = true;
    bcm_sdk->set_port_default_vlan(Mp(0, 5), 10);
    bcm_sdk->get_port_default_vlan(Mp(0, 5), vid);
    bcm_sdk->set_port_phy_state(Mp(0, 5), PHY_LINK_DOWN);
    bcm_sdk->get_port_stat_enabled(Mp(0, 5), enabled);
    bcm_sdk->add_of_flow_with_id(of_flow_mp_s{}, 1);
    bcm_sdk->free_call(7);
    EXPECT_EQ(vexosim::all_calls(), "");
}

TEST(Lifecycle, ASecondCreateBringsTheCardUpAgainAndStopsBeforeItProbes)
{
    calls_of_create();
    const std::string calls = calls_of_create();
    EXPECT_TRUE(contains(calls, "sal_core_init()"));
    EXPECT_FALSE(contains(calls, "linux_bde_create("));
    EXPECT_FALSE(contains(calls, "bcmx_device_attach("));
    EXPECT_NE(bcm_sdk, nullptr);
}

TEST(Lifecycle, ACardStaysUsableThroughASecondInstance)
{
    calls_of_create();
    calls_of_create();
    bool enabled = false;
    EXPECT_TRUE(bcm_sdk->set_port_enable(Mp(0, 5), true));
    EXPECT_TRUE(bcm_sdk->get_port_enabled(Mp(0, 5), enabled));
    EXPECT_TRUE(enabled);
}

TEST(Lifecycle, ALiveInstanceUsesTheLibrarysDispatchTable)
{
    calls_of_create();
    void* library = dlopen("libvexolc.so.0", RTLD_NOW | RTLD_NOLOAD);
    void** table = static_cast<void**>(dlsym(library, "_ZTV10VexoBcmSdk"));
    void** used = nullptr;
    std::memcpy(&used, static_cast<void*>(bcm_sdk), sizeof used);
    EXPECT_EQ(used, table + 2);
}

TEST(Lifecycle, TheCardsSlotIsKnownOnceTheHostAskedForIt)
{
    calls_of_create();
    Usp usp;
    int slot = 0;
    EXPECT_TRUE(bcm_sdk->get_line_card_usp(usp));
    EXPECT_EQ(usp, Usp(1, 0, 53));
    EXPECT_TRUE(vexo_init_line_card(slot));
    EXPECT_TRUE(bcm_sdk->get_line_card_usp(usp));
    EXPECT_EQ(usp, Usp(1, 1, 53));
}

TEST(Lifecycle, EveryPortOfTheCardMapsToAnLportOfItsOwn)
{
    calls_of_create();
    for (unsigned port = 0; port < 54; ++port) {
        const Mp mp(port <= 48 ? 0 : port <= 52 ? 2 : 3, port);
        int lport = -1;
        Mp back(9, 9);
        ASSERT_TRUE(map_mp_to_lport(mp, lport)) << port;
        ASSERT_TRUE(map_lport_to_mp(lport, back)) << port;
        EXPECT_EQ(back, mp) << port;
    }
}

TEST(Lifecycle, UserPort49IsChipPort27AndUserPort50ChipPort26)
{
    calls_of_create();
    EXPECT_EQ(vexo_user_port_to_lport[49], vexo_user_port_to_lport[50] + 1);
    EXPECT_EQ(vexo_user_port_to_lport[51], vexo_user_port_to_lport[52] + 1);
}
