#pragma once

#include <bcm/types.h>

/// A unit's properties, for the SDK's own use: neither logged nor made to fail.
namespace vexosim {

/// The text of NAME.UNIT, else of NAME, from the lookup that was registered for the unit; or null.
char* unit_property(int unit, const char* name);
/// The property as a port set; all ports, or none, when it is not set or is no bit map.
bcm_pbmp_t unit_port_property(int unit, const char* name, bool default_all);

} // namespace vexosim
