// Port counters. Not built yet: every operation here returns false and leaves its outputs alone.
#include "core/bcm_sdk.h"

bool VexoBcmSdk::set_port_stat_enable(const Mp&, bool)
{
    return false;
}

bool VexoBcmSdk::get_port_stat_enabled(const Mp&, bool&)
{
    return false;
}

bool VexoBcmSdk::get_port_stat_counter(const Mp&, stat_type_t, unsigned long long&)
{
    return false;
}

bool VexoBcmSdk::get_port_stat_counter32(const Mp&, stat_type_t, unsigned&)
{
    return false;
}

bool VexoBcmSdk::get_port_stat_counter_all64(const Mp&, std::list<StatCounter64>&)
{
    return false;
}

bool VexoBcmSdk::get_port_stat_counter_all32(const Mp&, std::list<StatCounter32>&)
{
    return false;
}

bool VexoBcmSdk::get_port_stat_counter_all64_ext(const Mp&, StatCounter64*, unsigned&)
{
    return false;
}

bool VexoBcmSdk::get_port_stat_counter_all32_ext(const Mp&, StatCounter32*, unsigned&)
{
    return false;
}

bool VexoBcmSdk::get_port_brief_stat_counter(const Mp&, brief_stat_type_t, unsigned long long&)
{
    return false;
}

bool VexoBcmSdk::get_port_brief_stat_counter32(const Mp&, brief_stat_type_t, unsigned&)
{
    return false;
}

bool VexoBcmSdk::get_port_brief_stat_counter_all64(const Mp&, std::list<BriefStatCounter64>&)
{
    return false;
}

bool VexoBcmSdk::get_port_brief_stat_counter_all32(const Mp&, std::list<BriefStatCounter32>&)
{
    return false;
}

bool VexoBcmSdk::clear_port_stat_counter(const Mp&)
{
    return false;
}
