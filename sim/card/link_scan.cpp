#include "sim/card/link_scan.h"

#include <algorithm>

#include "sim/card/card.h"
#include "sim/chip/chip.h"
#include "sim/chip/negotiation.h"
#include "sim/wire/panel.h"
#include "vexosim/wire.h"

namespace vexosim {

namespace {

bool has_wire_port(int user_port)
{
    return user_port >= 0 && user_port < kCpuUserPort;
}

PortAbility abilities_of(const LinkPartner& partner)
{
    const std::uint32_t flags = partner.autoneg ? BCM_PORT_ABILITY_AUTONEG : 0;
    return {partner.speed_half, partner.speed_full, partner.pause, 0, flags};
}

/// Tells the far ends of ports that were switched on or off.
void tell_wires(PortSet changed, PortSet on)
{
    for (const int port : changed) {
        const int user_port = card().ports.user_port(port);
        if (has_wire_port(user_port))
            set_wire_carrier(user_port, on.test(port));
    }
}

bcm_port_info_t info_of(const PortConfig& port, bool up)
{
    bcm_port_info_t info = {};
    info.enable = port.enable ? 1 : 0;
    info.linkstatus = up ? BCM_PORT_LINK_STATUS_UP : BCM_PORT_LINK_STATUS_DOWN;
    info.autoneg = port.autoneg ? 1 : 0;
    info.speed = port.speed;
    info.duplex = port.duplex_full ? BCM_PORT_DUPLEX_FULL : BCM_PORT_DUPLEX_HALF;
    info.pause_tx = port.pause_tx ? 1 : 0;
    info.pause_rx = port.pause_rx ? 1 : 0;
    info.frame_max = port.frame_max;
    return info;
}

} // namespace

int LinkScan::set_mode(int chip_port, int mode)
{
    if (mode != BCM_LINKSCAN_MODE_NONE && mode != BCM_LINKSCAN_MODE_SW &&
        mode != BCM_LINKSCAN_MODE_HW)
        return BCM_E_PARAM;
    scanned_.assign(chip_port, mode != BCM_LINKSCAN_MODE_NONE);
    return BCM_E_NONE;
}

void LinkScan::enable(int period_us)
{
    running_ = period_us != 0;
    if (period_us > 0)
        period_us_ = period_us;
    last_us_ = card().clock.now_us();
}

int LinkScan::add_handler(bcmx_linkscan_handler_t handler)
{
    if (handler == nullptr)
        return BCM_E_PARAM;
    if (std::find(handlers_.begin(), handlers_.end(), handler) != handlers_.end())
        return BCM_E_EXISTS;
    handlers_.push_back(handler);
    return BCM_E_NONE;
}

void LinkScan::reset()
{
    scanned_ = {};
    running_ = false;
    reported_up_ = {};
}

std::uint64_t LinkScan::due_us()
{
    return running_ ? last_us_ + static_cast<std::uint64_t>(period_us_) : kNever;
}

/// Asks the wires, so no lock may be held.
LinkScan::FarEnds LinkScan::look()
{
    FarEnds seen;
    for (const int port : PortSet::front()) {
        const int user_port = card().ports.user_port(port);
        if (!has_wire_port(user_port) || !wire_carrier(user_port))
            continue;
        seen.carrier.set(port);
        if (const auto partner = panel().partner(user_port))
            seen.partners[static_cast<std::size_t>(port)] = abilities_of(*partner);
    }
    return seen;
}

PortSet LinkScan::follow(const FarEnds& far_ends)
{
    PortTable& ports = card().chip().ports;
    const PortSet cabled = far_ends.carrier & ports.enabled();
    PortSet at_odds;
    for (const int port : scanned_& PortSet::front()) {
        LinkState state;
        if (cabled.test(port)) {
            const auto& partner = far_ends.partners[static_cast<std::size_t>(port)];
            state = negotiate(ports[port], partner.value_or(ports.local_ability(port)));
            at_odds.assign(port, !state.up);
        }
        ports.set_link(port, state);
    }
    return at_odds;
}

std::vector<LinkScan::Change> LinkScan::take_changes()
{
    std::vector<Change> changes;
    if (!reporting_ || handlers_.empty())
        return changes;
    const PortTable& ports = card().chip().ports;
    for (const int port : scanned_& PortSet::front()) {
        const bool up = ports.link().test(port);
        const int lport = card().ports.lport(port);
        if (up == reported_up_.test(port) || lport < 0)
            continue;
        reported_up_.assign(port, up);
        changes.push_back({lport, info_of(ports[port], up)});
    }
    return changes;
}

void LinkScan::run()
{
    const FarEnds far_ends = look();
    std::vector<Change> changes;
    std::vector<bcmx_linkscan_handler_t> handlers;
    PortSet switched, on;
    {
        const ChipLock chip;
        if (!running_)
            return;
        last_us_ = chip->now_us;
        const PortSet at_odds = follow(far_ends);
        changes = take_changes();
        handlers = handlers_;
        on = chip->ports.enabled() - at_odds;
        switched = ((on - wires_on_) | (wires_on_ - on)) & PortSet::front();
        wires_on_ = on;
    }
    tell_wires(switched, on);
    for (Change& change : changes)
        for (const bcmx_linkscan_handler_t handler : handlers)
            handler(change.lport, &change.info);
}

} // namespace vexosim
