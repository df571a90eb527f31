#include "flow/field_group.h"

#include <gtest/gtest.h>

namespace {

using Udfs = std::list<FieldGroupNode::Udf>;

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
