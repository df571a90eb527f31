#pragma once

#include <sys/types.h>

#include <cstdint>
#include <span>
#include <string>

#include "sim/wire/fd.h"

namespace vexosim {

/// A file that grows by whole blocks.
class BlockFile {
public:
    /// Creates or empties the file; a named pipe must have a reader.
    /// @return empty, or why it cannot be written; nothing is then changed.
    std::string open(const std::string& path);

    /// Appends all of it or none of it; to a pipe or a device, perhaps its beginning.
    /// @return empty, or why not.
    std::string write(std::span<const std::uint8_t> blocks);

    void close() { file_ = Fd(); }

private:
    Fd file_;
    std::string path_;
    off_t size_ = 0; ///< of the blocks that are whole in the file
};

} // namespace vexosim
