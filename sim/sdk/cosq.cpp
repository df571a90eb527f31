// Priority to queue.
#include <bcmx/cosq.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

constexpr int kAllPorts = -1;

int get_mapping(const Chip& chip, int port, int prio, bcm_cos_queue_t* cosq)
{
    if (cosq == nullptr || prio < 0 || prio > BCM_PRIO_MAX)
        return BCM_E_PARAM;
    *cosq = chip.ports[port].cos[static_cast<std::size_t>(prio)];
    return BCM_E_NONE;
}

} // namespace

extern "C" int bcm_cosq_config_set(int unit, int numq)
{
    return unit_call("bcm_cosq_config_set", unit, args(unit, numq),
                     [&](Chip& chip) { return chip.ports.set_queue_count(numq); });
}

extern "C" int bcmx_cosq_mapping_set(int prio, bcm_cos_queue_t cosq)
{
    return sdk_call("bcmx_cosq_mapping_set", args(prio, cosq),
                    [&](Chip& chip) { return chip.ports.set_cos(kAllPorts, prio, cosq); });
}

extern "C" int bcmx_cosq_port_mapping_set(bcmx_lport_t port, int prio, bcm_cos_queue_t cosq)
{
    return port_call("bcmx_cosq_port_mapping_set", port, args(Lport{port}, prio, cosq),
                     [&](Chip& chip, int p) { return chip.ports.set_cos(p, prio, cosq); });
}

extern "C" int bcmx_cosq_port_mapping_get(bcmx_lport_t port, int prio, bcm_cos_queue_t* cosq)
{
    return port_call("bcmx_cosq_port_mapping_get", port, args(Lport{port}, prio, Out{cosq}),
                     [&](Chip& chip, int p) { return get_mapping(chip, p, prio, cosq); });
}
