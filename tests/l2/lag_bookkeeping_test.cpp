#include <gtest/gtest.h>

#include <list>

#include "l2/lag.h"

namespace {

using Mps = std::list<Mp>;

Mps members_of(unsigned id)
{
    Mps ports;
    EXPECT_TRUE(get_lag_member(id, ports));
    return ports;
}

void make_lag(unsigned id, Mps members)
{
    add_lag_to_list(id, lag_list);
    add_lag_member(id, lag_list, members);
}

} // namespace

TEST(LagBookkeeping, IsEmptyAtLoad)
{
    EXPECT_TRUE(lag_list.empty());
    EXPECT_TRUE(lag_id_usp_map.empty());
}

TEST(LagBookkeeping, KeepsMembersSortedAndOnce)
{
    make_lag(1, {Mp(2, 50), Mp(0, 3), Mp(0, 3)});
    Mps more = {Mp(0, 1), Mp(2, 50)};
    EXPECT_TRUE(add_lag_member(1, lag_list, more));
    EXPECT_EQ(members_of(1), (Mps{Mp(0, 1), Mp(0, 3), Mp(2, 50)}));
}

TEST(LagBookkeeping, RemovesGivenMembersAndIgnoresOthers)
{
    make_lag(1, {Mp(0, 1), Mp(0, 2), Mp(0, 3)});
    Mps gone = {Mp(0, 2), Mp(0, 9)};
    EXPECT_TRUE(delete_lag_member(1, lag_list, gone));
    EXPECT_EQ(members_of(1), (Mps{Mp(0, 1), Mp(0, 3)}));
}

TEST(LagBookkeeping, ReadingMembersReplacesTheGivenList)
{
    make_lag(1, {Mp(0, 1)});
    Mps ports = {Mp(0, 7), Mp(0, 8)};
    EXPECT_TRUE(get_lag_member(1, ports));
    EXPECT_EQ(ports, (Mps{Mp(0, 1)}));
}

TEST(LagBookkeeping, AnAbsentLagIsRefusedAndNothingIsWritten)
{
    make_lag(1, {Mp(0, 1)});
    Mps ports = {Mp(0, 7)};
    EXPECT_FALSE(get_lag_member(2, ports));
    EXPECT_FALSE(add_lag_member(2, lag_list, ports));
    EXPECT_FALSE(delete_lag_member(2, lag_list, ports));
    EXPECT_FALSE(delete_lag_from_list(2, lag_list));
    EXPECT_EQ(ports, (Mps{Mp(0, 7)}));
    EXPECT_EQ(lag_list.size(), 1u);
}

TEST(LagBookkeeping, AnIdIsAddedOnceInOrderOfAdding)
{
    EXPECT_TRUE(add_lag_to_list(5, lag_list));
    EXPECT_TRUE(add_lag_to_list(2, lag_list));
    EXPECT_FALSE(add_lag_to_list(5, lag_list));
    ASSERT_EQ(lag_list.size(), 2u);
    EXPECT_EQ(lag_list.front().id(), 5u);
    EXPECT_EQ(lag_list.back().id(), 2u);
    EXPECT_TRUE(members_of(5).empty());
}

TEST(LagBookkeeping, ExistsFromAddToDelete)
{
    EXPECT_FALSE(is_lag_exist(5, lag_list));
    add_lag_to_list(5, lag_list);
    EXPECT_TRUE(is_lag_exist(5, lag_list));
    EXPECT_TRUE(delete_lag_from_list(5, lag_list));
    EXPECT_FALSE(is_lag_exist(5, lag_list));
}

TEST(LagBookkeeping, WorksOnAnyList)
{
    std::list<LagNode> other;
    EXPECT_TRUE(add_lag_to_list(5, other));
    EXPECT_TRUE(lag_list.empty());
    EXPECT_TRUE(is_lag_exist(5, other));
}

TEST(LagBookkeeping, DeletingErasesTheFirstNodeWithTheId)
{
    std::list<LagNode> list = {LagNode(5), LagNode(6), LagNode(5)};
    EXPECT_TRUE(delete_lag_from_list(5, list));
    ASSERT_EQ(list.size(), 2u);
    EXPECT_EQ(list.front().id(), 6u);
}

TEST(LagBookkeeping, ACopiedNodeHasMembersOfItsOwn)
{
    LagNode node(1);
    Mps first = {Mp(0, 1)};
    node.add_member_port(first);
    LagNode copy(node);
    copy.set_id(2);
    EXPECT_TRUE(copy.delete_member_port(first));
    EXPECT_EQ(node.id(), 1u);
    EXPECT_EQ(node.member_ports(), (Mps{Mp(0, 1)}));
    EXPECT_TRUE(copy.member_ports().empty());
}

TEST(LagBookkeeping, ANameFollowsTheIdAndBack)
{
    Usp usp;
    unsigned id = 99;
    EXPECT_TRUE(vexosdk_add_lag_mapping(Usp(1, 2, 7), 3));
    EXPECT_TRUE(vexosdk_lag_id_to_lag_usp(3, usp));
    EXPECT_EQ(usp, Usp(1, 2, 7));
    EXPECT_TRUE(vexosdk_lag_usp_to_lag_id(Usp(1, 2, 7), id));
    EXPECT_EQ(id, 3u);
}

TEST(LagBookkeeping, ASecondNameReplacesTheFirst)
{
    Usp usp;
    unsigned id = 99;
    vexosdk_add_lag_mapping(Usp(1, 2, 7), 3);
    EXPECT_TRUE(vexosdk_add_lag_mapping(Usp(1, 2, 8), 3));
    EXPECT_TRUE(vexosdk_lag_id_to_lag_usp(3, usp));
    EXPECT_EQ(usp, Usp(1, 2, 8));
    EXPECT_FALSE(vexosdk_lag_usp_to_lag_id(Usp(1, 2, 7), id));
}

TEST(LagBookkeeping, ANameOfTwoLagsMeansTheLowestId)
{
    unsigned id = 99;
    vexosdk_add_lag_mapping(Usp(1, 2, 7), 9);
    vexosdk_add_lag_mapping(Usp(1, 2, 7), 4);
    EXPECT_TRUE(vexosdk_lag_usp_to_lag_id(Usp(1, 2, 7), id));
    EXPECT_EQ(id, 4u);
}

TEST(LagBookkeeping, UnknownNamesAndIdsAreRefusedAndNothingIsWritten)
{
    Usp usp(7, 7, 7);
    unsigned id = 99;
    vexosdk_add_lag_mapping(Usp(1, 2, 7), 3);
    EXPECT_FALSE(vexosdk_lag_id_to_lag_usp(4, usp));
    EXPECT_FALSE(vexosdk_lag_usp_to_lag_id(Usp(1, 2, 8), id));
    EXPECT_EQ(usp, Usp(7, 7, 7));
    EXPECT_EQ(id, 99u);
}

TEST(LagBookkeeping, DeletingANameLooksAtTheIdOnlyAndAlwaysSucceeds)
{
    Usp usp;
    vexosdk_add_lag_mapping(Usp(1, 2, 7), 3);
    EXPECT_TRUE(vexosdk_delete_lag_mapping(Usp(1, 2, 7), 4));
    EXPECT_TRUE(vexosdk_lag_id_to_lag_usp(3, usp));
    EXPECT_TRUE(vexosdk_delete_lag_mapping(Usp(9, 9, 9), 3));
    EXPECT_FALSE(vexosdk_lag_id_to_lag_usp(3, usp));
}
