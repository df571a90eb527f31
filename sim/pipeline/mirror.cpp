#include "sim/pipeline/mirror.h"

#include <bcmx/mirror.h>

#include <algorithm>

#include "sim/pipeline/rewrite.h"

namespace vexosim {

namespace {

constexpr int kNoReason = 0;

/// Frames that do not get past the MAC have not been received.
bool was_received(const Packet& p)
{
    return p.drop == DropReason::kNone || p.drop > DropReason::pause;
}

bool cpu_gets_copy(const Packet& p)
{
    return (p.cpu & ~reason_bit(kNoReason)) != 0 && !p.cpu_full;
}

/// What is not copied as it leaves is as it came, or tagged where the chip may choose.
MirrorForm plain_form(const Chip& chip, const Packet& p)
{
    return chip.mirrors.as_received() || p.vid == 0 ? MirrorForm::kReceived : MirrorForm::kTagged;
}

bool is_true_egress(const Chip& chip, int port)
{
    return (chip.mirrors.of(port).flags & BCM_MIRROR_PORT_EGRESS_TRUE) != 0;
}

MirrorForm egress_form(const Chip& chip, const Packet& p, int port)
{
    if (!is_true_egress(chip, port))
        return plain_form(chip, p);
    return p.untagged.test(port) && port != kCpuPort ? MirrorForm::kUntagged : MirrorForm::kTagged;
}

/// What a port's frame_max is compared with.
std::size_t limited_size(const Packet& p, const MirrorCopy& copy)
{
    const MirrorForm form = copy.form;
    bool plain = form == MirrorForm::kUntagged || (form == MirrorForm::kReceived && !p.tagged);
    return plain ? p.untagged_size() : p.tagged_size() - (copy.edited ? deleted_bytes(p) : 0);
}

DropReason why_lost(const Chip& chip, const Packet& p, const MirrorCopy& copy)
{
    if (!chip.ports.up().test(copy.destination))
        return DropReason::egress_down;
    bool fits =
        limited_size(p, copy) <= static_cast<std::size_t>(chip.ports[copy.destination].frame_max);
    return fits ? DropReason::kNone : DropReason::egress_too_long;
}

/// Calls `found(source, egress)` for each mirrored port that has received or sends the frame.
template <class Found>
void for_each_mirrored(const Chip& chip, const Packet& p, Found found)
{
    if (chip.mirrors.ingress().test(p.in_port) && was_received(p))
        found(p.in_port, false);
    PortSet sending = p.out;
    sending.assign(kCpuPort, cpu_gets_copy(p));
    for (int port : sending& chip.mirrors.egress())
        found(port, true);
}

FrameView form_of(const Packet& p, const MirrorCopy& copy, Outputs& outputs)
{
    const MirrorForm form = copy.form;
    if (copy.edited)
        return sent_form(p, form == MirrorForm::kTagged, outputs.arena);
    if (form == MirrorForm::kReceived || (form == MirrorForm::kUntagged && !p.tagged) ||
        (form == MirrorForm::kTagged && has_right_tag(p)))
        return p.frame;
    bool tagged = form == MirrorForm::kTagged;
    std::size_t bytes = tagged ? tagged_bytes(p) : p.untagged_bytes();
    std::uint8_t* memory = outputs.arena.take(bytes);
    (tagged ? write_tagged : write_untagged)(p, memory);
    return {memory, bytes};
}

void lose(Chip& chip, const Packet& p, const MirrorCopy& copy, const Outputs& outputs)
{
    for (FrameObserver* observer : outputs.observers)
        observer->is_lost(p, {copy.destination}, p.frame, copy.lost);
    ++chip.drops.mirrors[static_cast<std::size_t>(copy.lost)];
    PortCounters& c = chip.counters[copy.destination];
    if (copy.lost == DropReason::egress_too_long) {
        ++c.out_discards;
        ++c.out_too_long;
    }
}

void send(Chip& chip, const Packet& p, const MirrorCopy& copy, Outputs& outputs)
{
    FrameView frame = form_of(p, copy, outputs);
    outputs.push(copy.destination, frame);
    ++chip.drops.mirrors_sent;
    std::uint32_t octets = wire_octets(frame.size());
    chip.counters[copy.destination].count_sent(p.cast, octets, FrameCounters::size_class(octets),
                                               p.queue, p.ethertype == kIp6Type);
    for (FrameObserver* observer : outputs.observers)
        observer->leaves(p, {copy.destination}, frame);
}

} // namespace

const char* mirror_form_name(MirrorForm form)
{
    static constexpr std::array<const char*, 3> kNames = {"as received", "tagged", "untagged"};
    return kNames[static_cast<std::size_t>(form)];
}

std::vector<MirrorCopy> mirror_copies(const Chip& chip, const Packet& p)
{
    std::vector<MirrorCopy> copies;
    for_each_mirrored(chip, p, [&](int source, bool egress) {
        MirrorCopy copy{source, chip.mirrors.of(source).destination, egress};
        if (copy.destination == kCpuPort)
            return;
        copy.form = egress ? egress_form(chip, p, source) : plain_form(chip, p);
        copy.edited = p.edited() && egress && is_true_egress(chip, source) && source != kCpuPort;
        copy.lost = why_lost(chip, p, copy);
        copies.push_back(copy);
    });
    return copies;
}

void mirror_to_cpu(const Chip& chip, Packet& p)
{
    bool to_cpu = false;
    for_each_mirrored(chip, p, [&](int source, bool) {
        to_cpu = to_cpu || chip.mirrors.of(source).destination == kCpuPort;
    });
    if (to_cpu)
        p.copy_to_cpu(kNoReason);
}

void send_mirror_copies(Chip& chip, const Packet& p, Outputs& outputs)
{
    for (const MirrorCopy& copy : mirror_copies(chip, p)) {
        ++chip.drops.mirrors_meant;
        if (copy.lost == DropReason::kNone)
            send(chip, p, copy, outputs);
        else
            lose(chip, p, copy, outputs);
    }
}

} // namespace vexosim
