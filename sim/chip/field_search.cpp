#include "sim/chip/field_search.h"

#include <algorithm>

namespace vexosim {

namespace {

template <class Tuples>
auto tuple_of(Tuples& tuples, const FieldPattern& pattern)
{
    return std::find_if(tuples.begin(), tuples.end(),
                        [&](const FieldTuple& tuple) { return tuple.parts() == pattern.parts; });
}

} // namespace

void FieldGroupSearch::insert(const FieldPattern& pattern, const FieldHit& hit)
{
    ++entries_;
    auto tuple = tuple_of(tuples_, pattern);
    if (tuple == tuples_.end() && tuples_.size() == kMaxTuples) {
        others_.insert(pattern, hit);
        return;
    }
    if (tuple == tuples_.end())
        tuple = tuples_.insert(tuple, FieldTuple(pattern.parts));
    tuple->insert(pattern, hit);
}

void FieldGroupSearch::erase(const FieldPattern& pattern, const FieldHit& hit)
{
    --entries_;
    if (others_.has(hit.id)) {
        others_.erase(hit);
        return;
    }
    const auto tuple = tuple_of(tuples_, pattern);
    tuple->erase(pattern, hit);
    if (tuple->empty())
        tuples_.erase(tuple);
}

std::uint64_t* FieldGroupSearch::start(const FieldValues& values, std::uint64_t* hashes) const
{
    for (const FieldTuple& tuple : tuples_)
        *hashes++ = tuple.hash(values);
    return hashes;
}

const FieldHit* FieldGroupSearch::find(const FieldValues& values,
                                       const std::uint64_t*& hashes) const
{
    const FieldHit* best = others_.empty() ? nullptr : others_.find(values);
    for (const FieldTuple& tuple : tuples_) {
        const FieldHit* hit = tuple.find(values, *hashes++);
        if (hit != nullptr && (best == nullptr || hit->beats(*best)))
            best = hit;
    }
    return best;
}

void FieldSearch::insert(int group, int group_priority, const FieldPattern& pattern,
                         const FieldHit& hit)
{
    auto place = std::find_if(groups_.begin(), groups_.end(), [&](const FieldGroupSearch& g) {
        return g.priority() != group_priority ? g.priority() < group_priority : g.id() >= group;
    });
    if (place == groups_.end() || place->id() != group)
        place = groups_.insert(place, FieldGroupSearch(group, group_priority));
    place->insert(pattern, hit);
}

void FieldSearch::erase(int group, const FieldPattern& pattern, const FieldHit& hit)
{
    const auto place = std::find_if(groups_.begin(), groups_.end(),
                                    [&](const FieldGroupSearch& g) { return g.id() == group; });
    place->erase(pattern, hit);
    if (place->entries() == 0)
        groups_.erase(place);
}

} // namespace vexosim
