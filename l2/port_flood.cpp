// Which floods from one port are kept from another. The flag bits are the SDK's own.
#include <bcmx/port.h>

#include "core/bcm_sdk.h"
#include "core/result.h"

using namespace vexolc;

static_assert(FLOOD_BLOCK_BROADCAST == BCM_PORT_FLOOD_BLOCK_BCAST &&
              FLOOD_BLOCK_UNKNOWN_UNICAST == BCM_PORT_FLOOD_BLOCK_UNKNOWN_UCAST &&
              FLOOD_BLOCK_KNOWN_MULTICAST == BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST &&
              FLOOD_BLOCK_UNKNOWN_MULTICAST == BCM_PORT_FLOOD_BLOCK_UNKNOWN_MCAST);

bool VexoBcmSdk::set_port_flood_blocking(const Mp& ingress, const Mp& egress,
                                         flood_block_type_t block)
{
    int in = -1;
    int out = -1;
    return map_mp_to_lport(ingress, in) && map_mp_to_lport(egress, out) &&
           ok(bcmx_port_flood_block_set(in, out, block));
}

bool VexoBcmSdk::get_port_flood_blocking(const Mp& ingress, const Mp& egress,
                                         flood_block_type_t& block)
{
    int in = -1;
    int out = -1;
    uint32_t flags = 0;
    return map_mp_to_lport(ingress, in) && map_mp_to_lport(egress, out) &&
           ok(bcmx_port_flood_block_get(in, out, &flags)) && store(block, flags);
}

bool VexoBcmSdk::set_port_flood_blocking_cpu(const Mp& ingress, flood_block_type_t block)
{
    int in = -1;
    int cpu = -1;
    return map_mp_to_lport(ingress, in) && vexo_bcm_sdk_get_cpu_lport(cpu) &&
           ok(bcmx_port_flood_block_set(in, cpu, block));
}

bool VexoBcmSdk::get_port_flood_blocking_cpu(const Mp& ingress, flood_block_type_t& block)
{
    int in = -1;
    int cpu = -1;
    uint32_t flags = 0;
    return map_mp_to_lport(ingress, in) && vexo_bcm_sdk_get_cpu_lport(cpu) &&
           ok(bcmx_port_flood_block_get(in, cpu, &flags)) && store(block, flags);
}
