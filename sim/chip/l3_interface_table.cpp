#include "sim/chip/l3_interface_table.h"

#include <bcmx/l3.h>

#include <algorithm>

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

int L3InterfaceTable::destroy(unsigned id)
{
    const L3Interface* interface = find(id);
    if (interface == nullptr)
        return BCM_E_NOT_FOUND;
    ids_.erase(mac_key(interface->mac, interface->vid));
    interfaces_[id].reset();
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
    const auto id = ids_.find(mac_key(mac, vid));
    return id != ids_.end() ? std::optional(id->second) : std::nullopt;
}

void L3InterfaceTable::store(unsigned id, const L3Interface& interface)
{
    destroy(id);
    interfaces_[id] = interface;
    ids_[mac_key(interface.mac, interface.vid)] = id;
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
