#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vexosh {

/// Has the system's shell run a command, and prints what it says, line by line as it comes. Throws
/// BadInput when the command ends with another status than 0.
void run_system_command(const std::vector<std::string>& words,
                        const std::function<void(std::string_view)>& print);

} // namespace vexosh
