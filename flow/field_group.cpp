// The record of the field groups that flows share.
#include "flow/field_group.h"

std::list<FieldGroupNode> fg_list;

bool FieldGroupNode::add_member_entry(const std::list<int>& entries)
{
    members_.insert(entries.begin(), entries.end());
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
