#pragma once

#include <string>
#include <vector>

#include "tools/vexosh/input.h"

namespace vexosh {

/// The frames of a capture file. Throws BadInput when it cannot be read or is no Ethernet capture;
/// what stands before a cut end is kept and the cut noted in `notice`.
struct Capture {
    std::vector<Bytes> frames;
    std::string notice;
};
Capture read_capture(const std::string& path);

} // namespace vexosh
