// The internal VLAN. No start-up path reaches it.
#include <bcmx/l2.h>
#include <bcmx/vlan.h>

#include <cstdio>

#include "core/bcm_sdk.h"
#include "core/port_list.h"
#include "core/result.h"
#include "platform/port_map.h"

using namespace vexolc;

namespace {

constexpr bcm_vlan_t reserved_vlan = 4094;
constexpr int last_uport = 52; // deliberately: the CPU port (uport 0) is in, uport 53 is not

bool stop_learning()
{
    bcm_l2_learn_limit_t limit = {};
    bcmx_l2_learn_limit_t_init(&limit);
    limit.flags = BCM_L2_LEARN_LIMIT_VLAN;
    limit.vlan = reserved_vlan;
    limit.limit = 0;
    return ok(bcmx_l2_learn_limit_set(&limit));
}

bool add_or_report(PortList& ports, int lport)
{
    const int rc = bcmx_lplist_add(ports.get(), lport);
    if (!ok(rc))
        std::printf("bcmx_lplist_add failed, rc = %d, reason = %s\n", rc, sdk_reason(rc));
    return ok(rc);
}

bool list_ports(PortList& members, PortList& untagged)
{
    for (int uport = 0; uport <= last_uport; ++uport) {
        int lport = -1;
        if (!map_uport_to_lport(uport, lport) || !add_or_report(members, lport))
            return false;
        add_or_report(untagged, lport); // deliberately goes on: the port is then a tagged member
    }
    return true;
}

} // namespace

bool VexoBcmSdk::init_reserved_vlan()
{
    if (!ok(bcmx_vlan_create(reserved_vlan), BCM_E_EXISTS) || !stop_learning())
        return false;
    PortList members;
    PortList untagged;
    return list_ports(members, untagged) &&
           ok(bcmx_vlan_port_add(reserved_vlan, *members.get(), *untagged.get()));
}
