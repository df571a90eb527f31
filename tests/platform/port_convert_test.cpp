#include <gtest/gtest.h>

#include <list>

#include "l2/lag.h"
#include "l2/vlan.h"
#include "platform/port_map.h"
#include "tests/platform/port_tables.h"

namespace {

using Mps = std::list<Mp>;
using Usps = std::list<Usp>;

const Usp lag_usp(1, 2, 7);

void make_lag(Mps members)
{
    add_lag_to_list(3, lag_list);
    add_lag_member(3, lag_list, members);
    vexosdk_add_lag_mapping(lag_usp, 3);
}

} // namespace

TEST(PortConvert, TheSlotAloneTellsTheKind)
{
    for (unsigned slot = 0; slot < 6; ++slot) {
        EXPECT_EQ(is_port_physical(Usp(9, slot, 99)), slot == 1) << slot;
        EXPECT_EQ(is_port_logical_lag(Usp(9, slot, 99)), slot == 2) << slot;
        EXPECT_EQ(is_port_logical_vlan(Usp(9, slot, 99)), slot == 3) << slot;
    }
    EXPECT_FALSE(is_port_physical(Usp(1, 0xffffffffu, 1)));
}

TEST(PortConvert, AnMpBecomesItsUserPortPlusOneInThisCardsSlot)
{
    build_port_tables();
    self_slot_id = 4;
    Usp usp;
    EXPECT_TRUE(vexo_mp_to_usp(Mp(0, 0), usp));
    EXPECT_EQ(usp, Usp(1, 4, 1));
    EXPECT_TRUE(vexo_mp_to_usp(Mp(3, 53), usp));
    EXPECT_EQ(usp, Usp(1, 4, 54));
}

TEST(PortConvert, AnUnknownMpLeavesTheUspAlone)
{
    build_port_tables();
    Usp usp(7, 8, 9);
    EXPECT_FALSE(vexo_mp_to_usp(Mp(1, 1), usp));
    EXPECT_EQ(usp, Usp(7, 8, 9));
}

TEST(PortConvert, APhysicalUspBecomesItsMpWhateverItsUnit)
{
    build_port_tables();
    Mp mp;
    EXPECT_TRUE(vexo_usp_to_mp(Usp(1, 1, 54), mp));
    EXPECT_EQ(mp, Mp(3, 53));
    EXPECT_TRUE(vexo_usp_to_mp(Usp(7, 1, 1), mp));
    EXPECT_EQ(mp, Mp(0, 0));
}

TEST(PortConvert, AUspOutOfRangeOrNotPhysicalLeavesTheMpAlone)
{
    build_port_tables();
    Mp mp(9, 9);
    for (const Usp& usp : {Usp(1, 1, 55), Usp(1, 1, 0), Usp(1, 1, 0xffffffffu), Usp(1, 0, 5),
                           Usp(1, 2, 5), Usp(1, 3, 5), Usp(1, 4, 5)})
        EXPECT_FALSE(vexo_usp_to_mp(usp, mp)) << usp.slot() << "/" << usp.port();
    EXPECT_EQ(mp, Mp(9, 9));
}

TEST(PortConvert, AListOfMpsIsAppendedInOrder)
{
    build_port_tables();
    Usps usps = {Usp(5, 5, 5)};
    EXPECT_TRUE(vexo_mp_list_to_usp_list({Mp(2, 50), Mp(0, 1)}, usps));
    EXPECT_EQ(usps, (Usps{Usp(5, 5, 5), Usp(1, 1, 51), Usp(1, 1, 2)}));
}

TEST(PortConvert, AListOfMpsStopsAtTheFirstUnknownOne)
{
    build_port_tables();
    Usps usps;
    EXPECT_FALSE(vexo_mp_list_to_usp_list({Mp(0, 1), Mp(1, 1), Mp(0, 2)}, usps));
    EXPECT_EQ(usps, (Usps{Usp(1, 1, 2)}));
}

TEST(PortConvert, AnEmptyListConverts)
{
    Usps usps;
    Mps mps;
    EXPECT_TRUE(vexo_mp_list_to_usp_list({}, usps));
    EXPECT_TRUE(vexo_usp_list_to_mp_list({}, mps));
    EXPECT_TRUE(usps.empty() && mps.empty());
}

TEST(PortConvert, AUspOfAnotherUnitDoesNotExpand)
{
    build_port_tables();
    make_lag({Mp(0, 1)});
    Mps mps;
    for (const Usp& usp : {Usp(7, 1, 1), Usp(0, 1, 1), Usp(2, 2, 7)})
        EXPECT_FALSE(vexo_usp_to_mp_list(usp, mps)) << usp.unit();
    EXPECT_TRUE(mps.empty());
}

TEST(PortConvert, APhysicalUspExpandsToItself)
{
    build_port_tables();
    Mps mps = {Mp(9, 9)};
    EXPECT_TRUE(vexo_usp_to_mp_list(Usp(1, 1, 51), mps));
    EXPECT_EQ(mps, (Mps{Mp(9, 9), Mp(2, 50)}));
}

TEST(PortConvert, APhysicalUspOutOfRangeExpandsToZeroZero)
{
    build_port_tables();
    Mps mps;
    EXPECT_TRUE(vexo_usp_to_mp_list(Usp(1, 1, 60), mps));
    EXPECT_TRUE(vexo_usp_to_mp_list(Usp(1, 1, 0), mps));
    EXPECT_EQ(mps, (Mps{Mp(0, 0), Mp(0, 0)}));
}

TEST(PortConvert, ALagUspExpandsToItsMembersBehindWhatWasThere)
{
    make_lag({Mp(2, 50), Mp(0, 4)});
    Mps mps = {Mp(0, 9)};
    EXPECT_TRUE(vexo_usp_to_mp_list(lag_usp, mps));
    EXPECT_EQ(mps, (Mps{Mp(0, 9), Mp(0, 4), Mp(2, 50)}));
}

TEST(PortConvert, ALagWithoutANameOrWithoutARecordDoesNotExpand)
{
    vexosdk_add_lag_mapping(lag_usp, 3); // named, but not recorded
    Mps mps = {Mp(0, 9)};
    EXPECT_FALSE(vexo_usp_to_mp_list(lag_usp, mps));
    EXPECT_FALSE(vexo_usp_to_mp_list(Usp(1, 2, 8), mps));
    EXPECT_EQ(mps, (Mps{Mp(0, 9)}));
}

TEST(PortConvert, AVlanUspDoesNotExpandBecauseNothingRecordsItsMembers)
{
    Mps mps;
    EXPECT_FALSE(vexo_usp_to_mp_list(Usp(1, 3, 1), mps));
    EXPECT_TRUE(mps.empty());
}

TEST(PortConvert, AVlanUspWhoseMembersAreRecordedExpandsBehindWhatWasThere)
{
    LagNode vlan(10);
    Mps members = {Mp(0, 5), Mp(0, 2)};
    vlan.add_member_port(members);
    vlan_port_member_list.push_back(vlan);
    Mps mps = {Mp(0, 9)};
    EXPECT_TRUE(vexo_usp_to_mp_list(Usp(1, 3, 10), mps));
    EXPECT_FALSE(vexo_usp_to_mp_list(Usp(2, 3, 10), mps));
    EXPECT_FALSE(vexo_usp_to_mp_list(Usp(1, 3, 11), mps));
    EXPECT_EQ(mps, (Mps{Mp(0, 9), Mp(0, 2), Mp(0, 5)}));
}

TEST(PortConvert, OtherSlotsDoNotExpand)
{
    build_port_tables();
    Mps mps;
    EXPECT_FALSE(vexo_usp_to_mp_list(Usp(1, 0, 1), mps));
    EXPECT_FALSE(vexo_usp_to_mp_list(Usp(1, 4, 1), mps));
    EXPECT_TRUE(mps.empty());
}

TEST(PortConvert, AListOfUspsSkipsWhatDoesNotConvert)
{
    build_port_tables();
    Mps mps;
    EXPECT_TRUE(vexo_usp_list_to_mp_list(
        {Usp(1, 1, 60), Usp(1, 2, 99), Usp(1, 3, 1), Usp(1, 0, 1), Usp(1, 9, 1), Usp(1, 1, 3)},
        mps));
    EXPECT_EQ(mps, (Mps{Mp(0, 2)}));
}

TEST(PortConvert, AListOfUspsTakesAPhysicalUspOfAnyUnitButALagOfUnit1Only)
{
    build_port_tables();
    make_lag({Mp(0, 4)});
    Mps mps;
    EXPECT_TRUE(vexo_usp_list_to_mp_list({Usp(7, 1, 3), Usp(7, 2, 7)}, mps));
    EXPECT_EQ(mps, (Mps{Mp(0, 2)}));
}

TEST(PortConvert, AListOfUspsIsSortedWithEveryPortOnceWhatWasThereIncluded)
{
    build_port_tables();
    make_lag({Mp(0, 4), Mp(2, 50)});
    Mps mps = {Mp(4, 1), Mp(3, 53), Mp(0, 4), Mp(3, 53)};
    EXPECT_TRUE(vexo_usp_list_to_mp_list({Usp(1, 1, 51), lag_usp, Usp(1, 1, 1)}, mps));
    EXPECT_EQ(mps, (Mps{Mp(0, 0), Mp(0, 4), Mp(2, 50), Mp(3, 53), Mp(4, 1)}));
}

TEST(PortConvert, AListOfUspsExpandsAVlanWhoseMembersAreRecorded)
{
    build_port_tables();
    LagNode vlan(10);
    Mps members = {Mp(0, 2), Mp(0, 5)};
    vlan.add_member_port(members);
    vlan_port_member_list.push_back(vlan);
    Mps mps;
    EXPECT_TRUE(vexo_usp_list_to_mp_list({Usp(1, 1, 3), Usp(1, 3, 10)}, mps));
    EXPECT_EQ(mps, (Mps{Mp(0, 2), Mp(0, 5)}));
}
