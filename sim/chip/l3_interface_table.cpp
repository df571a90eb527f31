#include "sim/chip/l3_interface_table.h"

#include <bcmx/l3.h>

#include <algorithm>
#include <bit>

#include "sim/chip/vlan_table.h"

namespace vexosim {

namespace {

bool is_valid(const L3Interface& interface)
{
    return !is_multicast(interface.mac) && is_vlan_id(interface.vid);
}

} // namespace

L3InterfaceTable::L3InterfaceTable(std::size_t capacity) : interfaces_(capacity) {}

int L3InterfaceTable::create(const L3Interface& interface, unsigned& id)
{
    if (!is_valid(interface))
        return BCM_E_PARAM;
    if (const auto present = find(interface.mac, interface.vid)) {
        id = *present;
        return BCM_E_EXISTS;
    }
    const auto free = std::find(interfaces_.begin(), interfaces_.end(), std::nullopt);
    if (free == interfaces_.end())
        return BCM_E_FULL;
    id = static_cast<unsigned>(free - interfaces_.begin());
    store(id, interface);
    return BCM_E_NONE;
}

int L3InterfaceTable::create_id(const L3Interface& interface, unsigned& id, bool replace)
{
    if (!is_valid(interface) || id >= interfaces_.size())
        return BCM_E_PARAM;
    const auto present = find(interface.mac, interface.vid);
    if (present && *present != id) {
        id = *present;
        return BCM_E_EXISTS;
    }
    if (find(id) != nullptr && !replace)
        return BCM_E_EXISTS;
    store(id, interface);
    return BCM_E_NONE;
}

/// Interfaces go rarely: the index is made anew.
int L3InterfaceTable::destroy(unsigned id)
{
    if (find(id) == nullptr)
        return BCM_E_NOT_FOUND;
    interfaces_[id].reset();
    --count_;
    std::fill(index_.begin(), index_.end(), std::uint16_t{0});
    for (unsigned other = 0; other < interfaces_.size(); ++other) {
        if (interfaces_[other])
            index(other);
    }
    return BCM_E_NONE;
}

int L3InterfaceTable::destroy_all()
{
    *this = L3InterfaceTable(interfaces_.size());
    return BCM_E_NONE;
}

const L3Interface* L3InterfaceTable::find(unsigned id) const
{
    return id < interfaces_.size() && interfaces_[id] ? &*interfaces_[id] : nullptr;
}

std::optional<unsigned> L3InterfaceTable::find(MacAddress mac, int vid) const
{
    if (empty())
        return std::nullopt;
    const unsigned above = index_[slot_of(mac_key(mac, vid))];
    return above != 0 ? std::optional(above - 1) : std::nullopt;
}

void L3InterfaceTable::store(unsigned id, const L3Interface& interface)
{
    destroy(id);
    interfaces_[id] = interface;
    ++count_;
    if (index_.empty())
        index_.resize(std::bit_ceil(2 * interfaces_.size()));
    index(id);
}

void L3InterfaceTable::index(unsigned id)
{
    const L3Interface& interface = *interfaces_[id];
    index_[slot_of(mac_key(interface.mac, interface.vid))] = static_cast<std::uint16_t>(id + 1);
}

/// The slot that has the key, else the free one where it would be.
std::size_t L3InterfaceTable::slot_of(std::uint64_t key) const
{
    const std::size_t mask = index_.size() - 1;
    for (std::size_t i = static_cast<std::size_t>(Digest::mix(key)) & mask;; i = (i + 1) & mask) {
        const std::size_t above = index_[i];
        if (above == 0 || mac_key(interfaces_[above - 1]->mac, interfaces_[above - 1]->vid) == key)
            return i;
    }
}

void L3InterfaceTable::digest(Digest& d) const
{
    for (const std::optional<L3Interface>& interface : interfaces_) {
        d.add(interface.has_value());
        if (interface)
            d.add(*interface);
    }
}

} // namespace vexosim
