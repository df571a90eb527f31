#include "sim/chip/field_ternary.h"

#include <algorithm>
#include <array>
#include <bit>
#include <utility>

namespace vexosim {

namespace {

constexpr std::size_t kFirstWords = 4;
constexpr std::size_t kChunk = 4; ///< words that are compared together; divides all widths
/// 13 fields and 96 user-defined fields, four bits each.
constexpr std::size_t kMaxColumns = 1024;

struct Bit {
    std::size_t word;
    std::uint64_t mask;
};
Bit bit_of(std::uint32_t slot)
{
    return {slot / 64, std::uint64_t{1} << slot % 64};
}

/// Mask and data of a pattern's field; a field that it does not have is a wildcard.
struct Wanted {
    std::uint64_t mask = 0, data = 0;
};
Wanted wanted_of(const FieldPattern& pattern, int field)
{
    for (std::size_t i = 0; i < pattern.parts.size(); ++i) {
        if (pattern.parts[i].field == field)
            return {pattern.parts[i].mask, pattern.key[i]};
    }
    return {};
}

} // namespace

void FieldTernary::insert(const FieldPattern& pattern, const FieldHit& hit)
{
    for (const FieldPart& part : pattern.parts)
        add_columns(part);
    const std::uint32_t slot = take_slot();
    for (Column& column : columns_)
        fill(column, slot, pattern);
    used_[bit_of(slot).word] |= bit_of(slot).mask;
    hits_[slot] = hit;
    slots_[hit.id] = slot;
}

void FieldTernary::erase(const FieldHit& hit)
{
    const std::uint32_t slot = slots_.at(hit.id);
    slots_.erase(hit.id);
    used_[bit_of(slot).word] &= ~bit_of(slot).mask;
    free_.push_back(slot);
    if (slots_.empty())
        *this = {};
}

/// Rows of slots that are not in use may say anything.
std::uint32_t FieldTernary::take_slot()
{
    if (free_.empty()) {
        if (hits_.size() == words_ * 64)
            widen();
        free_.push_back(static_cast<std::uint32_t>(hits_.size()));
        hits_.emplace_back();
    }
    const std::uint32_t slot = free_.back();
    free_.pop_back();
    return slot;
}

void FieldTernary::widen()
{
    const std::size_t was = words_;
    words_ = std::max(kFirstWords, was * 2);
    used_.resize(words_);
    for (Column& column : columns_) {
        std::vector<std::uint64_t> rows(kRows * words_);
        for (std::size_t row = 0; row < kRows; ++row)
            std::copy_n(column.rows.data() + row * was, was, rows.data() + row * words_);
        column.rows.swap(rows);
    }
}

/// Entries that are here already do not look at the new columns' bits.
void FieldTernary::add_columns(const FieldPart& part)
{
    for (int shift = 0; shift < 64; shift += 4) {
        const std::uint64_t bits = std::uint64_t{0xf} << shift;
        if ((part.mask & bits) == 0)
            continue;
        const auto place = std::find_if(columns_.begin(), columns_.end(), [&](const Column& c) {
            return c.part.field > part.field || (c.part.field == part.field && c.shift >= shift);
        });
        if (place != columns_.end() && place->part.field == part.field && place->shift == shift)
            continue;
        Column column{{part.field, bits, part.udf}, shift, {}};
        for (std::size_t row = 0; row < kRows; ++row)
            column.rows.insert(column.rows.end(), used_.begin(), used_.end());
        columns_.insert(place, std::move(column));
    }
}

void FieldTernary::fill(Column& column, std::uint32_t slot, const FieldPattern& pattern) const
{
    const Wanted wanted = wanted_of(pattern, column.part.field);
    const std::uint64_t mask = wanted.mask >> column.shift & 0xf;
    const std::uint64_t data = wanted.data >> column.shift & 0xf;
    const Bit bit = bit_of(slot);
    for (std::size_t value = 0; value < kRows; ++value) {
        const bool agrees = value == kRows - 1 ? mask == 0 : (value & mask) == data;
        std::uint64_t& word = column.rows[value * words_ + bit.word];
        word = agrees ? word | bit.mask : word & ~bit.mask;
    }
}

const FieldHit* FieldTernary::find(const FieldValues& values) const
{
    std::array<const std::uint64_t*, kMaxColumns> rows;
    std::size_t count = 0;
    int field = -1;
    FieldBits bits;
    for (const Column& column : columns_) {
        if (column.part.field != field)
            bits = column.part.bits_in(values);
        field = column.part.field;
        const bool present = (column.part.mask & ~bits.present) == 0;
        const std::size_t row = present ? bits.bits >> column.shift & 0xf : kRows - 1;
        rows[count++] = &column.rows[row * words_];
    }
    const FieldHit* best = nullptr;
    for (std::size_t word = 0; word < words_; word += kChunk) {
        std::array<std::uint64_t, kChunk> common;
        std::copy_n(&used_[word], kChunk, common.begin());
        for (std::size_t column = 0; column < count; ++column) {
            for (std::size_t i = 0; i < kChunk; ++i)
                common[i] &= rows[column][word + i];
        }
        for (std::size_t i = 0; i < kChunk; ++i)
            best = best_of(word + i, common[i], best);
    }
    return best;
}

const FieldHit* FieldTernary::best_of(std::size_t word, std::uint64_t bits,
                                      const FieldHit* best) const
{
    for (; bits != 0; bits &= bits - 1) {
        const FieldHit& hit = hits_[word * 64 + static_cast<std::size_t>(std::countr_zero(bits))];
        if (best == nullptr || hit.beats(*best))
            best = &hit;
    }
    return best;
}

} // namespace vexosim
