#pragma once

#include <cstdint>

#include "sim/pipeline/packet.h"

namespace vexosim {

/// Replaces addresses and TOS in the copy of a frame at `copy`, whose IP header begins at `ip_at`
/// if there is one (0: there is none). The IPv4 checksum changes with the TOS: it is as right, or
/// as wrong, as before.
void apply_edits(const FieldEdits& edits, std::uint8_t* copy, std::size_t ip_at);

} // namespace vexosim
