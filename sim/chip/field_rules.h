#pragma once

#include "sim/chip/field_types.h"

namespace vexosim {

/// How many bits a field's values have; 0 for a field that does not exist.
int width_of(int field);

/// Whether the field exists, and data and mask are values that it can have.
bool is_valid(const FieldMatch& match);

/// Every field of the set exists.
bool is_valid(const FieldSet& set);

/// What an action takes.
enum class ActionKind { unknown, number, mac, ports };
ActionKind kind_of(int action);

/// Whether the parameters are in the action's range.
bool is_valid(const FieldAction& action);

} // namespace vexosim
