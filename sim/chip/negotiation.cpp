#include "sim/chip/negotiation.h"

#include <bcm/port.h>

namespace vexosim {

namespace {

struct Mode {
    std::uint32_t ability;
    int speed;
    bool full;
};

/// The best first.
constexpr Mode kModes[] = {
    {BCM_PORT_ABILITY_10GB, 10000, true},  {BCM_PORT_ABILITY_10GB, 10000, false},
    {BCM_PORT_ABILITY_1000MB, 1000, true}, {BCM_PORT_ABILITY_1000MB, 1000, false},
    {BCM_PORT_ABILITY_100MB, 100, true},   {BCM_PORT_ABILITY_100MB, 100, false},
    {BCM_PORT_ABILITY_10MB, 10, true},     {BCM_PORT_ABILITY_10MB, 10, false},
};

bool has(const PortAbility& a, const Mode& mode)
{
    return ((mode.full ? a.speed_full : a.speed_half) & mode.ability) != 0;
}

const Mode* best(const PortAbility& a, const PortAbility& b)
{
    for (const Mode& mode : kModes)
        if (has(a, mode) && has(b, mode))
            return &mode;
    return nullptr;
}

/// Either duplex.
const Mode* of_speed(const PortAbility& a, int speed)
{
    for (const Mode& mode : kModes)
        if (mode.speed == speed && has(a, mode))
            return &mode;
    return nullptr;
}

bool negotiates(const PortAbility& partner)
{
    return (partner.flags & BCM_PORT_ABILITY_AUTONEG) != 0;
}

/// An advertisement's two bits: PAUSE, which obeys, and its being asymmetric.
struct PauseBits {
    bool pause, asymmetric;
};

PauseBits pause_bits(const PortAbility& a)
{
    const bool tx = (a.pause & BCM_PORT_ABILITY_PAUSE_TX) != 0;
    const bool rx = (a.pause & BCM_PORT_ABILITY_PAUSE_RX) != 0;
    return {rx, tx != rx || (a.pause & BCM_PORT_ABILITY_PAUSE_ASYMM) != 0};
}

void resolve_pause(LinkState& link, const PortAbility& local, const PortAbility& remote)
{
    const PauseBits here = pause_bits(local), there = pause_bits(remote);
    const bool both = here.pause && there.pause;
    const bool one_way = !both && here.asymmetric && there.asymmetric;
    link.pause_tx = both || (one_way && there.pause);
    link.pause_rx = both || (one_way && here.pause);
}

LinkState up(const Mode& mode)
{
    return {true, mode.speed, mode.full, false, false, {}};
}

LinkState both_negotiate(const PortConfig& port, const PortAbility& partner)
{
    const Mode* mode = best(port.advert, partner);
    if (mode == nullptr)
        return {};
    LinkState link = up(*mode);
    if (mode->full)
        resolve_pause(link, port.advert, partner);
    link.remote = partner;
    return link;
}

/// What the port finds is all that it knows of the partner.
LinkState port_follows(const PortConfig& port, const PortAbility& partner)
{
    for (const Mode& mode : kModes) {
        if (!has(partner, mode) || of_speed(port.advert, mode.speed) == nullptr)
            continue;
        LinkState link = up(mode);
        link.full_duplex = mode.speed >= 1000;
        (link.full_duplex ? link.remote.speed_full : link.remote.speed_half) = mode.ability;
        return link;
    }
    return {};
}

LinkState port_is_fixed(const PortConfig& port, const PortAbility& partner)
{
    if (of_speed(partner, port.speed) == nullptr)
        return {};
    return {true, port.speed, port.duplex_full, false, false, {}};
}

} // namespace

LinkState negotiate(const PortConfig& port, const PortAbility& partner)
{
    LinkState link = !port.autoneg         ? port_is_fixed(port, partner)
                     : negotiates(partner) ? both_negotiate(port, partner)
                                           : port_follows(port, partner);
    if (!port.autoneg || port.pause_by_hand) {
        link.pause_tx = port.pause_tx;
        link.pause_rx = port.pause_rx;
    }
    return link;
}

} // namespace vexosim
