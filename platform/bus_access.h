#pragma once

#include <soc/cm.h>

namespace vexolc {

/// The routines by which the SDK reaches `unit`; all of them go through the bus driver. `unit` must
/// be on the bus.
soc_cm_device_vectors_t bus_access_vectors(int unit);

} // namespace vexolc
