/// @file
/// The blocks of a pcapng file, little-endian on every machine.
#pragma once

#include <string>
#include <string_view>

#include "sim/capture/block_buffer.h"
#include "vexosim/frame.h"

namespace vexosim::pcapng {

/// A packet's way, as its flags say it.
enum class Direction : std::uint8_t { received = 1, sent = 2 };

/// Options of a packet, encoded once and used for many; what is empty is left out. They end with
/// the head of the packet's id.
std::string options_of(Direction direction, std::string_view verdict, std::string_view comment);

/// The file's first block: who wrote it.
void put_section(BlockBuffer& to, std::string_view application);

/// An Ethernet interface; they are numbered from 0 in the order in which they are put. Times of its
/// packets are in nanoseconds.
void put_interface(BlockBuffer& to, std::string_view name, std::string_view description);

struct PacketHead {
    std::uint32_t interface = 0;
    std::uint64_t time_ns = 0; ///< since the epoch
    std::uint64_t id = 0;      ///< the same for a frame and its copies
};
/// A whole frame.
/// @param options from options_of().
void put_packet(BlockBuffer& to, const PacketHead& head, FrameView frame, std::string_view options);

/// What an interface has counted, at the end of the capture.
void put_statistics(BlockBuffer& to, std::uint32_t interface, std::uint64_t time_ns,
                    std::uint64_t received, std::uint64_t dropped);

} // namespace vexosim::pcapng
