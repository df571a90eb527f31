#include "tools/vexosh/nearest.h"

#include <algorithm>
#include <numeric>

namespace vexosh {
namespace {

/// What it takes to make a name of a word: letters that are wrong or too many count more than those
/// that are missing.
std::size_t distance(const std::string& word, const std::string& name)
{
    constexpr std::size_t kMissing = 1, kTooMany = 3, kWrong = 3;
    std::vector<std::size_t> row(name.size() + 1); // to the beginnings of the name
    std::iota(row.begin(), row.end(), 0);
    for (const char letter : word) {
        std::size_t diagonal = row[0];
        row[0] += kTooMany;
        for (std::size_t i = 0; i < name.size(); ++i) {
            const std::size_t change = diagonal + (letter == name[i] ? 0 : kWrong);
            diagonal = row[i + 1];
            row[i + 1] = std::min({change, row[i] + kMissing, diagonal + kTooMany});
        }
    }
    return row.back();
}

} // namespace

std::vector<std::string> nearest(const std::string& word, std::vector<std::string> names)
{
    std::ranges::stable_sort(names, {},
                             [&word](const std::string& name) { return distance(word, name); });
    names.resize(std::min<std::size_t>(names.size(), 3));
    return names;
}

std::string meant(const std::string& word, const std::vector<std::string>& names)
{
    const std::vector<std::string> first = nearest(word, names);
    return first.empty() || distance(word, first[0]) > word.size() ? "" : first[0];
}

} // namespace vexosh
