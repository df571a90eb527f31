/// @file
/// Layer-3 hosts and routes: a next hop by address, or by network.
#pragma once

#include <functional>
#include <unordered_map>
#include <vector>

#include "sim/chip/l3_types.h"

namespace vexosim {

struct L3Host {
    NextHop next_hop;
    bool usable = true;
    bool hit = false; ///< a frame has been routed by it

    bool operator==(const L3Host&) const = default;
    void digest(Digest& d) const
    {
        d.add(next_hop);
        d.add(usable);
        d.add(hit);
    }
};

struct L3Route {
    NextHop next_hop;
    bool hit = false; ///< a frame has been routed by it

    bool operator==(const L3Route&) const = default;
    void digest(Digest& d) const
    {
        d.add(next_hop);
        d.add(hit);
    }
};

/// Entries by address or by network, found without a walk. What the next hop names is the caller's
/// to check.
template <class Key, class Entry>
class L3Table {
public:
    explicit L3Table(std::size_t capacity) : capacity_(capacity) {}

    /// EXISTS, unless it is to be replaced; FULL.
    int add(const Key& key, const Entry& entry, bool replace);
    /// NOT_FOUND.
    int erase(const Key& key);
    /// Removes the entries that `which` picks; none is no error.
    int erase_if(const std::function<bool(const Key&, const Entry&)>& which);

    /// Null when absent; valid until the table changes.
    const Entry* find(const Key& key) const;
    Entry* find(const Key& key);
    std::size_t size() const { return entries_.size(); }
    /// All keys, IPv4 first, rising.
    std::vector<Key> keys() const;

    bool operator==(const L3Table&) const = default;
    void digest(Digest& d) const;

private:
    std::size_t capacity_;
    std::unordered_map<Key, Entry, IpHash> entries_;
};

extern template class L3Table<IpAddress, L3Host>;
extern template class L3Table<IpPrefix, L3Route>;

class L3HostTable : public L3Table<IpAddress, L3Host> {
public:
    static constexpr std::size_t kCapacity = 8192;
    explicit L3HostTable(std::size_t capacity = kCapacity) : L3Table(capacity) {}

    /// NOT_FOUND.
    int set_usable(const IpAddress& address, bool usable);

    bool operator==(const L3HostTable&) const = default;
};

class L3RouteTable : public L3Table<IpPrefix, L3Route> {
public:
    static constexpr std::size_t kCapacity = 16384;
    explicit L3RouteTable(std::size_t capacity = kCapacity) : L3Table(capacity) {}

    bool operator==(const L3RouteTable&) const = default;
};

} // namespace vexosim
