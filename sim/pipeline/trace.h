/// @file
/// What would happen to a frame: its way through the chip without effects.
#pragma once

#include <string>
#include <vector>

#include "sim/chip/port_names.h"
#include "sim/pipeline/cpu_receive.h"
#include "sim/pipeline/recorder.h"

namespace vexosim {

struct FrameTrace {
    std::vector<Recorder::Line> lines; ///< what each stage said
    PortSet tagged, untagged;          ///< ports that would send the frame, by form
    PortSet too_long;                  ///< ports that would not, because it is too long
    PortSet mirrored;                  ///< ports that would send mirror copies
    bool to_cpu = false;
    DropReason drop = DropReason::kNone; ///< when it would get nowhere

    /// A line for each thing a stage said, and one for the result; folded where they are longer
    /// than 80 columns.
    std::string text;
};

/// Runs the stages that forward_batch() runs on a frame that arrives at a chip port.
FrameTrace trace_frame(const Chip& chip, const CpuReceive& cpu, int chip_port, FrameView frame,
                       const PortNames& names);

/// What a receive reason (bcm_rx_reason_t) is called.
const char* rx_reason_name(int reason);

} // namespace vexosim
