#pragma once

#include <chrono>
#include <string>

#include "tools/vexosh/shell.h"

namespace vexosh {

/// "5s", "250ms", "10us"; a number alone is seconds. Throws BadInput.
std::chrono::microseconds parse_duration(const std::string& word);

/// Real time or, with the manual clock, simulated time.
/// @return false when the user does not want to wait any longer.
bool let_time_pass(Shell& shell, std::chrono::microseconds duration);

} // namespace vexosh
