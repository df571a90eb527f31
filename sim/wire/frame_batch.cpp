#include <algorithm>

#include "vexosim/wire.h"

namespace vexosim {

namespace {

constexpr std::size_t kSlot = FrameBatch::kMaxFrameBytes + FrameBatch::kSpare;
constexpr std::size_t kAlign = 64;

} // namespace

FrameBatch::FrameBatch(std::size_t limit) : limit_(std::clamp<std::size_t>(limit, 1, kMaxFrames))
{
    // Left uninitialised: short frames lie side by side and most pages are never touched.
    memory_ = std::make_unique_for_overwrite<std::uint8_t[]>(limit_ * kSlot);
    frames_.reserve(limit_);
}

void FrameBatch::clear()
{
    frames_.clear();
    used_ = 0;
}

std::span<std::uint8_t> FrameBatch::room(std::size_t n)
{
    return {memory_.get() + used_ + n * kSlot, kSlot};
}

void FrameBatch::take(FrameView frame)
{
    const auto end = static_cast<std::size_t>(frame.data() + frame.size() - memory_.get());
    used_ = (end + kAlign - 1) / kAlign * kAlign;
    frames_.push_back(frame);
}

bool FrameBatch::add(FrameView frame)
{
    if (full() || frame.size() > kMaxFrameBytes) {
        return false;
    }
    const auto to = room();
    std::copy(frame.begin(), frame.end(), to.begin());
    take(to.first(frame.size()));
    return true;
}

WireCounters Wire::counters() const
{
    WireCounters now;
    now.received = count_.received.load(std::memory_order_relaxed);
    now.sent = count_.sent.load(std::memory_order_relaxed);
    now.receive_overflow = count_.overflow.load(std::memory_order_relaxed);
    now.receive_too_long = count_.too_long.load(std::memory_order_relaxed);
    now.receive_cut = count_.cut.load(std::memory_order_relaxed);
    now.send_drops = count_.drops.load(std::memory_order_relaxed);
    return now;
}

} // namespace vexosim
