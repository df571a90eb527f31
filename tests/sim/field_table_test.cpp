#include "sim/chip/field_table.h"

#include <bcm/error.h>
#include <bcm/field.h>
#include <gtest/gtest.h>

namespace {

using namespace vexosim;

constexpr std::uint64_t kMacMask = 0xffffffffffff;

FieldSet fields(std::initializer_list<int> numbers, std::initializer_list<int> udfs = {})
{
    FieldSet set;
    for (int number : numbers)
        set.fields.set(static_cast<std::size_t>(number));
    for (int udf : udfs)
        set.udfs.set(static_cast<std::size_t>(udf));
    return set;
}

FieldAction action(int number, std::uint32_t param0 = 0)
{
    FieldAction made;
    made.action = number;
    made.param0 = param0;
    return made;
}

/// A group for MAC addresses, VLANs and user-defined field 3, with one entry.
struct FieldTableTest : testing::Test {
    FieldTableTest()
    {
        field.create_udf(3, {0, 10});
        field.create_group(fields({bcmFieldQualifySrcMac, bcmFieldQualifyOuterVlanId,
                                   bcmFieldQualifyOuterVlanPri, bcmFieldQualifyIpType},
                                  {3}),
                           0, &group);
        field.create_entry(group, &entry);
    }

    FieldTable field;
    int group = 0;
    int entry = 0;
};

TEST_F(FieldTableTest, GroupIdsStartAtOneAndTheLowestFreeOneIsTaken)
{
    int second = 0;
    int third = 0;
    ASSERT_EQ(field.create_group(fields({}), 0, &second), 0);
    ASSERT_EQ(field.create_group_id(fields({}), 0, 3), 0);
    ASSERT_EQ(field.create_group(fields({}), 0, &third), 0);
    EXPECT_EQ(group, 1);
    EXPECT_EQ(second, 2);
    EXPECT_EQ(third, 4);
}

TEST_F(FieldTableTest, AGroupMayHaveAnyId)
{
    EXPECT_EQ(field.create_group_id(fields({}), 0, -1), 0);
    EXPECT_EQ(field.create_group_id(fields({}), 0, 1000000), 0);
    EXPECT_EQ(field.create_group_id(fields({}), 0, -1), BCM_E_EXISTS);
}

TEST_F(FieldTableTest, The17thGroupIsRefused)
{
    int id = 0;
    for (int i = 1; i < 16; ++i)
        ASSERT_EQ(field.create_group(fields({}), 0, &id), 0);
    EXPECT_EQ(field.create_group(fields({}), 0, &id), BCM_E_FULL);
    EXPECT_EQ(id, 16);
    EXPECT_EQ(field.create_group_id(fields({}), 0, -1), BCM_E_FULL);
}

TEST_F(FieldTableTest, GroupsAreMadeOfKnownFieldsAndExistingUserDefinedFields)
{
    int id = 0;
    EXPECT_EQ(field.create_group(fields({0}), 0, &id), BCM_E_PARAM);
    EXPECT_EQ(field.create_group(fields({}, {4}), 0, &id), BCM_E_NOT_FOUND);
    EXPECT_EQ(field.create_group(fields({}, {93}), 0, &id), BCM_E_NOT_FOUND);
    EXPECT_EQ(field.create_group(fields({}), 0, nullptr), BCM_E_PARAM);
    EXPECT_EQ(field.groups().size(), 1u);
}

TEST_F(FieldTableTest, AGroupGoesOnlyWithoutEntries)
{
    EXPECT_EQ(field.destroy_group(group), BCM_E_BUSY);
    ASSERT_EQ(field.destroy_entry(entry), 0);
    EXPECT_EQ(field.destroy_group(group), 0);
    EXPECT_EQ(field.destroy_group(group), BCM_E_NOT_FOUND);
}

TEST_F(FieldTableTest, EntryIdsAreNotUsedTwice)
{
    int next = 0;
    ASSERT_EQ(field.destroy_entry(entry), 0);
    ASSERT_EQ(field.create_entry(group, &next), 0);
    EXPECT_EQ(entry, 1);
    EXPECT_EQ(next, 2);
}

TEST_F(FieldTableTest, The16385thEntryIsRefused)
{
    int id = 0;
    for (int i = 1; i < 16384; ++i)
        ASSERT_EQ(field.create_entry(group, &id), 0);
    EXPECT_EQ(field.create_entry(group, &id), BCM_E_FULL);
    EXPECT_EQ(id, 16384);
}

TEST_F(FieldTableTest, WhatDoesNotExistIsNotFound)
{
    int id = -9;
    std::uint64_t packets = 0;
    EXPECT_EQ(field.create_entry(99, &id), BCM_E_NOT_FOUND);
    EXPECT_EQ(id, -9);
    EXPECT_EQ(field.create_entry(group, nullptr), BCM_E_PARAM);
    for (int rc : {field.destroy_entry(0), field.install(0), field.remove(0),
                   field.set_priority(0, 1), field.qualify(0, {bcmFieldQualifySrcMac, 1, 1}),
                   field.add_action(0, action(bcmFieldActionDrop)),
                   field.delete_action(0, bcmFieldActionDrop), field.delete_all_actions(0),
                   field.create_counter(0), field.destroy_counter(0), field.count(0, 0, &packets)})
        EXPECT_EQ(rc, BCM_E_NOT_FOUND);
}

TEST_F(FieldTableTest, AnEntryMatchesOnlyWhatItsGroupHas)
{
    EXPECT_EQ(field.qualify(entry, {bcmFieldQualifySrcMac, 0x1122, kMacMask}), 0);
    EXPECT_EQ(field.qualify(entry, {FieldMatch::kUdf + 3, 1, 0xffffffff}), 0);
    EXPECT_EQ(field.qualify(entry, {bcmFieldQualifyDstMac, 0x1122, kMacMask}), BCM_E_PARAM);
    EXPECT_EQ(field.qualify(entry, {FieldMatch::kUdf + 4, 1, 0xffffffff}), BCM_E_PARAM);
    EXPECT_EQ(field.find(entry)->rule.matches.size(), 2u);
}

TEST_F(FieldTableTest, ValuesHaveToFitTheField)
{
    EXPECT_EQ(field.qualify(entry, {bcmFieldQualifyOuterVlanId, 0xfff, 0xfff}), 0);
    EXPECT_EQ(field.qualify(entry, {bcmFieldQualifyOuterVlanId, 0x1000, 0xfff}), BCM_E_PARAM);
    EXPECT_EQ(field.qualify(entry, {bcmFieldQualifyOuterVlanId, 1, 0xffff}), BCM_E_PARAM);
    EXPECT_EQ(field.qualify(entry, {bcmFieldQualifyOuterVlanPri, 8, 7}), BCM_E_PARAM);
    EXPECT_EQ(field.qualify(entry, {bcmFieldQualifyIpType, 8, 0xff}), 0);
    EXPECT_EQ(field.qualify(entry, {bcmFieldQualifyIpType, 10, 0xff}), BCM_E_PARAM);
    EXPECT_EQ(field.qualify(entry, {FieldMatch::kUdf + 3, 0x100000000, 0}), BCM_E_PARAM);
}

TEST_F(FieldTableTest, ASecondMatchOfAFieldReplacesTheFirst)
{
    field.qualify(entry, {bcmFieldQualifySrcMac, 1, kMacMask});
    field.qualify(entry, {bcmFieldQualifySrcMac, 2, kMacMask});
    EXPECT_EQ(field.find(entry)->rule.matches,
              (std::vector{FieldMatch{bcmFieldQualifySrcMac, 2, kMacMask}}));
}

TEST_F(FieldTableTest, ChangesActOnceInstalledAgain)
{
    EXPECT_FALSE(field.find(entry)->installed);
    ASSERT_EQ(field.install(entry), 0);
    ASSERT_EQ(field.add_action(entry, action(bcmFieldActionDrop)), 0);
    EXPECT_TRUE(field.find(entry)->installed->actions.empty());
    ASSERT_EQ(field.install(entry), 0);
    EXPECT_EQ(field.find(entry)->installed->actions.size(), 1u);
    ASSERT_EQ(field.remove(entry), 0);
    EXPECT_FALSE(field.find(entry)->installed);
    EXPECT_EQ(field.find(entry)->rule.actions.size(), 1u);
}

TEST_F(FieldTableTest, AnEntryHasAnActionOnce)
{
    ASSERT_EQ(field.add_action(entry, action(bcmFieldActionOuterVlanNew, 7)), 0);
    EXPECT_EQ(field.add_action(entry, action(bcmFieldActionOuterVlanNew, 8)), BCM_E_EXISTS);
    EXPECT_EQ(field.find_action(entry, bcmFieldActionOuterVlanNew)->param0, 7u);
    EXPECT_EQ(field.delete_action(entry, bcmFieldActionOuterVlanNew), 0);
    EXPECT_EQ(field.delete_action(entry, bcmFieldActionOuterVlanNew), BCM_E_NOT_FOUND);
}

TEST_F(FieldTableTest, UnknownActionsAndParametersOutOfRangeAreRefused)
{
    EXPECT_EQ(field.add_action(entry, action(1)), BCM_E_PARAM);
    EXPECT_EQ(field.delete_action(entry, 1), BCM_E_PARAM);
    EXPECT_EQ(field.add_action(entry, action(bcmFieldActionOuterVlanNew, 4095)), BCM_E_PARAM);
    EXPECT_EQ(field.add_action(entry, action(bcmFieldActionOuterVlanPrioNew, 8)), BCM_E_PARAM);
    EXPECT_EQ(field.add_action(entry, action(bcmFieldActionTosNew, 256)), BCM_E_PARAM);
    EXPECT_TRUE(field.find(entry)->rule.actions.empty());
}

TEST_F(FieldTableTest, RemovingAllActionsLeavesTheMatches)
{
    field.qualify(entry, {bcmFieldQualifySrcMac, 1, kMacMask});
    field.add_action(entry, action(bcmFieldActionDrop));
    field.add_action(entry, action(bcmFieldActionUpdateCounter, 1));
    ASSERT_EQ(field.delete_all_actions(entry), 0);
    EXPECT_TRUE(field.find(entry)->rule.actions.empty());
    EXPECT_EQ(field.find(entry)->rule.matches.size(), 1u);
}

TEST_F(FieldTableTest, AnEntryHasOneCounterAndItGoesWithTheEntry)
{
    std::uint64_t packets = 9;
    EXPECT_EQ(field.count(entry, 0, &packets), BCM_E_NOT_FOUND);
    ASSERT_EQ(field.create_counter(entry), 0);
    EXPECT_EQ(field.create_counter(entry), BCM_E_EXISTS);
    EXPECT_EQ(field.count(entry, 1, &packets), BCM_E_PARAM);
    EXPECT_EQ(field.count(entry, 0, nullptr), BCM_E_PARAM);
    EXPECT_EQ(packets, 9u);
    EXPECT_EQ(field.count(entry, 0, &packets), 0);
    EXPECT_EQ(packets, 0u);
    ASSERT_EQ(field.destroy_entry(entry), 0);
    EXPECT_EQ(field.destroy_counter(entry), BCM_E_NOT_FOUND);
}

TEST_F(FieldTableTest, UserDefinedFieldsHaveIds0To92)
{
    EXPECT_EQ(field.create_udf(0, {0x380, 10}), 0);
    EXPECT_EQ(field.create_udf(92, {0x388, 11}), 0);
    EXPECT_EQ(field.create_udf(93, {}), BCM_E_PARAM);
    EXPECT_EQ(field.create_udf(-1, {}), BCM_E_PARAM);
    EXPECT_EQ(field.create_udf(0, {}), BCM_E_EXISTS);
    EXPECT_EQ(field.create_udf(1, {0x1, 0}), BCM_E_PARAM);
}

TEST_F(FieldTableTest, AUserDefinedFieldGoesOnlyWhenNoGroupHasIt)
{
    EXPECT_EQ(field.destroy_udf(3), BCM_E_BUSY);
    field.destroy_entry(entry);
    field.destroy_group(group);
    EXPECT_EQ(field.destroy_udf(3), 0);
    EXPECT_EQ(field.destroy_udf(3), BCM_E_NOT_FOUND);
    EXPECT_EQ(field.destroy_udf(93), BCM_E_NOT_FOUND);
}

TEST_F(FieldTableTest, InitEmptiesIt)
{
    field.set_control(8, 1);
    EXPECT_EQ(field.init(), 0);
    EXPECT_EQ(field, FieldTable{});
}

TEST_F(FieldTableTest, ControlsAre0To31)
{
    EXPECT_EQ(field.set_control(31, 1), 0);
    EXPECT_EQ(field.set_control(32, 1), BCM_E_PARAM);
    EXPECT_EQ(field.set_control(-1, 1), BCM_E_PARAM);
}

TEST_F(FieldTableTest, ACopyComparesEqualUntilEitherChanges)
{
    FieldTable copy = field;
    EXPECT_EQ(copy, field);
    copy.set_priority(entry, 5);
    EXPECT_NE(copy, field);
}

} // namespace
