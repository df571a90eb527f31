#pragma once

#include <cstdint>
#include <list>
#include <set>
#include <utility>
#include <vector>

#include "flow/udf_match.h"

/// A field group of the chip that flows share: which entries are in it and which UDFs it matches.
class FieldGroupNode {
public:
    /// A UDF's id and the frame offset it stands for.
    using Udf = std::pair<unsigned, unsigned>;

    /// `flags` are the flow qualifier flags the group was made for; groups are shared by them.
    FieldGroupNode(int id, unsigned flags) : id_(id), flags_(flags) {}

    int id() const { return id_; }
    unsigned flags() const { return flags_; }
    void set_flags(unsigned flags) { flags_ = flags; }

    /// Sorted by id, then offset, without duplicates.
    std::list<Udf>& udf_ids() { return udf_ids_; }
    const std::list<Udf>& udf_ids() const { return udf_ids_; }

    std::size_t member_count() const { return members_.size(); }

    /// Adds field entries; those already there stay once. Always true.
    bool add_member_entry(const std::list<int>& entries);

    /// Removes field entries; absent ones are ignored. Always true.
    bool delete_member_entry(const std::list<int>& entries);

    /// Adds UDFs; those already there stay once. Always true.
    bool add_udf_id(const std::list<Udf>& udfs);

private:
    int32_t id_;
    uint32_t flags_;
    std::set<int32_t> members_; // an ordered set, because a group may hold thousands of flows
    std::list<Udf> udf_ids_;
};

/// The groups that flows use, in order of creation. The trap filters' groups are not among them.
extern std::list<FieldGroupNode> fg_list;

/// Registers a group with the UDFs of `words`. Always true; a group with that id is left as it is.
bool vexosdk_add_field_group(int group_id, unsigned flags, const std::vector<bcm_udf_s>& words);

/// False when there is no such group.
bool vexosdk_add_entry_to_group(int entry, int group_id);

/// Removes the entry from every group. False only when there are no groups; whether one had the
/// entry deliberately does not count.
bool vexosdk_delete_entry_from_group(int entry);

/// Destroys the groups without entries in the chip, with their UDFs, and forgets them; one that the
/// chip does not know is forgotten, too. 0, or the first SDK failure: that group then stays listed,
/// and so do those behind it.
int vexosdk_remove_unused_group();

/// Finds the first group that a flow can share: one for the same flags and, with `OF_QUALIFY_UDF`,
/// for words at the same offsets, whatever they are compared with. True: `group_id` is written, and
/// the UDF id of each word. False: words may deliberately hold ids of groups that nearly matched.
bool is_group_type_exists(const std::list<FieldGroupNode>& groups, unsigned flags,
                          std::vector<bcm_udf_s>& words, unsigned& group_id);
