// MII management.
#include <soc/phy.h>

#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

int check(uint8_t phy_address, uint8_t reg)
{
    if (reg >= Phys::kRegisters)
        return BCM_E_PARAM;
    return Phys::answers(phy_address) ? BCM_E_NONE : BCM_E_TIMEOUT;
}

int read(uint8_t phy_address, uint8_t reg, uint16_t* data)
{
    if (data == nullptr)
        return BCM_E_PARAM;
    const int rc = check(phy_address, reg);
    if (rc == BCM_E_NONE)
        *data = card().phys.read(phy_address, reg);
    return rc;
}

int write(uint8_t phy_address, uint8_t reg, uint16_t data)
{
    const int rc = check(phy_address, reg);
    if (rc == BCM_E_NONE)
        card().phys.write(phy_address, reg, data);
    return rc;
}

} // namespace

extern "C" uint8_t soc_phy_addr_of_port(int unit, int port)
{
    return sure_call("soc_phy_addr_of_port", CallClass::chip, args(unit, port), [&] {
        return PortMap::is_chip_port(port) ? Phys::address_of(port) : std::uint8_t{0};
    });
}

extern "C" int soc_miim_read(int unit, uint8_t phy_address, uint8_t reg, uint16_t* data)
{
    return unit_call("soc_miim_read", unit, Stage::reachable,
                     args(unit, phy_address, Flags{reg}, Out{data}),
                     [&](Chip&) { return read(phy_address, reg, data); });
}

extern "C" int soc_miim_write(int unit, uint8_t phy_address, uint8_t reg, uint16_t data)
{
    return unit_call("soc_miim_write", unit, Stage::reachable,
                     args(unit, phy_address, Flags{reg}, Flags{data}),
                     [&](Chip&) { return write(phy_address, reg, data); });
}
