#include "sim/chip/field_tuple.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vexosim {

namespace {

constexpr std::size_t kFirstBuckets = 16;
/// Most frames match in one group only: the others shall see that without reading a node.
constexpr std::size_t kBucketsPerNode = 4;
/// Every field and every user-defined field once.
constexpr std::size_t kMaxParts = 192;

std::uint64_t add_to_hash(std::uint64_t hash, std::uint64_t value)
{
    hash = (hash ^ value) * 0x9e3779b97f4a7c15u;
    return hash ^ hash >> 32;
}

std::uint64_t hash_of(const std::vector<std::uint64_t>& key)
{
    std::uint64_t hash = 0;
    for (std::uint64_t value : key)
        hash = add_to_hash(hash, value);
    return hash;
}

bool is_better(const FieldHit& a, const FieldHit& b)
{
    return a.beats(b);
}

} // namespace

void FieldTuple::Node::insert(const FieldHit& hit)
{
    FieldHit worse = hit;
    if (best.entry == nullptr || hit.beats(best))
        std::swap(best, worse);
    if (worse.entry != nullptr)
        others.insert(std::upper_bound(others.begin(), others.end(), worse, is_better), worse);
}

bool FieldTuple::Node::erase(const FieldHit& hit)
{
    if (hit.id != best.id) {
        others.erase(std::lower_bound(others.begin(), others.end(), hit, is_better));
        return false;
    }
    best = others.empty() ? FieldHit() : others.front();
    if (!others.empty())
        others.erase(others.begin());
    return best.entry == nullptr;
}

FieldTuple::FieldTuple(std::vector<FieldPart> parts)
    : parts_(std::move(parts)), buckets_(kFirstBuckets, kNone)
{
}

void FieldTuple::insert(const FieldPattern& pattern, const FieldHit& hit)
{
    const std::uint64_t hash = hash_of(pattern.key);
    std::uint32_t node = find_node(hash, pattern.key.data());
    if (node == kNone)
        node = add_node(hash, pattern);
    nodes_[node].insert(hit);
}

void FieldTuple::erase(const FieldPattern& pattern, const FieldHit& hit)
{
    const std::uint32_t node = find_node(hash_of(pattern.key), pattern.key.data());
    if (!nodes_[node].erase(hit))
        return;
    unlink(node);
    nodes_[node] = {};
    free_.push_back(node);
}

const FieldHit* FieldTuple::find(const FieldValues& values) const
{
    std::array<std::uint64_t, kMaxParts> key;
    std::uint64_t hash = 0;
    std::size_t count = 0;
    for (const FieldPart& part : parts_) {
        const FieldBits bits = part.bits_in(values);
        if ((part.mask & ~bits.present) != 0)
            return nullptr;
        key[count] = bits.bits & part.mask;
        hash = add_to_hash(hash, key[count++]);
    }
    const std::uint32_t node = find_node(hash, key.data());
    return node != kNone ? &nodes_[node].best : nullptr;
}

bool FieldTuple::has_key(std::uint32_t node, const std::uint64_t* key) const
{
    const std::uint64_t* own = keys_.data() + node * parts_.size();
    return std::equal(own, own + parts_.size(), key);
}

std::uint32_t FieldTuple::find_node(std::uint64_t hash, const std::uint64_t* key) const
{
    std::uint32_t node = buckets_[bucket_of(hash)];
    while (node != kNone && (nodes_[node].hash != hash || !has_key(node, key)))
        node = nodes_[node].next;
    return node;
}

std::uint32_t FieldTuple::add_node(std::uint64_t hash, const FieldPattern& pattern)
{
    if (free_.empty()) {
        free_.push_back(static_cast<std::uint32_t>(nodes_.size()));
        nodes_.emplace_back();
        keys_.resize(nodes_.size() * parts_.size());
    }
    const std::uint32_t node = free_.back();
    free_.pop_back();
    nodes_[node].hash = hash;
    std::copy(pattern.key.begin(), pattern.key.end(),
              keys_.begin() + static_cast<std::ptrdiff_t>(node * parts_.size()));
    if ((nodes_.size() - free_.size()) * kBucketsPerNode > buckets_.size())
        grow();
    link(node);
    return node;
}

void FieldTuple::link(std::uint32_t node)
{
    std::uint32_t& head = buckets_[bucket_of(nodes_[node].hash)];
    nodes_[node].next = std::exchange(head, node);
}

void FieldTuple::unlink(std::uint32_t node)
{
    std::uint32_t* place = &buckets_[bucket_of(nodes_[node].hash)];
    while (*place != node)
        place = &nodes_[*place].next;
    *place = nodes_[node].next;
}

void FieldTuple::grow()
{
    buckets_.assign(buckets_.size() * 2, kNone);
    for (std::uint32_t node = 0; node < nodes_.size(); ++node) {
        if (nodes_[node].best.entry != nullptr)
            link(node);
    }
}

} // namespace vexosim
