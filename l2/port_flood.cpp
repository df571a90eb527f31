// Which floods from one port are kept from another, alone and from all front-panel ports at once.
// The flag bits are the SDK's own. One surprise: the egress state reads the other way round than it
// is set.
#include <bcmx/l2.h>
#include <bcmx/port.h>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "l2/port_sweep.h"

using namespace vexolc;

static_assert(FLOOD_BLOCK_BROADCAST == BCM_PORT_FLOOD_BLOCK_BCAST &&
              FLOOD_BLOCK_UNKNOWN_UNICAST == BCM_PORT_FLOOD_BLOCK_UNKNOWN_UCAST &&
              FLOOD_BLOCK_KNOWN_MULTICAST == BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST &&
              FLOOD_BLOCK_UNKNOWN_MULTICAST == BCM_PORT_FLOOD_BLOCK_UNKNOWN_MCAST);

namespace {

constexpr uint32_t all_floods = BCM_PORT_FLOOD_BLOCK_BCAST | BCM_PORT_FLOOD_BLOCK_UNKNOWN_UCAST |
                                BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST |
                                BCM_PORT_FLOOD_BLOCK_UNKNOWN_MCAST;

// A port without layer 2 deliberately still gets known multicasts.
constexpr uint32_t floods_without_l2 = all_floods & ~uint32_t{BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST};

} // namespace

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

bool VexoBcmSdk::set_port_l2_enable(const Mp& port, bool enable)
{
    int lport = -1;
    const uint32_t blocked = enable ? 0 : floods_without_l2;
    if (!map_mp_to_lport(port, lport) || !for_each_front_lport([=](int ingress) {
            return ingress == lport || ok(bcmx_port_flood_block_set(ingress, lport, blocked));
        }))
        return false;
    return enable || ok(bcmx_l2_addr_delete_by_port(lport, BCM_L2_DELETE_STATIC), BCM_E_NOT_FOUND);
}

bool VexoBcmSdk::set_port_egress_admin_state(const Mp& port, bool up)
{
    int lport = -1;
    const uint32_t blocked = up ? 0 : all_floods;
    return map_mp_to_lport(port, lport) && for_each_front_lport([=](int ingress) {
               return ok(bcmx_port_flood_block_set(ingress, lport, blocked));
           });
}

bool VexoBcmSdk::get_port_egress_admin_state(const Mp& port, bool& state)
{
    int lport = -1;
    if (!map_mp_to_lport(port, lport))
        return false;
    bool open = false;
    const bool swept = for_each_front_lport([&](int ingress) {
        uint32_t blocked = 0;
        bcmx_port_flood_block_get(ingress, lport, &blocked); // result ignored on purpose
        open = blocked != all_floods;
        return !open;
    });
    return (swept || open) && store(state, !open); // deliberately true for a port set down
}
