// What ports can do, and advertise.
#include <bcmx/port.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

bcm_port_ability_t record(const PortAbility& a)
{
    bcm_port_ability_t record = {};
    record.speed_half_duplex = a.speed_half;
    record.speed_full_duplex = a.speed_full;
    record.pause = a.pause;
    record.medium = a.medium;
    record.flags = a.flags;
    return record;
}

bcm_port_abil_t speeds(std::uint32_t abilities, bcm_port_abil_t ten, bcm_port_abil_t hundred,
                       bcm_port_abil_t thousand, bcm_port_abil_t ten_thousand)
{
    bcm_port_abil_t mask = 0;
    mask |= (abilities & BCM_PORT_ABILITY_10MB) != 0 ? ten : 0;
    mask |= (abilities & BCM_PORT_ABILITY_100MB) != 0 ? hundred : 0;
    mask |= (abilities & BCM_PORT_ABILITY_1000MB) != 0 ? thousand : 0;
    mask |= (abilities & BCM_PORT_ABILITY_10GB) != 0 ? ten_thousand : 0;
    return mask;
}

/// The older form, in one word.
bcm_port_abil_t word(const PortAbility& a)
{
    bcm_port_abil_t mask = speeds(a.speed_half, BCM_PORT_ABIL_10MB_HD, BCM_PORT_ABIL_100MB_HD,
                                  BCM_PORT_ABIL_1000MB_HD, BCM_PORT_ABIL_10GB_HD) |
                           speeds(a.speed_full, BCM_PORT_ABIL_10MB_FD, BCM_PORT_ABIL_100MB_FD,
                                  BCM_PORT_ABIL_1000MB_FD, BCM_PORT_ABIL_10GB_FD);
    mask |= (a.pause & BCM_PORT_ABILITY_PAUSE_TX) != 0 ? BCM_PORT_ABIL_PAUSE_TX : 0;
    mask |= (a.pause & BCM_PORT_ABILITY_PAUSE_RX) != 0 ? BCM_PORT_ABIL_PAUSE_RX : 0;
    mask |= (a.pause & BCM_PORT_ABILITY_PAUSE_ASYMM) != 0 ? BCM_PORT_ABIL_PAUSE_ASYMM : 0;
    mask |= (a.flags & BCM_PORT_ABILITY_AUTONEG) != 0 ? BCM_PORT_ABIL_AN : 0;
    mask |= (a.flags & BCM_PORT_ABILITY_COMBO) != 0 ? BCM_PORT_ABIL_COMBO : 0;
    return mask;
}

/// A call that reads abilities of a port. PARAM: null output.
template <class T, class Read>
int ability_get(const char* name, bcmx_lport_t lport, T* output, Read&& read)
{
    return port_call(name, lport, args(Lport{lport}, Out{output}), [&](Chip& chip, int port) {
        if (output == nullptr)
            return BCM_E_PARAM;
        *output = read(chip.ports, port);
        return BCM_E_NONE;
    });
}

} // namespace

extern "C" int bcmx_port_ability_get(bcmx_lport_t port, bcm_port_abil_t* ability_mask)
{
    return ability_get("bcmx_port_ability_get", port, ability_mask,
                       [](PortTable& ports, int p) { return word(ports.local_ability(p)); });
}

extern "C" int bcmx_port_ability_local_get(bcmx_lport_t port, bcm_port_ability_t* ability)
{
    return ability_get("bcmx_port_ability_local_get", port, ability,
                       [](PortTable& ports, int p) { return record(ports.local_ability(p)); });
}

extern "C" int bcmx_port_ability_advert_set(bcmx_lport_t port, bcm_port_ability_t* ability)
{
    return port_call("bcmx_port_ability_advert_set", port, args(Lport{port}, ability),
                     [&](Chip& chip, int p) -> int {
                         if (ability == nullptr)
                             return BCM_E_PARAM;
                         return chip.ports.set_advert(
                             p, {ability->speed_half_duplex, ability->speed_full_duplex,
                                 ability->pause, ability->medium, ability->flags});
                     });
}

extern "C" int bcmx_port_ability_advert_get(bcmx_lport_t port, bcm_port_ability_t* ability)
{
    return ability_get("bcmx_port_ability_advert_get", port, ability,
                       [](PortTable& ports, int p) { return record(ports[p].advert); });
}

extern "C" int bcmx_port_ability_remote_get(bcmx_lport_t port, bcm_port_ability_t* ability)
{
    return ability_get("bcmx_port_ability_remote_get", port, ability,
                       [](PortTable& ports, int p) { return record(ports[p].remote); });
}
