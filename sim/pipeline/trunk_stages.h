/// @file
/// What goes to trunks.
#pragma once

#include "sim/pipeline/stages.h"

namespace vexosim {

/// Which designated member of a trunk sends the frame, unless it is unicast to a known address.
TrunkFlood trunk_flood(const Packet& p);
/// Chooses the member for a frame whose destination is at an entry on a trunk.
Step to_trunk(const Chip& chip, Packet& p);

} // namespace vexosim
