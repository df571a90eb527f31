// What a port does with unknown source addresses, and how many addresses may be learned. One
// surprise: a chip without learning limits shows in a probe, and only the setter makes one.
#include <iostream>

#include <bcmx/l2.h>
#include <bcmx/port.h>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "core/trace.h"

using namespace vexolc;

namespace {

constexpr bool has(uint32_t flags, uint32_t flag)
{
    return (flags & flag) != 0;
}

/// Where a limit applies.
enum LimitKind : int {
    LIMIT_UNSPECIFIED = 0,
    LIMIT_PORT = 1,
    LIMIT_LAG = 2,
    LIMIT_VLAN = 3,
    LIMIT_SYSTEM = 4,
};

/// Fills in where `record` applies: on `lport`, or to what the number of `port` names. False for
/// other kinds.
bool set_scope(bcm_l2_learn_limit_t& record, const Mp& port, int lport, int kind)
{
    switch (kind) {
    case LIMIT_UNSPECIFIED:
        return true;
    case LIMIT_PORT:
        record.flags = BCM_L2_LEARN_LIMIT_PORT;
        record.port = lport;
        return true;
    case LIMIT_LAG:
        record.flags = BCM_L2_LEARN_LIMIT_TRUNK;
        record.trunk = static_cast<bcm_trunk_t>(port.port());
        return true;
    case LIMIT_VLAN:
        record.flags = BCM_L2_LEARN_LIMIT_VLAN;
        record.vlan = static_cast<bcm_vlan_t>(port.port());
        return true;
    case LIMIT_SYSTEM:
        record.flags = BCM_L2_LEARN_LIMIT_SYSTEM;
        return true;
    default:
        return false;
    }
}

/// Reads a limit; tells, while tracing is on, when the chip does not have it.
bool read_limit(bcm_l2_learn_limit_t& record)
{
    const int rc = bcmx_l2_learn_limit_get(&record);
    if ((rc == BCM_E_NOT_FOUND || rc == BCM_E_UNAVAIL) && sdk_trace_enabled)
        std::cout << "Warnning: this kind of switch chip does not support mac limit" << std::endl;
    return ok(rc);
}

} // namespace

bool VexoBcmSdk::set_port_mac_lock(const Mp& port, bool lock)
{
    const uint32_t mode = lock ? BCM_PORT_LEARN_CPU : BCM_PORT_LEARN_ARL | BCM_PORT_LEARN_FWD;
    return ok(bcmx_port_learn_set(lport_of(port), mode));
}

bool VexoBcmSdk::get_port_mac_lock(const Mp& port, bool& locked)
{
    uint32_t mode = 0;
    return ok(bcmx_port_learn_get(lport_of(port), &mode)) &&
           store(locked, !has(mode, BCM_PORT_LEARN_ARL) || !has(mode, BCM_PORT_LEARN_FWD));
}

bool VexoBcmSdk::set_port_mac_lock_ext(const Mp& port, bool lock, bool forward)
{
    const uint32_t locked_mode = forward ? BCM_PORT_LEARN_FWD : BCM_PORT_LEARN_CPU;
    int lport = -1;
    // Deliberately without forwarding when unlocked: `get_port_mac_lock` calls that locked.
    return map_mp_to_lport(port, lport) &&
           ok(bcmx_port_learn_set(lport, lock ? locked_mode : BCM_PORT_LEARN_ARL));
}

bool VexoBcmSdk::get_port_mac_lock_ext(const Mp& port, bool& locked, bool& forward)
{
    int lport = -1;
    uint32_t mode = 0;
    if (!map_mp_to_lport(port, lport) || !ok(bcmx_port_learn_get(lport, &mode)))
        return false;
    locked = !has(mode, BCM_PORT_LEARN_ARL);
    if (locked)
        forward = has(mode, BCM_PORT_LEARN_FWD);
    return true;
}

bool VexoBcmSdk::set_port_mac_limit(const Mp& port, int limit, int kind)
{
    bcm_l2_learn_limit_t record;
    bcmx_l2_learn_limit_t_init(&record);
    if (!read_limit(record) || !set_scope(record, port, lport_of(port), kind))
        return false;
    record.limit = limit;
    // Deliberately true on a chip that has limits, but not of this kind.
    return ok(bcmx_l2_learn_limit_set(&record), BCM_E_UNAVAIL);
}

bool VexoBcmSdk::get_port_mac_limit(const Mp& port, int& limit, int kind)
{
    bcm_l2_learn_limit_t record;
    bcmx_l2_learn_limit_t_init(&record);
    int lport = -1;
    if (kind == LIMIT_UNSPECIFIED || (kind == LIMIT_PORT && !map_mp_to_lport(port, lport)))
        return false;
    return set_scope(record, port, lport, kind) && read_limit(record) && store(limit, record.limit);
}
