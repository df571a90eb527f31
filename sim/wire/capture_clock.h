#pragma once

#include <chrono>
#include <optional>

namespace vexosim {

/// The time that frames written to captures get, since the epoch.
std::chrono::nanoseconds capture_now();
/// Holds that time at a moment, or lets it follow the system's clock again.
void hold_capture_time(std::optional<std::chrono::nanoseconds> moment);

} // namespace vexosim
