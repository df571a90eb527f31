/// @file
/// Layer-3 interfaces: a router MAC address in a VLAN.
#pragma once

#include <optional>
#include <vector>

#include "sim/chip/digest.h"
#include "sim/chip/mac_table.h"

namespace vexosim {

struct L3Interface {
    MacAddress mac = 0;
    int vid = 0;
    std::uint32_t flags = 0; ///< BCM_L3_ADD_TO_ARL or none

    bool operator==(const L3Interface&) const = default;
    void digest(Digest& d) const
    {
        d.add(mac);
        d.add(vid);
        d.add(flags);
    }
};

/// A pair of MAC address and VLAN has one interface. Ids outside the table are NOT_FOUND, except
/// where one is to be created: PARAM.
class L3InterfaceTable {
public:
    static constexpr std::size_t kCapacity = 512;

    explicit L3InterfaceTable(std::size_t capacity = kCapacity);

    /// Under the lowest free id. EXISTS, with the id of the one that has the pair; FULL; PARAM: a
    /// multicast address, VLAN outside 1 to 4094.
    int create(const L3Interface& interface, unsigned& id);
    /// EXISTS: the id is taken and not to be replaced, or another id has the pair, which is then
    /// stored in `id`. PARAM as above.
    int create_id(const L3Interface& interface, unsigned& id, bool replace);
    int destroy(unsigned id);
    int destroy_all();

    std::size_t capacity() const { return interfaces_.size(); }
    bool empty() const { return count_ == 0; }

    /// Null when absent.
    const L3Interface* find(unsigned id) const;
    /// The id of a pair.
    std::optional<unsigned> find(MacAddress mac, int vid) const;

    bool operator==(const L3InterfaceTable& other) const
    {
        return interfaces_ == other.interfaces_;
    }
    void digest(Digest& d) const;

private:
    void store(unsigned id, const L3Interface& interface);
    void index(unsigned id);
    std::size_t slot_of(std::uint64_t key) const;

    std::vector<std::optional<L3Interface>> interfaces_;
    std::size_t count_ = 0;
    std::vector<std::uint16_t> index_; // ids by hash of their mac_key, one above; 0 is free
};

} // namespace vexosim
