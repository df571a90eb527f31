#include "sim/chip/ip_table.h"

#include <bcm/error.h>

#include <algorithm>
#include <bit>
#include <utility>

#include "sim/chip/l3_forwarding_table.h"

namespace vexosim {

template <class Key, class Entry>
int IpTable<Key, Entry>::add(const Key& key, const Entry& entry, bool replace)
{
    if (Entry* present = find(key)) {
        if (!replace)
            return BCM_E_EXISTS;
        *present = entry;
        return BCM_E_NONE;
    }
    if (size() >= capacity_)
        return BCM_E_FULL;
    if (index_.size() == 0)
        index_.reset(std::bit_ceil(2 * capacity_));
    if (free_.empty()) {
        items_.emplace_back();
        free_.push_back(static_cast<Number>(items_.size()));
    }
    const Number number = free_.back();
    free_.pop_back();
    items_[number - 1u] = {key, entry};
    index_.insert(IpHash()(key), number);
    return BCM_E_NONE;
}

template <class Key, class Entry>
int IpTable<Key, Entry>::erase(const Key& key)
{
    const Number gone = number_of(key);
    if (gone == 0)
        return BCM_E_NOT_FOUND;
    index_.erase(IpHash()(key), gone, [this](Number n) { return IpHash()(item(n).key); });
    free_.push_back(gone);
    return BCM_E_NONE;
}

template <class Key, class Entry>
typename IpTable<Key, Entry>::Number IpTable<Key, Entry>::number_of(const Key& key) const
{
    return index_.find(IpHash()(key), [&](Number number) { return item(number).key == key; });
}

template <class Key, class Entry>
const Entry* IpTable<Key, Entry>::find(const Key& key) const
{
    const Number number = number_of(key);
    return number != 0 ? &item(number).entry : nullptr;
}

template <class Key, class Entry>
std::vector<Key> IpTable<Key, Entry>::keys() const
{
    std::vector<Key> keys = keys_if([](const Key&, const Entry&) { return true; });
    std::sort(keys.begin(), keys.end());
    return keys;
}

template <class Key, class Entry>
std::vector<Key>
IpTable<Key, Entry>::keys_if(const std::function<bool(const Key&, const Entry&)>& which) const
{
    std::vector<Key> keys;
    index_.all_of([&](Number number) {
        if (which(item(number).key, item(number).entry))
            keys.push_back(item(number).key);
        return true;
    });
    return keys;
}

template <class Key, class Entry>
bool IpTable<Key, Entry>::operator==(const IpTable& other) const
{
    return capacity_ == other.capacity_ && size() == other.size() &&
           index_.all_of([&](Number number) {
               const Item& mine = item(number);
               const Entry* same = other.find(mine.key);
               return same != nullptr && *same == mine.entry;
           });
}

/// Does not depend on where entries are, which is history.
template <class Key, class Entry>
void IpTable<Key, Entry>::digest(Digest& d) const
{
    std::uint64_t sum = 0;
    index_.all_of([&](Number number) {
        Digest one;
        one.add(item(number).key);
        one.add(item(number).entry);
        sum += one.value();
        return true;
    });
    d.add(size());
    d.add(sum);
}

template class IpTable<IpAddress, L3Host>;
template class IpTable<IpPrefix, L3Route>;

} // namespace vexosim
