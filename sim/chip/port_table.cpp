#include "sim/chip/port_table.h"

#include <algorithm>

#include <bcm/error.h>
#include <bcm/port.h>

#include "sim/chip/vlan_table.h"

namespace vexosim {

void PortAbility::digest(Digest& d) const
{
    for (std::uint32_t word : {speed_half, speed_full, pause, medium, flags})
        d.add(word);
}

void PortConfig::digest(Digest& d) const
{
    for (bool flag :
         {enable, autoneg, duplex_full, pause_tx, pause_rx, pause_by_hand, jam, bpdu_enable})
        d.add(flag);
    for (int value : {speed, frame_max, pvid, priority})
        d.add(value);
    d.add(discard);
    d.add(vlan_member);
    d.add(learn);
    d.add(pause_addr);
    d.add(cos);
    d.add(advert);
    d.add(remote);
}

PortTable::PortTable(PortSet xe) : xe_(xe & PortSet::front())
{
    set_queue_count(queues_);
    for (int port = 0; port < kPortCount; ++port) {
        at(port).speed = xe_.test(port) ? 10000 : 1000;
        at(port).advert = local_ability(port);
    }
}

int PortTable::set_flag(int port, int value, bool PortConfig::*flag)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (value != 0 && value != 1)
        return BCM_E_PARAM;
    at(port).*flag = value == 1;
    return BCM_E_NONE;
}

int PortTable::set_enable(int port, int enable)
{
    int rc = set_flag(port, enable, &PortConfig::enable);
    if (rc == BCM_E_NONE)
        enabled_.assign(port, enable == 1);
    return rc;
}

int PortTable::set_autoneg(int port, int autoneg)
{
    int rc = set_flag(port, autoneg, &PortConfig::autoneg);
    if (rc == BCM_E_NONE && autoneg == 1)
        at(port).pause_by_hand = false;
    return rc;
}

bool PortTable::has_speed(int port, int speed) const
{
    if (xe_.test(port))
        return speed == 1000 || speed == 10000;
    return speed == 10 || speed == 100 || speed == 1000;
}

int PortTable::set_speed(int port, int speed)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (!has_speed(port, speed))
        return BCM_E_PARAM;
    at(port).speed = speed;
    at(port).autoneg = false;
    if (speed > 1000)
        at(port).duplex_full = true;
    return BCM_E_NONE;
}

int PortTable::set_duplex(int port, int duplex)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    bool half = duplex == BCM_PORT_DUPLEX_HALF;
    if ((!half && duplex != BCM_PORT_DUPLEX_FULL) || (half && at(port).speed > 1000))
        return BCM_E_PARAM;
    at(port).duplex_full = !half;
    at(port).autoneg = false;
    return BCM_E_NONE;
}

int PortTable::set_pause(int port, int pause_tx, int pause_rx)
{
    if (pause_rx != 0 && pause_rx != 1)
        return is_chip_port(port) ? BCM_E_PARAM : BCM_E_PORT;
    if (int rc = set_flag(port, pause_tx, &PortConfig::pause_tx); rc != BCM_E_NONE)
        return rc;
    at(port).pause_by_hand = true;
    return set_flag(port, pause_rx, &PortConfig::pause_rx);
}

int PortTable::set_jam(int port, int enable)
{
    return set_flag(port, enable, &PortConfig::jam);
}

int PortTable::set_pause_addr(int port, const std::array<std::uint8_t, 6>& mac)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    at(port).pause_addr = mac;
    return BCM_E_NONE;
}

int PortTable::set_frame_max(int port, int size)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (size < kMinFrameMax || size > kMaxFrameMax)
        return BCM_E_PARAM;
    at(port).frame_max = size;
    smallest_frame_max_ = std::ranges::min(ports_, {}, &PortConfig::frame_max).frame_max;
    return BCM_E_NONE;
}

int PortTable::set_untagged_vlan(int port, int vid)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (!is_vlan_id(vid))
        return BCM_E_PARAM;
    at(port).pvid = vid;
    return BCM_E_NONE;
}

int PortTable::set_untagged_priority(int port, int priority)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (priority < 0 || priority > 7)
        return BCM_E_PARAM;
    at(port).priority = priority;
    return BCM_E_NONE;
}

int PortTable::set_discard(int port, int mode)
{
    static_assert(BCM_PORT_DISCARD_TAG == static_cast<int>(DiscardMode::kTagged));
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (mode < BCM_PORT_DISCARD_NONE || mode > BCM_PORT_DISCARD_TAG)
        return BCM_E_PARAM;
    at(port).discard = static_cast<DiscardMode>(mode);
    return BCM_E_NONE;
}

int PortTable::set_vlan_member(int port, std::uint32_t flags)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if ((flags & ~std::uint32_t{BCM_PORT_VLAN_MEMBER_INGRESS | BCM_PORT_VLAN_MEMBER_EGRESS}) != 0)
        return BCM_E_PARAM;
    at(port).vlan_member = static_cast<std::uint8_t>(flags);
    ingress_filter_.assign(port, (flags & BCM_PORT_VLAN_MEMBER_INGRESS) != 0);
    egress_filter_.assign(port, (flags & BCM_PORT_VLAN_MEMBER_EGRESS) != 0);
    return BCM_E_NONE;
}

int PortTable::set_learn(int port, std::uint32_t flags)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    if (flags > (BCM_PORT_LEARN_ARL | BCM_PORT_LEARN_CPU | BCM_PORT_LEARN_FWD))
        return BCM_E_PARAM;
    at(port).learn = static_cast<std::uint8_t>(flags);
    return BCM_E_NONE;
}

int PortTable::set_bpdu_enable(int port, int enable)
{
    return set_flag(port, enable, &PortConfig::bpdu_enable);
}

PortAbility PortTable::local_ability(int port) const
{
    PortAbility a;
    a.pause = BCM_PORT_ABILITY_PAUSE_TX | BCM_PORT_ABILITY_PAUSE_RX;
    a.flags = BCM_PORT_ABILITY_AUTONEG;
    if (xe_.test(port)) {
        a.speed_full = BCM_PORT_ABILITY_1000MB | BCM_PORT_ABILITY_10GB;
        a.medium = BCM_PORT_ABILITY_MEDIUM_FIBER;
        return a;
    }
    a.speed_half = BCM_PORT_ABILITY_10MB | BCM_PORT_ABILITY_100MB;
    a.speed_full = a.speed_half | BCM_PORT_ABILITY_1000MB;
    a.medium = BCM_PORT_ABILITY_MEDIUM_COPPER;
    return a;
}

int PortTable::set_advert(int port, const PortAbility& ability)
{
    if (!is_chip_port(port))
        return BCM_E_PORT;
    PortAbility local = local_ability(port);
    if ((ability.speed_half & ~local.speed_half) != 0 ||
        (ability.speed_full & ~local.speed_full) != 0 || (ability.medium & ~local.medium) != 0)
        return BCM_E_PARAM;
    at(port).advert = ability;
    return BCM_E_NONE;
}

int PortTable::set_cos(int port, int priority, int queue)
{
    if (port != -1 && !is_chip_port(port))
        return BCM_E_PORT;
    if (priority < 0 || priority > 7 || queue < 0 || queue >= queues_)
        return BCM_E_PARAM;
    for (int p = std::max(port, 0); p <= (port == -1 ? kPortCount - 1 : port); ++p)
        at(p).cos[static_cast<std::size_t>(priority)] = static_cast<std::uint8_t>(queue);
    return BCM_E_NONE;
}

int PortTable::set_queue_count(int queues)
{
    if (queues < 1 || queues > kQueues)
        return BCM_E_PARAM;
    queues_ = queues;
    for (PortConfig& port : ports_) {
        for (std::size_t priority = 0; priority < port.cos.size(); ++priority)
            port.cos[priority] = static_cast<std::uint8_t>(static_cast<int>(priority) * queues / 8);
    }
    return BCM_E_NONE;
}

void PortTable::set_link(int port, bool up)
{
    if (is_chip_port(port) && port != kCpuPort)
        link_.assign(port, up);
}

void PortTable::set_link(int port, const LinkState& state)
{
    set_link(port, state.up);
    PortConfig& config = at(port);
    config.remote = state.up ? state.remote : PortAbility{};
    if (!state.up)
        return;
    config.speed = state.speed;
    config.duplex_full = state.full_duplex;
    config.pause_tx = state.pause_tx;
    config.pause_rx = state.pause_rx;
}

void PortTable::digest(Digest& d) const
{
    d.add(ports_);
    d.add(xe_);
    d.add(link_);
    d.add(queues_);
}

} // namespace vexosim
