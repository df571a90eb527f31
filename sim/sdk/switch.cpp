// Switch controls.
#include <bcmx/switch.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

using namespace vexosim;

extern "C" int bcm_switch_control_set(int unit, bcm_switch_control_t control, int value)
{
    return unit_call("bcm_switch_control_set", unit, args(unit, control, value),
                     [&](Chip& chip) { return chip.controls.set(control, value); });
}

extern "C" int bcmx_switch_control_set(bcm_switch_control_t control, int value)
{
    return sdk_call("bcmx_switch_control_set", args(control, value),
                    [&](Chip& chip) { return chip.controls.set(control, value); });
}

extern "C" int bcmx_switch_control_get(bcm_switch_control_t control, int* value)
{
    return sdk_call("bcmx_switch_control_get", args(control, Out{value}), [&](Chip& chip) -> int {
        return value == nullptr ? BCM_E_PARAM : chip.controls.get(control, *value);
    });
}

extern "C" int bcmx_switch_control_port_set(bcmx_lport_t port, bcm_switch_control_t control,
                                            int value)
{
    return port_call("bcmx_switch_control_port_set", port, args(Lport{port}, control, value),
                     [&](Chip& chip, int p) { return chip.controls.set_port(p, control, value); });
}

extern "C" int bcmx_switch_control_port_get(bcmx_lport_t port, bcm_switch_control_t control,
                                            int* value)
{
    return port_call("bcmx_switch_control_port_get", port, args(Lport{port}, control, Out{value}),
                     [&](Chip& chip, int p) -> int {
                         return value == nullptr ? BCM_E_PARAM
                                                 : chip.controls.get_port(p, control, *value);
                     });
}
