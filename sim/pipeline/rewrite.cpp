#include "sim/pipeline/rewrite.h"

#include <cstring>

#include "sim/pipeline/edit.h"

namespace vexosim {

namespace {

constexpr std::size_t kAddressBytes = 12;

/// The drop-eligible bit of a tag is kept.
std::uint16_t tag_of(const Packet& p)
{
    return static_cast<std::uint16_t>(p.priority << 13 | (p.tag & 0x1000) | p.vid);
}

void store16(std::uint8_t* to, std::uint16_t value)
{
    to[0] = static_cast<std::uint8_t>(value >> 8);
    to[1] = static_cast<std::uint8_t>(value);
}

std::uint16_t sent_tag(const Packet& p)
{
    const int priority = p.field ? p.field->edits.priority : -1;
    return static_cast<std::uint16_t>((priority >= 0 ? priority : p.priority) << 13 |
                                      (p.tag & 0x1000) | sent_vid(p));
}

/// What follows the addresses and the outer tag.
FrameView rest(const Packet& p)
{
    return p.frame.subspan(kAddressBytes + (p.tagged ? kTagBytes : 0));
}

/// A frame with changes: addresses, tag, and what follows the tags that go. Entries change what
/// routing has made of it.
FrameView edited_form(const Packet& p, bool tagged, FrameArena& arena)
{
    const std::size_t received = kAddressBytes + (p.tagged ? kTagBytes : 0) + deleted_bytes(p);
    const std::size_t sent = kAddressBytes + (tagged ? kTagBytes : 0);
    const FrameView tail = p.frame.subspan(received);
    std::uint8_t* memory = arena.take(sent + tail.size());
    std::memcpy(memory, p.frame.data(), kAddressBytes);
    if (tagged) {
        store16(memory + kAddressBytes, kTagType);
        store16(memory + kAddressBytes + 2, sent_tag(p));
    }
    std::memcpy(memory + sent, tail.data(), tail.size());
    if (p.routed())
        apply_hop(p.next_hop().mac, p.interface->mac, memory, kHeaderBytes + sent - kAddressBytes);
    if (p.field) {
        const FieldEdits& edits = p.field->edits;
        apply_edits(edits, memory, edits.ip_at != 0 ? edits.ip_at - received + sent : 0);
    }
    return {memory, sent + tail.size()};
}

} // namespace

bool has_right_tag(const Packet& p)
{
    return p.tagged && p.tag == tag_of(p);
}

void write_tagged(const Packet& p, std::uint8_t* to)
{
    FrameView tail = rest(p);
    std::memcpy(to, p.frame.data(), kAddressBytes);
    store16(to + kAddressBytes, kTagType);
    store16(to + kAddressBytes + 2, tag_of(p));
    std::memcpy(to + kAddressBytes + kTagBytes, tail.data(), tail.size());
}

void write_untagged(const Packet& p, std::uint8_t* to)
{
    FrameView tail = rest(p);
    std::memcpy(to, p.frame.data(), kAddressBytes);
    std::memcpy(to + kAddressBytes, tail.data(), tail.size());
}

int sent_vid(const Packet& p)
{
    if (p.field && p.field->edits.vid >= 0)
        return p.field->edits.vid;
    return p.routed() ? p.interface->vid : p.vid;
}

std::size_t deleted_bytes(const Packet& p)
{
    return p.field && p.field->edits.delete_inner && p.has_inner_tag() ? kTagBytes : 0;
}

FrameView sent_form(const Packet& p, bool tagged, FrameArena& arena)
{
    if (p.edited()) [[unlikely]]
        return edited_form(p, tagged, arena);
    if (tagged ? has_right_tag(p) : !p.tagged)
        return p.frame;
    const std::size_t bytes = tagged ? tagged_bytes(p) : p.untagged_bytes();
    std::uint8_t* memory = arena.take(bytes);
    (tagged ? write_tagged : write_untagged)(p, memory);
    return {memory, bytes};
}

} // namespace vexosim
