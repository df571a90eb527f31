#include "sim/chip/field_tuple.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vexosim {

namespace {

constexpr std::size_t kFirstSize = 16;
/// Every field and every user-defined field once.
constexpr std::size_t kMaxParts = 192;

/// Odd numbers that have nothing to do with each other.
constexpr std::array<std::uint64_t, kMaxParts> kFactors = [] {
    std::array<std::uint64_t, kMaxParts> factors{};
    std::uint64_t n = 0;
    for (std::uint64_t& factor : factors) {
        n += 0x9e3779b97f4a7c15u;
        factor = (n ^ n >> 30) * 0xbf58476d1ce4e5b9u;
        factor = (factor ^ factor >> 27) * 0x94d049bb133111ebu | 1;
    }
    return factors;
}();

/// A sum over the parts, so that the processor works on several of them at a time.
class KeyHash {
public:
    void add(std::size_t part, std::uint64_t value) { sum_ += value * kFactors[part]; }
    std::uint64_t value() const
    {
        const std::uint64_t mixed = (sum_ ^ sum_ >> 32) * 0x9e3779b97f4a7c15u;
        return mixed ^ mixed >> 32;
    }

private:
    std::uint64_t sum_ = 0;
};

std::uint64_t hash_of(const std::vector<std::uint64_t>& key)
{
    KeyHash hash;
    for (std::size_t i = 0; i < key.size(); ++i)
        hash.add(i, key[i]);
    return hash.value();
}

bool is_better(const FieldHit& a, const FieldHit& b)
{
    return a.beats(b);
}

} // namespace

FieldTuple::FieldTuple(std::vector<FieldPart> parts) : parts_(std::move(parts)) {}

void FieldTuple::insert(const FieldPattern& pattern, const FieldHit& hit)
{
    const std::uint64_t hash = hash_of(pattern.key);
    Number number = find_node(hash, pattern);
    if (number == kNone) {
        number = add_node(hash, pattern);
        node(number).best = hit;
        return;
    }
    FieldHit worse = hit;
    if (hit.beats(node(number).best))
        std::swap(node(number).best, worse);
    std::vector<FieldHit>& others = worse_[number];
    others.insert(std::upper_bound(others.begin(), others.end(), worse, is_better), worse);
}

void FieldTuple::erase(const FieldPattern& pattern, const FieldHit& hit)
{
    const std::uint64_t hash = hash_of(pattern.key);
    const Number number = find_node(hash, pattern);
    const auto worse = worse_.find(number);
    if (worse == worse_.end()) {
        index_.erase(hash, number, [this](Number n) { return node(n).hash; });
        node(number) = {};
        free_.push_back(number);
        return;
    }
    std::vector<FieldHit>& others = worse->second;
    auto gone = others.begin();
    if (hit.id == node(number).best.id)
        node(number).best = others.front();
    else
        gone = std::lower_bound(others.begin(), others.end(), hit, is_better);
    others.erase(gone);
    if (others.empty())
        worse_.erase(worse);
}

/// Bits that the frame does not have count as 0 here.
std::uint64_t FieldTuple::hash(const FieldValues& values) const
{
    KeyHash hash;
    std::size_t i = 0;
    for (const FieldPart& part : parts_)
        hash.add(i++, part.bits_in(values).bits & part.mask);
    if (!nodes_.empty())
        index_.prefetch(hash.value());
    return hash.value();
}

const FieldHit* FieldTuple::find(const FieldValues& values, std::uint64_t hash) const
{
    const Number number = find_node(
        hash, [&](std::size_t i) { return parts_[i].bits_in(values).bits & parts_[i].mask; });
    if (number == kNone)
        return nullptr;
    const bool has_all = std::ranges::all_of(parts_, [&](const FieldPart& part) {
        return (part.mask & ~part.bits_in(values).present) == 0;
    });
    return has_all ? &node(number).best : nullptr;
}

/// The node whose key is `key_at(i)` in each part.
template <class KeyAt>
FieldTuple::Number FieldTuple::find_node(std::uint64_t hash, KeyAt key_at) const
{
    const std::size_t size = parts_.size();
    return index_.find(hash, [&](Number number) {
        const std::uint64_t* own = keys_.data() + (number - 1) * size;
        std::uint64_t differences = 0;
        for (std::size_t i = 0; i < size; ++i)
            differences |= own[i] ^ key_at(i);
        return differences == 0;
    });
}

FieldTuple::Number FieldTuple::find_node(std::uint64_t hash, const FieldPattern& pattern) const
{
    return find_node(hash, [&](std::size_t i) { return pattern.key[i]; });
}

FieldTuple::Number FieldTuple::add_node(std::uint64_t hash, const FieldPattern& pattern)
{
    if (free_.empty()) {
        nodes_.emplace_back();
        keys_.resize(nodes_.size() * parts_.size());
        free_.push_back(static_cast<Number>(nodes_.size()));
    }
    if (2 * nodes_.size() > index_.size())
        grow();
    const Number number = free_.back();
    free_.pop_back();
    node(number).hash = hash;
    std::copy(pattern.key.begin(), pattern.key.end(),
              keys_.begin() + static_cast<std::ptrdiff_t>((number - 1) * parts_.size()));
    index_.insert(hash, number);
    return number;
}

void FieldTuple::grow()
{
    index_.reset(std::max(kFirstSize, 2 * index_.size()));
    for (Number number = 1; number <= nodes_.size(); ++number) {
        if (node(number).best.entry != nullptr)
            index_.insert(node(number).hash, number);
    }
}

} // namespace vexosim
