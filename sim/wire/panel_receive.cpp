#include <cstdlib>
#include <utility>

#include "sim/wire/capture_clock.h"
#include "sim/wire/panel.h"

namespace vexosim {

namespace {

// A flood that outruns the card must not keep poll() from returning.
constexpr int kMaxRounds = 4096;

} // namespace

void Panel::on_receive(ReceiveFn receiver)
{
    const std::lock_guard lock(receiver_mutex_);
    receiver_ = std::make_shared<const ReceiveFn>(std::move(receiver));
}

void Panel::start()
{
    static const int at_exit = std::atexit([] { panel().stop(); });
    (void)at_exit;
    loop_.start();
}

void Panel::arrive(int user_port, std::span<const FrameView> frames)
{
    Cable& cable = slot(user_port).cable;
    if (!cable.plugged) {
        return;
    }
    if (!cable.in.impaired()) {
        deliver(user_port, frames);
    } else if (const auto left = through(cable.in, frames); !left.empty()) {
        deliver(user_port, left);
    }
}

void Panel::deliver(int user_port, std::span<const FrameView> frames)
{
    std::unique_lock lock(receiver_mutex_);
    const auto receiver = receiver_;
    lock.unlock();
    if (receiver && *receiver) {
        (*receiver)(user_port, frames);
    }
}

// The wire is free again before the frames are delivered: they may go out of the same port, and
// whoever takes them may want to detach it.
std::size_t Panel::read_burst(int user_port, FrameBatch& batch, bool live)
{
    batch.clear();
    {
        const std::shared_lock lock(slot(user_port).mutex);
        const auto& wire = slot(user_port).wire;
        if (!wire || (wire->poll_fd() >= 0) != live) {
            return 0;
        }
        if (!wire->receive(batch) && live) {
            loop_.unwatch(wire->poll_fd());
        }
    }
    if (!batch.empty()) {
        arrive(user_port, batch.frames());
    }
    return batch.size();
}

std::size_t Panel::poll()
{
    if (loop_.running()) {
        return 0;
    }
    std::size_t total = 0;
    for (int round = 0; round < kMaxRounds; ++round) {
        std::size_t frames = 0;
        for (int port = 0; port < kPorts; ++port) {
            frames += read_burst(port, batch_, true);
        }
        total += frames;
        if (frames == 0) {
            break;
        }
    }
    return total;
}

int Panel::next_capture(std::chrono::nanoseconds& at)
{
    int next = -1;
    for (int port = 0; port < kPorts; ++port) {
        const std::shared_lock lock(slot(port).mutex);
        const auto time = slot(port).wire ? slot(port).wire->next_time() : std::nullopt;
        if (time && (next < 0 || *time < at)) {
            at = *time;
            next = port;
        }
    }
    return next;
}

Replay Panel::replay(const std::function<void(std::chrono::nanoseconds)>& elapsed)
{
    const std::lock_guard lock(replay_mutex_);
    Replay result;
    FrameBatch one(1);
    std::chrono::nanoseconds at{}, before{};
    for (int port = next_capture(at); port >= 0; port = next_capture(at)) {
        if (elapsed && result.frames > 0 && at > before) {
            elapsed(at - before);
        }
        before = at;
        hold_capture_time(at);
        result.frames += read_burst(port, one, false);
    }
    hold_capture_time(std::nullopt);
    for (const Attachment& attached : attachments()) {
        if (!attached.notice.empty()) {
            result.notices.push_back(attached.notice);
        }
    }
    return result;
}

} // namespace vexosim
