/// @file
/// Entries of a group that compare bits of all sorts. For each four bits of a field that some entry
/// looks at, and each value of them, a row says in one bit per entry whether the entry agrees; the
/// rows of a frame's values have the entries that match it in common.
#pragma once

#include <cstdint>
#include <unordered_map>
#include <vector>

#include "sim/chip/field_pattern.h"

namespace vexosim {

class FieldTernary {
public:
    bool empty() const { return slots_.empty(); }
    bool has(int entry) const { return slots_.count(entry) != 0; }

    void insert(const FieldPattern& pattern, const FieldHit& hit);
    /// The entry is here.
    void erase(const FieldHit& hit);
    /// The best entry that the frame matches; null when there is none.
    const FieldHit* find(const FieldValues& values) const;

private:
    /// One for each value of four bits, and one for frames that do not have all four.
    static constexpr std::size_t kRows = 17;

    struct Column {
        FieldPart part; ///< `mask` is of the four bits
        int shift = 0;
        std::vector<std::uint64_t> rows;
    };
    std::uint32_t take_slot();
    void widen();
    void add_columns(const FieldPart& part);
    void fill(Column& column, std::uint32_t slot, const FieldPattern& pattern) const;
    const FieldHit* best_of(std::size_t word, std::uint64_t bits, const FieldHit* best) const;

    std::size_t words_ = 0;       ///< in a row
    std::vector<Column> columns_; ///< rise by field
    std::vector<std::uint64_t> used_;
    std::vector<FieldHit> hits_; ///< by slot
    std::vector<std::uint32_t> free_;
    std::unordered_map<int, std::uint32_t> slots_; ///< by entry id
};

} // namespace vexosim
