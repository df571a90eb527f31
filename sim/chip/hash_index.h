/// @file
/// Numbers found by the hash of what they stand for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vexosim {

/// A hash table of numbers from 1 on, whose keys are kept elsewhere. Next to each number is a part
/// of its hash, which spares nearly all looks at other numbers' keys. Its size is its owner's to
/// keep, so that runs of used slots are short.
template <class Number>
class HashIndex {
public:
    static constexpr Number kNone = 0;

    /// Empties it; a power of two, or 0 as long as nothing is inserted.
    void reset(std::size_t size) { slots_.assign(size, Slot{}); }
    std::size_t size() const { return slots_.size(); }

    /// The number with the hash for which `is_it` holds; kNone when there is none.
    template <class IsIt>
    Number find(std::uint64_t hash, IsIt is_it) const
    {
        if (slots_.empty())
            return kNone;
        for (std::size_t i = home(hash);; i = next(i)) {
            const Slot slot = slots_[i];
            if (slot.number == kNone || (slot.tag == tag(hash) && is_it(slot.number)))
                return slot.number;
        }
    }
    /// Starts to fetch what find() will read first.
    void prefetch(std::uint64_t hash) const { __builtin_prefetch(&slots_[home(hash)]); }

    /// The number is not there, and a slot is free.
    void insert(std::uint64_t hash, Number number)
    {
        std::size_t i = home(hash);
        while (slots_[i].number != kNone)
            i = next(i);
        slots_[i] = {number, tag(hash)};
    }

    /// The number is there. `hash_of` gives the hash of any other.
    template <class HashOf>
    void erase(std::uint64_t hash, Number number, HashOf hash_of)
    {
        std::size_t gap = home(hash);
        while (slots_[gap].number != number)
            gap = next(gap);
        // Moves up what was put behind the gap only because the gap was taken.
        for (std::size_t i = next(gap); slots_[i].number != kNone; i = next(i)) {
            const std::size_t reach = distance(home(hash_of(slots_[i].number)), i);
            if (reach >= distance(gap, i)) {
                slots_[gap] = slots_[i];
                gap = i;
            }
        }
        slots_[gap] = {};
    }

    /// Calls `visit` with all numbers, in no order, until it says false.
    /// @return whether it never did.
    template <class Visit>
    bool all_of(Visit visit) const
    {
        for (const Slot slot : slots_) {
            if (slot.number != kNone && !visit(slot.number))
                return false;
        }
        return true;
    }

private:
    struct Slot {
        Number number = kNone;
        Number tag = 0;
    };
    std::size_t home(std::uint64_t hash) const
    {
        return static_cast<std::size_t>(hash) & (slots_.size() - 1);
    }
    std::size_t next(std::size_t slot) const { return (slot + 1) & (slots_.size() - 1); }
    std::size_t distance(std::size_t from, std::size_t to) const
    {
        return (to - from) & (slots_.size() - 1);
    }
    /// From the end that home() does not look at.
    static Number tag(std::uint64_t hash)
    {
        return static_cast<Number>(hash >> (64 - 8 * sizeof(Number)));
    }

    std::vector<Slot> slots_;
};

} // namespace vexosim
