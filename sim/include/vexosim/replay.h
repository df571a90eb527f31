/// @file
/// Capture files played into ports, as if their wires had carried the frames.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vexosim {

struct ReplayFile {
    std::string path; ///< pcap or pcapng; of the latter, packets that a port sent are left out
    int user_port = 0;
};

/// How far a replay has come.
struct ReplayProgress {
    std::size_t frames = 0;  ///< played
    std::size_t skipped = 0; ///< captured in part, or longer than any frame the card takes
    double part = 0;         ///< of the files, 0 to 1
};

enum class ReplaySpeed : std::uint8_t {
    original, ///< with the times between the frames that the captures say
    fixed,    ///< so many frames a second
    full      ///< as fast as the card forwards them; with the manual clock, time stands still
};

struct ReplayOptions {
    ReplaySpeed speed = ReplaySpeed::original;
    double frames_per_second = 1000; ///< of a fixed speed, more than 0
    /// Lets time pass; false ends the replay. If there is none, the manual clock is advanced and
    /// the card drained, and else the thread sleeps.
    std::function<bool(std::chrono::microseconds)> wait = {};
    /// Told after each burst of at most 64 frames; false ends the replay.
    std::function<bool(const ReplayProgress&)> progress = {};
};

struct Replayed : ReplayProgress {
    bool finished = false; ///< all there was has been played
    /// Why nothing was played, or where a file ends before its time; then all else has been played.
    std::string error;
};

/// Plays files together, in the order in which their frames were recorded, on the caller's thread.
/// Nothing is played unless all of them can be.
Replayed replay_files(const std::vector<ReplayFile>& files, const ReplayOptions& options = {});

} // namespace vexosim
