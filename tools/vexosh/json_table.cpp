#include "tools/vexosh/json_table.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <sstream>
#include <string_view>

namespace vexosh {

namespace {

constexpr int kVersion = 1;
constexpr std::size_t kMostDigits = 18; // of those that fit into 64 bits

bool is_number(std::string_view text)
{
    return !text.empty() && text.size() <= kMostDigits &&
           std::ranges::all_of(text, [](unsigned char c) { return std::isdigit(c) != 0; });
}

nlohmann::ordered_json value_of(const std::string& text)
{
    if (is_number(text)) {
        return std::stoull(text);
    }
    return text;
}

/// "1,4-6,cpu" as [1, 4, 5, 6, "cpu"]; words that are no port, such as "none", are left out.
nlohmann::ordered_json ports_of(const std::string& text)
{
    auto ports = nlohmann::ordered_json::array();
    std::istringstream parts(text);
    for (std::string part; std::getline(parts, part, ',');) {
        const std::size_t dash = part.find('-');
        const std::string first = part.substr(0, dash);
        const std::string last = dash == std::string::npos ? first : part.substr(dash + 1);
        if (part == "cpu") {
            ports.push_back(part);
        } else if (is_number(first) && is_number(last)) {
            for (std::uint64_t port = std::stoull(first); port <= std::stoull(last); ++port) {
                ports.push_back(port);
            }
        }
    }
    return ports;
}

/// What programs get of a cell: by the column's name, so that its type is always the same.
nlohmann::ordered_json cell_of(const std::string& column, const std::string& text)
{
    constexpr std::array kPortLists = {"ports", "tagged", "untagged", "active", "from"};
    constexpr std::array kTexts = {"digest", "for",  "match",   "actions",
                                   "usp",    "host", "network", "via"};
    if (std::ranges::find(kPortLists, column) != kPortLists.end()) {
        return ports_of(text);
    }
    if (std::ranges::find(kTexts, column) != kTexts.end()) {
        return text;
    }
    return value_of(text);
}

/// "packets, 32 bits" as "packets_32_bits".
std::string key_of(const std::string& column)
{
    std::string key;
    for (const char c : column) {
        if (c == ' ') {
            key += '_';
        } else if (c != ',') {
            key += c;
        }
    }
    return key;
}

nlohmann::ordered_json head_of(const std::string& command)
{
    constexpr std::string_view kShow = "show ";
    return {{"vexosh", kVersion},
            {"show", command.starts_with(kShow) ? command.substr(kShow.size()) : command}};
}

} // namespace

nlohmann::ordered_json json_of(const std::string& command, const vexosim::TextTable& table)
{
    auto rows = nlohmann::ordered_json::array();
    for (const auto& row : table.rows) {
        auto object = nlohmann::ordered_json::object();
        for (std::size_t i = 0; i < row.size() && i < table.columns.size(); ++i) {
            object[key_of(table.columns[i])] = cell_of(table.columns[i], row[i]);
        }
        rows.push_back(std::move(object));
    }
    auto json = head_of(command);
    json["rows"] = std::move(rows);
    return json;
}

nlohmann::ordered_json json_of_properties(const std::string& command,
                                          const vexosim::TextTable& table)
{
    auto properties = nlohmann::ordered_json::object();
    for (const auto& row : table.rows) {
        properties[key_of(row.at(0))] = cell_of(row.at(0), row.at(1));
    }
    auto json = head_of(command);
    if (!table.columns.at(1).empty()) {
        json[key_of(table.columns.at(0))] = value_of(table.columns.at(1));
    }
    json["properties"] = std::move(properties);
    return json;
}

} // namespace vexosh
