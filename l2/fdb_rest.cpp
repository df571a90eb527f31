// The rest of the forwarding database operations. Not built yet: every operation here returns false
// and leaves its outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::add_system_mac(const unsigned char*, unsigned)
{
    return false;
}

bool VexoBcmSdk::add_system_mac_vlan_bitmap(const unsigned char*, const unsigned char*)
{
    return false;
}

bool VexoBcmSdk::delete_mac_vlan_bitmap(const unsigned char*, const unsigned char*)
{
    return false;
}

bool VexoBcmSdk::delete_mac_by_mac(const unsigned char*)
{
    return false;
}

bool VexoBcmSdk::clear_fdb_table(bool)
{
    return false;
}

bool VexoBcmSdk::set_port_mac_lock(const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::get_port_mac_lock(const Mp&, bool&)
{
    return false;
}

bool VexoBcmSdk::set_port_mac_lock_ext(const Mp&, bool, bool)
{
    return false;
}

bool VexoBcmSdk::get_port_mac_lock_ext(const Mp&, bool&, bool&)
{
    return false;
}

bool VexoBcmSdk::set_port_mac_limit(const Mp&, int, int)
{
    return false;
}

bool VexoBcmSdk::get_port_mac_limit(const Mp&, int&, int)
{
    return false;
}
