// Flow entries. Not built yet: every operation here returns false and leaves its outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::add_of_flow(const of_flow_mp_s&, unsigned&, const of_flow_qualify_udf_s&)
{
    return false;
}

bool VexoBcmSdk::add_of_flow_with_id(const of_flow_mp_s&, unsigned)
{
    return false;
}
