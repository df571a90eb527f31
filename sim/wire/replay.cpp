#include "vexosim/replay.h"

#include <algorithm>
#include <list>
#include <optional>
#include <thread>

#include "sim/wire/capture_clock.h"
#include "sim/wire/panel.h"
#include "sim/wire/pcap_reader.h"
#include "vexosim/clock.h"
#include "vexosim/ports.h"

namespace vexosim {

namespace {

using std::chrono::microseconds;
using std::chrono::nanoseconds;

constexpr double kLongest = 9e18; // ns

// A file, and its next frame that can be played.
struct Source {
    PcapReader reader;
    int port = 0;
    std::optional<PcapReader::Record> next;

    // Counts what cannot be played.
    void fetch(std::size_t& skipped)
    {
        for (next = reader.next(); next && !playable(*next); next = reader.next()) {
            ++skipped;
        }
    }

    static bool playable(const PcapReader::Record& record)
    {
        return !record.cut && record.frame.size() <= FrameBatch::kMaxFrameBytes;
    }
};

bool let_pass(microseconds duration)
{
    if (manual_clock()) {
        advance(duration);
        drain();
    } else {
        std::this_thread::sleep_for(duration);
    }
    return true;
}

class Player {
public:
    explicit Player(const ReplayOptions& options) : options_(options) {}
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;
    ~Player() { hold_capture_time(std::nullopt); }

    std::string open(const std::vector<ReplayFile>& files);
    Replayed play();

private:
    Source* earliest();
    nanoseconds due(nanoseconds recorded) const;
    bool wait_until(nanoseconds due);
    bool add(Source& source);
    bool flush();

    const ReplayOptions& options_;
    std::list<Source> sources_;
    nanoseconds first_{};        // when the first frame was recorded
    microseconds start_ = now(); // and when it was played
    microseconds passed_{0};     // since then, when last looked at
    FrameBatch batch_;
    int port_ = 0; // of the batch
    Replayed result_;
};

std::string Player::open(const std::vector<ReplayFile>& files)
{
    for (const ReplayFile& file : files) {
        if (file.user_port < 0 || file.user_port >= Panel::kPorts) {
            return "port " + std::to_string(file.user_port) + ": frames arrive at ports 0 to " +
                   std::to_string(Panel::kPorts - 1);
        }
        Source& source = sources_.emplace_back();
        source.port = file.user_port;
        if (std::string why = source.reader.open(file.path); !why.empty()) {
            return why;
        }
        source.fetch(result_.skipped);
    }
    if (const Source* const source = earliest()) {
        first_ = source->next->time;
    }
    return {};
}

Source* Player::earliest()
{
    Source* found = nullptr;
    for (Source& source : sources_) {
        if (source.next && (found == nullptr || source.next->time < found->next->time)) {
            found = &source;
        }
    }
    return found;
}

// When a frame is to be played, since the start.
nanoseconds Player::due(nanoseconds recorded) const
{
    switch (options_.speed) {
    case ReplaySpeed::original: {
        if (recorded <= first_) {
            return nanoseconds{0};
        }
        const auto since = static_cast<std::uint64_t>(recorded.count()) -
                           static_cast<std::uint64_t>(first_.count());
        return nanoseconds(std::min<std::uint64_t>(since, INT64_MAX));
    }
    case ReplaySpeed::fixed: {
        const double at = static_cast<double>(result_.frames) * 1e9 / options_.frames_per_second;
        return nanoseconds(static_cast<std::int64_t>(std::min(at, kLongest)));
    }
    case ReplaySpeed::full:
        break;
    }
    return nanoseconds{0};
}

bool Player::wait_until(nanoseconds due)
{
    const microseconds at = std::chrono::ceil<microseconds>(due);
    for (passed_ = now() - start_; passed_ < at; passed_ = now() - start_) {
        const microseconds left = at - passed_;
        if (!flush() || !(options_.wait ? options_.wait(left) : let_pass(left))) {
            return false;
        }
    }
    return true;
}

bool Player::add(Source& source)
{
    if ((batch_.full() || source.port != port_) && !flush()) {
        return false;
    }
    port_ = source.port;
    batch_.add(source.next->frame);
    if (options_.speed == ReplaySpeed::original) {
        hold_capture_time(source.next->time);
    }
    ++result_.frames;
    source.fetch(result_.skipped);
    return true;
}

bool Player::flush()
{
    if (batch_.empty()) {
        return true;
    }
    receive(port_, batch_.frames());
    batch_.clear();
    if (!options_.progress) {
        return true;
    }
    result_.part = 0;
    for (const Source& source : sources_) {
        result_.part += source.reader.part_read() / static_cast<double>(sources_.size());
    }
    return options_.progress(result_);
}

Replayed Player::play()
{
    bool more = true;
    for (Source* source = earliest(); more && source != nullptr; source = earliest()) {
        const nanoseconds at = due(source->next->time);
        more = (at <= passed_ || wait_until(at)) && add(*source);
    }
    result_.finished = more && flush();
    for (const Source& source : sources_) {
        if (result_.finished && result_.error.empty()) {
            result_.error = source.reader.damage();
        }
    }
    return result_;
}

} // namespace

Replayed replay_files(const std::vector<ReplayFile>& files, const ReplayOptions& options)
{
    Player player(options);
    if (std::string why = player.open(files); !why.empty()) {
        Replayed nothing;
        nothing.error = std::move(why);
        return nothing;
    }
    return player.play();
}

} // namespace vexosim
