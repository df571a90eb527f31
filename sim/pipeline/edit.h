#pragma once

#include <cstdint>

#include "sim/pipeline/packet.h"

namespace vexosim {

/// Does to the copy of a frame at `copy` what a router does: the interface's address as source, the
/// next hop's as destination, one hop less. An IPv4 checksum that was right is right again.
void apply_hop(MacAddress dst, MacAddress src, std::uint8_t* copy, std::size_t ip_at);

/// Replaces addresses and TOS in the copy of a frame at `copy`, whose IP header begins at `ip_at`
/// if there is one (0: there is none). The IPv4 checksum changes with the TOS: it is as right, or
/// as wrong, as before.
void apply_edits(const FieldEdits& edits, std::uint8_t* copy, std::size_t ip_at);

} // namespace vexosim
