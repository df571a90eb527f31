/// @file
/// Frames as bytes, without their FCS.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace vexosim {

/// The bytes of one frame, from the destination address on, FCS excluded.
using FrameView = std::span<const std::uint8_t>;
using Frame = std::vector<std::uint8_t>;

} // namespace vexosim
