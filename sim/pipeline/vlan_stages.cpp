// Which VLAN a frame is in, and whether it may enter there.
#include <bcm/rx.h>

#include "sim/pipeline/recorder.h"
#include "sim/pipeline/stages.h"
#include "sim/pipeline/vlan_by_rule.h"

namespace vexosim {

namespace {

constexpr int kReservedVlan = 4095;

/// Group of the frame's VLAN; of VLANs that do not exist, the default group.
int group_of(const Packet& p)
{
    return p.vlan->exists ? p.vlan->stg : StgTable::kDefaultGroup;
}

StpState stp_state(const Chip& chip, const Packet& p)
{
    int group = group_of(p);
    if (chip.stgs.forwarding(group).test(p.in_port)) [[likely]]
        return StpState::kForward;
    return chip.stgs.state(group, p.in_port);
}

/// Spanning tree stops the frame, unless the field processor may yet take it past that.
Step refuse(const Chip& chip, Packet& p, DropReason reason)
{
    if (chip.field.search().empty()) [[likely]]
        return drop(reason);
    p.stp_refusal = reason;
    return next();
}

std::string vlan_origin(const Chip& chip, const Packet& p)
{
    if (p.tagged && (p.tag & 0xfff) != 0)
        return "by its tag";
    const VlanByRule rule = vlan_by_rule(chip.vlan_rules, p.in_port, p.frame);
    return rule.found() ? rule_text(rule, p.frame) : "the port's own";
}

/// A tag's priority is kept, also when its frame gets its VLAN by a rule.
[[gnu::noinline]] void apply_rule(const Chip& chip, Packet& p)
{
    const VlanByRule rule = vlan_by_rule(chip.vlan_rules, p.in_port, p.frame);
    if (!rule.found())
        return;
    p.vid = rule.vid();
    if (!p.tagged && rule.has_priority())
        p.priority = rule.priority();
}

} // namespace

/// A tag for VLAN 0 has a priority and no VLAN: its frame is untagged with that priority.
Step stage::assign_vlan(const Chip& chip, Packet& p)
{
    const PortConfig& port = chip.ports[p.in_port];
    int tag_vid = p.tagged ? p.tag & 0xfff : 0;
    p.vid = tag_vid != 0 ? tag_vid : port.pvid;
    p.priority = p.tagged ? p.tag >> 13 : port.priority;
    if (tag_vid == 0 && chip.vlan_rules.ports().test(p.in_port)) [[unlikely]]
        apply_rule(chip, p);
    p.vlan = &chip.vlans[p.vid];
    explain(p, [&](const PortNames&) {
        return "VLAN " + std::to_string(p.vid) + ", " + vlan_origin(chip, p) + ", priority " +
               std::to_string(p.priority);
    });
    return next();
}

Step stage::bpdu(const Chip& chip, Packet& p)
{
    if (!p.bpdu) [[likely]]
        return next();
    if (stp_state(chip, p) == StpState::kDisable)
        return drop(DropReason::stp_disabled);
    p.copy_to_cpu(bcmRxReasonBpdu);
    explain(p, [&](const PortNames&) { return "to the CPU only"; });
    return done();
}

Step stage::check_vlan(const Chip&, Packet& p)
{
    if (p.vlan->exists) [[likely]]
        return next();
    return drop(p.vid == kReservedVlan ? DropReason::vlan_reserved : DropReason::vlan_unknown);
}

Step stage::membership(const Chip& chip, Packet& p)
{
    bool member = p.vlan->members.test(p.in_port);
    if (!member && chip.ports.ingress_filter().test(p.in_port))
        return drop(DropReason::not_member);
    explain(p, [&](const PortNames&) {
        return member ? "the port is in the VLAN"
                      : "the port is not in the VLAN, and does not filter on ingress";
    });
    return next();
}

Step stage::spanning_tree(const Chip& chip, Packet& p)
{
    p.stp = stp_state(chip, p);
    explain(p, [&](const PortNames&) {
        return std::string("the port is ") + stp_state_name(p.stp) + " in group " +
               std::to_string(group_of(p));
    });
    switch (p.stp) {
    case StpState::kDisable:
        return drop(DropReason::stp_disabled);
    case StpState::kBlock:
    case StpState::kListen:
        return refuse(chip, p, DropReason::stp_blocking);
    case StpState::kLearn:
    case StpState::kForward:
        break;
    }
    return next();
}

} // namespace vexosim
