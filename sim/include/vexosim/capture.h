/// @file
/// A capture of what the card does with frames: one pcapng file with one interface for each port.
/// Every packet says whether the port received or sent it, and in a comment where the frame went,
/// or why it went nowhere. A frame and its copies have the same packet id.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace vexosim {

enum class Captured : std::uint8_t {
    all,
    received, ///< frames as they came in
    sent,     ///< copies as they went out, those for the CPU at the CPU port
    dropped   ///< frames that went nowhere, and copies that a port did not send
};

struct CaptureOptions {
    std::vector<int> ports; ///< user ports, 53 is the CPU; empty: all
    Captured what = Captured::all;
};

/// Starts the one capture there may be. The file is created or emptied; what is captured is written
/// without loss, a few milliseconds later, by a thread of its own. For a slow disk 256 MiB may wait
/// in memory, some million frames; then the card waits.
/// @return empty, or one line that says why not; nothing is then changed.
std::string start_capture(const std::string& path, const CaptureOptions& options = {});

struct CaptureStatus {
    std::string path;
    std::uint64_t packets = 0; ///< captured so far
    std::string error;         ///< why the file ends before its time; empty if it does not
};
/// Of the capture that runs; none when none does.
std::optional<CaptureStatus> capture_status();

/// Ends the capture and closes its file.
/// @return as it was at the end; none when none ran.
std::optional<CaptureStatus> stop_capture();

} // namespace vexosim
