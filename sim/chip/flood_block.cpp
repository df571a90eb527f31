#include "sim/chip/flood_block.h"

#include <bcm/error.h>
#include <bcm/port.h>

namespace vexosim {

static_assert(BCM_PORT_FLOOD_BLOCK_BCAST == 1u << static_cast<int>(FloodClass::kBroadcast));
static_assert(BCM_PORT_FLOOD_BLOCK_UNKNOWN_UCAST ==
              1u << static_cast<int>(FloodClass::kUnknownUnicast));
static_assert(BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST ==
              1u << static_cast<int>(FloodClass::kKnownMulticast));
static_assert(BCM_PORT_FLOOD_BLOCK_UNKNOWN_MCAST ==
              1u << static_cast<int>(FloodClass::kUnknownMulticast));

int FloodBlock::set(int ingress, int egress, std::uint32_t flags)
{
    if (!is_chip_port(ingress) || !is_chip_port(egress))
        return BCM_E_PORT;
    if (flags >> kFloodClasses != 0)
        return BCM_E_PARAM;
    auto& sets = blocked_[static_cast<std::size_t>(ingress)];
    for (std::size_t kind = 0; kind < kFloodClasses; ++kind)
        sets[kind].assign(egress, (flags >> kind & 1) != 0);
    return BCM_E_NONE;
}

int FloodBlock::get(int ingress, int egress, std::uint32_t& flags) const
{
    if (!is_chip_port(ingress) || !is_chip_port(egress))
        return BCM_E_PORT;
    flags = 0;
    for (std::size_t kind = 0; kind < kFloodClasses; ++kind) {
        if (blocked(ingress, static_cast<FloodClass>(kind)).test(egress))
            flags |= 1u << kind;
    }
    return BCM_E_NONE;
}

} // namespace vexosim
