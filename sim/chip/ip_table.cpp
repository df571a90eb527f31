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
    if (slots_.empty())
        slots_.resize(std::bit_ceil(2 * capacity_));
    if (free_.empty()) {
        items_.emplace_back();
        free_.push_back(static_cast<Number>(items_.size()));
    }
    const Number number = free_.back();
    free_.pop_back();
    items_[number - 1u] = {key, entry};
    const std::uint64_t hash = IpHash()(key);
    slots_[slot_of(key, hash)] = {number, tag(hash)};
    return BCM_E_NONE;
}

template <class Key, class Entry>
int IpTable<Key, Entry>::erase(const Key& key)
{
    const Number gone = number_of(key);
    if (gone == 0)
        return BCM_E_NOT_FOUND;
    close_gap(slot_of(key, IpHash()(key)));
    free_.push_back(gone);
    return BCM_E_NONE;
}

template <class Key, class Entry>
typename IpTable<Key, Entry>::Number IpTable<Key, Entry>::number_of(const Key& key) const
{
    return slots_.empty() ? Number{0} : slots_[slot_of(key, IpHash()(key))].number;
}

template <class Key, class Entry>
const Entry* IpTable<Key, Entry>::find(const Key& key) const
{
    const Number number = number_of(key);
    return number != 0 ? &item(number).entry : nullptr;
}

template <class Key, class Entry>
std::size_t IpTable<Key, Entry>::slot_of(const Key& key, std::uint64_t hash) const
{
    for (std::size_t i = home(hash);; i = next(i)) {
        const Slot slot = slots_[i];
        if (slot.number == 0 || (slot.tag == tag(hash) && item(slot.number).key == key))
            return i;
    }
}

/// Moves up what was put behind the gap only because the gap was taken.
template <class Key, class Entry>
void IpTable<Key, Entry>::close_gap(std::size_t gap)
{
    const std::size_t mask = slots_.size() - 1;
    for (std::size_t i = next(gap); slots_[i].number != 0; i = next(i)) {
        const std::size_t reach = (i - home(IpHash()(item(slots_[i].number).key))) & mask;
        if (reach >= ((i - gap) & mask)) {
            slots_[gap] = slots_[i];
            gap = i;
        }
    }
    slots_[gap] = {};
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
    for (const Slot& slot : slots_) {
        if (slot.number != 0 && which(item(slot.number).key, item(slot.number).entry))
            keys.push_back(item(slot.number).key);
    }
    return keys;
}

template <class Key, class Entry>
bool IpTable<Key, Entry>::operator==(const IpTable& other) const
{
    return capacity_ == other.capacity_ && size() == other.size() &&
           std::ranges::all_of(slots_, [&](const Slot& slot) {
               if (slot.number == 0)
                   return true;
               const Item& mine = item(slot.number);
               const Entry* same = other.find(mine.key);
               return same != nullptr && *same == mine.entry;
           });
}

/// Does not depend on where entries are, which is history.
template <class Key, class Entry>
void IpTable<Key, Entry>::digest(Digest& d) const
{
    std::uint64_t sum = 0;
    for (const Slot& slot : slots_) {
        if (slot.number == 0)
            continue;
        Digest one;
        one.add(item(slot.number).key);
        one.add(item(slot.number).entry);
        sum += one.value();
    }
    d.add(size());
    d.add(sum);
}

template class IpTable<IpAddress, L3Host>;
template class IpTable<IpPrefix, L3Route>;

} // namespace vexosim
