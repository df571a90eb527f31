// Port mirroring. One surprise: setting a mirror also keeps floods from its destination, and taking
// one away lets them through again, whether or not other ports are mirrored there.
#include <bcmx/mirror.h>
#include <bcmx/port.h>

#include "core/bcm_sdk.h"
#include "core/enum_table.h"
#include "core/result.h"
#include "l2/port_sweep.h"

using namespace vexolc;

namespace {

constexpr EnumTable<mirror_type_t, 4> mirror_flags = {{
    {MIRROR_OFF, 0},
    {MIRROR_INGRESS, BCM_MIRROR_PORT_ENABLE | BCM_MIRROR_PORT_INGRESS},
    {MIRROR_EGRESS, BCM_MIRROR_PORT_ENABLE | BCM_MIRROR_PORT_EGRESS | BCM_MIRROR_PORT_EGRESS_TRUE},
    {MIRROR_BOTH, BCM_MIRROR_PORT_ENABLE | BCM_MIRROR_PORT_INGRESS | BCM_MIRROR_PORT_EGRESS |
                      BCM_MIRROR_PORT_EGRESS_TRUE},
}};

/// Reading looks at the two directions only. False when neither is set.
constexpr bool read_directions(uint32_t flags, mirror_type_t& type)
{
    const bool ingress = (flags & BCM_MIRROR_PORT_INGRESS) != 0;
    const bool egress = (flags & BCM_MIRROR_PORT_EGRESS) != 0;
    if (!ingress && !egress)
        return false;
    type = ingress && egress ? MIRROR_BOTH : ingress ? MIRROR_INGRESS : MIRROR_EGRESS;
    return true;
}

/// Keeps floods that enter at the other ports from `dest`, or lets them through again. Unknown
/// multicasts are deliberately left as they are.
bool isolate(int dest, bool isolated)
{
    constexpr uint32_t floods = BCM_PORT_FLOOD_BLOCK_BCAST | BCM_PORT_FLOOD_BLOCK_UNKNOWN_UCAST |
                                BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST;
    return for_each_front_lport([=](int lport) {
        uint32_t blocked = 0;
        if (lport == dest)
            return true;
        if (!ok(bcmx_port_flood_block_get(lport, dest, &blocked)))
            return false;
        blocked = isolated ? blocked | floods : blocked & ~floods;
        return ok(bcmx_port_flood_block_set(lport, dest, blocked));
    });
}

} // namespace

bool VexoBcmSdk::enable_mirror(unsigned)
{
    constexpr int as_received = 1;
    return ok(bcmx_mirror_init()) && ok(bcmx_mirror_pfmt_set(as_received));
}

bool VexoBcmSdk::set_mirror_port(const Mp& destination, const Mp& source, mirror_type_t type)
{
    int dest = -1;
    int from = -1;
    int flags = 0;
    return map_mp_to_lport(destination, dest) && map_mp_to_lport(source, from) &&
           mirror_flags.to_sdk(type, flags) &&
           ok(bcmx_mirror_port_set(from, dest, static_cast<uint32_t>(flags))) &&
           isolate(dest, flags != 0);
}

bool VexoBcmSdk::get_mirror_port(Mp& destination, const Mp& source, mirror_type_t& type)
{
    int from = -1;
    if (!map_mp_to_lport(source, from))
        return false;
    bcmx_lport_t dest = 0;
    uint32_t flags = 0;
    // Deliberately the only answer that counts as a failure: after any other, what was read counts.
    if (bcmx_mirror_port_get(from, &dest, &flags) == BCM_E_PORT && flags != 0)
        return false;
    if (flags == 0)
        return store(type, MIRROR_OFF);
    mirror_type_t read = MIRROR_OFF;
    return read_directions(flags, read) && map_lport_to_mp(dest, destination) && store(type, read);
}
