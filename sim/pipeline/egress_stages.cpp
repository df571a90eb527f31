// Through which of the wanted ports a frame may leave, and in which form.
#include "sim/pipeline/recorder.h"
#include "sim/pipeline/rewrite.h"
#include "sim/pipeline/stages.h"

namespace vexosim {

namespace {

/// Keeps the ports of `allowed`.
Step keep(Packet& p, PortSet allowed, DropReason reason)
{
    PortSet refused = p.out - allowed;
    if (refused.empty()) [[likely]]
        return next();
    explain(p, [&](const PortNames& names) {
        return "not through " + names.names(refused) + ": " + drop_text(reason);
    });
    p.out -= refused;
    return p.out.any() ? next() : drop(reason);
}

PortSet ports_shorter_than(const PortTable& ports, PortSet among, std::size_t size)
{
    PortSet shorter;
    for (int port : among)
        shorter.assign(port, static_cast<std::size_t>(ports[port].frame_max) < size);
    return shorter;
}

} // namespace

Step stage::egress_membership(const Chip& chip, Packet& p)
{
    return keep(p, p.vlan->members | (PortSet::all() - chip.ports.egress_filter()),
                DropReason::egress_not_member);
}

Step stage::egress_spanning_tree(const Chip& chip, Packet& p)
{
    if (p.field && p.field->bypass_stp) [[unlikely]]
        return next();
    return keep(p, chip.stgs.forwarding(p.vlan->stg), DropReason::egress_stp);
}

Step stage::egress_port(const Chip& chip, Packet& p)
{
    return keep(p, chip.ports.up(), DropReason::egress_down);
}

Step stage::tagging(const Chip&, Packet& p)
{
    p.untagged = p.out & p.vlan->untagged;
    explain(p, [&](const PortNames& names) {
        PortSet tagged = p.out - p.untagged;
        std::string text = p.untagged.any() ? "untagged to " + names.names(p.untagged) : "";
        if (tagged.any())
            text += (text.empty() ? "" : "; ") + std::string("tagged VLAN ") +
                    std::to_string(sent_vid(p)) + " to " + names.names(tagged);
        return text;
    });
    return next();
}

/// What the CPU sends keeps the tag that it has.
Step stage::own_tag(const Chip&, Packet& p)
{
    if (p.out.empty())
        return drop(DropReason::no_destination);
    p.vid = p.tag & 0xfff;
    p.priority = p.tag >> 13;
    if (!p.tagged)
        p.untagged = p.out;
    return next();
}

/// Ports for which the frame is too long still count as copies that were meant.
Step stage::egress_size(const Chip& chip, Packet& p)
{
    if (p.tagged_size() - deleted_bytes(p) <=
        static_cast<std::size_t>(chip.ports.smallest_frame_max())) [[likely]]
        return next();
    PortSet untagged = p.out & p.untagged;
    p.too_long =
        ports_shorter_than(chip.ports, p.out - untagged, p.tagged_size() - deleted_bytes(p)) |
        ports_shorter_than(chip.ports, untagged, p.untagged_size());
    return keep(p, PortSet::all() - p.too_long, DropReason::egress_too_long);
}

} // namespace vexosim
