/// @file
/// What field entries match and do, in words.
#pragma once

#include <string>

#include "sim/chip/field_table.h"
#include "sim/chip/port_names.h"

namespace vexosim {

/// As in "redirect to 4,5".
std::string action_text(const FieldAction& action, const PortNames& names);
/// All actions of a rule, as in "count; drop".
std::string actions_text(const FieldRule& rule, const PortNames& names);

/// All matches of a rule, as in "in-port 3 dst-ip 10.0.0.0/8 udf 14:0102/ff0f"; "any" for none. A
/// byte match is frame offset, data and, unless all ones, mask.
std::string matches_text(const FieldTable& table, const FieldRule& rule, const PortNames& names);

/// The fields of a set, as in "in-port, bytes 14-17 of untagged frames (udf 1)"; "none" for none.
std::string fields_text(const FieldTable& table, const FieldSet& set);

} // namespace vexosim
