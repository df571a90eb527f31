#include "sim/card/card.h"

#include "sim/chip/chip.h"
#include "sim/sdk/property.h"

namespace vexosim {

namespace {

PortSet xe_ports()
{
    const bcm_pbmp_t listed = unit_port_property(0, "pbmp_xport_xe", false);
    PortSet xe;
    for (const int port : PortSet::front())
        xe.assign(port, BCM_PBMP_MEMBER(listed, port));
    return xe;
}

} // namespace

Card::Card() : chip_(std::make_unique<Chip>()) {}

Card::~Card() = default;

void Card::reset_chip()
{
    auto fresh = std::make_unique<Chip>();
    fresh->now_us = chip_->now_us;
    fresh->ports = PortTable(xe_ports());
    if (profile.macs != fresh->macs.capacity())
        fresh->macs = MacTable(profile.macs);
    fresh->trunks = TrunkTable(profile.trunks);
    fresh->field = FieldTable({profile.field_groups, profile.field_entries, profile.udfs});
    fresh->l3_interfaces = L3InterfaceTable(profile.l3_interfaces);
    fresh->l3_hosts = L3HostTable(profile.l3_hosts);
    fresh->l3_routes = L3RouteTable(profile.l3_routes);
    chip_ = std::move(fresh);
    background.link_scan.reset();
    background.l2_notifier.follow_table();
}

void Card::lose_chip()
{
    stage = Stage::absent;
    ports.clear();
    background.link_scan.reset();
}

Card& card()
{
    static Card& the_card = *new Card;
    return the_card;
}

ChipLock::ChipLock()
{
    card().chip_mutex.lock();
    card().chip().now_us = card().clock.now_us();
}

ChipLock::~ChipLock()
{
    const Background::TaskSet work = card().background.find_work();
    card().chip_mutex.unlock();
    if (work.any()) [[unlikely]]
        card().background.wake(work);
}

} // namespace vexosim
