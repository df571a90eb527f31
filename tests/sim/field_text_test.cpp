// Field entries in words, where the driver's flows and traps never ask for what the chip can do.
#include "sim/chip/field_text.h"

#include <bcm/field.h>

#include "sim/chip/tables_as_text.h"
#include "tests/sim/field_path.h"

namespace vexosim {
namespace {

std::string text_of(const FieldMatch& match)
{
    FieldRule rule;
    rule.matches = {match};
    return matches_text(FieldTable{}, rule, PortNames{});
}

TEST(FieldText, MasksThatAreNotAllOnesAreShown)
{
    EXPECT_EQ(text_of({bcmFieldQualifyOuterVlanId, 10, 0xff0}), "vlan 10/0xff0");
    EXPECT_EQ(text_of({bcmFieldQualifyOuterVlanPri, 1, 3}), "vlan-priority 1/0x3");
    EXPECT_EQ(text_of({bcmFieldQualifyL4SrcPort, 80, 0}), "l4-src 80/0x0000");
    EXPECT_EQ(text_of({bcmFieldQualifySrcMac, 0x020000000000, 0xff0000000000}),
              "src-mac 02:00:00:00:00:00/0xff0000000000");
    EXPECT_EQ(text_of({bcmFieldQualifySrcIp, 0x0a000000, 0xff000000}), "src-ip 10.0.0.0/8");
    EXPECT_EQ(text_of({bcmFieldQualifyDstIp, 0x0a000001, 0xff0000ff}),
              "dst-ip 10.0.0.1/255.0.0.255");
}

TEST(FieldText, BytesThatFollowEachOtherAreOneMatch)
{
    FieldTable table;
    table.create_udf(1, {0, 4});
    table.create_udf(2, {0, 5});
    table.create_udf(3, {0, 0});
    FieldRule rule;
    rule.matches = {{FieldMatch::kUdf + 1, 0x00010203, 0x00ffff0f},
                    {FieldMatch::kUdf + 2, 0xaabb0000, 0xffff0000},
                    {FieldMatch::kUdf + 3, 0x00000005, 0x000000ff}};
    EXPECT_EQ(matches_text(table, rule, PortNames{}), "udf 1:05 udf 15:010203aabb/ffff0fffff");
    rule.matches[0].mask = 0x00ff00ff;
    EXPECT_EQ(matches_text(table, rule, PortNames{}), "udf 1:05 udf 15:01 udf 17:03aabb");
}

TEST(FieldText, TheFramesThatHaveAUserDefinedFieldAreSaid)
{
    FieldTable table;
    const std::pair<std::uint32_t, const char*> cases[] = {
        {0, "bytes 2-5 (udf 7)"},
        {BCM_FIELD_USER_L3_ALL, "bytes 2-5 of untagged frames (udf 7)"},
        {BCM_FIELD_USER_L3_ALL | BCM_FIELD_USER_VLAN_ONE_TAG,
         "bytes 2-5 of frames with one tag (udf 7)"},
        {0x80, "bytes 2-5 of formats 0x080 (udf 7)"},
    };
    FieldSet set;
    EXPECT_EQ(fields_text(table, set), "none");
    set.udfs.set(7);
    for (const auto& [flags, text] : cases) {
        ASSERT_EQ(table.create_udf(7, {flags, 1}), 0);
        EXPECT_EQ(fields_text(table, set), text);
        table.destroy_udf(7);
    }
}

TEST(FieldText, EntriesAreOutInstalledOrChangedSince)
{
    Chip chip;
    int group = 0;
    int entry = 0;
    FieldSet set;
    set.fields.set(bcmFieldQualifyTos);
    chip.field.create_group(set, 3, &group);
    chip.field.create_entry(group, &entry);
    const auto row = [&] { return field_entries_table(chip, PortNames{}).rows.at(0); };
    using Row = std::vector<std::string>;
    EXPECT_EQ(row(), (Row{"1", "1", "0", "out", "-", "any", "none"}));
    chip.field.install(entry);
    chip.field.create_counter(entry);
    chip.field.set_priority(entry, -2);
    EXPECT_EQ(row(), (Row{"1", "1", "-2", "installed", "0", "any", "none"}));
    chip.field.add_action(entry, kDropIt);
    chip.field.qualify(entry, is(bcmFieldQualifyTos, 5));
    EXPECT_EQ(row(), (Row{"1", "1", "-2", "changed", "0", "tos 0x05", "drop"}));
    EXPECT_EQ(field_groups_table(chip).rows.at(0), (Row{"1", "3", "1", "tos"}));
}

} // namespace
} // namespace vexosim
