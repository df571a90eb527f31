/// @file
/// The installed entries, arranged for being found. It follows from the entries, so it is no part
/// of the chip's value.
#pragma once

#include <cstdint>
#include <vector>

#include "sim/chip/field_ternary.h"
#include "sim/chip/field_tuple.h"

namespace vexosim {

/// The installed entries of one group. Those of the first few combinations of masks are hashed.
class FieldGroupSearch {
public:
    FieldGroupSearch(int id, int priority) : id_(id), priority_(priority) {}

    int id() const { return id_; }
    int priority() const { return priority_; } ///< a larger one comes first, then the lower id
    std::size_t entries() const { return entries_; }

    void insert(const FieldPattern& pattern, const FieldHit& hit);
    void erase(const FieldPattern& pattern, const FieldHit& hit);
    /// Starts the search for the frame's entry. The hashes end at what it returns.
    std::uint64_t* start(const FieldValues& values, std::uint64_t* hashes) const;
    /// The best entry that the frame matches; null when there is none. Takes the hashes that
    /// start() made, and moves on to the next group's.
    const FieldHit* find(const FieldValues& values, const std::uint64_t*& hashes) const;

    static constexpr std::size_t kMaxTuples = 8;

private:
    int id_;
    int priority_;
    std::size_t entries_ = 0;
    std::vector<FieldTuple> tuples_;
    FieldTernary others_;
};

class FieldSearch {
public:
    void insert(int group, int group_priority, const FieldPattern& pattern, const FieldHit& hit);
    void erase(int group, const FieldPattern& pattern, const FieldHit& hit);

    /// No entry is installed.
    bool empty() const { return groups_.empty(); }
    /// Groups with installed entries, the first one to be asked first.
    const std::vector<FieldGroupSearch>& groups() const { return groups_; }

    /// It says nothing that the entries do not.
    bool operator==(const FieldSearch&) const { return true; }

private:
    std::vector<FieldGroupSearch> groups_;
};

} // namespace vexosim
