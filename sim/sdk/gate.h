#pragma once

#include <bcm/error.h>

#include <functional>
#include <utility>

#include "sim/card/card.h"
#include "sim/sdk/render.h"

/// The gate that every SDK function goes through. It logs the call, lets a fault answer for it, and
/// otherwise runs the body, for chip calls under the chip's lock and once the chip is far enough
/// up. With log and faults off it costs a branch. An entry point is one statement:
///
///     extern "C" int bcmx_vlan_create(bcm_vlan_t vid)
///     {
///         return sdk_call("bcmx_vlan_create", args(vid),
///                         [&](Chip& chip) { return chip.vlans.create(vid); });
///     }
///
/// Outputs are written by the body, so that a call that fails leaves them alone.
namespace vexosim {

/// Any call with a result code; the body takes nothing and locks what it needs.
template <class... A, class Body>
int gated(const char* name, CallClass kind, const Arguments<A...>& arguments, Body&& body)
{
    Watch& watch = card().watch;
    const int result =
        !watch.on() ? body()
                    : watch.run(name, kind, arguments.text(), [&body]() -> int { return body(); });
    if (result < 0) [[unlikely]]
        keep_failed_call(name, result);
    return result;
}

/// Bookkeeping with a result code.
template <class... A, class Body>
int local_call(const char* name, const Arguments<A...>& arguments, Body&& body)
{
    return gated(name, CallClass::local, arguments, std::forward<Body>(body));
}

/// Bookkeeping that returns a pointer; a fault makes it null.
template <class... A, class Body>
auto pointer_call(const char* name, const Arguments<A...>& arguments, Body&& body)
{
    using Pointer = decltype(body());
    Watch& watch = card().watch;
    if (!watch.on()) [[likely]]
        return body();
    const auto run = [&body] { return const_cast<void*>(static_cast<const void*>(body())); };
    return static_cast<Pointer>(watch.run_pointer(name, CallClass::local, arguments.text(), run));
}

/// A call that cannot fail: it returns something else than a result code, or nothing.
template <class... A, class Body>
auto sure_call(const char* name, CallClass kind, const Arguments<A...>& arguments, Body&& body)
{
    Watch& watch = card().watch;
    if (watch.on()) [[unlikely]]
        watch.note(name, kind, arguments.text());
    return body();
}

/// Under the chip's lock. UNIT: no such unit, or it cannot be reached; INIT: not far enough up.
inline int check_unit(int unit, Stage needed)
{
    if (unit != 0 || card().stage < Stage::reachable)
        return BCM_E_UNIT;
    return card().stage < needed ? BCM_E_INIT : BCM_E_NONE;
}

/// A call to the chip of a unit that must have come up as far as `needed`.
template <class... A, class Body>
int unit_call(const char* name, int unit, Stage needed, const Arguments<A...>& arguments,
              Body&& body)
{
    return gated(name, CallClass::chip, arguments, [&]() -> int {
        const ChipLock chip;
        const int rc = check_unit(unit, needed);
        return rc == BCM_E_NONE ? body(*chip) : rc;
    });
}

/// A call to an initialised unit.
template <class... A, class Body>
int unit_call(const char* name, int unit, const Arguments<A...>& arguments, Body&& body)
{
    return unit_call(name, unit, Stage::initialised, arguments, std::forward<Body>(body));
}

/// A call to all attached units, of which there is one.
template <class... A, class Body>
int sdk_call(const char* name, const Arguments<A...>& arguments, Body&& body)
{
    return gated(name, CallClass::chip, arguments, [&]() -> int {
        const ChipLock chip;
        if (card().stage < Stage::attached)
            return BCM_E_INIT;
        return body(*chip);
    });
}

/// The same for one port; the body also gets its chip-local port.
template <class... A, class Body>
int port_call(const char* name, bcmx_lport_t lport, const Arguments<A...>& arguments, Body&& body)
{
    return sdk_call(name, arguments, [&](Chip& chip) -> int {
        const int port = card().ports.chip_port(lport);
        return port < 0 ? static_cast<int>(BCM_E_PORT) : static_cast<int>(body(chip, port));
    });
}

} // namespace vexosim
