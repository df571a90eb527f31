#include <algorithm>
#include <cctype>

#include "vexosim/state.h"

namespace vexosim {

namespace {

bool is_number(const std::string& text)
{
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

std::string line_of(const std::vector<std::string>& cells, const std::vector<std::size_t>& widths,
                    const std::vector<bool>& numeric)
{
    std::string line;
    for (std::size_t i = 0; i < cells.size() && i < widths.size(); ++i) {
        std::string fill(widths[i] - cells[i].size(), ' ');
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
    std::string all = line_of(columns, widths, numeric);
    for (const auto& row : rows)
        all += line_of(row, widths, numeric);
    return all;
}

} // namespace vexosim
