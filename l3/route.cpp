// L3 routes. Not built yet: every operation here returns false and leaves its outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::get_l3_route_by_subnet_ip4(unsigned, unsigned, const Mp&, bool,
                                            unsigned char (&)[6], unsigned&, unsigned&)
{
    return false;
}

bool VexoBcmSdk::get_l3_route_by_subnet_ip6(const unsigned char*, const unsigned char*, const Mp&,
                                            bool, unsigned&, unsigned char*)
{
    return false;
}

bool VexoBcmSdk::add_l3_route_ip4(const Mp&, bool, unsigned, unsigned, const unsigned char*,
                                  unsigned, unsigned)
{
    return false;
}

bool VexoBcmSdk::add_l3_route_ip6(const Mp&, bool, const unsigned char*, const unsigned char*,
                                  const unsigned char*, unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_l3_route_by_interface(unsigned, bool)
{
    return false;
}

bool VexoBcmSdk::delete_l3_route_by_subnet_ip4(unsigned, unsigned, const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::delete_l3_route_by_subnet_ip6(const unsigned char*, const unsigned char*,
                                               const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::delete_l3_route_all()
{
    return false;
}
