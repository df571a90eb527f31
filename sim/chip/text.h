/// @file
/// How addresses are written.
#pragma once

#include <string>

#include "sim/chip/mac_table.h"

namespace vexosim {

/// As in "00:11:22:aa:bb:cc".
std::string mac_text(MacAddress mac);
/// "port 5", "the CPU" or "trunk 3", given the name of the entry's port.
std::string place_text(const MacEntry& entry, const std::string& port_name);

} // namespace vexosim
