#pragma once

#include <cstdint>

namespace vexosim {

/// Whether a device's mapped registers are at the address, and answer.
bool bus_answers(std::uintptr_t address);

} // namespace vexosim
