#include "sim/chip/l3_forwarding_table.h"

#include <bcm/error.h>

#include <algorithm>

namespace vexosim {

template <class Key, class Entry>
int L3Table<Key, Entry>::add(const Key& key, const Entry& entry, bool replace)
{
    if (Entry* present = find(key)) {
        if (!replace)
            return BCM_E_EXISTS;
        *present = entry;
        return BCM_E_NONE;
    }
    if (entries_.size() >= capacity_)
        return BCM_E_FULL;
    entries_.emplace(key, entry);
    return BCM_E_NONE;
}

template <class Key, class Entry>
int L3Table<Key, Entry>::erase(const Key& key)
{
    return entries_.erase(key) != 0 ? BCM_E_NONE : BCM_E_NOT_FOUND;
}

template <class Key, class Entry>
int L3Table<Key, Entry>::erase_if(const std::function<bool(const Key&, const Entry&)>& which)
{
    std::erase_if(entries_, [&](const auto& item) { return which(item.first, item.second); });
    return BCM_E_NONE;
}

template <class Key, class Entry>
const Entry* L3Table<Key, Entry>::find(const Key& key) const
{
    const auto entry = entries_.find(key);
    return entry != entries_.end() ? &entry->second : nullptr;
}

template <class Key, class Entry>
Entry* L3Table<Key, Entry>::find(const Key& key)
{
    const auto entry = entries_.find(key);
    return entry != entries_.end() ? &entry->second : nullptr;
}

template <class Key, class Entry>
std::vector<Key> L3Table<Key, Entry>::keys() const
{
    std::vector<Key> keys;
    keys.reserve(entries_.size());
    for (const auto& [key, entry] : entries_)
        keys.push_back(key);
    std::sort(keys.begin(), keys.end());
    return keys;
}

template <class Key, class Entry>
void L3Table<Key, Entry>::digest(Digest& d) const
{
    d.add(entries_.size());
    for (const Key& key : keys()) {
        d.add(key);
        d.add(*find(key));
    }
}

template class L3Table<IpAddress, L3Host>;
template class L3Table<IpPrefix, L3Route>;

int L3HostTable::set_usable(const IpAddress& address, bool usable)
{
    L3Host* host = find(address);
    if (host == nullptr)
        return BCM_E_NOT_FOUND;
    host->usable = usable;
    return BCM_E_NONE;
}

} // namespace vexosim
