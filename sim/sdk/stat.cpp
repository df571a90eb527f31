// Port counters.
#include <bcmx/port.h>
#include <bcmx/stat.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

/// Reads a counter into an output of its own width.
template <class Get, class T>
int read_counter(T* value, Get&& get)
{
    if (value == nullptr)
        return BCM_E_PARAM;
    std::uint64_t wide = 0;
    const int rc = get(wide);
    if (rc == BCM_E_NONE)
        *value = static_cast<T>(wide);
    return rc;
}

} // namespace

extern "C" int bcm_stat_clear(int unit, bcm_port_t port)
{
    return unit_call("bcm_stat_clear", unit, args(unit, port),
                     [&](Chip& chip) { return chip.counters.clear(port); });
}

extern "C" int bcmx_stat_clear(bcmx_lport_t port)
{
    return port_call("bcmx_stat_clear", port, args(Lport{port}),
                     [](Chip& chip, int p) { return chip.counters.clear(p); });
}

extern "C" int bcmx_stat_get(bcmx_lport_t port, bcm_stat_val_t type, uint64_t* value)
{
    return port_call("bcmx_stat_get", port, args(Lport{port}, type, Out{value}),
                     [&](Chip& chip, int p) {
                         return read_counter(
                             value, [&](auto& wide) { return chip.counters.get(p, type, wide); });
                     });
}

extern "C" int bcmx_stat_get32(bcmx_lport_t port, bcm_stat_val_t type, uint32_t* value)
{
    return port_call("bcmx_stat_get32", port, args(Lport{port}, type, Out{value}),
                     [&](Chip& chip, int p) {
                         return read_counter(
                             value, [&](auto& wide) { return chip.counters.get(p, type, wide); });
                     });
}

extern "C" int bcmx_port_stat_enable_set(bcmx_lport_t port, int enable)
{
    return port_call("bcmx_port_stat_enable_set", port, args(Lport{port}, enable),
                     [&](Chip& chip, int p) { return chip.counters.set_short_enable(p, enable); });
}

extern "C" int bcmx_port_stat_get(bcmx_lport_t port, bcm_port_stat_t stat, uint64_t* value)
{
    return port_call(
        "bcmx_port_stat_get", port, args(Lport{port}, stat, Out{value}), [&](Chip& chip, int p) {
            return read_counter(value,
                                [&](auto& wide) { return chip.counters.get_short(p, stat, wide); });
        });
}

extern "C" int bcmx_port_stat_get32(bcmx_lport_t port, bcm_port_stat_t stat, uint32_t* value)
{
    return port_call(
        "bcmx_port_stat_get32", port, args(Lport{port}, stat, Out{value}), [&](Chip& chip, int p) {
            return read_counter(value,
                                [&](auto& wide) { return chip.counters.get_short(p, stat, wide); });
        });
}
