/// @file
/// What becomes of a link between a port and the device at its far end.
#pragma once

#include "sim/chip/port_table.h"

namespace vexosim {

/// `partner` negotiates when its flags say so; otherwise it has the one speed of its words.
///
/// Two that negotiate run at the best speed and duplex that both advertise, and use PAUSE as their
/// advertisements say. One that negotiates finds the speed of one that does not, but not its
/// duplex: half below 1 Gb/s, full from there on, and no PAUSE. Two that do not negotiate need the
/// same speed. What the port was told to do with PAUSE by hand it does.
LinkState negotiate(const PortConfig& port, const PortAbility& partner);

} // namespace vexosim
