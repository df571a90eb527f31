#pragma once

#include "sim/chip/field_pattern.h"
#include "sim/pipeline/packet.h"

namespace vexosim {

/// Reads the fields of a frame that has been parsed and is in a VLAN.
void read_fields(const Packet& p, FieldValues& values);

} // namespace vexosim
