#pragma once

#include <cstdint>
#include <list>
#include <set>
#include <utility>

/// One 4-byte piece of a flow's user-defined match.
struct bcm_udf_s {
    uint32_t udf_id; ///< 0 until a UDF is found or created for the piece
    uint32_t offset; ///< where in the frame it stands, in bytes
    uint8_t data[4]; ///< frame byte order
    uint8_t mask[4]; ///< frame byte order
};

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
