#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "vexosim/state.h"

namespace vexosh {

/// A table as JSON: {"vexosh": 1, "show": "fdb", "rows": [{"vlan": 10, ...}]}. Numbers are numbers,
/// lists of ports are lists. docs/schema/ says what there is; the version rises when something of
/// it changes or goes.
/// @param command "show fdb"; what is in front of the table's name is left out.
nlohmann::ordered_json json_of(const std::string& command, const vexosim::TextTable& table);

/// Rows of a name and a value as JSON: {"vexosh": 1, "show": "port", "port": 1, "properties":
/// {"admin": "on", ...}}. The table's head says whose they are.
nlohmann::ordered_json json_of_properties(const std::string& command,
                                          const vexosim::TextTable& table);

} // namespace vexosh
