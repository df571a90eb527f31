#pragma once

#include <map>
#include <vector>

#include "sim/chip/field_types.h"

namespace vexosim {

/// The field processor: groups, entries, user-defined fields. Results are SDK codes; outputs are
/// written on success only. Ids of entries rise and are not used twice.
class FieldTable {
public:
    FieldTable();

    int init();
    int set_control(int control, std::uint32_t state);

    int create_group(const FieldSet& set, int priority, int* id);
    int create_group_id(const FieldSet& set, int priority, int id);
    int destroy_group(int id);

    int create_entry(int group, int* id);
    int destroy_entry(int id);
    /// From here on frames meet the entry as it is now.
    int install(int id);
    int remove(int id);
    int set_priority(int id, int priority);

    /// Sets or replaces a match of the entry.
    int qualify(int id, const FieldMatch& match);
    int add_action(int id, const FieldAction& action);
    int delete_action(int id, int action);
    int delete_all_actions(int id);

    int create_counter(int id);
    int destroy_counter(int id);
    int count(int id, int counter, std::uint64_t* packets) const;

    int create_udf(int id, const FieldUdf& udf);
    int destroy_udf(int id);
    /// 0, NOT_FOUND or PARAM.
    int check_udf(int id) const;

    const FieldEntry* find(int id) const;
    const FieldAction* find_action(int id, int action) const;
    const std::map<int, FieldGroup>& groups() const { return groups_; }
    const std::map<int, FieldEntry>& entries() const { return entries_; }

    bool operator==(const FieldTable&) const = default;

private:
    FieldEntry* find(int id);
    int check_new_group(const FieldSet& set) const;

    std::map<int, FieldGroup> groups_;
    std::map<int, FieldEntry> entries_;
    std::vector<std::optional<FieldUdf>> udfs_;
    std::vector<std::uint32_t> controls_;
    int next_entry_ = 1;
};

} // namespace vexosim
