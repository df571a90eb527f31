#pragma once

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace vexosim {

/// A call that reads one of a port's settings. PARAM: null output.
template <class T, class Read>
int port_get(const char* name, bcmx_lport_t lport, T* value, Read&& read)
{
    return port_call(name, lport, args(Lport{lport}, Out{value}), [&](Chip& chip, int port) {
        if (value == nullptr)
            return BCM_E_PARAM;
        *value = static_cast<T>(read(chip.ports[port]));
        return BCM_E_NONE;
    });
}

} // namespace vexosim
