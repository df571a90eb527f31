#pragma once

#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

#include "sim/capture/block_buffer.h"
#include "sim/wire/fd.h"

namespace vexosim {

/// Writes a file on a thread of its own while the next blocks are put together.
class BlockWriter {
public:
    BlockWriter() = default;
    BlockWriter(const BlockWriter&) = delete;
    BlockWriter& operator=(const BlockWriter&) = delete;
    ~BlockWriter();

    /// Creates or empties the file; a named pipe must have a reader.
    /// @return empty, or why it cannot be written; nothing is then changed.
    std::string open(const std::string& path);

    /// Takes the blocks if the thread is idle, or else when there are many of them, for which it
    /// then waits: nothing is lost. `blocks` is then empty. After an error blocks are thrown away.
    void take(BlockBuffer& blocks);
    /// Writes the last blocks and closes the file.
    /// @return empty, or why not all is in the file, which then ends with a whole block.
    std::string close(BlockBuffer& last);
    /// As close() would say now.
    std::string error() const;

private:
    void hand_over(std::unique_lock<std::mutex>& lock, BlockBuffer& blocks);
    void stop();
    void run();
    bool write_all(std::span<const std::uint8_t> bytes);

    Fd file_;
    std::thread thread_;
    mutable std::mutex mutex_;
    std::condition_variable changed_;
    BlockBuffer writing_;
    bool busy_ = false, stopping_ = false;
    std::string error_, path_;
    off_t size_ = 0; ///< of the blocks that are whole in the file
};

} // namespace vexosim
