#include "tools/vexosh/field_reads.h"

#include "vexosim/state.h"

namespace vexosh {

FieldEntries::FieldEntries()
{
    for (const auto& row : vexosim::field_entries_table().rows) {
        entries_[std::stoi(row[0])] = {row[1], row[2], row[3], row[4], row[5], row[6]};
    }
}

const FieldEntryText& FieldEntries::operator[](int entry) const
{
    static const FieldEntryText gone{"-", "-", "gone", "-", "-", "-"};
    const auto found = entries_.find(entry);
    return found == entries_.end() ? gone : found->second;
}

} // namespace vexosh
