#pragma once

#include "sim/pipeline/packet.h"

namespace vexosim {

/// Fills the verdict from its hits, which are in the order of their groups. Where two say different
/// things about one matter, the first has its way.
void settle_actions(const Packet& p, FieldVerdict& verdict);

} // namespace vexosim
