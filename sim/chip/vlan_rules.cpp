#include "sim/chip/vlan_rules.h"

#include <algorithm>
#include <bit>

#include <bcm/error.h>
#include <bcm/port.h>

#include "sim/chip/vlan_table.h"

namespace vexosim {

namespace {

bool is_valid(VlanAssignment vlan)
{
    return is_vlan_id(vlan.vid) && vlan.priority >= 0 && vlan.priority <= 7;
}

bool is_frame_type(int type)
{
    return type == BCM_PORT_FRAMETYPE_ETHER2 || type == BCM_PORT_FRAMETYPE_8023 ||
           type == BCM_PORT_FRAMETYPE_SNAP;
}

template <class Map>
int put(Map& rules, std::size_t capacity, const typename Map::key_type& key, VlanAssignment vlan)
{
    if (rules.size() == capacity && !rules.contains(key))
        return BCM_E_FULL;
    rules[key] = vlan;
    return BCM_E_NONE;
}

void clear_host_bits(VlanSubnet& subnet)
{
    const int first = subnet.ip6 ? subnet.prefix : 96 + subnet.prefix;
    auto byte = static_cast<std::size_t>(first / 8);
    if (first % 8 != 0) {
        subnet.address[byte] =
            static_cast<std::uint8_t>(subnet.address[byte] & 0xff00 >> first % 8);
        ++byte;
    }
    std::fill(subnet.address.begin() + static_cast<std::ptrdiff_t>(byte), subnet.address.end(),
              std::uint8_t{0});
}

auto same_frames(int frame_type, std::uint16_t ethertype)
{
    return [=](const ProtocolVlan& rule) {
        return rule.frame_type == frame_type && rule.ethertype == ethertype;
    };
}

} // namespace

int VlanRules::add_mac(MacAddress mac, VlanAssignment vlan)
{
    if (is_multicast(mac) || !is_valid(vlan))
        return BCM_E_PARAM;
    const int rc = put(by_mac_, kMacRules, mac, vlan);
    if (rc == BCM_E_NONE)
        ports_ = PortSet::all();
    return rc;
}

int VlanRules::add_subnet(const VlanSubnet& subnet, VlanAssignment vlan)
{
    VlanSubnet network = subnet;
    clear_host_bits(network);
    const int rc = is_valid(vlan) ? put(by_subnet_, kSubnetRules, network, vlan) : BCM_E_PARAM;
    if (rc == BCM_E_NONE) {
        lengths(network.ip6).set(static_cast<std::size_t>(network.prefix));
        ports_ = PortSet::all();
    }
    return rc;
}

int VlanRules::add_ip4(std::uint32_t address, std::uint32_t mask, VlanAssignment vlan)
{
    const int prefix = std::countl_one(mask);
    if (std::popcount(mask) != prefix)
        return BCM_E_PARAM;
    VlanSubnet subnet;
    subnet.prefix = prefix;
    for (std::size_t i = 16; i-- > 12; address >>= 8)
        subnet.address[i] = static_cast<std::uint8_t>(address);
    return add_subnet(subnet, vlan);
}

int VlanRules::add_ip6(const Ip6Address& address, int prefix, VlanAssignment vlan)
{
    if (prefix < 0 || prefix > 128)
        return BCM_E_PARAM;
    return add_subnet({true, address, prefix}, vlan);
}

int VlanRules::add_protocol(int port, const ProtocolVlan& rule)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (!is_frame_type(rule.frame_type) || !is_vlan_id(rule.vid))
        return BCM_E_PARAM;
    auto& rules = by_protocol_[static_cast<std::size_t>(port)];
    const auto same = std::ranges::find_if(rules, same_frames(rule.frame_type, rule.ethertype));
    if (same == rules.end() && rules.size() == kProtocolRules)
        return BCM_E_FULL;
    if (same == rules.end())
        rules.push_back(rule);
    else
        *same = rule;
    note_protocols(port);
    return BCM_E_NONE;
}

/// Rules by address and subnet are never taken away, and apply at all ports.
void VlanRules::note_protocols(int port)
{
    if (by_mac_.empty() && by_subnet_.empty())
        ports_.assign(port, !by_protocol_[static_cast<std::size_t>(port)].empty());
}

int VlanRules::delete_protocol(int port, int frame_type, std::uint16_t ethertype)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    auto& rules = by_protocol_[static_cast<std::size_t>(port)];
    if (std::erase_if(rules, same_frames(frame_type, ethertype)) == 0)
        return BCM_E_NOT_FOUND;
    note_protocols(port);
    return BCM_E_NONE;
}

int VlanRules::delete_all_protocols(int port)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    by_protocol_[static_cast<std::size_t>(port)].clear();
    note_protocols(port);
    return BCM_E_NONE;
}

const VlanAssignment* VlanRules::find_mac(MacAddress mac) const
{
    const auto found = by_mac_.find(mac);
    return found == by_mac_.end() ? nullptr : &found->second;
}

VlanRules::SubnetRules::const_pointer VlanRules::find_subnet(bool ip6,
                                                             const std::uint8_t* address) const
{
    const std::size_t bytes = ip6 ? 16 : 4;
    VlanSubnet subnet{ip6, {}, ip6 ? 128 : 32};
    std::copy_n(address, bytes, subnet.address.end() - static_cast<std::ptrdiff_t>(bytes));
    for (; subnet.prefix >= 0; --subnet.prefix) {
        if (!lengths(ip6).test(static_cast<std::size_t>(subnet.prefix)))
            continue;
        clear_host_bits(subnet);
        if (const auto found = by_subnet_.find(subnet); found != by_subnet_.end())
            return &*found;
    }
    return nullptr;
}

const ProtocolVlan* VlanRules::find_protocol(int port, int frame_type,
                                             std::uint16_t ethertype) const
{
    const auto& rules = by_protocol_[static_cast<std::size_t>(port)];
    const auto found = std::ranges::find_if(rules, same_frames(frame_type, ethertype));
    return found == rules.end() ? nullptr : &*found;
}

void VlanRules::digest(Digest& d) const
{
    const auto add_vlan = [&](VlanAssignment vlan) {
        d.add(vlan.vid);
        d.add(vlan.priority);
    };
    for (const auto& [mac, vlan] : by_mac_) {
        d.add(mac);
        add_vlan(vlan);
    }
    for (const auto& [subnet, vlan] : by_subnet_) {
        d.add(subnet.ip6);
        d.add(subnet.address);
        d.add(subnet.prefix);
        add_vlan(vlan);
    }
    for (const auto& rules : by_protocol_) {
        d.add(rules.size());
        for (const ProtocolVlan& rule : rules) {
            d.add(rule.frame_type);
            d.add(rule.ethertype);
            d.add(rule.vid);
        }
    }
}

} // namespace vexosim
