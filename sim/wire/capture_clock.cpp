#include "sim/wire/capture_clock.h"

#include <mutex>

namespace vexosim {

namespace {

std::mutex mutex;
std::optional<std::chrono::nanoseconds> held;

} // namespace

std::chrono::nanoseconds capture_now()
{
    const std::lock_guard lock(mutex);
    return held ? *held : std::chrono::system_clock::now().time_since_epoch();
}

void hold_capture_time(std::optional<std::chrono::nanoseconds> moment)
{
    const std::lock_guard lock(mutex);
    held = moment;
}

} // namespace vexosim
