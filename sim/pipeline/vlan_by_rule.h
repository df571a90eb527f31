/// @file
/// The VLAN that a rule gives to a frame whose tag names none.
#pragma once

#include <string>

#include "sim/chip/chip.h"
#include "vexosim/frame.h"

namespace vexosim {

/// The rule that a frame meets, if any: at most one of the pointers is set. They are into the
/// chip's rules.
struct VlanByRule {
    const VlanAssignment* mac = nullptr;
    VlanRules::SubnetRules::const_pointer subnet = nullptr;
    const ProtocolVlan* protocol = nullptr;

    bool found() const { return mac != nullptr || subnet != nullptr || protocol != nullptr; }
    int vid() const
    {
        return mac != nullptr ? mac->vid : subnet != nullptr ? subnet->second.vid : protocol->vid;
    }
    /// A protocol has none.
    bool has_priority() const { return protocol == nullptr; }
    int priority() const { return mac != nullptr ? mac->priority : subnet->second.priority; }
};

/// The first of the rules that apply: by source address, by the longest source subnet, by protocol.
/// `frame` has at least 14 bytes, 18 with a tag, and no VLAN in its tag.
VlanByRule vlan_by_rule(const VlanRules& rules, int port, FrameView frame);
/// How a trace tells of it: "by its source address".
std::string rule_text(const VlanByRule& rule, FrameView frame);

/// The VLAN of such a frame at a port: a rule's, else the port's own.
inline int untagged_vid(const Chip& chip, int port, FrameView frame)
{
    if (chip.vlan_rules.ports().test(port)) [[unlikely]] {
        if (const VlanByRule rule = vlan_by_rule(chip.vlan_rules, port, frame); rule.found())
            return rule.vid();
    }
    return chip.ports[port].pvid;
}

} // namespace vexosim
