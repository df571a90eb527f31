#include "sim/card/clock.h"

namespace vexosim {

std::uint64_t CardClock::now_us() const
{
    if (!manual()) {
        const auto elapsed = Steady::now() - start_;
        using std::chrono::microseconds;
        return static_cast<std::uint64_t>(
            std::chrono::duration_cast<microseconds>(elapsed).count());
    }
    const std::lock_guard lock(mutex_);
    return manual_us_;
}

void CardClock::make_manual()
{
    manual_ = true;
}

void CardClock::move_to(std::uint64_t time_us)
{
    const std::lock_guard lock(mutex_);
    if (time_us > manual_us_)
        manual_us_ = time_us;
}

} // namespace vexosim
