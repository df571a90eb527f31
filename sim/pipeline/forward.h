/// @file
/// Frames through the chip. Everything here works on a Chip value and takes no lock.
#pragma once

#include <span>

#include "sim/chip/chip.h"
#include "sim/pipeline/cpu_receive.h"
#include "sim/pipeline/outputs.h"

namespace vexosim {

/// Frames arrive at a port, in order. The copies they make are appended to `outputs`, which refer
/// to `frames` where they leave unchanged; CPU copies go to `cpu`. Time is the chip's.
void forward_batch(Chip& chip, CpuReceive& cpu, int chip_port, std::span<const FrameView> frames,
                   Outputs& outputs);

/// The CPU sends a frame that the tables forward, as if it had come in at the CPU port.
void forward_from_cpu(Chip& chip, CpuReceive& cpu, FrameView frame, Outputs& outputs);

/// The CPU sends a tagged frame through ports of its choice, without the tag through those of
/// `untagged`. Ports that are down send nothing.
void send_to_ports(Chip& chip, CpuReceive& cpu, FrameView frame, PortSet ports, PortSet untagged,
                   Outputs& outputs);

} // namespace vexosim
