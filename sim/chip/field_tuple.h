/// @file
/// Entries of a group that compare the same bits, found by a hash of these.
#pragma once

#include <cstdint>
#include <map>
#include <vector>

#include "sim/chip/field_pattern.h"
#include "sim/chip/hash_index.h"

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
    /// What find() looks for. Starts to fetch where that is.
    std::uint64_t hash(const FieldValues& values) const;
    /// The best entry that the frame matches; null when there is none. `hash` is that of `values`.
    const FieldHit* find(const FieldValues& values, std::uint64_t hash) const;

private:
    using Number = std::uint32_t; // of a node, from 1 on
    static constexpr Number kNone = HashIndex<Number>::kNone;

    /// All entries with one key, which few others have.
    struct alignas(64) Node {
        std::uint64_t hash = 0;
        FieldHit best; ///< without an entry while the node is free
    };
    Node& node(Number number) { return nodes_[number - 1]; }
    const Node& node(Number number) const { return nodes_[number - 1]; }
    template <class KeyAt>
    Number find_node(std::uint64_t hash, KeyAt key_at) const;
    Number find_node(std::uint64_t hash, const FieldPattern& pattern) const;
    Number add_node(std::uint64_t hash, const FieldPattern& pattern);
    void grow();

    std::vector<FieldPart> parts_;
    HashIndex<Number> index_;
    std::vector<Node> nodes_;
    std::vector<std::uint64_t> keys_;               ///< of each node, parts_.size() of them
    std::vector<Number> free_;                      ///< nodes
    std::map<Number, std::vector<FieldHit>> worse_; ///< than the best of a node, falling
};

} // namespace vexosim
