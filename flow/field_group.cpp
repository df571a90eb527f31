// The record of the field groups that flows share.
#include "flow/field_group.h"

#include <bcmx/field.h>

#include <algorithm>

#include "core/result.h"
#include "flow/udf_pool.h"

using namespace vexolc;

std::list<FieldGroupNode> fg_list;

namespace {

/// The chip has a few groups at most, so they are searched one by one.
std::list<FieldGroupNode>::iterator find_group(int id)
{
    return std::find_if(fg_list.begin(), fg_list.end(),
                        [id](const FieldGroupNode& group) { return group.id() == id; });
}

bool take_udf_id(const FieldGroupNode& group, bcm_udf_s& word)
{
    const auto& udfs = group.udf_ids();
    const auto same_offset = [&](const FieldGroupNode::Udf& u) { return u.second == word.offset; };
    const auto udf = std::find_if(udfs.begin(), udfs.end(), same_offset);
    if (udf == udfs.end())
        return false;
    word.udf_id = udf->first;
    return true;
}

/// Gives each word the UDF of the group at its offset. Stops at the first without one.
bool take_udf_ids(const FieldGroupNode& group, std::vector<bcm_udf_s>& words)
{
    if (group.udf_ids().size() != words.size())
        return false;
    for (bcm_udf_s& word : words) {
        if (!take_udf_id(group, word))
            return false;
    }
    return true;
}

/// Destroys the group's UDFs in order and gives their ids back, until one fails.
int destroy_udfs(const FieldGroupNode& group)
{
    for (const auto& [id, offset] : group.udf_ids()) {
        const int rc = bcmx_field_udf_destroy(static_cast<int>(id));
        if (!ok(rc))
            return rc;
        if (id < vexo_udf_count)
            vexo_udf_usage[id] = 0;
    }
    return BCM_E_NONE;
}

int destroy_group(const FieldGroupNode& group)
{
    const int rc = bcmx_field_group_destroy(group.id());
    return ok(rc, BCM_E_NOT_FOUND) ? destroy_udfs(group) : rc;
}

} // namespace

bool FieldGroupNode::add_member_entry(const std::list<int>& entries)
{
    for (const int entry : entries)
        members_.insert(members_.end(), entry); // the newest entry has the highest id
    return true;
}

bool FieldGroupNode::delete_member_entry(const std::list<int>& entries)
{
    for (const int entry : entries)
        members_.erase(entry);
    return true;
}

bool FieldGroupNode::add_udf_id(const std::list<Udf>& udfs)
{
    udf_ids_.insert(udf_ids_.end(), udfs.begin(), udfs.end());
    udf_ids_.sort();
    udf_ids_.unique();
    return true;
}

bool vexosdk_add_field_group(int group_id, unsigned flags, const std::vector<bcm_udf_s>& words)
{
    if (find_group(group_id) != fg_list.end())
        return true;
    std::list<FieldGroupNode::Udf> udfs;
    for (const bcm_udf_s& word : words)
        udfs.emplace_back(word.udf_id, word.offset);
    FieldGroupNode& group = fg_list.emplace_back(group_id, 0);
    group.add_udf_id(udfs);
    group.set_flags(flags);
    return true;
}

bool vexosdk_add_entry_to_group(int entry, int group_id)
{
    const auto group = find_group(group_id);
    return group != fg_list.end() && group->add_member_entry({entry});
}

bool vexosdk_delete_entry_from_group(int entry)
{
    const std::list<int> entries = {entry};
    bool done = false;
    for (FieldGroupNode& group : fg_list)
        done = group.delete_member_entry(entries);
    return done;
}

int vexosdk_remove_unused_group()
{
    for (auto group = fg_list.begin(); group != fg_list.end();) {
        if (group->member_count() != 0) {
            ++group;
            continue;
        }
        const int rc = destroy_group(*group);
        if (!ok(rc))
            return rc;
        group = fg_list.erase(group);
    }
    return BCM_E_NONE;
}

bool is_group_type_exists(const std::list<FieldGroupNode>& groups, unsigned flags,
                          std::vector<bcm_udf_s>& words, unsigned& group_id)
{
    const bool has_udfs = (flags & OF_QUALIFY_UDF) != 0;
    const auto group = std::find_if(groups.begin(), groups.end(), [&](const FieldGroupNode& node) {
        return node.flags() == flags && (!has_udfs || take_udf_ids(node, words));
    });
    if (group == groups.end())
        return false;
    group_id = static_cast<unsigned>(group->id());
    return true;
}
