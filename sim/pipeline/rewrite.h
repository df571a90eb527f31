/// @file
/// A frame's two forms, as it was received: with the tag of its VLAN, and without; and as it is
/// sent.
#pragma once

#include <cstdint>
#include <span>

#include "sim/pipeline/outputs.h"
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

// What ports send, with the changes that routing and field entries make.

/// The VLAN of its tag.
int sent_vid(const Packet& p);
/// Bytes that it loses, the outer tag aside.
std::size_t deleted_bytes(const Packet& p);
/// The frame with its VLAN's tag or without, in the arena unless nothing changes.
FrameView sent_form(const Packet& p, bool tagged, FrameArena& arena);

} // namespace vexosim
