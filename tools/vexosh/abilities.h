#pragma once

#include <string>
#include <string_view>

#include "l2/port_types.h"

/// Sets of bits as words: what a port can do, and which floods are blocked.
namespace vexosh {

/// Words like 100-full, copper, autoneg and pause-rx with commas between them; `-` is nothing.
port_ability_type_t parse_abilities(std::string_view word);
std::string text(port_ability_type_t abilities);

/// broadcast, unknown-unicast, known-multicast, unknown-multicast, all or none.
flood_block_type_t parse_flood(std::string_view word);
/// Empty for none.
std::string text(flood_block_type_t floods);

} // namespace vexosh
