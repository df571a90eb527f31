// Flow maintenance and counters. Not built yet: every operation here returns false and leaves its
// outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::delete_of_flow(unsigned)
{
    return false;
}

bool VexoBcmSdk::clear_of_flow_table()
{
    return false;
}

bool VexoBcmSdk::set_of_flow_priority(unsigned, int)
{
    return false;
}

bool VexoBcmSdk::get_of_flow_priority(unsigned, int&)
{
    return false;
}

bool VexoBcmSdk::get_of_flow_stat_counter64(unsigned, unsigned long long&)
{
    return false;
}

bool VexoBcmSdk::get_of_flow_stat_counter32(unsigned, unsigned&)
{
    return false;
}
