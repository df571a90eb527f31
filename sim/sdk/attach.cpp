// Attaching the unit: the driver decides about each chip-local port in turn.
#include <bcmx/lport.h>

#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

std::uint32_t kind_of(int chip_port, PortSet xe)
{
    const std::uint32_t kind = chip_port == kCpuPort ? BCMX_PORT_F_CPU
                               : xe.test(chip_port)  ? BCMX_PORT_F_XE
                                                     : BCMX_PORT_F_GE;
    return BCMX_PORT_F_VALID | kind;
}

/// User port of a chip-local port when nobody asks for another.
int default_user_port(int chip_port)
{
    return chip_port == kCpuPort ? kCpuUserPort : chip_port - 1;
}

void create_port(int chip_port, std::uint32_t flags)
{
    const bcmx_uport_create_callback_t ask = card().uport_create;
    const int user_port = ask == nullptr ? default_user_port(chip_port)
                                         : ask(kFirstLport + chip_port, 0, chip_port, flags);
    if (user_port >= 0)
        card().ports.create(chip_port, user_port);
}

int attach(int unit)
{
    PortSet xe;
    {
        const ChipLock chip;
        if (const int rc = check_unit(unit, Stage::initialised); rc != BCM_E_NONE)
            return rc;
        if (card().stage == Stage::attached)
            return BCM_E_EXISTS;
        xe = chip->ports.xe();
        card().stage = Stage::attached;
    }
    for (int port = 0; port < kPortCount; ++port)
        create_port(port, kind_of(port, xe));
    return BCM_E_NONE;
}

} // namespace

extern "C" int bcmx_uport_create_callback_set(bcmx_uport_create_callback_t callback)
{
    return gated("bcmx_uport_create_callback_set", CallClass::chip, args(Handler{callback}), [&] {
        card().uport_create = callback;
        return int{BCM_E_NONE};
    });
}

extern "C" int bcmx_device_attach(int unit)
{
    return gated("bcmx_device_attach", CallClass::chip, args(unit), [&] { return attach(unit); });
}
