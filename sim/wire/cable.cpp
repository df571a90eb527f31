#include "sim/wire/cable.h"

#include <cmath>

namespace vexosim {

namespace {

// The finaliser of SplitMix64: every bit of the result depends on every bit of the value.
std::uint64_t mixed(std::uint64_t value)
{
    value = (value ^ value >> 30) * 0xbf58476d1ce4e5b9;
    value = (value ^ value >> 27) * 0x94d049bb133111eb;
    return value ^ value >> 31;
}

constexpr std::uint64_t kStep = 0x9e3779b97f4a7c15;
constexpr int kDrawBits = 53;

} // namespace

bool SlowFrames::add(std::uint64_t due_us, int user_port, CableWay way, FrameView frame)
{
    const std::lock_guard lock(mutex_);
    if (frames_.size() >= kMost) {
        return false;
    }
    frames_.insert({due_us, {user_port, way, {frame.begin(), frame.end()}}});
    return true;
}

std::optional<SlowFrames::OnTheWay> SlowFrames::take(std::uint64_t now_us)
{
    const std::lock_guard lock(mutex_);
    if (frames_.empty() || frames_.begin()->first > now_us) {
        return std::nullopt;
    }
    return std::move(frames_.extract(frames_.begin()).mapped());
}

void SlowFrames::forget(int user_port)
{
    const std::lock_guard lock(mutex_);
    std::erase_if(frames_, [&](const auto& one) { return one.second.user_port == user_port; });
}

std::size_t SlowFrames::waiting(int user_port, CableWay way) const
{
    const std::lock_guard lock(mutex_);
    std::size_t count = 0;
    for (const auto& [due, one] : frames_) {
        count += one.user_port == user_port && one.way == way ? 1 : 0;
    }
    return count;
}

std::uint64_t SlowFrames::next_us() const
{
    const std::lock_guard lock(mutex_);
    return frames_.empty() ? kNever : frames_.begin()->first;
}

void Lane::set(const Impairment& impairment, int user_port, CableWay way)
{
    const std::lock_guard lock(mutex_);
    impairment_ = impairment;
    user_port_ = user_port;
    way_ = way;
    threshold_ = static_cast<std::uint64_t>(std::ldexp(impairment.loss_percent / 100, kDrawBits));
    const auto lane = static_cast<std::uint64_t>(user_port) * 2 + (way == CableWay::in ? 0 : 1);
    start_ = mixed(mixed(impairment.seed + kStep) + lane);
    count_ = lost_ = 0;
    impaired_ = impairment.loss_percent > 0 || impairment.delay.count() > 0;
}

bool Lane::loses_next()
{
    return mixed(start_ + kStep * ++count_) >> (64 - kDrawBits) < threshold_;
}

std::vector<FrameView> Lane::pass(std::span<const FrameView> frames, std::uint64_t now_us,
                                  SlowFrames& slow)
{
    const std::lock_guard lock(mutex_);
    const auto delay = static_cast<std::uint64_t>(impairment_.delay.count());
    std::vector<FrameView> left;
    for (const FrameView frame : frames) {
        const bool lost =
            loses_next() || (delay != 0 && !slow.add(now_us + delay, user_port_, way_, frame));
        if (!lost && delay == 0) {
            left.push_back(frame);
        }
        lost_ += lost ? 1 : 0;
    }
    return left;
}

CableLane Lane::status() const
{
    const std::lock_guard lock(mutex_);
    return {impairment_, lost_, 0};
}

} // namespace vexosim
