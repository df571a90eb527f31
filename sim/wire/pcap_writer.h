#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

#include "sim/wire/fd.h"
#include "vexosim/wire.h"

namespace vexosim {

/// Writes a classic capture file, little-endian with microseconds on every machine. After each
/// write the file ends with a whole record.
class PcapWriter {
public:
    /// Creates or empties the file.
    /// @return empty, or why the file cannot be written; an existing file is then unchanged.
    std::string open(const std::string& path);
    bool is_open() const { return static_cast<bool>(file_); }
    const std::string& path() const { return path_; }

    /// @return how many of the frames, from the first on, are in the file.
    std::size_t write(std::span<const FrameView> frames, std::chrono::nanoseconds time);

private:
    bool append();

    std::string path_;
    Fd file_;
    off_t size_ = 0;
    std::vector<std::uint8_t> buffer_;
};

} // namespace vexosim
