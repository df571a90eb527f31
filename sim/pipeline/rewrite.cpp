#include "sim/pipeline/rewrite.h"

#include <cstring>

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

/// What follows the addresses and the outer tag.
FrameView rest(const Packet& p)
{
    return p.frame.subspan(kAddressBytes + (p.tagged ? kTagBytes : 0));
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

} // namespace vexosim
