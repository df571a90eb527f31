// What a port does with a frame before it looks at VLANs and addresses.
#include "sim/chip/text.h"
#include "sim/pipeline/recorder.h"
#include "sim/pipeline/stages.h"

namespace vexosim {

namespace {

constexpr MacAddress kReservedGroup = 0x0180c2000000; ///< and the 15 addresses after it
constexpr MacAddress kPauseAddress = 0x0180c2000001;

std::uint16_t load16(const std::uint8_t* bytes)
{
    return static_cast<std::uint16_t>(bytes[0] << 8 | bytes[1]);
}

bool is_reserved_group(MacAddress mac)
{
    return (mac & ~MacAddress{0xf}) == kReservedGroup;
}

/// To the group address of MAC control or to the port's own.
MacControl mac_control(const PortConfig& port, const Packet& p)
{
    constexpr std::uint16_t kPauseCode = 1;
    const MacAddress own = load_mac(port.pause_addr.data());
    if (p.dst != kPauseAddress && (own == 0 || p.dst != own))
        return MacControl::kNone;
    const bool pause =
        p.frame.size() >= kHeaderBytes + 2 && load16(p.frame.data() + kHeaderBytes) == kPauseCode;
    return pause ? MacControl::kPause : MacControl::kOther;
}

std::string describe(const Packet& p)
{
    std::string text = std::to_string(p.frame.size()) + " bytes, ";
    if (p.tagged)
        text += "tag VLAN " + std::to_string(p.tag & 0xfff) + " priority " +
                std::to_string(p.tag >> 13) + ", ";
    return text + "type 0x" + hex_text(p.ethertype, 4);
}

} // namespace

Step stage::port(const Chip& chip, Packet& p)
{
    if (!chip.ports.up().test(p.in_port))
        return drop(chip.ports.enabled().test(p.in_port) ? DropReason::port_link_down
                                                         : DropReason::port_disabled);
    explain(p, [&](const PortNames& names) {
        return "enters at port " + names.name(p.in_port) + ", which is up";
    });
    return next();
}

Step stage::parse(const Chip&, Packet& p)
{
    if (p.frame.size() < kHeaderBytes)
        return drop(DropReason::truncated);
    const std::uint8_t* bytes = p.frame.data();
    p.dst = load_mac(bytes);
    p.src = load_mac(bytes + 6);
    p.ethertype = load16(bytes + 12);
    if (is_multicast(p.dst))
        p.cast = p.dst == kBroadcastMac ? Cast::kBroadcast : Cast::kMulticast;
    if (p.ethertype == kTagType) {
        if (p.frame.size() < kHeaderBytes + kTagBytes)
            return drop(DropReason::truncated);
        p.tagged = true;
        p.tag = load16(bytes + 14);
        p.ethertype = load16(bytes + 16);
    }
    explain(p, [&](const PortNames&) { return describe(p); });
    return next();
}

/// The CPU's frames come from memory and have no such limit.
Step stage::frame_size(const Chip& chip, Packet& p)
{
    std::size_t size = p.frame.size() + 4 - (p.tagged ? kTagBytes : 0);
    if (!p.from_cpu() && size > static_cast<std::size_t>(chip.ports[p.in_port].frame_max))
        return drop(DropReason::too_long);
    return next();
}

/// The MAC takes out what is addressed to it, by the group address or by the port's own; other
/// reserved group addresses are marked here and go to the CPU once their VLAN is known.
Step stage::control(const Chip& chip, Packet& p)
{
    if (p.ethertype == kControlType && !p.tagged) [[unlikely]]
        p.control = mac_control(chip.ports[p.in_port], p);
    if (p.control != MacControl::kNone && !p.from_cpu())
        return drop(DropReason::pause);
    if (!is_reserved_group(p.dst) || p.from_cpu())
        return next();
    if (p.dst == kPauseAddress)
        return drop(DropReason::pause);
    p.bpdu = chip.ports[p.in_port].bpdu_enable;
    explain(p, [&](const PortNames&) {
        return std::string("a reserved bridge group address, ") +
               (p.bpdu ? "which the port traps" : "which the port treats as any group address");
    });
    return next();
}

/// What the CPU shall see of a protocol does not depend on the frame types admitted as data.
Step stage::discard(const Chip& chip, Packet& p)
{
    bool vlan_tagged = p.tagged && (p.tag & 0xfff) != 0;
    switch (chip.ports[p.in_port].discard) {
    case DiscardMode::kNone:
        break;
    case DiscardMode::kAll:
        return drop(DropReason::discard_all);
    case DiscardMode::kTagged:
        if (vlan_tagged && !p.bpdu)
            return drop(DropReason::discard_tagged);
        break;
    case DiscardMode::kUntagged:
        if (!vlan_tagged && !p.bpdu)
            return drop(DropReason::discard_untagged);
        break;
    }
    return next();
}

} // namespace vexosim
