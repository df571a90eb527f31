#include "sim/chip/vlan_table.h"

#include <algorithm>

#include <bcm/error.h>

namespace vexosim {

void Vlan::digest(Digest& d) const
{
    if (!exists)
        return d.add(false);
    d.add(members);
    d.add(untagged);
    d.add(stg);
}

VlanTable::VlanTable()
{
    create(kDefaultVlan);
    add_ports(kDefaultVlan, PortSet::all(), PortSet::front());
}

int VlanTable::check(int vid) const
{
    if (!is_vlan_id(vid))
        return BCM_E_PARAM;
    return (*this)[vid].exists ? BCM_E_NONE : BCM_E_NOT_FOUND;
}

int VlanTable::create(int vid)
{
    if (!is_vlan_id(vid))
        return BCM_E_PARAM;
    Vlan& vlan = vlans_[static_cast<std::size_t>(vid)];
    if (vlan.exists)
        return BCM_E_EXISTS;
    vlan = Vlan{};
    vlan.exists = true;
    return BCM_E_NONE;
}

int VlanTable::destroy(int vid)
{
    if (int rc = check(vid); rc != BCM_E_NONE)
        return rc;
    if (vid == kDefaultVlan)
        return BCM_E_BADID;
    vlans_[static_cast<std::size_t>(vid)] = Vlan{};
    return BCM_E_NONE;
}

int VlanTable::add_ports(int vid, PortSet ports, PortSet untagged)
{
    if (int rc = check(vid); rc != BCM_E_NONE)
        return rc;
    if (!PortSet::all().contains(ports | untagged))
        return BCM_E_PORT;
    Vlan& vlan = vlans_[static_cast<std::size_t>(vid)];
    vlan.members |= ports;
    vlan.untagged |= untagged & ports;
    return BCM_E_NONE;
}

int VlanTable::remove_ports(int vid, PortSet ports)
{
    if (int rc = check(vid); rc != BCM_E_NONE)
        return rc;
    if (!PortSet::all().contains(ports))
        return BCM_E_PORT;
    Vlan& vlan = vlans_[static_cast<std::size_t>(vid)];
    vlan.members -= ports;
    vlan.untagged -= ports;
    return BCM_E_NONE;
}

int VlanTable::set_group(int vid, int group)
{
    if (int rc = check(vid); rc != BCM_E_NONE)
        return rc;
    if (group < 1 || group > 255)
        return BCM_E_PARAM;
    vlans_[static_cast<std::size_t>(vid)].stg = static_cast<std::uint8_t>(group);
    return BCM_E_NONE;
}

int VlanTable::get_ports(int vid, PortSet& members, PortSet& untagged) const
{
    if (int rc = check(vid); rc != BCM_E_NONE)
        return rc;
    members = (*this)[vid].members;
    untagged = (*this)[vid].untagged;
    return BCM_E_NONE;
}

int VlanTable::count() const
{
    return static_cast<int>(std::ranges::count_if(vlans_, [](const Vlan& v) { return v.exists; }));
}

} // namespace vexosim
