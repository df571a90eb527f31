/// @file
/// What the thread that forwards writes down of a frame: little, so that it loses little time.
#pragma once

#include <cstring>

#include "sim/capture/block_buffer.h"
#include "sim/capture/verdict.h"

namespace vexosim {

/// One or more packets of the capture.
class Note {
public:
    enum class Bytes : std::uint8_t {
        kFollow,   ///< the frame's bytes follow
        kReceived, ///< they follow, and are as the frame was received
        kSent,     ///< the same, and all its ports send copies of them: no other note says so
        kSame      ///< they are the last ones that followed as received
    };

    Note() = default;
    Note(const Verdict& verdict, std::uint64_t id, std::size_t size, Bytes bytes)
        : verdict_(verdict), frame_(id << 32 | size << 2 | static_cast<std::uint64_t>(bytes))
    {
    }
    /// When the notes behind it were taken, in nanoseconds since the epoch; without a frame.
    static Note of_time(std::uint64_t time_ns)
    {
        Note note;
        note.frame_ = time_ns;
        return note;
    }

    const Verdict& verdict() const { return verdict_; }
    std::uint64_t time_ns() const { return frame_; }
    /// Of the frame, the lower half; the same for its copies.
    std::uint32_t id() const { return static_cast<std::uint32_t>(frame_ >> 32); }
    /// Of the frame.
    std::size_t size() const { return static_cast<std::uint32_t>(frame_) >> 2; }
    Bytes bytes() const { return static_cast<Bytes>(frame_ & 3); }
    void set_bytes(Bytes bytes)
    {
        frame_ = (frame_ & ~std::uint64_t{3}) | static_cast<std::uint64_t>(bytes);
    }

private:
    Verdict verdict_;
    std::uint64_t frame_ = 0;
};

/// @return where it stands until the next one is put.
inline std::uint8_t* put_note(BlockBuffer& to, const Note& note, FrameView bytes = {})
{
    std::uint8_t* at = to.grow(sizeof note + bytes.size());
    // The other thread had this memory last: what comes next is fetched ahead.
    __builtin_prefetch(at + 512, 1);
    __builtin_prefetch(at + 576, 1);
    std::memcpy(at, &note, sizeof note);
    if (!bytes.empty())
        std::memcpy(at + sizeof note, bytes.data(), bytes.size());
    return at;
}

/// Any note of put_note().
inline Note note_at(const std::uint8_t* at)
{
    Note note;
    std::memcpy(&note, at, sizeof note);
    return note;
}

} // namespace vexosim
