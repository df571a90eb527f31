/// @file
/// Entries of a group that compare the same bits, found by a hash of these.
#pragma once

#include <cstdint>
#include <vector>

#include "sim/chip/field_pattern.h"

namespace vexosim {

class FieldTuple {
public:
    explicit FieldTuple(std::vector<FieldPart> parts);

    const std::vector<FieldPart>& parts() const { return parts_; }
    bool empty() const { return nodes_.size() == free_.size(); }

    /// The pattern's parts are this tuple's.
    void insert(const FieldPattern& pattern, const FieldHit& hit);
    /// The entry is here.
    void erase(const FieldPattern& pattern, const FieldHit& hit);
    /// The best entry that the frame matches; null when there is none.
    const FieldHit* find(const FieldValues& values) const;

private:
    static constexpr std::uint32_t kNone = 0xffffffff;

    /// All entries with one key, which few others have.
    struct Node {
        std::uint64_t hash = 0;
        std::uint32_t next = kNone;   ///< in the same bucket
        FieldHit best;                ///< without an entry while the node is free
        std::vector<FieldHit> others; ///< the best one first

        void insert(const FieldHit& hit);
        /// @return whether it was the last.
        bool erase(const FieldHit& hit);
    };
    std::size_t bucket_of(std::uint64_t hash) const
    {
        return static_cast<std::size_t>(hash) & (buckets_.size() - 1);
    }
    bool has_key(std::uint32_t node, const std::uint64_t* key) const;
    std::uint32_t find_node(std::uint64_t hash, const std::uint64_t* key) const;
    std::uint32_t add_node(std::uint64_t hash, const FieldPattern& pattern);
    void link(std::uint32_t node);
    void unlink(std::uint32_t node);
    void grow();

    std::vector<FieldPart> parts_;
    std::vector<std::uint32_t> buckets_;
    std::vector<Node> nodes_;
    std::vector<std::uint64_t> keys_; ///< of each node, parts_.size() of them
    std::vector<std::uint32_t> free_; ///< nodes
};

} // namespace vexosim
