// Packet receive.
#include <bcm/rx.h>
#include <bcmx/rx.h>

#include "sim/card/card.h"
#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

CpuReceive& queues()
{
    return card().background.receiver.queues;
}

ReasonSet reason_set(const bcm_rx_reasons_t& reasons)
{
    return ReasonSet{reasons.pbits[1]} << 32 | reasons.pbits[0];
}

} // namespace

extern "C" int bcm_rx_init(int unit)
{
    return unit_call("bcm_rx_init", unit, args(unit),
                     [](Chip& chip) { return queues().init(chip.cpu); });
}

extern "C" int bcm_rx_start(int unit, bcm_rx_cfg_t* cfg)
{
    return unit_call("bcm_rx_start", unit, args(unit, cfg),
                     [&](Chip& chip) { return queues().start(chip.cpu, cfg); });
}

extern "C" int bcm_rx_stop(int unit, bcm_rx_cfg_t* cfg)
{
    return unit_call("bcm_rx_stop", unit, args(unit, Out{cfg}),
                     [&](Chip&) { return queues().stop(cfg); });
}

extern "C" int bcm_rx_register(int unit, const char* name, bcm_rx_cb_f handler, uint8_t priority,
                               void* cookie, uint32_t flags)
{
    return unit_call(
        "bcm_rx_register", unit, args(unit, name, Handler{handler}, priority, cookie, Flags{flags}),
        [&](Chip&) { return queues().add_handler(name, handler, priority, cookie, flags); });
}

extern "C" int bcm_rx_cos_rate_set(int unit, int cos, int pps)
{
    return unit_call("bcm_rx_cos_rate_set", unit, args(unit, cos, pps),
                     [&](Chip& chip) { return chip.cpu.set_cos_rate(cos, pps); });
}

extern "C" int bcm_rx_cosq_mapping_set(int unit, int index, bcm_rx_reasons_t reasons,
                                       bcm_rx_reasons_t reasons_mask, uint8_t int_prio,
                                       uint8_t int_prio_mask, uint32_t packet_type,
                                       uint32_t packet_type_mask, bcm_cos_queue_t cosq)
{
    return unit_call("bcm_rx_cosq_mapping_set", unit,
                     args(unit, index, reasons, reasons_mask, int_prio, int_prio_mask,
                          Flags{packet_type}, Flags{packet_type_mask}, cosq),
                     [&](Chip& chip) {
                         return chip.cpu.set_mapping(
                             index, {true, reason_set(reasons), reason_set(reasons_mask), int_prio,
                                     int_prio_mask, packet_type, packet_type_mask, cosq});
                     });
}

extern "C" int bcm_rx_queue_channel_set(int unit, bcm_cos_queue_t queue, int channel)
{
    return unit_call("bcm_rx_queue_channel_set", unit, args(unit, queue, channel),
                     [&](Chip& chip) { return chip.cpu.set_queue_channel(queue, channel); });
}

// There is one unit, and it receives whether it was added or not.
extern "C" int bcmx_rx_device_add(int unit)
{
    return unit_call("bcmx_rx_device_add", unit, Stage::attached, args(unit),
                     [](Chip&) { return BCM_E_NONE; });
}

extern "C" int bcmx_rx_start(bcm_rx_cfg_t* cfg)
{
    return sdk_call("bcmx_rx_start", args(cfg),
                    [&](Chip& chip) { return queues().start(chip.cpu, cfg); });
}
