// In which queue of its egress ports a frame waits.
#include "sim/pipeline/recorder.h"
#include "sim/pipeline/stages.h"

namespace vexosim {

Step stage::egress_queue(const Chip& chip, Packet& p)
{
    p.queue = chip.ports[p.in_port].cos[static_cast<std::size_t>(p.priority)];
    explain(p, [&](const PortNames&) {
        return "queue " + std::to_string(p.queue) + ", by priority " + std::to_string(p.priority);
    });
    return next();
}

} // namespace vexosim
