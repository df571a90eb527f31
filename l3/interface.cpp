// L3 interfaces, kept by the chip alone. One surprise: reading one succeeds without reading
// anything when the SDK cannot prepare its record.
#include <algorithm>

#include <bcmx/l3.h>

#include "core/bcm_sdk.h"
#include "core/result.h"

using namespace vexolc;

namespace {

void set_mac_and_vlan(bcmx_l3_intf_t& intf, const unsigned char* mac, unsigned vid)
{
    std::copy_n(mac, 6, intf.l3i_mac_addr);
    intf.l3i_vid = static_cast<bcm_vlan_t>(vid);
}

/// An interface that exists counts as created.
bool create(bcmx_l3_intf_t& intf, uint32_t flags)
{
    intf.l3i_flags |= flags;
    return ok(bcmx_l3_intf_create(&intf), BCM_E_EXISTS);
}

} // namespace

bool VexoBcmSdk::create_l3_interface(const unsigned char* mac, unsigned vid, unsigned& id)
{
    bcmx_l3_intf_t intf = {};
    if (!ok(bcmx_l3_intf_t_init(&intf)))
        return false;
    set_mac_and_vlan(intf, mac, vid);
    return create(intf, BCM_L3_ADD_TO_ARL) && store(id, intf.l3i_intf_id);
}

bool VexoBcmSdk::create_l3_interface_with_id(const unsigned char* mac, unsigned vid, unsigned id,
                                             bool replace)
{
    bcmx_l3_intf_t intf = {};
    if (!ok(bcmx_l3_intf_t_init(&intf)))
        return false;
    set_mac_and_vlan(intf, mac, vid);
    intf.l3i_intf_id = id;
    return create(intf, BCM_L3_ADD_TO_ARL | BCM_L3_WITH_ID | (replace ? BCM_L3_REPLACE : 0u));
}

bool VexoBcmSdk::get_l3_interface(unsigned id, unsigned& vid, unsigned char* mac)
{
    bcmx_l3_intf_t intf = {};
    if (!ok(bcmx_l3_intf_t_init(&intf)))
        return true; // deliberately: true does not mean that the outputs were written
    intf.l3i_intf_id = id;
    if (!ok(bcmx_l3_intf_get(&intf)))
        return false;
    std::copy_n(intf.l3i_mac_addr, 6, mac);
    vid = intf.l3i_vid;
    return true;
}

bool VexoBcmSdk::delete_l3_interface(const unsigned char* mac, unsigned vid)
{
    bcmx_l3_intf_t intf = {}; // deliberately without the SDK's initialisation, here and below
    set_mac_and_vlan(intf, mac, vid);
    const int rc = bcmx_l3_intf_find(&intf);
    return rc == BCM_E_NOT_FOUND || (ok(rc) && ok(bcmx_l3_intf_delete(&intf)));
}

bool VexoBcmSdk::delete_l3_interface_by_id(unsigned id)
{
    bcmx_l3_intf_t intf = {};
    intf.l3i_intf_id = id;
    return ok(bcmx_l3_intf_delete(&intf), BCM_E_NOT_FOUND);
}

bool VexoBcmSdk::delete_l3_interface_all()
{
    return ok(bcmx_l3_intf_delete_all());
}
