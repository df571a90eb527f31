// Single entries of the MAC table, bulk deletes, ageing, and the walk over the table. The chip is
// the only keeper of entries. One surprise: adding by VLAN bitmap sees all VLANs, deleting the
// first 512 only.
#include <algorithm>
#include <cstdio>
#include <iostream>

#include <bcmx/l2.h>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "core/trace.h"
#include "l2/lag.h"
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

/// Installs a static entry towards the CPU. False without a call for a multicast address.
bool add_cpu_mac(const unsigned char* mac, unsigned vid)
{
    bcmx_l2_addr_t entry = {};
    int cpu = -1;
    if (is_mac_t_multicast(mac) || !vexo_bcm_sdk_get_cpu_lport(cpu))
        return false;
    entry.flags = BCM_L2_STATIC;
    std::copy_n(mac, 6, entry.mac);
    entry.vid = static_cast<bcm_vlan_t>(vid);
    entry.lport = cpu;
    return ok(bcmx_l2_addr_add(&entry, nullptr), BCM_E_EXISTS);
}

/// Calls `act` for the VLANs 0 to `count` - 1 of a bitmap, rising, until one is false.
template <class Act>
bool for_each_vlan(const unsigned char* bitmap, unsigned count, Act act)
{
    for (unsigned vid = 0; vid < count; ++vid) {
        if ((bitmap[vid / 8] >> vid % 8 & 1) != 0 && !act(vid))
            return false;
    }
    return true;
}

/// Flushes one user port; what fails is only told, and only while tracing is on.
void clear_user_port(int user_port, uint32_t flags)
{
    int lport = -1;
    if (!map_uport_to_lport(user_port, lport)) {
        if (sdk_trace_enabled)
            std::printf("warning: failed to map uport to lport when clearing fdb, port = %d\n",
                        user_port);
    } else if (!ok(bcmx_l2_addr_delete_by_port(lport, flags)) && sdk_trace_enabled) {
        std::printf("warning: failed to delete port %d's mac, lport = %x\n", user_port,
                    static_cast<unsigned>(lport));
    }
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

bool VexoBcmSdk::add_system_mac(const unsigned char* mac, unsigned vid)
{
    return add_cpu_mac(mac, vid);
}

bool VexoBcmSdk::add_system_mac_vlan_bitmap(const unsigned char* mac, const unsigned char* bitmap)
{
    return for_each_vlan(bitmap, 4096, [mac](unsigned vid) { return add_cpu_mac(mac, vid); });
}

bool VexoBcmSdk::delete_mac(const unsigned char* mac, unsigned vid)
{
    return ok(bcmx_l2_addr_delete(SdkMac(mac).bytes, static_cast<bcm_vlan_t>(vid)),
              BCM_E_NOT_FOUND);
}

bool VexoBcmSdk::delete_mac_by_mac(const unsigned char* mac)
{
    return ok(bcmx_l2_addr_delete_by_mac(SdkMac(mac).bytes, BCM_L2_DELETE_STATIC), BCM_E_NOT_FOUND);
}

bool VexoBcmSdk::delete_mac_vlan_bitmap(const unsigned char* mac, const unsigned char* bitmap)
{
    // Both deliberate: VLANs from 512 on are not looked at, and an absent entry is a failure.
    SdkMac address(mac);
    return for_each_vlan(bitmap, 512, [&address](unsigned vid) {
        return ok(bcmx_l2_addr_delete(address.bytes, static_cast<bcm_vlan_t>(vid)), BCM_E_EXISTS);
    });
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

bool VexoBcmSdk::clear_fdb_table(bool with_static)
{
    const uint32_t flags = delete_flags(with_static);
    for (int user_port = 1; user_port < port_count; ++user_port)
        clear_user_port(user_port, flags);
    return std::all_of(lag_list.begin(), lag_list.end(), [flags](const LagNode& lag) {
        return ok(bcmx_l2_addr_delete_by_trunk(static_cast<bcm_trunk_t>(lag.id()), flags));
    });
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
