/// @file
/// VLANs of untagged frames by their source MAC, source subnet, or protocol.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <map>
#include <vector>

#include "sim/chip/digest.h"
#include "sim/chip/mac_table.h"
#include "sim/chip/port_set.h"

namespace vexosim {

using Ip6Address = std::array<std::uint8_t, 16>;

struct VlanAssignment {
    int vid = 0;
    int priority = 0;

    bool operator==(const VlanAssignment&) const = default;
};

/// A source subnet. IPv4 addresses are in the last four bytes.
struct VlanSubnet {
    bool ip6 = false;
    Ip6Address address{};
    int prefix = 0; ///< bits; of an IPv4 address, 0 to 32

    auto operator<=>(const VlanSubnet&) const = default; // NOLINT(modernize-use-nullptr): not one
};

struct ProtocolVlan {
    int frame_type = 0; ///< BCM_PORT_FRAMETYPE_*
    std::uint16_t ethertype = 0;
    int vid = 0;

    bool operator==(const ProtocolVlan&) const = default;
};

/// Rules by what they match; adding one that matches the same takes its place. Calls answer PARAM
/// for a VLAN or priority that is none, and change nothing on failure.
class VlanRules {
public:
    static constexpr std::size_t kMacRules = 1024;
    static constexpr std::size_t kSubnetRules = 256;
    static constexpr std::size_t kProtocolRules = 16; ///< of each port

    /// FULL; PARAM: also a group address.
    int add_mac(MacAddress mac, VlanAssignment vlan);
    /// FULL; PARAM: also a mask with holes.
    int add_ip4(std::uint32_t address, std::uint32_t mask, VlanAssignment vlan);
    /// FULL; PARAM: also a prefix longer than 128 bits.
    int add_ip6(const Ip6Address& address, int prefix, VlanAssignment vlan);

    /// FULL; PORT; PARAM: also an unknown frame type.
    int add_protocol(int port, const ProtocolVlan& rule);
    /// NOT_FOUND; PORT.
    int delete_protocol(int port, int frame_type, std::uint16_t ethertype);
    /// PORT.
    int delete_all_protocols(int port);

    using SubnetRules = std::map<VlanSubnet, VlanAssignment>;

    /// Ports at which some rule may apply.
    PortSet ports() const { return ports_; }
    // Each null when no rule applies.
    const VlanAssignment* find_mac(MacAddress mac) const;
    /// Of the longest subnet that has the address: 4 bytes, 16 of an IPv6 one.
    SubnetRules::const_pointer find_subnet(bool ip6, const std::uint8_t* address) const;
    const ProtocolVlan* find_protocol(int port, int frame_type, std::uint16_t ethertype) const;

    const std::map<MacAddress, VlanAssignment>& by_mac() const { return by_mac_; }
    const SubnetRules& by_subnet() const { return by_subnet_; }
    const std::vector<ProtocolVlan>& by_protocol(int port) const
    {
        return by_protocol_[static_cast<std::size_t>(port)];
    }

    bool operator==(const VlanRules&) const = default;
    void digest(Digest& d) const;

private:
    /// Prefix lengths of which there are subnets.
    using Lengths = std::bitset<129>;

    int add_subnet(const VlanSubnet& subnet, VlanAssignment vlan);
    Lengths& lengths(bool ip6) { return lengths_[ip6 ? 1 : 0]; }
    const Lengths& lengths(bool ip6) const { return lengths_[ip6 ? 1 : 0]; }
    void note_protocols(int port);

    std::map<MacAddress, VlanAssignment> by_mac_;
    SubnetRules by_subnet_;
    std::array<Lengths, 2> lengths_;
    std::array<std::vector<ProtocolVlan>, kPortCount> by_protocol_;
    PortSet ports_;
};

} // namespace vexosim
