// Captures played into ports.
#include "vexosim/replay.h"

#include <cmath>
#include <cstdio>

#include "tools/vexosh/shell.h"
#include "tools/vexosh/time_passes.h"
#include "vexosim/clock.h"
#include "vexosim/wire.h"

namespace vexosh {
namespace {

using Clock = std::chrono::steady_clock;

std::string frames_text(std::size_t frames)
{
    return std::to_string(frames) + (frames == 1 ? " frame" : " frames");
}

/// The captures that ports are plugged into, with the times between their frames on the manual
/// clock.
void replay_attached(Shell& shell)
{
    const auto elapsed = [&shell](std::chrono::nanoseconds time) {
        if (vexosim::manual_clock()) {
            vexosim::advance(std::chrono::duration_cast<std::chrono::microseconds>(time));
            shell.session().settle();
        }
    };
    const vexosim::Replay result = vexosim::replay_captures(elapsed);
    for (const std::string& notice : result.notices) {
        shell.out() << notice << '\n';
    }
    shell.out() << frames_text(result.frames) << " replayed\n";
}

void set_speed(vexosim::ReplayOptions& options, const std::string& word)
{
    using vexosim::ReplaySpeed;
    if (word == "original") {
        options.speed = ReplaySpeed::original;
    } else if (word == "full") {
        options.speed = ReplaySpeed::full;
    } else {
        constexpr std::int64_t kFastest = 1'000'000'000;
        options.speed = ReplaySpeed::fixed;
        options.frames_per_second = static_cast<double>(
            parse_number(word, "speed (original, full, or frames a second)", 1, kFastest));
    }
}

/// Tells a watcher once a while how far a replay has come.
class Progress {
public:
    explicit Progress(Shell& shell) : shell_(shell) {}
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;
    ~Progress() { shell_.out() << (told_ ? "\r\033[K" : "") << std::flush; }

    /// @return false when the replay is to end.
    bool operator()(const vexosim::ReplayProgress& now)
    {
        constexpr std::chrono::milliseconds kOften{100};
        if (Clock::now() - last_ >= kOften) {
            tell(now);
            shell_.give_way();
            last_ = Clock::now();
        }
        return !shell_.ending();
    }

private:
    void tell(const vexosim::ReplayProgress& now)
    {
        if (shell_.terminal()) {
            shell_.out() << '\r' << std::lround(now.part * 100) << "%, " << frames_text(now.frames)
                         << "; Ctrl-C ends it" << std::flush;
            told_ = true;
        }
    }

    Shell& shell_;
    Clock::time_point last_ = Clock::now();
    bool told_ = false;
};

std::string result_text(const vexosim::Replayed& replayed, std::chrono::microseconds took)
{
    const double seconds = static_cast<double>(took.count()) / 1e6;
    std::string text = frames_text(replayed.frames) + " replayed";
    char times[80] = "";
    if (seconds > 0) {
        std::snprintf(times, sizeof times, " in %.3f s, %.0f a second", seconds,
                      static_cast<double>(replayed.frames) / seconds);
    }
    text += std::string(times) + (replayed.finished ? "" : "; ended before its time");
    return text + (replayed.skipped == 0
                       ? "\n"
                       : "; " + std::to_string(replayed.skipped) +
                             " that were captured in part or are too long were not\n");
}

void replay(Shell& shell, Words& words)
{
    if (words.empty()) {
        replay_attached(shell);
        return;
    }
    std::vector<vexosim::ReplayFile> files;
    vexosim::ReplayOptions options;
    do {
        std::string path = words.next("FILE");
        files.push_back({std::move(path), parse_user_port(words.next("PORT"))});
    } while (words.size() > 1);
    if (!words.empty()) {
        set_speed(options, words.next("SPEED"));
    }
    options.wait = [&shell](std::chrono::microseconds time) { return let_time_pass(shell, time); };
    vexosim::Replayed replayed;
    const auto start = vexosim::now();
    {
        Progress progress(shell);
        options.progress = std::ref(progress);
        replayed = vexosim::replay_files(files, options);
    }
    if (replayed.finished || replayed.error.empty()) {
        shell.out() << result_text(replayed, vexosim::now() - start);
    }
    if (!replayed.error.empty()) {
        throw BadInput(replayed.error);
    }
}

constexpr Command kCommands[] = {
    {"replay", "[FILE PORT ...] [original|full|RATE]",
     "play captures into ports, together and with the times between their frames; full: as fast as "
     "the card goes, RATE: so many frames a second. Without a file: the attached captures",
     replay},
};

} // namespace

std::span<const Command> replay_commands()
{
    return kCommands;
}

} // namespace vexosh
