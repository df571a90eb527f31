// Entries of the field processor: what they match, what they do, and what they count.
#include <bcm/error.h>

#include <algorithm>

#include "sim/chip/field_rules.h"
#include "sim/chip/field_table.h"

namespace vexosim {

namespace {

bool has_field(const FieldSet& set, int field)
{
    const bool udf = field >= FieldMatch::kUdf;
    const auto bit = static_cast<std::size_t>(udf ? field - FieldMatch::kUdf : field);
    const auto& bits = udf ? set.udfs : set.fields;
    return bit < bits.size() && bits[bit];
}

/// Where `action` is, or belongs.
template <class Actions>
auto place_of(Actions& actions, int action)
{
    return std::lower_bound(actions.begin(), actions.end(), action,
                            [](const FieldAction& a, int wanted) { return a.action < wanted; });
}

bool holds(const std::vector<FieldAction>& actions, int action)
{
    const auto place = place_of(actions, action);
    return place != actions.end() && place->action == action;
}

} // namespace

int FieldTable::create_entry(int group, int* id)
{
    if (id == nullptr)
        return BCM_E_PARAM;
    const auto owner = groups_.find(group);
    if (owner == groups_.end())
        return BCM_E_NOT_FOUND;
    if (entries_.size() >= capacity_.entries)
        return BCM_E_FULL;
    *id = next_entry_++;
    entries_[*id].group = group;
    ++owner->second.entries;
    return BCM_E_NONE;
}

int FieldTable::destroy_entry(int id)
{
    const auto entry = entries_.find(id);
    if (entry == entries_.end())
        return BCM_E_NOT_FOUND;
    find_no_more(id, entry->second);
    --groups_.at(entry->second.group).entries;
    entries_.erase(entry);
    return BCM_E_NONE;
}

int FieldTable::install(int id)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    find_no_more(id, *entry);
    entry->installed = entry->rule;
    find_again(id, *entry);
    return BCM_E_NONE;
}

int FieldTable::remove(int id)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    find_no_more(id, *entry);
    entry->installed.reset();
    return BCM_E_NONE;
}

int FieldTable::set_priority(int id, int priority)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    find_no_more(id, *entry);
    entry->priority = priority;
    find_again(id, *entry);
    return BCM_E_NONE;
}

int FieldTable::qualify(int id, const FieldMatch& match)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    if (!has_field(groups_.at(entry->group).set, match.field) || !is_valid(match))
        return BCM_E_PARAM;
    auto& matches = entry->rule.matches;
    const auto place =
        std::lower_bound(matches.begin(), matches.end(), match.field,
                         [](const FieldMatch& m, int field) { return m.field < field; });
    if (place != matches.end() && place->field == match.field)
        *place = match;
    else
        matches.insert(place, match);
    return BCM_E_NONE;
}

int FieldTable::add_action(int id, const FieldAction& action)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    if (!is_valid(action))
        return BCM_E_PARAM;
    auto& actions = entry->rule.actions;
    if (holds(actions, action.action))
        return BCM_E_EXISTS;
    actions.insert(place_of(actions, action.action), action);
    return BCM_E_NONE;
}

int FieldTable::delete_action(int id, int action)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    if (kind_of(action) == ActionKind::unknown)
        return BCM_E_PARAM;
    auto& actions = entry->rule.actions;
    if (!holds(actions, action))
        return BCM_E_NOT_FOUND;
    actions.erase(place_of(actions, action));
    return BCM_E_NONE;
}

int FieldTable::delete_all_actions(int id)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    entry->rule.actions.clear();
    return BCM_E_NONE;
}

int FieldTable::create_counter(int id)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    if (entry->packets)
        return BCM_E_EXISTS;
    entry->packets = 0;
    return BCM_E_NONE;
}

int FieldTable::destroy_counter(int id)
{
    FieldEntry* entry = entry_at(id);
    if (entry == nullptr || !entry->packets)
        return BCM_E_NOT_FOUND;
    entry->packets.reset();
    return BCM_E_NONE;
}

int FieldTable::count(int id, int counter, std::uint64_t* packets) const
{
    if (counter != 0 || packets == nullptr)
        return BCM_E_PARAM;
    const FieldEntry* entry = find(id);
    if (entry == nullptr || !entry->packets)
        return BCM_E_NOT_FOUND;
    *packets = *entry->packets;
    return BCM_E_NONE;
}

const FieldEntry* FieldTable::find(int id) const
{
    const auto entry = entries_.find(id);
    return entry != entries_.end() ? &entry->second : nullptr;
}

FieldEntry* FieldTable::entry_at(int id)
{
    const auto entry = entries_.find(id);
    return entry != entries_.end() ? &entry->second : nullptr;
}

const FieldAction* FieldTable::find_action(int id, int action) const
{
    const FieldEntry* entry = find(id);
    if (entry == nullptr || !holds(entry->rule.actions, action))
        return nullptr;
    return &*place_of(entry->rule.actions, action);
}

} // namespace vexosim
