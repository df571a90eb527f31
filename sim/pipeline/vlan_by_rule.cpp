// Which rule gives a frame its VLAN: what of the frame the rules are compared with.
#include "sim/pipeline/vlan_by_rule.h"

#include <algorithm>

#include <bcm/port.h>

#include "sim/chip/text.h"
#include "sim/pipeline/packet.h"

namespace vexosim {

namespace {

constexpr std::uint16_t kFirstType = 0x0600; ///< smaller values are lengths
constexpr std::size_t kIp4Header = 20, kIp6Header = 40;
constexpr std::size_t kIp4Source = 12, kIp6Source = 8;

std::uint16_t load16(const std::uint8_t* bytes)
{
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

/// From the type on, behind a tag.
FrameView from_type(FrameView frame)
{
    const bool tagged = load16(frame.data() + 12) == kTagType;
    return frame.subspan(tagged ? 12 + kTagBytes : 12);
}

struct Protocol {
    int frame_type = 0; ///< BCM_PORT_FRAMETYPE_*; 0 when the frame ends too early to tell
    std::uint16_t value = 0;
};

/// An 802.3 frame's value is its DSAP and SSAP; SNAP is what RFC 1042 makes of 0xaaaa.
Protocol protocol_of(FrameView frame)
{
    static constexpr std::uint8_t kSnap[] = {0xaa, 0xaa, 0x03, 0, 0, 0};
    const FrameView bytes = from_type(frame);
    const std::uint16_t type = load16(bytes.data());
    if (type >= kFirstType)
        return {BCM_PORT_FRAMETYPE_ETHER2, type};
    const FrameView llc = bytes.subspan(2);
    if (llc.size() >= sizeof kSnap + 2 &&
        std::equal(std::begin(kSnap), std::end(kSnap), llc.begin()))
        return {BCM_PORT_FRAMETYPE_SNAP, load16(llc.data() + sizeof kSnap)};
    if (llc.size() < 2)
        return {};
    return {BCM_PORT_FRAMETYPE_8023, load16(llc.data())};
}

VlanRules::SubnetRules::const_pointer subnet_of(const VlanRules& rules, FrameView frame)
{
    const FrameView bytes = from_type(frame);
    const FrameView packet = bytes.subspan(2);
    switch (load16(bytes.data())) {
    case kIp4Type:
        return packet.size() < kIp4Header ? nullptr
                                          : rules.find_subnet(false, packet.data() + kIp4Source);
    case kIp6Type:
        return packet.size() < kIp6Header ? nullptr
                                          : rules.find_subnet(true, packet.data() + kIp6Source);
    default:
        return nullptr;
    }
}

std::string protocol_text(const ProtocolVlan& rule)
{
    const char* kind = rule.frame_type == BCM_PORT_FRAMETYPE_ETHER2 ? "Ethernet II"
                       : rule.frame_type == BCM_PORT_FRAMETYPE_SNAP ? "SNAP"
                                                                    : "802.3";
    return std::string("by its protocol, ") + kind + " 0x" + hex_text(rule.ethertype, 4);
}

} // namespace

VlanByRule vlan_by_rule(const VlanRules& rules, int port, FrameView frame)
{
    VlanByRule rule;
    rule.mac = rules.find_mac(load_mac(frame.data() + 6));
    if (rule.mac == nullptr)
        rule.subnet = subnet_of(rules, frame);
    if (rule.found())
        return rule;
    const Protocol protocol = protocol_of(frame);
    rule.protocol = rules.find_protocol(port, protocol.frame_type, protocol.value);
    return rule;
}

std::string rule_text(const VlanByRule& rule, FrameView frame)
{
    if (rule.mac != nullptr)
        return "by its source address " + mac_text(load_mac(frame.data() + 6));
    if (rule.subnet == nullptr)
        return protocol_text(*rule.protocol);
    const VlanSubnet& subnet = rule.subnet->first;
    const std::uint8_t* address = subnet.address.data();
    return "by its source subnet " + (subnet.ip6 ? ip6_text(address) : ip4_text(address + 12)) +
           "/" + std::to_string(subnet.prefix);
}

} // namespace vexosim
