#pragma once

#include <string>
#include <utility>
#include <vector>

namespace vexosh {

/// The manual page in troff, of the program's options (how they are written, and what they do) and
/// of every command.
std::string manual_page(const std::vector<std::pair<std::string, std::string>>& options);

} // namespace vexosh
