#pragma once

#include <atomic>
#include <map>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "vexosim/cable.h"
#include "vexosim/frame.h"

namespace vexosim {

/// Frames on their way through slow cables, by the time at which they arrive.
class SlowFrames {
public:
    static constexpr std::uint64_t kNever = ~std::uint64_t{0};
    static constexpr std::size_t kMost = 65536; ///< of all cables; more are lost

    struct OnTheWay {
        int user_port;
        CableWay way;
        std::vector<std::uint8_t> frame;
    };

    /// False when there are too many.
    bool add(std::uint64_t due_us, int user_port, CableWay way, FrameView frame);
    /// One that has arrived, the earliest first.
    std::optional<OnTheWay> take(std::uint64_t now_us);
    void forget(int user_port);
    std::size_t waiting(int user_port, CableWay way) const;
    std::uint64_t next_us() const;

private:
    mutable std::mutex mutex_;
    std::multimap<std::uint64_t, OnTheWay> frames_;
};

/// One direction of a cable. Used by several threads.
class Lane {
public:
    void set(const Impairment& impairment, int user_port, CableWay way);
    bool impaired() const { return impaired_.load(std::memory_order_relaxed); }

    /// What is left of frames; those that are delayed go to the slow ones.
    std::vector<FrameView> pass(std::span<const FrameView> frames, std::uint64_t now_us,
                                SlowFrames& slow);
    CableLane status() const;

private:
    bool loses_next();

    std::atomic<bool> impaired_{false};
    mutable std::mutex mutex_; // of what follows
    Impairment impairment_;
    int user_port_ = 0;
    CableWay way_ = CableWay::in;
    std::uint64_t threshold_ = 0, count_ = 0, start_ = 0, lost_ = 0;
};

/// The cable of a wire.
struct Cable {
    std::atomic<bool> plugged{true};
    Lane in, out;

    Lane& lane(CableWay way) { return way == CableWay::in ? in : out; }
};

} // namespace vexosim
