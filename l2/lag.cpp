// LAG operations on the chip. Not built yet: every operation here returns false and leaves its
// outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::create_lag(unsigned&)
{
    return false;
}

bool VexoBcmSdk::delete_lag(unsigned)
{
    return false;
}

bool VexoBcmSdk::add_ports_to_lag(unsigned, const std::list<Mp>&)
{
    return false;
}

bool VexoBcmSdk::delete_ports_from_lag(unsigned, const std::list<Mp>&)
{
    return false;
}

bool VexoBcmSdk::set_lag_psc(unsigned, lag_psc_t)
{
    return false;
}

bool VexoBcmSdk::get_lag_psc(unsigned, lag_psc_t&)
{
    return false;
}

bool VexoBcmSdk::port_add_to_egress_list(Mp)
{
    return false;
}

bool VexoBcmSdk::port_remove_from_egress_list(Mp)
{
    return false;
}
