// Storm control, priorities to queues, BPDUs, unknown unicasts to the CPU and the forwarding mode.
#include <bcmx/cosq.h>
#include <bcmx/port.h>
#include <bcmx/rate.h>
#include <bcmx/switch.h>

#include "core/bcm_sdk.h"
#include "core/result.h"

using namespace vexolc;

namespace {

// By number: their names differ between releases of the SDK.
constexpr auto unknown_unicast_to_cpu = static_cast<bcm_switch_control_t>(21);
constexpr auto forward_mode = static_cast<bcm_switch_control_t>(204);

bool get_rate(const Mp& port, int (*get)(int*, int*, bcmx_lport_t), unsigned& rate)
{
    int value = 0;
    int classes = 0; // not looked at
    return ok(get(&value, &classes, lport_of(port))) && store(rate, value);
}

} // namespace

bool VexoBcmSdk::set_port_broadcast_control(const Mp& port, unsigned rate)
{
    return ok(bcmx_rate_bcast_set(static_cast<int>(rate), BCM_RATE_BCAST, lport_of(port)));
}

bool VexoBcmSdk::get_port_broadcast_control(const Mp& port, unsigned& rate)
{
    return get_rate(port, bcmx_rate_bcast_get, rate);
}

bool VexoBcmSdk::set_port_multicast_control(const Mp& port, unsigned rate)
{
    return ok(bcmx_rate_mcast_set(static_cast<int>(rate), BCM_RATE_MCAST, lport_of(port)));
}

bool VexoBcmSdk::get_port_multicast_control(const Mp& port, unsigned& rate)
{
    return get_rate(port, bcmx_rate_mcast_get, rate);
}

bool VexoBcmSdk::set_port_unicast_control(const Mp& port, unsigned rate)
{
    return ok(bcmx_rate_dlfbc_set(static_cast<int>(rate), BCM_RATE_DLF, lport_of(port)));
}

bool VexoBcmSdk::get_port_unicast_control(const Mp& port, unsigned& rate)
{
    return get_rate(port, bcmx_rate_dlfbc_get, rate);
}

bool VexoBcmSdk::set_port_cos_mapping(const Mp& port, unsigned priority, unsigned queue)
{
    return ok(bcmx_cosq_port_mapping_set(lport_of(port), static_cast<int>(priority),
                                         static_cast<bcm_cos_queue_t>(queue)));
}

bool VexoBcmSdk::get_port_cos_mapping(const Mp& port, unsigned priority, unsigned& queue)
{
    bcm_cos_queue_t value = 0;
    return ok(bcmx_cosq_port_mapping_get(lport_of(port), static_cast<int>(priority), &value)) &&
           store(queue, value);
}

bool VexoBcmSdk::set_port_bpdu_processing(const Mp& port, bool enable)
{
    int lport = -1;
    return map_mp_to_lport(port, lport) && ok(bcmx_port_bpdu_enable_set(lport, enable));
}

bool VexoBcmSdk::get_port_bpdu_processing(const Mp& port, bool& enabled)
{
    int lport = -1;
    int value = 0;
    return map_mp_to_lport(port, lport) && ok(bcmx_port_bpdu_enable_get(lport, &value)) &&
           store(enabled, value != 0);
}

bool VexoBcmSdk::set_port_switch_unknown_unicast_to_cpu(const Mp& port, bool enable)
{
    int lport = -1;
    return map_mp_to_lport(port, lport) &&
           ok(bcmx_switch_control_port_set(lport, unknown_unicast_to_cpu, enable));
}

bool VexoBcmSdk::get_port_switch_unknown_unicast_to_cpu(const Mp& port, bool& enabled)
{
    int lport = -1;
    int value = 0;
    return map_mp_to_lport(port, lport) &&
           ok(bcmx_switch_control_port_get(lport, unknown_unicast_to_cpu, &value)) &&
           store(enabled, value == 1);
}

bool VexoBcmSdk::set_switch_unknown_unicast_to_cpu(bool enable)
{
    return ok(bcmx_switch_control_set(unknown_unicast_to_cpu, enable));
}

bool VexoBcmSdk::get_switch_unknown_unicast_to_cpu(bool& enabled)
{
    int value = 0;
    return ok(bcmx_switch_control_get(unknown_unicast_to_cpu, &value)) &&
           store(enabled, value == 1);
}

bool VexoBcmSdk::set_switch_forward_mode(unsigned mode)
{
    return ok(bcmx_switch_control_set(forward_mode, static_cast<int>(mode)));
}

bool VexoBcmSdk::get_switch_forward_mode(unsigned& mode)
{
    int value = 0;
    return ok(bcmx_switch_control_get(forward_mode, &value)) && store(mode, value);
}
