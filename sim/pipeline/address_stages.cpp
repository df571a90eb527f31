// Where a frame comes from, and where it goes to.
#include <bcm/port.h>
#include <bcm/rx.h>

#include "sim/chip/text.h"
#include "sim/pipeline/recorder.h"
#include "sim/pipeline/stages.h"
#include "sim/pipeline/trunk_stages.h"

namespace vexosim {

namespace {

/// A member of a trunk is where its trunk is; what was learned at the port before it became a
/// member moves to the trunk.
bool is_here(const Chip& chip, const MacEntry& entry, int port)
{
    int trunk = chip.trunks.trunk_of(port);
    if (entry.on_trunk())
        return entry.trunk == trunk;
    return entry.port == port && (trunk < 0 || entry.is_static());
}

std::string describe_source(const Packet& p, const PortNames& names)
{
    if (p.source == nullptr)
        return mac_text(p.src) + " is unknown";
    std::string kind = p.source->is_static() ? " has a static entry at " : " was learned at ";
    return mac_text(p.src) + kind + place_text(*p.source, names.name(p.source->port));
}

std::string describe_learning(const Chip& chip, const Packet& p)
{
    int trunk = chip.trunks.trunk_of(p.in_port);
    std::string where = trunk < 0 ? "" : ", on trunk " + std::to_string(trunk);
    switch (p.learning) {
    case Learning::kNone:
        return "not learned";
    case Learning::kRefresh:
        return "heard again";
    case Learning::kLearn:
        break;
    }
    return (p.source == nullptr ? "learned here" : "moves here") + where;
}

/// Whether the table and the limits have room for the source.
bool has_room(const Chip& chip, const Packet& p)
{
    bool moves = p.source != nullptr;
    bool full = !moves && chip.macs.size() >= chip.macs.capacity();
    bool limited = !chip.learn_limits.allow(chip.macs.learned(), p.vid, p.in_port,
                                            chip.trunks.trunk_of(p.in_port), moves);
    if (full || limited)
        explain(p, [&](const PortNames&) {
            return full ? "the MAC table is full" : "as many addresses as may be learned are known";
        });
    return !full && !limited;
}

/// The port only learns; the field processor may yet take the frame past that.
Step only_learned(const Chip& chip, Packet& p)
{
    if (chip.field.search().empty()) [[likely]]
        return drop(DropReason::stp_learning);
    p.stp_refusal = DropReason::stp_learning;
    return next();
}

/// A source that the table does not have at this port.
Step strange_source(const Chip& chip, Packet& p)
{
    std::uint8_t mode = chip.ports[p.in_port].learn;
    bool fixed = p.source != nullptr && p.source->is_static();
    if ((mode & BCM_PORT_LEARN_ARL) != 0 && !fixed && has_room(chip, p))
        p.learning = Learning::kLearn;
    if (p.stp == StpState::kLearn)
        return only_learned(chip, p);
    if ((mode & BCM_PORT_LEARN_CPU) != 0 && !p.from_cpu())
        p.copy_to_cpu(bcmRxReasonCpuLearn);
    return (mode & BCM_PORT_LEARN_FWD) != 0 ? next() : drop(DropReason::source_unknown);
}

int flood_reason(const Packet& p)
{
    if (p.redirected())
        return bcmRxReasonFilterMatch;
    if (p.destination != nullptr)
        return bcmRxReasonL2Cpu;
    if (!p.multicast())
        return bcmRxReasonDestLookupFail;
    return p.cast == Cast::kBroadcast ? bcmRxReasonBroadcast : bcmRxReasonMulticast;
}

/// To the place of the entry that the destination has.
Step to_entry(const Chip& chip, Packet& p)
{
    const MacEntry& entry = *p.destination;
    if (entry.on_trunk())
        return entry.trunk == chip.trunks.trunk_of(p.in_port)
                   ? drop(DropReason::same_trunk)
                   : to_trunk(chip, p, entry.trunk, entry.block);
    if (chip.trunks.companions(p.in_port).test(entry.port))
        return drop(entry.port == p.in_port ? DropReason::same_port : DropReason::same_trunk);
    p.out = PortSet{entry.port} - entry.block;
    return p.out.any() ? next() : drop(DropReason::entry_blocked);
}

/// To the VLAN's other members; a trunk is one of them, through its designated port.
void to_vlan(const Chip& chip, Packet& p)
{
    p.out = p.vlan->members - chip.trunks.companions(p.in_port);
    PortSet silent = p.out & chip.trunks.not_designated(trunk_flood(p));
    if (silent.empty()) [[likely]]
        return;
    p.out -= silent;
    explain(p, [&](const PortNames& names) {
        return "another port sends for the trunks of " + names.names(silent);
    });
}

const char* flood_name(FloodClass kind)
{
    static constexpr std::array<const char*, kFloodClasses> kNames = {
        "broadcast", "unknown unicast", "known multicast", "unknown multicast"};
    return kNames[static_cast<std::size_t>(kind)];
}

} // namespace

/// No entry meets such a frame, so none takes it past a spanning tree that stops it.
Step stage::source(const Chip&, Packet& p)
{
    if (!is_multicast(p.src)) [[likely]]
        return next();
    return drop(p.stp_refusal != DropReason::kNone ? p.stp_refusal : DropReason::source_multicast);
}

/// A static entry elsewhere does not move: its address stays a stranger to this port.
Step stage::learn(const Chip& chip, Packet& p)
{
    if (p.stp_refusal != DropReason::kNone) [[unlikely]]
        return next();
    p.source = chip.macs.find(mac_key(p.src, p.vid));
    bool here = p.source != nullptr && is_here(chip, *p.source, p.in_port);
    if (here)
        p.learning = Learning::kRefresh;
    Step step =
        here ? p.stp == StpState::kLearn ? only_learned(chip, p) : next() : strange_source(chip, p);
    explain(p, [&](const PortNames& names) {
        return describe_source(p, names) + "; " + describe_learning(chip, p) +
               (p.cpu != 0 ? "; copied to the CPU" : "");
    });
    return step;
}

Step stage::look_up(const Chip& chip, Packet& p)
{
    if (p.routed()) [[unlikely]]
        return next();
    if (p.cast != Cast::kBroadcast)
        p.destination = chip.macs.find(mac_key(p.dst, p.vid));
    if (p.multicast())
        p.flood = p.cast == Cast::kBroadcast ? FloodClass::kBroadcast
                  : p.destination != nullptr ? FloodClass::kKnownMulticast
                                             : FloodClass::kUnknownMulticast;
    else
        p.flood = FloodClass::kUnknownUnicast;
    explain(p, [&](const PortNames& names) {
        if (p.destination == nullptr)
            return mac_text(p.dst) + ": " + flood_name(p.flood);
        return mac_text(p.dst) + " is at " +
               place_text(*p.destination, names.name(p.destination->port)) +
               (p.destination->is_static() ? ", by a static entry" : ", learned");
    });
    if (p.destination != nullptr && !p.redirected())
        return to_entry(chip, p);
    return next();
}

Step stage::flood(const Chip& chip, Packet& p)
{
    if (p.redirected()) [[unlikely]]
        return next();
    if (p.destination == nullptr) {
        if (p.routed())
            return next();
        if (!p.multicast() && !p.from_cpu() && chip.controls.unknown_unicast_to_cpu(p.in_port))
            p.copy_to_cpu(bcmRxReasonDestLookupFail);
        to_vlan(chip, p);
        if (p.out.empty())
            return drop(DropReason::no_destination);
    } else if (!p.multicast()) {
        return next();
    }
    PortSet blocked = p.out & chip.flood_block.blocked(p.in_port, p.flood);
    explain(p, [&](const PortNames& names) {
        return std::string(flood_name(p.flood)) + " to " + names.names(p.out) +
               (blocked.any() ? ", blocked to " + names.names(blocked) : "");
    });
    p.out -= blocked;
    return p.out.any() ? next() : drop(DropReason::flood_blocked);
}

/// The CPU port has no wire: what would leave there is a CPU copy.
Step stage::cpu_copy(const Chip&, Packet& p)
{
    if (p.out.test(kCpuPort)) {
        p.copy_to_cpu(flood_reason(p));
        p.out.reset(kCpuPort);
        explain(p, [&](const PortNames&) { return "the CPU port is among the destinations"; });
    }
    return p.out.any() ? next() : done();
}

} // namespace vexosim
