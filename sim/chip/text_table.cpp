#include <algorithm>
#include <cctype>
#include <string_view>

#include "vexosim/state.h"

namespace vexosim {

namespace {

constexpr std::size_t kLineWidth = 80;
constexpr std::size_t kNarrowest = 10;

bool is_number(std::string_view text)
{
    text.remove_prefix(text.starts_with('-') ? 1 : 0);
    return !text.empty() &&
           std::ranges::all_of(text, [](unsigned char c) { return std::isdigit(c) != 0; });
}

std::vector<std::size_t> widths_of(const TextTable& table)
{
    std::vector<std::size_t> widths;
    for (const std::string& column : table.columns)
        widths.push_back(column.size());
    for (const auto& row : table.rows) {
        for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    return widths;
}

/// A column of numbers, and its head, stand to the right.
std::vector<bool> numeric_columns(const TextTable& table)
{
    std::vector<bool> numeric;
    for (std::size_t i = 0; i < table.columns.size(); ++i) {
        numeric.push_back(!table.rows.empty() &&
                          std::ranges::all_of(table.rows, [&](const auto& row) {
                              return i < row.size() && is_number(row[i]);
                          }));
    }
    return numeric;
}

std::size_t line_width(const std::vector<std::size_t>& widths)
{
    std::size_t width = 0;
    for (std::size_t column : widths)
        width += column + 2;
    return width - 2;
}

/// The longest piece of a column that stands without commas and blanks.
std::vector<std::size_t> longest_pieces(const TextTable& table)
{
    std::vector<std::size_t> longest;
    for (const std::string& column : table.columns)
        longest.push_back(std::max(column.size(), kNarrowest));
    for (const auto& row : table.rows) {
        for (std::size_t i = 0; i < row.size() && i < longest.size(); ++i) {
            std::size_t piece = 0;
            for (char c : row[i]) {
                piece = c == ' ' ? 0 : piece + 1;
                longest[i] = std::max(longest[i], piece);
                piece = c == ',' ? 0 : piece;
            }
        }
    }
    return longest;
}

/// Makes the widest columns of text narrower until a line fits, but none narrower than `least`.
void fit(std::vector<std::size_t>& widths, const std::vector<bool>& numeric,
         const std::vector<std::size_t>& least)
{
    for (std::size_t width = widths.empty() ? 0 : line_width(widths); width > kLineWidth; --width) {
        std::size_t widest = widths.size();
        for (std::size_t i = 0; i < widths.size(); ++i) {
            if (!numeric[i] && widths[i] > least[i] &&
                (widest == widths.size() || widths[i] > widths[widest]))
                widest = i;
        }
        if (widest == widths.size())
            return;
        --widths[widest];
    }
}

/// The beginning of a text that fits, up to a comma or a blank if there is one.
std::size_t fold_at(std::string_view text, std::size_t width)
{
    if (text.size() <= width)
        return text.size();
    if (text[width] == ' ')
        return width + 1;
    const std::size_t last = text.find_last_of(", ", width - 1);
    return last == std::string_view::npos ? width : last + 1;
}

/// A row as rows whose cells are no wider than their columns, if they can be folded.
std::vector<std::vector<std::string>> folded(std::vector<std::string> row,
                                             const std::vector<std::size_t>& widths)
{
    std::vector<std::vector<std::string>> lines;
    for (bool left = true; left;) {
        left = false;
        std::vector<std::string>& line = lines.emplace_back();
        for (std::size_t i = 0; i < row.size() && i < widths.size(); ++i) {
            const std::size_t end = fold_at(row[i], widths[i]);
            line.push_back(row[i].substr(0, end));
            line.back().erase(line.back().find_last_not_of(' ') + 1);
            row[i].erase(0, end);
            left |= !row[i].empty();
        }
    }
    return lines;
}

std::string line_of(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths,
                    const std::vector<bool>& numeric)
{
    std::string line;
    for (std::size_t i = 0; i < cells.size() && i < widths.size(); ++i) {
        std::string fill(widths[i] - std::min(widths[i], cells[i].size()), ' ');
        line += (i == 0 ? "" : "  ") + (numeric[i] ? fill + cells[i] : cells[i] + fill);
    }
    line.erase(line.find_last_not_of(' ') + 1);
    return line + "\n";
}

} // namespace

std::string TextTable::text() const
{
    std::vector<std::size_t> widths = widths_of(*this);
    std::vector<bool> numeric = numeric_columns(*this);
    fit(widths, numeric, longest_pieces(*this));
    fit(widths, numeric, std::vector<std::size_t>(widths.size(), kNarrowest));
    std::string all = line_of(columns, widths, numeric);
    for (const auto& row : rows) {
        for (const auto& line : folded(row, widths))
            all += line_of(line, widths, numeric);
    }
    return all;
}

} // namespace vexosim
