#pragma once

#include "platform/port_map.h"

namespace vexolc {

/// Calls `act` with the lport of each uport from 1 to 52, rising. False at once when a uport does
/// not map or `act` is false. The uports deliberately go through `map_uport_to_lport` as they are,
/// which leaves out user port 47.
template <class Act>
bool for_each_front_lport(Act act)
{
    constexpr int end = 53;
    for (int uport = 1; uport < end; ++uport) {
        int lport = -1;
        if (!map_uport_to_lport(uport, lport) || !act(lport))
            return false;
    }
    return true;
}

} // namespace vexolc
