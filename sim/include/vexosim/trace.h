/// @file
/// What-if tracing.
#pragma once

#include <string>

#include "vexosim/frame.h"

namespace vexosim {

/// What would happen to a frame that arrived at a port now: stage by stage, with the table entries
/// that decide, and the result in the last line. Changes nothing, counters included.
/// @param user_port 0 to 53; 53 is the CPU sending.
/// @return lines with their ends; one line saying so for a port that is none.
std::string what_if(int user_port, FrameView frame);

} // namespace vexosim
