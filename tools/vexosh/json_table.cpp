#include "tools/vexosh/json_table.h"

#include <algorithm>
#include <cctype>

namespace vexosh {

namespace {

constexpr int kVersion = 1;
constexpr std::size_t kMostDigits = 18; // of those that fit into 64 bits

nlohmann::ordered_json value_of(const std::string& text)
{
    const bool number = !text.empty() && text.size() <= kMostDigits &&
                        std::ranges::all_of(text, [](unsigned char c) { return std::isdigit(c); });
    if (number) {
        return std::stoull(text);
    }
    return text;
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
            object[key_of(table.columns[i])] = value_of(row[i]);
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
        properties[key_of(row.at(0))] = value_of(row.at(1));
    }
    auto json = head_of(command);
    if (!table.columns.at(1).empty()) {
        json[key_of(table.columns.at(0))] = value_of(table.columns.at(1));
    }
    json["properties"] = std::move(properties);
    return json;
}

} // namespace vexosh
