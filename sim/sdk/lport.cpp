// Logical ports: what they stand for. They exist from the attach on.
#include <bcmx/lport.h>

#include "sim/sdk/gate.h"

using namespace vexosim;

extern "C" int bcmx_lport_bcm_unit(bcmx_lport_t port)
{
    return gated("bcmx_lport_bcm_unit", CallClass::chip, args(Lport{port}),
                 [&]() -> int { return card().ports.chip_port(port) < 0 ? int{BCM_E_PORT} : 0; });
}

extern "C" bcm_port_t bcmx_lport_bcm_port(bcmx_lport_t port)
{
    return gated("bcmx_lport_bcm_port", CallClass::chip, args(Lport{port}), [&]() -> int {
        const int chip_port = card().ports.chip_port(port);
        return chip_port < 0 ? int{BCM_E_PORT} : chip_port;
    });
}

extern "C" bcmx_lport_t bcmx_modid_port_to_lport(bcm_module_t modid, bcm_port_t port)
{
    return sure_call("bcmx_modid_port_to_lport", CallClass::chip, args(modid, port),
                     [&] { return modid == 0 ? card().ports.lport(port) : BCMX_LPORT_INVALID; });
}
