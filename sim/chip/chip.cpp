#include "sim/chip/chip.h"

#include <string>

namespace vexosim {

std::string Chip::check_conservation() const
{
    if (drops.balanced())
        return {};
    auto n = [](std::uint64_t value) { return std::to_string(value); };
    return "frames: " + n(drops.frames_in) + " in, " + n(drops.frames_delivered) + " delivered, " +
           n(drops.frame_drops()) + " dropped; copies: " + n(drops.copies_meant) + " meant, " +
           n(drops.copies_sent) + " sent, " + n(drops.copies_to_cpu) + " to the CPU, " +
           n(drops.copy_drops()) + " dropped; mirror copies: " + n(drops.mirrors_meant) +
           " meant, " + n(drops.mirrors_sent) + " sent, " + n(drops.mirror_drops()) + " dropped";
}

std::uint64_t Chip::digest() const
{
    Digest d;
    d.add(ports);
    d.add(flood_block);
    d.add(vlans);
    d.add(vlan_rules);
    d.add(stgs);
    d.add(macs);
    d.add(learn_limits);
    d.add(cpu);
    d.add(controls);
    d.add(trunks);
    d.add(mirrors);
    d.add(rates);
    d.add(field);
    d.add(l3_interfaces);
    d.add(l3_hosts);
    d.add(l3_routes);
    d.add(counters);
    for (std::uint64_t value :
         {drops.frames_in, drops.frames_delivered, drops.copies_meant, drops.copies_sent,
          drops.copies_to_cpu, drops.mirrors_meant, drops.mirrors_sent})
        d.add(value);
    d.add(drops.frames);
    d.add(drops.copies);
    d.add(drops.mirrors);
    return d.value();
}

} // namespace vexosim
