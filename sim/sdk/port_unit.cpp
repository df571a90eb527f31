// Ports of one unit, by chip-local port.
#include <bcm/port.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

bcm_pbmp_t bit_map(PortSet ports)
{
    bcm_pbmp_t map = {};
    for (const int port : ports)
        BCM_PBMP_PORT_ADD(map, port);
    return map;
}

int get_config(const Chip& chip, bcm_port_config_t* config)
{
    if (config == nullptr)
        return BCM_E_PARAM;
    const PortSet xe = chip.ports.xe();
    *config = {};
    config->ge = bit_map(PortSet::front() - xe);
    config->xe = bit_map(xe);
    config->e = config->port = bit_map(PortSet::front());
    config->cpu = bit_map({kCpuPort});
    config->all = bit_map(PortSet::all());
    return BCM_E_NONE;
}

} // namespace

extern "C" int bcm_port_config_get(int unit, bcm_port_config_t* config)
{
    return unit_call("bcm_port_config_get", unit, args(unit, Out{config}),
                     [&](Chip& chip) { return get_config(chip, config); });
}

extern "C" int bcm_port_flood_block_set(int unit, bcm_port_t ingress, bcm_port_t egress,
                                        uint32_t flags)
{
    return unit_call("bcm_port_flood_block_set", unit, args(unit, ingress, egress, Flags{flags}),
                     [&](Chip& chip) { return chip.flood_block.set(ingress, egress, flags); });
}
