/// @file
/// Layer-3 hosts and routes: a next hop by address, or by network.
#pragma once

#include "sim/chip/ip_table.h"
#include "sim/chip/lpm_trie.h"

namespace vexosim {

struct L3Host {
    NextHop next_hop;
    bool usable = true;
    bool hit = false; ///< a frame has found it

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
    bool hit = false; ///< a frame has found it

    bool operator==(const L3Route&) const = default;
    void digest(Digest& d) const
    {
        d.add(next_hop);
        d.add(hit);
    }
};

extern template class IpTable<IpAddress, L3Host>;
extern template class IpTable<IpPrefix, L3Route>;

class L3HostTable : public IpTable<IpAddress, L3Host> {
public:
    static constexpr std::size_t kCapacity = 8192;
    explicit L3HostTable(std::size_t capacity = kCapacity) : IpTable(capacity) {}

    /// Removes the entries that `which` picks; none is no error.
    int erase_if(const std::function<bool(const IpAddress&, const L3Host&)>& which);
    /// NOT_FOUND.
    int set_usable(const IpAddress& address, bool usable);

    bool operator==(const L3HostTable&) const = default;
};

/// The tries follow the entries and are no part of the value.
class L3RouteTable {
public:
    static constexpr std::size_t kCapacity = 16384;
    using Number = IpTable<IpPrefix, L3Route>::Number;
    using Item = IpTable<IpPrefix, L3Route>::Item;

    explicit L3RouteTable(std::size_t capacity = kCapacity) : table_(capacity) {}

    // As those of IpTable.
    int add(const IpPrefix& prefix, const L3Route& route, bool replace);
    int erase(const IpPrefix& prefix);
    /// Removes the entries that `which` picks; none is no error.
    int erase_if(const std::function<bool(const IpPrefix&, const L3Route&)>& which);
    const L3Route* find(const IpPrefix& prefix) const { return table_.find(prefix); }
    const Item& item(Number number) const { return table_.item(number); }
    void mark_hit(const Item& item) { table_.mark_hit(item); }
    std::size_t size() const { return table_.size(); }
    std::vector<IpPrefix> keys() const { return table_.keys(); }

    /// The route of the longest prefix that contains the address; 0 when there is none.
    Number longest(const IpAddress& address) const
    {
        return tries_[address.ip6].find(IpBits(address));
    }

    bool operator==(const L3RouteTable& other) const { return table_ == other.table_; }
    void digest(Digest& d) const { table_.digest(d); }

private:
    IpTable<IpPrefix, L3Route> table_;
    std::array<LpmTrie, 2> tries_; // of IPv4, of IPv6
};

} // namespace vexosim
