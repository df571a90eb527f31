#pragma once

#include <string>
#include <vector>

namespace vexosh {

/// The three of some names that are most like a word, the nearest first.
std::vector<std::string> nearest(const std::string& word, std::vector<std::string> names);

/// The name that a word is probably meant to be; empty if it is like none.
std::string meant(const std::string& word, const std::vector<std::string>& names);

} // namespace vexosh
