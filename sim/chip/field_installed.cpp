// Installed entries and where frames find them.
#include "sim/chip/field_table.h"

namespace vexosim {

namespace {

FieldHit hit_of(int id, FieldEntry& entry)
{
    return {&entry, id, entry.priority, effect_of(*entry.installed)};
}

} // namespace

/// A match with an empty mask asks for nothing, not even that the frame has the field.
FieldPattern FieldTable::pattern_of(const FieldRule& rule) const
{
    FieldPattern pattern;
    pattern.parts.reserve(rule.matches.size());
    pattern.key.reserve(rule.matches.size());
    for (const FieldMatch& match : rule.matches) {
        if (match.mask == 0)
            continue;
        FieldPart part{match.field, match.mask, {}};
        if (match.field >= FieldMatch::kUdf)
            part.udf = udfs_[static_cast<std::size_t>(match.field - FieldMatch::kUdf)].value();
        pattern.parts.push_back(part);
        pattern.key.push_back(match.data & match.mask);
    }
    return pattern;
}

void FieldTable::find_again(int id, FieldEntry& entry)
{
    if (entry.installed)
        search_.insert(entry.group, groups_.at(entry.group).priority, pattern_of(*entry.installed),
                       hit_of(id, entry));
}

/// To be called before what the search knows of the entry changes.
void FieldTable::find_no_more(int id, FieldEntry& entry)
{
    if (entry.installed)
        search_.erase(entry.group, pattern_of(*entry.installed), hit_of(id, entry));
}

void FieldTable::make_search()
{
    search_ = {};
    for (auto& [id, entry] : entries_)
        find_again(id, entry);
}

} // namespace vexosim
