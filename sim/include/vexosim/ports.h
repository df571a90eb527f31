/// @file
/// Frames into the card.
#pragma once

#include <span>

#include "vexosim/frame.h"

namespace vexosim {

/// Frames arrive at a front-panel port, in order, as if its wire had carried them; the caller may
/// not hold the chip's lock. Copies are sent to the wires before it returns; those for the CPU wait
/// for packet receive. Does nothing for a port that is none, and before the device is attached.
void receive(int user_port, std::span<const FrameView> frames);
/// The same for one frame.
void receive(int user_port, FrameView frame);

/// From now on what arrives at wires goes to receive(), and what happens to cables happens in time.
void connect_wires();

} // namespace vexosim
