// Spanning-tree states of ports, for the common tree and by group. One surprise: a discarding port
// of a group listens, it does not block.
#include <bcmx/port.h>
#include <bcmx/stg.h>

#include "core/bcm_sdk.h"
#include "core/enum_table.h"
#include "core/result.h"

using namespace vexolc;

namespace {

constexpr EnumTable<stp_state_t, 5> stp_states = {{
    {STP_BLOCKING, BCM_STG_STP_BLOCK},
    {STP_LISTENING, BCM_STG_STP_LISTEN},
    {STP_LEARNING, BCM_STG_STP_LEARN},
    {STP_FORWARDING, BCM_STG_STP_FORWARD},
    {STP_DISABLED, BCM_STG_STP_DISABLE},
}};
static_assert(stp_states.two_way());

// Deliberately not two-way: blocking reads as discarding, which sets listening, and the alias of
// forwarding is never read back.
constexpr EnumTable<mstp_state_t, 6> mstp_states = {{
    {MSTP_DISCARDING, BCM_STG_STP_LISTEN},
    {MSTP_DISCARDING, BCM_STG_STP_BLOCK},
    {MSTP_LEARNING, BCM_STG_STP_LEARN},
    {MSTP_FORWARDING, BCM_STG_STP_FORWARD},
    {MSTP_DISABLED, BCM_STG_STP_DISABLE},
    {MSTP_FORWARDING_ALIAS, BCM_STG_STP_FORWARD},
}};

} // namespace

bool VexoBcmSdk::set_port_stp_state(const Mp& port, stp_state_t state)
{
    int value = 0;
    return stp_states.to_sdk(state, value) && ok(bcmx_port_stp_set(lport_of(port), value));
}

bool VexoBcmSdk::get_port_stp_state(const Mp& port, stp_state_t& state)
{
    int value = 0;
    return ok(bcmx_port_stp_get(lport_of(port), &value)) && stp_states.from_sdk(value, state);
}

bool VexoBcmSdk::set_stg_stp_state(unsigned stg, const Mp& port, mstp_state_t state)
{
    int value = 0;
    return mstp_states.to_sdk(state, value) &&
           ok(bcmx_stg_stp_set(static_cast<bcm_stg_t>(stg), lport_of(port), value));
}

bool VexoBcmSdk::get_stg_stp_state(unsigned stg, const Mp& port, mstp_state_t& state)
{
    int value = 0;
    return ok(bcmx_stg_stp_get(static_cast<bcm_stg_t>(stg), lport_of(port), &value)) &&
           mstp_states.from_sdk(value, state);
}
