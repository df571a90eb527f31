/// @file
/// Layer-3 entries by address or by network.
#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

#include "sim/chip/hash_index.h"
#include "sim/chip/l3_types.h"

namespace vexosim {

/// Entries by key, found without a walk. An entry keeps its number while it is there. What the
/// entry's next hop names is the caller's to check. Memory is taken with the first entry.
template <class Key, class Entry>
class IpTable {
public:
    /// From 1 on.
    using Number = std::uint16_t;
    struct Item {
        Key key;
        Entry entry;
    };

    /// At most 32,767.
    explicit IpTable(std::size_t capacity) : capacity_(capacity) {}

    /// EXISTS, unless it is to be replaced; FULL.
    int add(const Key& key, const Entry& entry, bool replace);
    /// NOT_FOUND.
    int erase(const Key& key);

    /// 0 when absent.
    Number number_of(const Key& key) const;
    /// Valid until the table changes.
    const Item& item(Number number) const { return items_[number - 1u]; }
    /// Notes in an item of this table that a frame has found it.
    void mark_hit(const Item& item)
    {
        if (!item.entry.hit)
            items_[static_cast<std::size_t>(&item - items_.data())].entry.hit = true;
    }
    /// Null when absent; valid until the table changes.
    const Entry* find(const Key& key) const;
    Entry* find(const Key& key) { return const_cast<Entry*>(std::as_const(*this).find(key)); }
    std::size_t size() const { return items_.size() - free_.size(); }
    /// All keys, IPv4 first, rising.
    std::vector<Key> keys() const;
    /// The keys of the entries that `which` picks, in no order.
    std::vector<Key> keys_if(const std::function<bool(const Key&, const Entry&)>& which) const;

    bool operator==(const IpTable& other) const;
    void digest(Digest& d) const;

private:
    std::size_t capacity_;
    HashIndex<Number> index_;
    std::vector<Item> items_; // by number
    std::vector<Number> free_;
};

} // namespace vexosim
