#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>

namespace vexosim {

/// The card's time in microseconds: the system's, or one that stands still until it is moved.
class CardClock {
public:
    std::uint64_t now_us() const;

    bool manual() const { return manual_.load(std::memory_order_relaxed); }
    void make_manual();
    /// Manual clock only: moves it to a later time.
    void move_to(std::uint64_t time_us);

private:
    using Steady = std::chrono::steady_clock;

    const Steady::time_point start_ = Steady::now();
    std::atomic<bool> manual_{false};
    mutable std::mutex mutex_;
    std::uint64_t manual_us_ = 0;
};

} // namespace vexosim
