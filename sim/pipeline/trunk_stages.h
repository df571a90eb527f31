/// @file
/// What goes to trunks.
#pragma once

#include "sim/pipeline/stages.h"

namespace vexosim {

/// Which designated member of a trunk sends the frame, unless it is unicast to a known address.
TrunkFlood trunk_flood(const Packet& p);
/// Chooses the member for a frame whose destination is on a trunk. Frames do not leave through the
/// ports of `block`.
Step to_trunk(const Chip& chip, Packet& p, int id, PortSet block = {});

} // namespace vexosim
