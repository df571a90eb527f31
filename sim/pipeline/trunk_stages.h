/// @file
/// What is flooded to trunks.
#pragma once

#include "sim/pipeline/stages.h"

namespace vexosim {

/// Which designated member of a trunk sends the frame, unless it is unicast to a known address.
TrunkFlood trunk_flood(const Packet& p);

} // namespace vexosim
