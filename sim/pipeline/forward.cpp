// What the stages decided takes effect here.
#include "sim/pipeline/forward.h"

#include "sim/pipeline/mirror.h"
#include "sim/pipeline/rewrite.h"
#include "sim/pipeline/stages.h"
#include "sim/pipeline/vlan_by_rule.h"

namespace vexosim {

namespace {

void count_good_frame(PortCounters& c, const Packet& p)
{
    std::uint32_t octets = wire_octets(p.frame.size());
    c.in.count(p.cast, octets, FrameCounters::size_class(octets));
    if (p.ethertype == kIp4Type)
        ++c.in_ip4;
    if (p.ethertype == kIp6Type) {
        ++c.in_ip6;
        c.in_ip6_multicast += p.multicast() ? 1 : 0;
    }
}

/// A port that is down receives nothing, so counts nothing.
void count_arrival(PortCounters& c, const Packet& p)
{
    switch (p.drop) {
    case DropReason::port_disabled:
    case DropReason::port_link_down:
        return;
    case DropReason::truncated:
        c.count_bad(c.in_undersize, p.frame.size());
        return;
    case DropReason::too_long:
        c.count_bad(c.in_oversize, p.frame.size());
        return;
    case DropReason::pause:
        c.in_pause += p.control == MacControl::kPause ? 1 : 0;
        c.in_control += p.control == MacControl::kOther ? 1 : 0;
        break;
    default:
        break;
    }
    count_good_frame(c, p);
}

RouterCounters& router_counters(PortCounters& c, const Packet& p)
{
    return p.ethertype == kIp6Type ? c.router6 : c.router4;
}

/// A packet that came for the router, and whether it got anywhere.
void count_routing(RouterCounters& c, const Packet& p, bool sent, bool delivered)
{
    if (p.routing == Routing::kHeaderError)
        ++c.in_header_errors;
    else if (p.routing == Routing::kAddressError)
        ++c.in_address_errors;
    else if (!delivered)
        ++c.in_discards;
    else if (sent)
        ++c.in_forwarded;
}

void apply_learning(Chip& chip, const Packet& p)
{
    if (p.learning == Learning::kRefresh)
        chip.macs.touch(*p.source, chip.now_us);
    if (p.learning != Learning::kLearn)
        return;
    MacEntry place;
    place.key = mac_key(p.src, p.vid);
    if (int trunk = chip.trunks.trunk_of(p.in_port); trunk >= 0) {
        place.flags = BCM_L2_TRUNK_MEMBER;
        place.trunk = static_cast<std::uint8_t>(trunk);
    } else {
        place.port = static_cast<std::uint8_t>(p.in_port);
    }
    chip.macs.learn(place, chip.now_us);
}

/// @return the number of copies.
std::uint64_t send_form(Chip& chip, const Packet& p, PortSet ports, FrameView form,
                        Outputs& outputs)
{
    std::uint32_t octets = wire_octets(form.size());
    std::size_t size_class = FrameCounters::size_class(octets);
    bool ip6 = p.ethertype == kIp6Type;
    std::uint64_t copies = 0;
    for (int port : ports) {
        ++copies;
        outputs.push(port, form);
        chip.counters[port].count_sent(p.cast, octets, size_class, p.queue, ip6);
        if (p.routed()) [[unlikely]]
            ++router_counters(chip.counters[port], p).out_forwarded;
    }
    for (FrameObserver* observer : outputs.observers)
        observer->leaves(p, ports, form);
    return copies;
}

/// @return the number of copies.
std::uint64_t send_copies(Chip& chip, const Packet& p, Outputs& outputs)
{
    std::uint64_t copies = 0;
    if (PortSet tagged = p.out - p.untagged; tagged.any())
        copies += send_form(chip, p, tagged, sent_form(p, true, outputs.arena), outputs);
    if (PortSet untagged = p.out & p.untagged; untagged.any())
        copies += send_form(chip, p, untagged, sent_form(p, false, outputs.arena), outputs);
    return copies;
}

void count_lost_copies(Chip& chip, const Packet& p, const Outputs& outputs)
{
    for (FrameObserver* observer : outputs.observers)
        observer->is_lost(p, p.too_long, p.frame, DropReason::egress_too_long);
    for (int port : p.too_long) {
        ++chip.drops.copies_meant;
        ++chip.counters[port].out_discards;
        ++chip.counters[port].out_too_long;
        if (p.routed())
            ++router_counters(chip.counters[port], p).out_discards;
        ++chip.drops.copies[static_cast<std::size_t>(DropReason::egress_too_long)];
    }
}

/// @return whether the CPU got its copy.
bool send_to_cpu(Chip& chip, CpuReceive& cpu, const Packet& p, const Outputs& outputs)
{
    if (p.cpu == 0)
        return false;
    ++chip.drops.copies_meant;
    if (p.cpu_full) {
        ++chip.drops.copies[static_cast<std::size_t>(DropReason::cpu_queue_full)];
        ++chip.counters[p.in_port].in_drop_events;
        for (FrameObserver* observer : outputs.observers)
            observer->is_lost(p, {kCpuPort}, p.frame, DropReason::cpu_queue_full);
        return false;
    }
    const CpuFrame& copy = cpu.enqueue(p);
    for (FrameObserver* observer : outputs.observers)
        observer->leaves(p, {kCpuPort}, copy.data);
    ++chip.drops.copies_to_cpu;
    return true;
}

void count_field_hits(const FieldVerdict& verdict)
{
    for (std::size_t i = 0; i < verdict.hit_count; ++i) {
        const FieldHit& hit = *verdict.hits[i];
        if (hit.effect.counts)
            FieldTable::count_packet(hit);
    }
}

void mark_hit(Chip& chip, const Packet& p)
{
    if (p.host != nullptr)
        chip.l3_hosts.mark_hit(*p.host);
    else if (p.route != nullptr)
        chip.l3_routes.mark_hit(*p.route);
}

/// Each frame ends here, once.
void settle(Chip& chip, CpuReceive& cpu, Packet& p, Outputs& outputs)
{
    const bool mirroring = chip.mirrors.any();
    if (mirroring) [[unlikely]]
        mirror_to_cpu(chip, p);
    cpu.choose_queue(chip, p);
    DropCounters& drops = chip.drops;
    ++drops.frames_in;
    count_arrival(chip.counters[p.in_port], p);
    apply_learning(chip, p);
    if (p.field) [[unlikely]]
        count_field_hits(*p.field);
    mark_hit(chip, p);
    if (p.limited) [[unlikely]]
        chip.rates.accept(p.in_port, p.storm, chip.now_us);
    for (FrameObserver* observer : outputs.observers)
        observer->decided(p);
    std::uint64_t sent = send_copies(chip, p, outputs);
    drops.copies_meant += sent;
    drops.copies_sent += sent;
    if (p.too_long.any()) [[unlikely]]
        count_lost_copies(chip, p, outputs);
    if (mirroring) [[unlikely]]
        send_mirror_copies(chip, p, outputs);
    const bool delivered = send_to_cpu(chip, cpu, p, outputs) || sent > 0;
    if (p.routing != Routing::kNone) [[unlikely]]
        count_routing(router_counters(chip.counters[p.in_port], p), p, sent > 0, delivered);
    if (delivered) {
        ++drops.frames_delivered;
        return;
    }
    ++drops.frames[static_cast<std::size_t>(p.drop)];
    if (p.drop > DropReason::pause)
        ++chip.counters[p.in_port].in_discards;
}

/// Frames between the one that is on its way and the one whose MAC entries are fetched.
constexpr std::size_t kAhead = 6;

/// They may lie on both sides of a cache line's end.
void fetch_headers(FrameView frame)
{
    __builtin_prefetch(frame.data());
    __builtin_prefetch(frame.data() + 63);
}

/// Starts to fetch what the stages will read of the frames from `first` on.
void fetch_ahead(const Chip& chip, int port, std::span<const FrameView> frames, std::size_t first,
                 std::size_t count)
{
    for (std::size_t i = first; i < frames.size() && i < first + count; ++i) {
        if (i + kAhead < frames.size())
            fetch_headers(frames[i + kAhead]);
        if (frames[i].size() < kHeaderBytes + kTagBytes)
            continue;
        const std::uint8_t* bytes = frames[i].data();
        bool tagged = bytes[12] == kTagType >> 8 && bytes[13] == 0;
        int tag_vid = tagged ? (bytes[14] & 15) << 8 | bytes[15] : 0;
        int vid = tag_vid != 0 ? tag_vid : untagged_vid(chip, port, frames[i]);
        chip.macs.prefetch(mac_key(load_mac(bytes), vid));
        chip.macs.prefetch(mac_key(load_mac(bytes + 6), vid));
    }
}

} // namespace

void forward_batch(Chip& chip, CpuReceive& cpu, int chip_port, std::span<const FrameView> frames,
                   Outputs& outputs)
{
    fetch_ahead(chip, chip_port, frames, 0, kAhead);
    for (std::size_t i = 0; i < frames.size(); ++i) {
        fetch_ahead(chip, chip_port, frames, i + kAhead, 1);
        for (FrameObserver* observer : outputs.observers)
            observer->arrives(chip, cpu, chip_port, frames[i]);
        Packet p(frames[i], chip_port);
        run_forwarding_stages(chip, p);
        settle(chip, cpu, p, outputs);
    }
}

void forward_from_cpu(Chip& chip, CpuReceive& cpu, FrameView frame, Outputs& outputs)
{
    forward_batch(chip, cpu, kCpuPort, {&frame, 1}, outputs);
}

void send_to_ports(Chip& chip, CpuReceive& cpu, FrameView frame, PortSet ports, PortSet untagged,
                   Outputs& outputs)
{
    Packet p(frame);
    p.out = ports - PortSet{kCpuPort};
    p.untagged = untagged;
    run_direct_stages(chip, p);
    settle(chip, cpu, p, outputs);
}

} // namespace vexosim
