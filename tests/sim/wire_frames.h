/// Frames that differ by a mark in their last byte, for tests of wires.
#pragma once

#include <poll.h>

#include <string>
#include <vector>

#include "vexosim/wire.h"

using Bytes = std::vector<std::uint8_t>;

inline Bytes frame(int mark, std::size_t size = 60)
{
    Bytes bytes(size, 0);
    bytes[0] = 0x02; // to and from locally administered addresses
    bytes[6] = 0x02;
    bytes[11] = 0x01;
    bytes[12] = 0x88; // a local experimental EtherType
    bytes[13] = 0xb5;
    bytes.back() = static_cast<std::uint8_t>(mark);
    return bytes;
}

inline Bytes with_tag(Bytes bytes, std::uint16_t type, std::uint16_t tci)
{
    const auto byte = [](int value) { return static_cast<std::uint8_t>(value & 0xff); };
    const Bytes tag{byte(type >> 8), byte(type), byte(tci >> 8), byte(tci)};
    bytes.insert(bytes.begin() + 12, tag.begin(), tag.end());
    return bytes;
}

/// The marks, joined by spaces.
template <typename Frames>
std::string marks(const Frames& frames)
{
    std::string text;
    for (const auto& bytes : frames) {
        text += (text.empty() ? "" : " ") + std::to_string(bytes.empty() ? 0 : bytes.back());
    }
    return text;
}

inline void send(vexosim::Wire& wire, const std::vector<int>& list)
{
    std::vector<Bytes> bytes;
    for (const int mark : list) {
        bytes.push_back(frame(mark));
    }
    wire.send(std::vector<vexosim::FrameView>(bytes.begin(), bytes.end()));
}

/// Whether frames wait, or come within so many milliseconds.
inline bool readable(const vexosim::Wire& wire, int within = 0)
{
    pollfd item{wire.poll_fd(), POLLIN, 0};
    return ::poll(&item, 1, within) > 0 && (item.revents & POLLIN) != 0;
}
