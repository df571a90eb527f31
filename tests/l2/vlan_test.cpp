// VLAN operations call by call: creating, deleting and reading VLANs.
#include "tests/l2/vlan_fixture.h"

#include <bcmx/l2.h>

#include "l2/vlan.h"
#include "platform/port_map.h"

// The SDK keeps a list that it was made to fail to free.
extern "C" const char* __lsan_default_suppressions() // NOLINT(bugprone-reserved-identifier)
{
    return "leak:bcmx_lplist_init\nleak:bcmx_lplist_add\n";
}

namespace {

TEST_F(Vlan, CreatingAVlanPutsTheCpuPortIntoItTagged)
{
    EXPECT_TRUE(sdk.create_vlan(10));
    EXPECT_EQ(calls_made(), "bcmx_vlan_create(10)\nbcmx_vlan_port_add(10, [cpu], [])\n");
    EXPECT_EQ(members(10), "tagged 3/53 untagged ");
}

TEST_F(Vlan, CreatingAnExistingVlanSucceedsAndStillAsksForTheCpuPort)
{
    EXPECT_TRUE(sdk.create_vlan(1));
    EXPECT_EQ(calls_made(), "bcmx_vlan_create(1)\nbcmx_vlan_port_add(1, [cpu], [])\n");
    sdk.create_vlan(10);
    calls_made();
    EXPECT_TRUE(sdk.create_vlan(10));
    EXPECT_EQ(calls_made(), "bcmx_vlan_create(10)\nbcmx_vlan_port_add(10, [cpu], [])\n");
}

TEST_F(Vlan, CreatingAVlanDoesNotDependOnTheCpuPort)
{
    fail_next("bcmx_vlan_port_add");
    EXPECT_TRUE(sdk.create_vlan(10));
    fail_next("bcmx_vlan_port_add");
    EXPECT_TRUE(sdk.create_vlan(1));
}

TEST_F(Vlan, AFailedCreationLeavesTheCpuPortAlone)
{
    for (const int code : codes_except({-8})) {
        fail_next("bcmx_vlan_create", code);
        EXPECT_FALSE(sdk.create_vlan(10)) << code;
        EXPECT_EQ(calls_made(), "bcmx_vlan_create(10)\n");
    }
}

TEST_F(Vlan, CreatingAVlanTheChipCannotHaveFails)
{
    for (const unsigned vid : {0u, 4095u, 4096u, 0x10000u})
        EXPECT_FALSE(sdk.create_vlan(vid)) << vid;
    calls_made();
    EXPECT_FALSE(sdk.create_vlan(0x1100a)); // 16 bits, not 12
    EXPECT_EQ(calls_made(), "bcmx_vlan_create(4106)\n");
}

TEST_F(Vlan, OnlyTheLow16BitsOfAVlanIdAreUsed)
{
    EXPECT_TRUE(sdk.create_vlan(0x1000a));
    EXPECT_TRUE(sdk.add_ports_to_vlan(0x2000a, ports({3}), {}));
    EXPECT_TRUE(sdk.delete_ports_from_vlan(0x3000a, ports({3})));
    EXPECT_TRUE(sdk.delete_cpu_port_from_vlan(0x5000a));
    Mps list;
    EXPECT_TRUE(sdk.get_vlan_info(0x6000a, list, list));
    EXPECT_TRUE(sdk.delete_vlan(0x7000a));
    EXPECT_EQ(calls_made(), "bcmx_vlan_create(10)\n"
                            "bcmx_vlan_port_add(10, [cpu], [])\n"
                            "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_vlan_port_remove(10, [])\n"
                            "bcmx_vlan_port_add(10, [3], [])\n"
                            "bcmx_vlan_port_remove(10, [3])\n"
                            "bcmx_vlan_port_remove(10, [cpu])\n"
                            "bcmx_vlan_port_get(10, out, out)\n"
                            "bcmx_l2_addr_delete_by_vlan(10, 1)\n"
                            "bcmx_vlan_destroy(10)\n");
}

unsigned asked_for = 0;

// The driver's classes deliberately have no virtual destructor.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
struct Derived final : VexoBcmSdk {
    bool add_cpu_port_to_vlan(unsigned vid) override
    {
        asked_for = vid;
        return false;
    }
};
#pragma GCC diagnostic pop

TEST_F(Vlan, CreatingAVlanCallsTheOverrideOfADerivedDriver)
{
    Derived derived;
    calls_made();
    EXPECT_TRUE(derived.create_vlan(0x1000a));
    EXPECT_EQ(asked_for, 0x1000au);
    EXPECT_EQ(calls_made(), "bcmx_vlan_create(10)\n");
}

TEST_F(Vlan, DeletingAVlanRemovesItsAddressesFirst)
{
    make_vlan_10();
    EXPECT_TRUE(sdk.delete_vlan(10));
    EXPECT_EQ(calls_made(), "bcmx_l2_addr_delete_by_vlan(10, 1)\nbcmx_vlan_destroy(10)\n");
    EXPECT_EQ(members(10), "none");
}

TEST_F(Vlan, DeletingAVlanRemovesItsStaticAddresses)
{
    unsigned char host[] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
    make_vlan_10();
    ASSERT_TRUE(sdk.add_mac_to_port(port(3), host, 10, false));
    ASSERT_TRUE(sdk.delete_vlan(10));
    EXPECT_EQ(bcmx_l2_addr_delete(host, 10), BCM_E_NOT_FOUND);
}

TEST_F(Vlan, DeletingAnAbsentVlanSucceedsAndStillRemovesAddresses)
{
    EXPECT_TRUE(sdk.delete_vlan(20));
    EXPECT_EQ(calls_made(), "bcmx_l2_addr_delete_by_vlan(20, 1)\nbcmx_vlan_destroy(20)\n");
}

TEST_F(Vlan, DeletingAVlanGoesOnWhenItsAddressesStay)
{
    make_vlan_10();
    fail_next("bcmx_l2_addr_delete_by_vlan");
    EXPECT_TRUE(sdk.delete_vlan(10));
    EXPECT_EQ(members(10), "none");
}

TEST_F(Vlan, DeletingAVlanThatTheChipKeepsFails)
{
    EXPECT_FALSE(sdk.delete_vlan(1));
    for (const int code : codes_except({-7})) {
        fail_next("bcmx_vlan_destroy", code);
        EXPECT_FALSE(sdk.delete_vlan(10)) << code;
    }
}

TEST_F(Vlan, InfoAppendsTheMembersInTheChipsOrder)
{
    make_vlan_10();
    Mps tagged = {Mp(9, 9)};
    Mps untagged = {Mp(8, 8)};
    EXPECT_TRUE(sdk.get_vlan_info(10, tagged, untagged));
    EXPECT_EQ(text(tagged), "9/9 3/53 0/3 0/4 ");
    EXPECT_EQ(text(untagged), "8/8 0/5 0/6 ");
    EXPECT_EQ(calls_made(), "bcmx_vlan_port_get(10, out, out)\n");
    EXPECT_EQ(lists_left(), 0u);
}

TEST_F(Vlan, InfoOfAVlanWithUntaggedMembersOnlyHasNoTaggedOnes)
{
    ASSERT_TRUE(sdk.create_vlan(10));
    ASSERT_TRUE(sdk.delete_cpu_port_from_vlan(10));
    ASSERT_TRUE(sdk.add_ports_to_vlan(10, {}, ports({5, 6})));
    EXPECT_EQ(members(10), "tagged untagged 0/5 0/6 ");
}

TEST_F(Vlan, InfoLeavesItsOutputsAloneWhenItCannotRead)
{
    make_vlan_10();
    const struct {
        const char* call;
        unsigned nth;
    } rows[] = {{"bcmx_lplist_init", 1},
                {"bcmx_lplist_init", 2},
                {"bcmx_vlan_port_get", 1},
                {"bcmx_lplist_remove", 1},
                {"bcmx_lplist_remove", 2}};
    for (const auto& row : rows) {
        Mps tagged = {Mp(9, 9)};
        Mps untagged = {Mp(8, 8)};
        fail_next(row.call, -1, row.nth);
        EXPECT_FALSE(sdk.get_vlan_info(10, tagged, untagged)) << row.call << row.nth;
        EXPECT_EQ(text(tagged) + text(untagged), "9/9 8/8 ");
        EXPECT_EQ(lists_left(), 0u);
    }
    Mps list;
    EXPECT_FALSE(sdk.get_vlan_info(20, list, list));
    EXPECT_TRUE(list.empty());
}

TEST_F(Vlan, InfoHasAppendedItsResultsWhenAListCannotBeFreed)
{
    make_vlan_10();
    for (const unsigned nth : {1u, 2u}) {
        Mps tagged;
        Mps untagged;
        fail_next("bcmx_lplist_free", -1, nth);
        EXPECT_FALSE(sdk.get_vlan_info(10, tagged, untagged));
        EXPECT_EQ(text(tagged), "3/53 0/3 0/4 ");
        EXPECT_EQ(text(untagged), "0/5 0/6 ");
    }
}

TEST_F(Vlan, InfoGivesAPortThatDoesNotMapAsZero)
{
    make_vlan_10();
    const int lport = vexo_user_port_to_lport[3];
    vexo_user_port_to_lport[3] = 12345;
    EXPECT_EQ(members(10), "tagged 3/53 0/0 0/4 untagged 0/5 0/6 ");
    vexo_user_port_to_lport[3] = lport;
}

TEST_F(Vlan, TheMemberListStaysEmptySoAVlanUspNeverExpands)
{
    make_vlan_10();
    EXPECT_TRUE(vlan_port_member_list.empty());
    Mps list = {Mp(9, 9)};
    EXPECT_FALSE(get_vlan_port_member(10, list));
    EXPECT_FALSE(vexo_usp_to_mp_list(Usp(1, 3, 10), list));
    EXPECT_EQ(text(list), "9/9 ");
}

TEST(VlanPortMember, GivesTheMembersOfTheFirstNodeWithTheId)
{
    Mps first = {Mp(0, 2), Mp(0, 1)};
    Mps second = {Mp(0, 3)};
    for (const auto& [id, members] : {std::pair{7u, &second}, {10u, &first}, {10u, &second}}) {
        vlan_port_member_list.emplace_back(id);
        vlan_port_member_list.back().add_member_port(*members);
    }
    Mps list = {Mp(9, 9)};
    EXPECT_TRUE(get_vlan_port_member(10, list));
    EXPECT_EQ(text(list), "0/1 0/2 ");
    EXPECT_FALSE(get_vlan_port_member(8, list));
    EXPECT_FALSE(get_vlan_port_member(0x1000a, list)); // all 32 bits count here
    vlan_port_member_list.clear();
}

} // namespace
