#include "vexosim/partner.h"

#include <bcm/port.h>

#include "sim/wire/panel.h"

namespace vexosim {

namespace {

std::uint32_t ability_of(int speed)
{
    switch (speed) {
    case 10:
        return BCM_PORT_ABILITY_10MB;
    case 100:
        return BCM_PORT_ABILITY_100MB;
    case 1000:
        return BCM_PORT_ABILITY_1000MB;
    case 10000:
        return BCM_PORT_ABILITY_10GB;
    default:
        return 0;
    }
}

} // namespace

LinkPartner LinkPartner::able()
{
    constexpr std::uint32_t kAll = BCM_PORT_ABILITY_10MB | BCM_PORT_ABILITY_100MB |
                                   BCM_PORT_ABILITY_1000MB | BCM_PORT_ABILITY_10GB;
    return {true, kAll, kAll, BCM_PORT_ABILITY_PAUSE_TX | BCM_PORT_ABILITY_PAUSE_RX};
}

LinkPartner LinkPartner::fixed(int speed, bool full_duplex)
{
    LinkPartner partner;
    partner.autoneg = false;
    (full_duplex ? partner.speed_full : partner.speed_half) = ability_of(speed);
    return partner;
}

std::string set_partner(int user_port, const LinkPartner& partner)
{
    return panel().set_partner(user_port, partner);
}

} // namespace vexosim
