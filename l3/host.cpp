// L3 hosts. Not built yet: every operation here returns false and leaves its outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::add_l3_host_ip4(Mp, bool, unsigned, const unsigned char*, unsigned)
{
    return false;
}

bool VexoBcmSdk::add_l3_host_ip6(Mp, bool, const unsigned char*, const unsigned char*, unsigned)
{
    return false;
}

bool VexoBcmSdk::get_l3_host_ip4(unsigned, Mp, unsigned char*, unsigned&, bool)
{
    return false;
}

bool VexoBcmSdk::get_l3_host_ip6(const unsigned char*, Mp, unsigned char*, unsigned&, bool)
{
    return false;
}

bool VexoBcmSdk::delete_l3_host_by_interface(unsigned, bool)
{
    return false;
}

bool VexoBcmSdk::delete_l3_host_by_network_ip4(unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_l3_host_by_network_ip6(const unsigned char*)
{
    return false;
}

bool VexoBcmSdk::delete_l3_host_by_addr_ip4(unsigned, const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::delete_l3_host_by_addr_ip6(const unsigned char*, const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::delete_l3_host_all()
{
    return false;
}

bool VexoBcmSdk::invalidate_l3_entry(unsigned)
{
    return false;
}

bool VexoBcmSdk::validate_l3_entry(unsigned)
{
    return false;
}
