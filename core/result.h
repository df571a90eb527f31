#pragma once

#include <bcm/error.h>

#include "platform/port_map.h"

/// From SDK results to the driver's booleans, and from an `Mp` to the SDK's port.
namespace vexolc {

constexpr bool ok(int rc)
{
    return rc == BCM_E_NONE;
}

/// Success, or one of the codes that an operation tolerates.
template <class... Codes>
constexpr bool ok(int rc, Codes... tolerated)
{
    return rc == BCM_E_NONE || ((rc == static_cast<int>(tolerated)) || ...);
}

/// The SDK's text for a result code; codes outside -18 to 0 share one text.
const char* sdk_reason(int rc);

/// The lport of `mp`, or -1, which the SDK refuses.
inline int lport_of(const Mp& mp)
{
    int lport = -1;
    map_mp_to_lport(mp, lport);
    return lport;
}

/// Writes an output at the end of a chain of `&&`. Always true.
template <class T, class Value>
bool store(T& out, Value value)
{
    out = static_cast<T>(value);
    return true;
}

} // namespace vexolc
