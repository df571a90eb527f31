/// @file
/// What-if tracing, and tracing of the frames that come.
#pragma once

#include <string>
#include <vector>

#include "vexosim/frame.h"

namespace vexosim {

/// What would happen to a frame that arrived at a port now: stage by stage, with the table entries
/// that decide, and the result in the last line. Changes nothing, counters included.
/// @param user_port 0 to 53; 53 is the CPU sending.
/// @return lines with their ends; one line saying so for a port that is none.
std::string what_if(int user_port, FrameView frame);

/// Traces the next `count` frames that arrive at a port, or at any port if it is -1, in place of
/// what was to be traced before; 0 traces no more. Forwarding is not changed.
/// @return empty, or one line that says why not.
std::string trace_next(unsigned count, int user_port = -1);
/// The frames traced since the last call, each as what_if() would have told just before it was
/// forwarded, behind a line with its port and bytes.
std::vector<std::string> take_traces();

} // namespace vexosim
