#include "flow/field_group.h"

#include <gtest/gtest.h>

namespace {

using Udfs = std::list<FieldGroupNode::Udf>;

std::vector<bcm_udf_s> words(const Udfs& udfs)
{
    std::vector<bcm_udf_s> list;
    for (const auto& [id, offset] : udfs)
        list.push_back({id, offset, {}, {}});
    return list;
}

/// The group to share in `fg_list`; 77 when there is none.
unsigned shared(unsigned flags, std::vector<bcm_udf_s>& wanted)
{
    unsigned id = 77;
    const bool found = is_group_type_exists(fg_list, flags, wanted, id);
    EXPECT_EQ(found, id != 77);
    return id;
}

unsigned shared(unsigned flags)
{
    std::vector<bcm_udf_s> none;
    return shared(flags, none);
}

} // namespace

TEST(FieldGroup, StartsWithItsIdItsFlagsAndNothingElse)
{
    const FieldGroupNode group(-3, 0x1006);
    EXPECT_EQ(group.id(), -3);
    EXPECT_EQ(group.flags(), 0x1006u);
    EXPECT_EQ(group.member_count(), 0u);
    EXPECT_TRUE(group.udf_ids().empty());
    EXPECT_TRUE(fg_list.empty());
}

TEST(FieldGroup, CountsAnEntryOnce)
{
    FieldGroupNode group(1, 0);
    EXPECT_TRUE(group.add_member_entry({7, 5, 7}));
    EXPECT_TRUE(group.add_member_entry({5, 6}));
    EXPECT_EQ(group.member_count(), 3u);
}

TEST(FieldGroup, RemovesEntriesAndIgnoresAbsentOnes)
{
    FieldGroupNode group(1, 0);
    group.add_member_entry({5, 6, 7});
    EXPECT_TRUE(group.delete_member_entry({6, 99}));
    EXPECT_EQ(group.member_count(), 2u);
    EXPECT_TRUE(group.delete_member_entry({6}));
    EXPECT_EQ(group.member_count(), 2u);
}

TEST(FieldGroup, KeepsUdfsSortedByIdThenOffsetAndOnce)
{
    FieldGroupNode group(1, 0);
    EXPECT_TRUE(group.add_udf_id({{2, 14}, {1, 18}}));
    EXPECT_TRUE(group.add_udf_id({{1, 14}, {2, 14}}));
    EXPECT_EQ(group.udf_ids(), (Udfs{{1, 14}, {1, 18}, {2, 14}}));
}

TEST(FieldGroup, ACopyHasMembersOfItsOwn)
{
    FieldGroupNode group(1, 2);
    group.add_member_entry({5});
    FieldGroupNode copy(group);
    copy.set_flags(3);
    copy.delete_member_entry({5});
    EXPECT_EQ(group.flags(), 2u);
    EXPECT_EQ(group.member_count(), 1u);
    EXPECT_EQ(copy.member_count(), 0u);
}

TEST(FieldGroups, AreRegisteredInOrderWithTheirUdfsSorted)
{
    EXPECT_TRUE(vexosdk_add_field_group(5, 0x1002, words({{4, 18}, {3, 22}})));
    EXPECT_TRUE(vexosdk_add_field_group(2, 6, {}));
    ASSERT_EQ(fg_list.size(), 2u);
    EXPECT_EQ(fg_list.front().id(), 5);
    EXPECT_EQ(fg_list.front().flags(), 0x1002u);
    EXPECT_EQ(fg_list.front().udf_ids(), (Udfs{{3, 22}, {4, 18}}));
    EXPECT_EQ(fg_list.front().member_count(), 0u);
    EXPECT_EQ(fg_list.back().id(), 2);
}

TEST(FieldGroups, AGroupThatIsRegisteredStaysAsItIs)
{
    vexosdk_add_field_group(5, 6, words({{1, 2}}));
    EXPECT_TRUE(vexosdk_add_field_group(5, 7, words({{9, 9}})));
    ASSERT_EQ(fg_list.size(), 1u);
    EXPECT_EQ(fg_list.front().flags(), 6u);
    EXPECT_EQ(fg_list.front().udf_ids(), (Udfs{{1, 2}}));
}

TEST(FieldGroups, AnEntryIsAddedToTheGroupThatIsNamed)
{
    vexosdk_add_field_group(5, 6, {});
    vexosdk_add_field_group(6, 6, {});
    EXPECT_TRUE(vexosdk_add_entry_to_group(100, 6));
    EXPECT_TRUE(vexosdk_add_entry_to_group(100, 6));
    EXPECT_EQ(fg_list.front().member_count(), 0u);
    EXPECT_EQ(fg_list.back().member_count(), 1u);
    EXPECT_FALSE(vexosdk_add_entry_to_group(100, 7));
}

TEST(FieldGroups, AnEntryIsAddedToTheFirstOfTwoGroupsWithOneId)
{
    fg_list.emplace_back(5, 1);
    fg_list.emplace_back(5, 2);
    EXPECT_TRUE(vexosdk_add_entry_to_group(100, 5));
    EXPECT_EQ(fg_list.front().member_count(), 1u);
    EXPECT_EQ(fg_list.back().member_count(), 0u);
}

TEST(FieldGroups, AnEntryIsDeletedFromEveryGroup)
{
    vexosdk_add_field_group(5, 6, {});
    vexosdk_add_field_group(6, 6, {});
    vexosdk_add_entry_to_group(100, 5);
    vexosdk_add_entry_to_group(100, 6);
    vexosdk_add_entry_to_group(101, 6);
    EXPECT_TRUE(vexosdk_delete_entry_from_group(100));
    EXPECT_EQ(fg_list.front().member_count(), 0u);
    EXPECT_EQ(fg_list.back().member_count(), 1u);
}

TEST(FieldGroups, DeletingAnEntryFailsOnlyWithoutGroups)
{
    EXPECT_FALSE(vexosdk_delete_entry_from_group(100));
    vexosdk_add_field_group(5, 6, {});
    EXPECT_TRUE(vexosdk_delete_entry_from_group(100));
}

TEST(FieldGroupSharing, GoesByTheWholeWordOfFlagsAndTakesTheFirst)
{
    vexosdk_add_field_group(1, 0x0006, {});
    vexosdk_add_field_group(2, 0x0002, {});
    vexosdk_add_field_group(3, 0x0006, {});
    vexosdk_add_field_group(4, 0x80000002, {});
    EXPECT_EQ(shared(0x0006), 1u);
    EXPECT_EQ(shared(0x0002), 2u);
    EXPECT_EQ(shared(0x80000002), 4u);
    EXPECT_EQ(shared(0x0004), 77u);
    EXPECT_EQ(shared(0), 77u);
}

TEST(FieldGroupSharing, WithoutTheUdfFlagWordsPlayNoPart)
{
    vexosdk_add_field_group(1, 6, words({{1, 14}}));
    auto wanted = words({{0, 20}, {0, 24}});
    EXPECT_EQ(shared(6, wanted), 1u);
    EXPECT_EQ(wanted[0].udf_id, 0u);
}

TEST(FieldGroupSharing, WithUdfsTheOffsetsAndTheirNumberCount)
{
    vexosdk_add_field_group(1, 0x1000, words({{1, 14}, {2, 18}}));
    auto same = words({{0, 18}, {0, 14}});
    EXPECT_EQ(shared(0x1000, same), 1u);
    EXPECT_EQ(same[0].udf_id, 2u);
    EXPECT_EQ(same[1].udf_id, 1u);
    for (const Udfs& other : {Udfs{{0, 14}}, Udfs{{0, 14}, {0, 22}}, Udfs{}}) {
        auto wanted = words(other);
        EXPECT_EQ(shared(0x1000, wanted), 77u);
    }
    auto other_flags = words({{0, 18}, {0, 14}});
    EXPECT_EQ(shared(0x1002, other_flags), 77u);
}

TEST(FieldGroupSharing, WhatWordsAreComparedWithPlaysNoPart)
{
    vexosdk_add_field_group(1, 0x1000, {{1, 14, {1, 2, 3, 4}, {9, 9, 9, 9}}});
    std::vector<bcm_udf_s> wanted = {{0, 14, {5, 6, 7, 8}, {1, 0, 0, 0}}};
    EXPECT_EQ(shared(0x1000, wanted), 1u);
}

TEST(FieldGroupSharing, AnOffsetThatAGroupHasTwiceTakesTheFirstUdf)
{
    vexosdk_add_field_group(1, 0x1000, words({{8, 14}, {3, 14}}));
    auto wanted = words({{0, 14}, {0, 14}});
    EXPECT_EQ(shared(0x1000, wanted), 1u);
    EXPECT_EQ(wanted[0].udf_id, 3u);
    EXPECT_EQ(wanted[1].udf_id, 3u);
}

TEST(FieldGroupSharing, IdsOfAGroupThatNearlyMatchedStay)
{
    vexosdk_add_field_group(1, 0x1000, words({{1, 14}, {2, 18}}));
    auto wanted = words({{0, 14}, {0, 22}});
    EXPECT_EQ(shared(0x1000, wanted), 77u);
    EXPECT_EQ(wanted[0].udf_id, 1u);
    EXPECT_EQ(wanted[1].udf_id, 0u);
}

TEST(FieldGroupSharing, ALaterGroupIsTriedAfterANearMatch)
{
    vexosdk_add_field_group(1, 0x1000, words({{1, 14}, {2, 18}}));
    vexosdk_add_field_group(2, 0x1000, words({{3, 14}, {4, 22}}));
    auto wanted = words({{0, 14}, {0, 22}});
    EXPECT_EQ(shared(0x1000, wanted), 2u);
    EXPECT_EQ(wanted[0].udf_id, 3u);
    EXPECT_EQ(wanted[1].udf_id, 4u);
}

TEST(FieldGroupSharing, AMatchWithoutWordsSharesAGroupWithoutUdfs)
{
    vexosdk_add_field_group(1, 0x1000, {});
    EXPECT_EQ(shared(0x1000), 1u);
}

TEST(FieldGroupSharing, LooksAtTheListItIsGiven)
{
    vexosdk_add_field_group(1, 6, {});
    std::vector<bcm_udf_s> none;
    unsigned id = 77;
    EXPECT_FALSE(is_group_type_exists({}, 6, none, id));
    EXPECT_EQ(id, 77u);
    EXPECT_TRUE(is_group_type_exists({FieldGroupNode(-1, 6)}, 6, none, id));
    EXPECT_EQ(id, 0xffffffffu);
}
