// Which member of a trunk sends a frame. The same flow always takes the same one.
#include <bcmx/trunk.h>

#include <optional>

#include "sim/pipeline/recorder.h"
#include "sim/pipeline/trunk_stages.h"

namespace vexosim {

namespace {

/// What tells the two ends of a flow apart.
struct Ends {
    std::uint64_t src = 0, dst = 0;
};

/// Spreads values that differ in a few bits over all bits.
std::uint64_t mix(std::uint64_t value)
{
    value = (value ^ value >> 32) * 0x9e3779b97f4a7c15u;
    value = (value ^ value >> 29) * 0xbf58476d1ce4e5b9u;
    return value ^ value >> 32;
}

std::uint64_t load(const std::uint8_t* bytes, std::size_t count)
{
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; ++i)
        value = value << 8 | bytes[i];
    return value;
}

std::uint64_t load_ip6(const std::uint8_t* bytes)
{
    return mix(load(bytes, 8)) + load(bytes + 8, 8);
}

/// None of a frame that is not IP, or is shorter than its IP header.
std::optional<Ends> ip_addresses(const Packet& p)
{
    FrameView ip = p.frame.subspan(kHeaderBytes + (p.tagged ? kTagBytes : 0));
    if (p.ethertype == kIp4Type && ip.size() >= 20 && ip[0] >> 4 == 4)
        return Ends{load(&ip[12], 4), load(&ip[16], 4)};
    if (p.ethertype == kIp6Type && ip.size() >= 40 && ip[0] >> 4 == 6)
        return Ends{load_ip6(&ip[8]), load_ip6(&ip[24])};
    return std::nullopt;
}

bool by_ip(int criterion)
{
    return criterion >= BCM_TRUNK_PSC_SRCIP;
}

/// Both ends count differently, so that neighbours who talk to each other spread too.
std::uint64_t flow_of(const Packet& p, int criterion)
{
    auto ip = by_ip(criterion) ? ip_addresses(p) : std::nullopt;
    Ends ends = ip.value_or(Ends{p.src, p.dst});
    switch (criterion) {
    case BCM_TRUNK_PSC_SRCMAC:
    case BCM_TRUNK_PSC_SRCIP:
        return mix(ends.src);
    case BCM_TRUNK_PSC_DSTMAC:
    case BCM_TRUNK_PSC_DSTIP:
        return mix(ends.dst);
    default:
        return mix(mix(ends.src) + ends.dst);
    }
}

const char* criterion_name(int criterion)
{
    static constexpr std::array<const char*, 6> kNames = {
        "source MAC", "destination MAC", "both MACs", "source IP", "destination IP", "both IPs"};
    return kNames[static_cast<std::size_t>(criterion - BCM_TRUNK_PSC_SRCMAC)];
}

/// The member that sends the frame; none of a trunk that is gone or has no members.
PortSet member_for(const Chip& chip, int id, const Packet& p)
{
    if (chip.trunks.check(id) != 0 || chip.trunks.at(id).members.empty())
        return {};
    const Trunk& trunk = chip.trunks.at(id);
    if (p.multicast())
        return {trunk.designated(trunk_flood(p))};
    const std::uint64_t member = flow_of(p, trunk.criterion) % trunk.members.size();
    return {trunk.members[static_cast<std::size_t>(member)]};
}

std::string describe(const Packet& p, const Trunk& trunk, PortSet member, const PortNames& names)
{
    return "port " + names.names(member) + " of " + names.names(trunk.ports()) + ", " +
           (p.multicast() ? std::string("designated for multicast")
                          : std::string("by ") + criterion_name(trunk.criterion));
}

} // namespace

Step to_trunk(const Chip& chip, Packet& p, int id, PortSet block)
{
    const PortSet member = member_for(chip, id, p);
    if (member.empty())
        return drop(DropReason::trunk_empty);
    explain(p,
            [&](const PortNames& names) { return describe(p, chip.trunks.at(id), member, names); });
    p.out = member - block;
    return p.out.any() ? next() : drop(DropReason::entry_blocked);
}

TrunkFlood trunk_flood(const Packet& p)
{
    if (!p.multicast())
        return TrunkFlood::kUnknownUnicast;
    return p.ip_multicast() ? TrunkFlood::kIpMulticast : TrunkFlood::kMulticast;
}

} // namespace vexosim
