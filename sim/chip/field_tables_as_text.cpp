// The field processor's groups and entries as text.
#include "sim/chip/field_text.h"
#include "sim/chip/tables_as_text.h"

namespace vexosim {

namespace {

const char* state_of(const FieldEntry& entry)
{
    if (!entry.installed)
        return "out";
    return *entry.installed == entry.rule ? "installed" : "changed";
}

} // namespace

TextTable field_groups_table(const Chip& chip)
{
    TextTable table{{"group", "priority", "entries", "fields"}, {}};
    for (const auto& [id, group] : chip.field.groups())
        table.rows.push_back({std::to_string(id), std::to_string(group.priority),
                              std::to_string(group.entries), fields_text(chip.field, group.set)});
    return table;
}

TextTable field_entries_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"entry", "group", "priority", "state", "packets", "match", "actions"}, {}};
    for (const auto& [id, entry] : chip.field.entries())
        table.rows.push_back(
            {std::to_string(id), std::to_string(entry.group), std::to_string(entry.priority),
             state_of(entry), entry.packets ? std::to_string(*entry.packets) : "-",
             matches_text(chip.field, entry.rule, names), actions_text(entry.rule, names)});
    return table;
}

} // namespace vexosim
