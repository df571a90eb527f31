// Single entries of the MAC table, bulk deletes, ageing, and the walk over the table. The chip is
// the only keeper of entries.
#include <algorithm>
#include <iostream>

#include <bcmx/l2.h>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "core/trace.h"
#include "pktio/receive.h"
#include "platform/mac.h"

using namespace vexolc;

namespace {

struct SdkMac {
    explicit SdkMac(const unsigned char* mac) { std::copy_n(mac, 6, bytes); }
    bcm_mac_t bytes;
};

uint32_t delete_flags(bool with_static)
{
    return with_static ? BCM_L2_DELETE_STATIC : 0;
}

} // namespace

bool VexoBcmSdk::add_mac_to_port(const Mp& port, const unsigned char* mac, unsigned vid,
                                 bool is_lag)
{
    bcmx_l2_addr_t entry = {};
    entry.flags = BCM_L2_STATIC | BCM_L2_REPLACE_DYNAMIC;
    std::copy_n(mac, 6, entry.mac);
    entry.vid = static_cast<bcm_vlan_t>(vid);
    if (is_lag) {
        entry.flags |= BCM_L2_TRUNK_MEMBER;
        entry.tgid = static_cast<bcm_trunk_t>(port.port());
    } else {
        entry.lport = lport_of(port);
    }
    if (is_mac_t_multicast(mac))
        entry.flags |= BCM_L2_MCAST;
    return ok(bcmx_l2_addr_add(&entry, nullptr), BCM_E_EXISTS);
}

bool VexoBcmSdk::delete_mac(const unsigned char* mac, unsigned vid)
{
    return ok(bcmx_l2_addr_delete(SdkMac(mac).bytes, static_cast<bcm_vlan_t>(vid)),
              BCM_E_NOT_FOUND);
}

bool VexoBcmSdk::clear_mac_by_port(const Mp& port, bool is_lag, bool with_static)
{
    const uint32_t flags = delete_flags(with_static);
    if (is_lag)
        return ok(bcmx_l2_addr_delete_by_trunk(static_cast<bcm_trunk_t>(port.port()), flags));
    int lport = -1;
    return map_mp_to_lport(port, lport) && ok(bcmx_l2_addr_delete_by_port(lport, flags));
}

bool VexoBcmSdk::clear_mac_by_vlan(unsigned vid, bool with_static)
{
    return ok(bcmx_l2_addr_delete_by_vlan(static_cast<bcm_vlan_t>(vid), delete_flags(with_static)));
}

bool VexoBcmSdk::set_fdb_aging_time(int seconds)
{
    return ok(bcmx_l2_age_timer_set(seconds));
}

bool VexoBcmSdk::get_fdb_aging_time(int& seconds)
{
    int value = 0;
    return ok(bcmx_l2_age_timer_get(&value)) && store(seconds, value);
}

void VexoBcmSdk::traverse_mac_table(void* user_data)
{
    const int rc = bcm_l2_traverse(vexo_bcm_unit, vexo_mac_traverse_callback, user_data);
    if (rc != BCM_E_NONE && sdk_trace_enabled)
        std::cout << "bcm_l2_traverse failed." << std::endl;
}
