#include <bcmx/mirror.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

using namespace vexosim;

namespace {

int get_mirror(const Mirror& mirror, bcmx_lport_t* dest, std::uint32_t* flags)
{
    if (dest == nullptr || flags == nullptr)
        return BCM_E_PARAM;
    *dest = card().ports.lport(mirror.destination);
    *flags = mirror.flags;
    return BCM_E_NONE;
}

} // namespace

extern "C" int bcmx_mirror_init(void)
{
    return sdk_call("bcmx_mirror_init", args(), [](Chip& chip) { return chip.mirrors.init(); });
}

extern "C" int bcmx_mirror_pfmt_set(int mode)
{
    return sdk_call("bcmx_mirror_pfmt_set", args(mode),
                    [&](Chip& chip) { return chip.mirrors.set_format(mode); });
}

extern "C" int bcmx_mirror_port_set(bcmx_lport_t port, bcmx_lport_t dest, uint32_t flags)
{
    return port_call("bcmx_mirror_port_set", port, args(Lport{port}, Lport{dest}, Flags{flags}),
                     [&](Chip& chip, int chip_port) {
                         return chip.mirrors.set(chip_port, card().ports.chip_port(dest), flags);
                     });
}

extern "C" int bcmx_mirror_port_get(bcmx_lport_t port, bcmx_lport_t* dest, uint32_t* flags)
{
    return port_call("bcmx_mirror_port_get", port, args(Lport{port}, Out{dest}, Out{flags}),
                     [&](Chip& chip, int chip_port) {
                         return get_mirror(chip.mirrors.of(chip_port), dest, flags);
                     });
}
