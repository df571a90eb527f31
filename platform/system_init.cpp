// The chip's initialisation by the SDK, from reset to link scan.
#include <bcm/init.h>
#include <bcm/link.h>
#include <bcm/port.h>
#include <bcm/stat.h>
#include <soc/drv.h>
#include <soc/property.h>

#include "platform/sysconf.h"

namespace {

constexpr uint32_t default_l2_message_us = 3000000;
constexpr uint32_t default_linkscan_us = 250000;
constexpr char linkscan_ports_property[] = "bcm_linkscan_pbmp";

int microseconds_property(int unit, const char* name, uint32_t default_us)
{
    return static_cast<int>(soc_property_get(unit, name, default_us));
}

int init_chip_layer(int unit)
{
    int rc = soc_reset_init(unit);
    if (rc >= 0)
        rc = soc_misc_init(unit);
    if (rc >= 0)
        rc = soc_mmu_init(unit);
    return rc;
}

int start_l2_messages(int unit)
{
    if (soc_feature(unit, soc_feature_arl_hashed) == 0)
        return 0;
    constexpr uint32_t no_flags = 0;
    return soc_l2x_start(unit, no_flags,
                         microseconds_property(unit, "l2xmsg_thread_usec", default_l2_message_us));
}

bcm_pbmp_t linkscan_ports(int unit, const bcm_port_config_t& config)
{
    constexpr int none = 0;
    if (soc_property_get_str(unit, linkscan_ports_property) != nullptr)
        return soc_property_get_pbmp(unit, linkscan_ports_property, none);
    return config.port;
}

int prepare_linkscan(int unit, const bcm_pbmp_t& ports)
{
    for (int port = 0; port < BCM_PBMP_PORT_MAX; ++port) {
        if (!BCM_PBMP_MEMBER(ports, port))
            continue;
        int rc = bcm_linkscan_mode_set(unit, port, BCM_LINKSCAN_MODE_SW);
        if (rc >= 0)
            rc = bcm_stat_clear(unit, port);
        if (rc < 0)
            return rc;
    }
    return 0;
}

int start_linkscan(int unit)
{
    bcm_port_config_t config = {};
    if (const int rc = bcm_port_config_get(unit, &config); rc != 0)
        return rc;
    if (const int rc = prepare_linkscan(unit, linkscan_ports(unit, config)); rc < 0)
        return rc;
    const int interval = microseconds_property(unit, "bcm_linkscan_interval", default_linkscan_us);
    const int rc = bcm_linkscan_enable_set(unit, interval);
    return rc < 0 ? rc : 0;
}

} // namespace

int vexo_bcm_sdk_system_init(int unit)
{
    int rc = init_chip_layer(unit);
    if (rc >= 0)
        rc = start_l2_messages(unit);
    if (rc >= 0)
        rc = bcm_init(unit);
    return rc >= 0 ? start_linkscan(unit) : rc;
}
