// Spanning-tree groups.
#include <bcmx/stg.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

using namespace vexosim;

extern "C" int bcmx_stg_stp_set(bcm_stg_t stg, bcmx_lport_t port, int state)
{
    return port_call("bcmx_stg_stp_set", port, args(stg, Lport{port}, state),
                     [&](Chip& chip, int p) { return chip.stgs.set(stg, p, state); });
}

extern "C" int bcmx_stg_stp_get(bcm_stg_t stg, bcmx_lport_t port, int* state)
{
    return port_call("bcmx_stg_stp_get", port, args(stg, Lport{port}, Out{state}),
                     [&](Chip& chip, int p) -> int {
                         return state == nullptr ? BCM_E_PARAM : chip.stgs.get(stg, p, *state);
                     });
}
