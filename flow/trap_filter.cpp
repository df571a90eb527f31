// CPU trap filters. Not built yet: every operation here returns false and leaves its outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::add_arp_filter(unsigned, unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_arp_filter(unsigned, unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_arp_filter_all()
{
    return false;
}

bool VexoBcmSdk::add_ip_protocol_filter(unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_ip_protocol_filter(unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_ip_protocol_filter_all()
{
    return false;
}

bool VexoBcmSdk::add_l4_destination_port_filter(unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_l4_destination_port_filter(unsigned)
{
    return false;
}

bool VexoBcmSdk::delete_l4_destination_port_filter_all()
{
    return false;
}
