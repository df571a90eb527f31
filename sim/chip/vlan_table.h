/// @file
/// VLANs and their members.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

inline constexpr int kVlanIds = 4096;
inline constexpr int kDefaultVlan = 1;

constexpr bool is_vlan_id(int vid)
{
    return vid >= 1 && vid <= 4094;
}

struct Vlan {
    PortSet members;
    PortSet untagged; ///< members that send the VLAN's frames without a tag
    std::uint8_t stg = 1;
    bool exists = false;

    bool operator==(const Vlan&) const = default;
    void digest(Digest& d) const;
};

/// VLAN 1 exists from the start with every port, the front ports untagged. Every call answers
/// PARAM for an id outside 1 to 4094.
class VlanTable {
public:
    VlanTable();

    /// EXISTS.
    int create(int vid);
    /// NOT_FOUND; BADID for VLAN 1.
    int destroy(int vid);
    /// Members stay what they are, except that a tagged one becomes untagged when `untagged` has
    /// it. Ports of `untagged` that are not in `ports` are left out. NOT_FOUND; PORT.
    int add_ports(int vid, PortSet ports, PortSet untagged);
    /// Ports that are no members are no error. NOT_FOUND; PORT.
    int remove_ports(int vid, PortSet ports);
    /// Puts the VLAN into a spanning-tree group; a new one is in group 1. NOT_FOUND; PARAM: group
    /// outside 1 to 255.
    int set_group(int vid, int group);
    /// NOT_FOUND; nothing is stored then.
    int get_ports(int vid, PortSet& members, PortSet& untagged) const;

    /// `vid` is 0 to 4095.
    const Vlan& operator[](int vid) const { return vlans_[static_cast<std::size_t>(vid)]; }
    bool exists(int vid) const { return is_vlan_id(vid) && (*this)[vid].exists; }
    int count() const;

    bool operator==(const VlanTable&) const = default;
    void digest(Digest& d) const { d.add(vlans_); }

private:
    int check(int vid) const;

    std::array<Vlan, kVlanIds> vlans_;
};

} // namespace vexosim
