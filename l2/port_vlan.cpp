// A port's default VLAN and priority, and which frames it discards. Accepting tagged frames only
// and ingress discarding are two views of one chip setting.
#include <bcmx/port.h>

#include "core/bcm_sdk.h"
#include "core/enum_table.h"
#include "core/result.h"

using namespace vexolc;

namespace {

constexpr EnumTable<ingress_discard_type_t, 4> discard_modes = {{
    {INGRESS_DISCARD_NONE, BCM_PORT_DISCARD_NONE},
    {INGRESS_DISCARD_TAGGED, BCM_PORT_DISCARD_TAG},
    {INGRESS_DISCARD_UNTAGGED, BCM_PORT_DISCARD_UNTAG},
    {INGRESS_DISCARD_ALL, BCM_PORT_DISCARD_ALL},
}};
static_assert(discard_modes.two_way());

} // namespace

bool VexoBcmSdk::set_port_default_vlan(const Mp&, unsigned)
{
    return true;
}

bool VexoBcmSdk::get_port_default_vlan(const Mp&, unsigned&)
{
    return true;
}

bool VexoBcmSdk::set_port_vlan_pvid(const Mp& port, unsigned vid)
{
    return ok(bcmx_port_untagged_vlan_set(lport_of(port), static_cast<bcm_vlan_t>(vid)));
}

bool VexoBcmSdk::get_port_vlan_pvid(const Mp& port, unsigned& vid)
{
    bcm_vlan_t value = 0;
    return ok(bcmx_port_untagged_vlan_get(lport_of(port), &value)) && store(vid, value);
}

bool VexoBcmSdk::set_port_vlan_priority(const Mp& port, unsigned, unsigned priority)
{
    return ok(bcmx_port_untagged_priority_set(lport_of(port), static_cast<int>(priority)));
}

bool VexoBcmSdk::get_port_vlan_priority(const Mp& port, unsigned, unsigned& priority)
{
    int value = 0;
    return ok(bcmx_port_untagged_priority_get(lport_of(port), &value)) && store(priority, value);
}

bool VexoBcmSdk::set_port_vlan_accept_frame(const Mp& port, bool tagged_only)
{
    const int mode = tagged_only ? BCM_PORT_DISCARD_UNTAG : BCM_PORT_DISCARD_NONE;
    return ok(bcmx_port_discard_set(lport_of(port), mode));
}

bool VexoBcmSdk::get_port_vlan_accept_frame(const Mp& port, bool& tagged_only)
{
    int mode = BCM_PORT_DISCARD_NONE;
    return ok(bcmx_port_discard_get(lport_of(port), &mode)) &&
           store(tagged_only, mode != BCM_PORT_DISCARD_NONE);
}

bool VexoBcmSdk::set_port_ingress_discarding(const Mp& port, ingress_discard_type_t type)
{
    int lport = -1;
    int mode = BCM_PORT_DISCARD_NONE;
    return map_mp_to_lport(port, lport) && discard_modes.to_sdk(type, mode) &&
           ok(bcmx_port_discard_set(lport, mode));
}

bool VexoBcmSdk::get_port_ingress_discarding(const Mp& port, ingress_discard_type_t& type)
{
    int lport = -1;
    int mode = BCM_PORT_DISCARD_NONE;
    return map_mp_to_lport(port, lport) && ok(bcmx_port_discard_get(lport, &mode)) &&
           discard_modes.from_sdk(mode, type);
}
