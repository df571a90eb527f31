/// @file
/// The field processor: groups of entries that match frames and act on them.
#pragma once

#include <map>
#include <vector>

#include "sim/chip/field_search.h"
#include "sim/chip/field_types.h"

namespace vexosim {

struct FieldCapacity {
    std::size_t groups = 16; ///< 64 at most
    std::size_t entries = 16384;
    std::size_t udfs = 93; ///< 96 at most

    bool operator==(const FieldCapacity&) const = default;
};

/// Outputs are written on success only. An entry or group that does not exist is NOT_FOUND.
class FieldTable {
public:
    static constexpr std::size_t kMaxGroups = 64;

    explicit FieldTable(FieldCapacity capacity = {});
    FieldTable(const FieldTable& other);
    FieldTable(FieldTable&&) = default;
    FieldTable& operator=(const FieldTable& other);
    FieldTable& operator=(FieldTable&&) = default;
    ~FieldTable() = default;

    /// Empties it.
    int init();
    /// PARAM: control outside 0 to 31.
    int set_control(int control, std::uint32_t state);

    /// Takes the lowest free id from 1 on. FULL; NOT_FOUND: a user-defined field of the set; PARAM.
    int create_group(const FieldSet& set, int priority, int* id);
    /// Any id. EXISTS, and as above.
    int create_group_id(const FieldSet& set, int priority, int id);
    /// BUSY: the group has entries.
    int destroy_group(int id);

    /// Ids rise and are not used twice. FULL; PARAM: null.
    int create_entry(int group, int* id);
    /// With its counter.
    int destroy_entry(int id);
    /// From here on frames meet the entry as it is now.
    int install(int id);
    /// From here on frames do not meet it.
    int remove(int id);
    /// At once, also of an installed entry.
    int set_priority(int id, int priority);

    /// Sets or replaces a match of the entry. PARAM: not in the group's set, or no such value.
    int qualify(int id, const FieldMatch& match);
    /// EXISTS; PARAM: no such action or parameter.
    int add_action(int id, const FieldAction& action);
    /// NOT_FOUND: the entry does not have it either; PARAM: no such action.
    int delete_action(int id, int action);
    int delete_all_actions(int id);

    /// EXISTS.
    int create_counter(int id);
    /// NOT_FOUND: no counter either.
    int destroy_counter(int id);
    /// PARAM: a counter other than 0, null.
    int count(int id, int counter, std::uint64_t* packets) const;

    /// EXISTS; PARAM: id, flags.
    int create_udf(int id, const FieldUdf& udf);
    /// BUSY: a group has it. NOT_FOUND, also outside the table.
    int destroy_udf(int id);
    /// 0, NOT_FOUND or PARAM.
    int check_udf(int id) const;
    /// Null when absent.
    const FieldUdf* find_udf(int id) const;

    /// Null when absent; valid until the table changes.
    const FieldEntry* find(int id) const;
    const FieldAction* find_action(int id, int action) const;
    const std::map<int, FieldGroup>& groups() const { return groups_; }
    const std::map<int, FieldEntry>& entries() const { return entries_; }
    /// The installed entries, in the order in which frames meet them. What it finds is valid until
    /// the table changes.
    const FieldSearch& search() const { return search_; }
    /// The entry's counter, if it has one, has seen a frame.
    static void count_packet(const FieldHit& hit)
    {
        if (hit.entry->packets)
            ++*hit.entry->packets;
    }
    /// Starts to fetch what count_packet() will write.
    static void prefetch_counter(const FieldHit& hit)
    {
        __builtin_prefetch(&hit.entry->packets, 1);
    }

    bool operator==(const FieldTable&) const = default;
    void digest(Digest& d) const;

private:
    FieldEntry* entry_at(int id);
    int check_new_group(const FieldSet& set) const;
    FieldPattern pattern_of(const FieldRule& rule) const;
    void find_again(int id, FieldEntry& entry);
    void find_no_more(int id, FieldEntry& entry);
    void make_search();

    FieldCapacity capacity_;
    std::map<int, FieldGroup> groups_;
    std::map<int, FieldEntry> entries_;
    std::vector<std::optional<FieldUdf>> udfs_;
    std::vector<std::uint32_t> controls_;
    int next_entry_ = 1;
    FieldSearch search_;
};

} // namespace vexosim
