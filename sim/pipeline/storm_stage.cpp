// Storm control: how many frames of a class a port accepts.
#include "sim/pipeline/recorder.h"
#include "sim/pipeline/stages.h"

namespace vexosim {

namespace {

struct Storm {
    StormClass kind;
    DropReason reason;
    const char* name;
};

constexpr Storm kBroadcasts{StormClass::kBcast, DropReason::storm_broadcast, "broadcasts"};
constexpr Storm kMulticasts{StormClass::kMcast, DropReason::storm_multicast, "multicasts"};
constexpr Storm kUnknownUnicasts{StormClass::kDlf, DropReason::storm_unknown_unicast,
                                 "unknown unicasts"};

const Storm& storm_of(const Packet& p)
{
    if (!p.multicast())
        return kUnknownUnicasts;
    return p.cast == Cast::kBroadcast ? kBroadcasts : kMulticasts;
}

} // namespace

Step stage::storm_control(const Chip& chip, Packet& p)
{
    if (!chip.rates.ports().test(p.in_port)) [[likely]]
        return next();
    if ((p.destination != nullptr && !p.multicast()) || p.routed())
        return next();
    const Storm& storm = storm_of(p);
    const int limit = chip.rates.limit(p.in_port, storm.kind);
    if (limit == 0)
        return next();
    p.storm = storm.kind;
    p.limited = chip.rates.accepts(p.in_port, storm.kind, chip.now_us);
    explain(p, [&](const PortNames&) {
        return std::string(p.limited ? "within " : "beyond ") + std::to_string(limit) + " " +
               storm.name + " per second";
    });
    return p.limited ? next() : drop(storm.reason);
}

} // namespace vexosim
