/// @file
/// A frame's two forms: with the tag of its VLAN, and without.
#pragma once

#include <cstdint>
#include <span>

#include "sim/pipeline/packet.h"

namespace vexosim {

/// Whether the frame already is what leaves with a tag.
bool has_right_tag(const Packet& p);
/// Length of the tagged form.
inline std::size_t tagged_bytes(const Packet& p)
{
    return p.untagged_bytes() + kTagBytes;
}
/// Writes the forms; `to` has tagged_bytes() or untagged_bytes().
void write_tagged(const Packet& p, std::uint8_t* to);
void write_untagged(const Packet& p, std::uint8_t* to);

} // namespace vexosim
