// Groups and user-defined fields of the field processor.
#include <bcm/error.h>
#include <bcm/field.h>

#include <algorithm>

#include "sim/chip/field_rules.h"
#include "sim/chip/field_table.h"

namespace vexosim {

FieldTable::FieldTable(FieldCapacity capacity)
    : capacity_(capacity), udfs_(std::min<std::size_t>(capacity.udfs, BCM_FIELD_USER_NUM_UDFS)),
      controls_(BCM_FIELD_CONTROL_COUNT)
{
    capacity_.groups = std::min(capacity_.groups, kMaxGroups);
}

FieldTable::FieldTable(const FieldTable& other)
    : capacity_(other.capacity_), groups_(other.groups_), entries_(other.entries_),
      udfs_(other.udfs_), controls_(other.controls_), next_entry_(other.next_entry_)
{
    make_search();
}

FieldTable& FieldTable::operator=(const FieldTable& other)
{
    if (this != &other)
        *this = FieldTable(other);
    return *this;
}

int FieldTable::init()
{
    *this = FieldTable(capacity_);
    return BCM_E_NONE;
}

int FieldTable::set_control(int control, std::uint32_t state)
{
    if (control < 0 || control >= BCM_FIELD_CONTROL_COUNT)
        return BCM_E_PARAM;
    controls_[static_cast<std::size_t>(control)] = state;
    return BCM_E_NONE;
}

int FieldTable::create_group(const FieldSet& set, int priority, int* id)
{
    if (id == nullptr)
        return BCM_E_PARAM;
    int free = 1;
    while (groups_.count(free) != 0)
        ++free;
    const int rc = create_group_id(set, priority, free);
    if (rc == BCM_E_NONE)
        *id = free;
    return rc;
}

int FieldTable::create_group_id(const FieldSet& set, int priority, int id)
{
    if (groups_.count(id) != 0)
        return BCM_E_EXISTS;
    const int rc = check_new_group(set);
    if (rc == BCM_E_NONE)
        groups_.emplace(id, FieldGroup{priority, set, 0});
    return rc;
}

int FieldTable::check_new_group(const FieldSet& set) const
{
    if (!is_valid(set))
        return BCM_E_PARAM;
    for (std::size_t udf = 0; udf < set.udfs.size(); ++udf) {
        if (set.udfs[udf] && check_udf(static_cast<int>(udf)) != BCM_E_NONE)
            return BCM_E_NOT_FOUND;
    }
    return groups_.size() < capacity_.groups ? BCM_E_NONE : BCM_E_FULL;
}

int FieldTable::destroy_group(int id)
{
    const auto group = groups_.find(id);
    if (group == groups_.end())
        return BCM_E_NOT_FOUND;
    if (group->second.entries != 0)
        return BCM_E_BUSY;
    groups_.erase(group);
    return BCM_E_NONE;
}

int FieldTable::create_udf(int id, const FieldUdf& udf)
{
    const int rc = check_udf(id);
    if (rc != BCM_E_NOT_FOUND)
        return rc == BCM_E_NONE ? BCM_E_EXISTS : rc;
    constexpr std::uint32_t known = BCM_FIELD_USER_L3_ALL | BCM_FIELD_USER_VLAN_ONE_TAG;
    if ((udf.flags & ~known) != 0)
        return BCM_E_PARAM;
    udfs_[static_cast<std::size_t>(id)] = udf;
    return BCM_E_NONE;
}

int FieldTable::destroy_udf(int id)
{
    if (check_udf(id) != BCM_E_NONE)
        return BCM_E_NOT_FOUND;
    for (const auto& [group_id, group] : groups_) {
        if (group.set.udfs[static_cast<std::size_t>(id)])
            return BCM_E_BUSY;
    }
    udfs_[static_cast<std::size_t>(id)].reset();
    return BCM_E_NONE;
}

int FieldTable::check_udf(int id) const
{
    if (id < 0 || id >= static_cast<int>(udfs_.size()))
        return BCM_E_PARAM;
    return udfs_[static_cast<std::size_t>(id)] ? BCM_E_NONE : BCM_E_NOT_FOUND;
}

const FieldUdf* FieldTable::find_udf(int id) const
{
    return check_udf(id) == BCM_E_NONE ? &*udfs_[static_cast<std::size_t>(id)] : nullptr;
}

} // namespace vexosim
