// Flow actions. Not built yet: every operation here returns false and leaves its outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::add_of_flow_action(unsigned, of_action_t, of_action_param_s, const Mp&)
{
    return false;
}

bool VexoBcmSdk::delete_of_flow_action(unsigned, of_action_t, of_action_param_s, const Mp&)
{
    return false;
}

bool VexoBcmSdk::clear_of_flow_action(unsigned)
{
    return false;
}
