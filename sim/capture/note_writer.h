#pragma once

#include <array>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "sim/capture/block_file.h"
#include "sim/capture/packet_maker.h"

namespace vexosim {

/// Makes packets of notes and writes them into a file, on a thread of its own. Nothing is lost: who
/// takes notes faster than they are written waits once the memory for them is used up.
class NoteWriter {
public:
    /// @param descriptions of wires, by chip port.
    /// @param memory in bytes, for notes that wait; it is taken as it is needed.
    NoteWriter(PortSet ports, const PortNames& names,
               const std::array<std::string, kPortCount>& descriptions, std::size_t memory);
    NoteWriter(const NoteWriter&) = delete;
    NoteWriter& operator=(const NoteWriter&) = delete;
    ~NoteWriter();

    /// @return empty, or why the file cannot be written; nothing is then changed.
    std::string open(const std::string& path);

    /// Where notes are to be added, until they are given back.
    BlockBuffer& borrow();
    /// They will be written in a moment, or at once after a pause. After an error they are thrown
    /// away.
    void give_back();

    /// Writes what is left, and what each port has counted, and closes the file.
    /// @return empty, or why not all is in the file, which then ends with a whole block.
    std::string close(std::uint64_t time_ns);
    /// As close() would say now.
    std::string error() const;

private:
    void queue_open();
    void stop();
    void run();
    void rest(std::unique_lock<std::mutex>& lock);
    void make_spare(std::unique_lock<std::mutex>& lock);
    void write(std::span<const std::uint8_t> notes);
    void flush();

    // Of the thread, while there is one.
    PacketMaker maker_;
    BlockBuffer blocks_; ///< made, and not yet in the file
    BlockFile file_;
    std::thread thread_;

    mutable std::mutex mutex_;
    std::condition_variable work_, room_;
    BlockBuffer open_; ///< notes are being added; while lent, the borrower's
    std::deque<BlockBuffer> full_;
    std::vector<BlockBuffer> empty_; ///< the last one is still in the cache
    std::size_t made_ = 0;           ///< buffers that there are
    const std::size_t most_;         ///< that there may be
    bool lent_ = false;
    bool idle_ = false; ///< the thread waits for the next notes, however few
    bool stopping_ = false;
    std::string error_;
};

} // namespace vexosim
