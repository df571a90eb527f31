// L3 interfaces. Not built yet: every operation here returns false and leaves its outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::create_l3_interface(const unsigned char*, unsigned, unsigned&)
{
    return false;
}

bool VexoBcmSdk::create_l3_interface_with_id(const unsigned char*, unsigned, unsigned, bool)
{
    return false;
}

bool VexoBcmSdk::get_l3_interface(unsigned, unsigned&, unsigned char*)
{
    return false;
}

bool VexoBcmSdk::delete_l3_interface(const unsigned char*, unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_l3_interface_by_id(unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_l3_interface_all()
{
    return false;
}
