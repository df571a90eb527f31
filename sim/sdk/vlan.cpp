// VLANs.
#include <bcmx/vlan.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"
#include "sim/sdk/port_lists.h"

using namespace vexosim;

extern "C" int bcmx_vlan_create(bcm_vlan_t vid)
{
    return sdk_call("bcmx_vlan_create", args(vid),
                    [&](Chip& chip) { return chip.vlans.create(vid); });
}

extern "C" int bcmx_vlan_destroy(bcm_vlan_t vid)
{
    return sdk_call("bcmx_vlan_destroy", args(vid),
                    [&](Chip& chip) { return chip.vlans.destroy(vid); });
}

extern "C" int bcmx_vlan_port_add(bcm_vlan_t vid, bcmx_lplist_t ports, bcmx_lplist_t untagged)
{
    return sdk_call("bcmx_vlan_port_add", args(vid, Ports{&ports}, Ports{&untagged}),
                    [&](Chip& chip) -> int {
                        const auto members = port_set(ports), plain = port_set(untagged);
                        if (!members || !plain)
                            return BCM_E_PORT;
                        return chip.vlans.add_ports(vid, *members, *plain);
                    });
}

extern "C" int bcmx_vlan_port_remove(bcm_vlan_t vid, bcmx_lplist_t ports)
{
    return sdk_call("bcmx_vlan_port_remove", args(vid, Ports{&ports}), [&](Chip& chip) -> int {
        const auto gone = port_set(ports);
        return gone ? chip.vlans.remove_ports(vid, *gone) : BCM_E_PORT;
    });
}
