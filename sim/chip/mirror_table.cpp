#include "sim/chip/mirror_table.h"

#include <bcmx/mirror.h>

namespace vexosim {

namespace {

constexpr std::uint32_t kDirections = BCM_MIRROR_PORT_INGRESS | BCM_MIRROR_PORT_EGRESS;
constexpr std::uint32_t kAll = BCM_MIRROR_PORT_ENABLE | kDirections | BCM_MIRROR_PORT_EGRESS_TRUE;

bool is_valid(std::uint32_t flags)
{
    if (flags == 0)
        return true;
    const bool true_egress = (flags & BCM_MIRROR_PORT_EGRESS_TRUE) != 0;
    return (flags & ~kAll) == 0 && (flags & BCM_MIRROR_PORT_ENABLE) != 0 &&
           (flags & kDirections) != 0 && (!true_egress || (flags & BCM_MIRROR_PORT_EGRESS) != 0);
}

} // namespace

int MirrorTable::init()
{
    *this = MirrorTable{};
    return BCM_E_NONE;
}

int MirrorTable::set_format(int mode)
{
    if (mode != 0 && mode != 1)
        return BCM_E_PARAM;
    format_ = mode;
    return BCM_E_NONE;
}

int MirrorTable::set(int port, int destination, std::uint32_t flags)
{
    if (!is_chip_port(port) || !is_chip_port(destination))
        return BCM_E_PORT;
    if (!is_valid(flags) || destination == port)
        return BCM_E_PARAM;
    mirrors_[static_cast<std::size_t>(port)] = flags != 0 ? Mirror{destination, flags} : Mirror{};
    ingress_.assign(port, (flags & BCM_MIRROR_PORT_INGRESS) != 0);
    egress_.assign(port, (flags & BCM_MIRROR_PORT_EGRESS) != 0);
    return BCM_E_NONE;
}

} // namespace vexosim
