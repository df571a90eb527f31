// The card's hardware, from SDK start to attached ports with per-port defaults.
#include "platform/hwutil.h"

#include <bcm/cosq.h>
#include <bcm/stg.h>
#include <bcmx/lport.h>
#include <bcmx/port.h>
#include <bcmx/stg.h>
#include <sal/config.h>
#include <sal/core.h>
#include <soc/cm.h>

#include <cstdio>
#include <cstring>

#include "core/result.h"
#include "platform/board_io.h"
#include "platform/led.h"
#include "platform/port_map.h"
#include "platform/sysconf.h"

using namespace vexolc;

namespace {

constexpr int sfp_module = 2;
constexpr int sfp_expander = 7;

bool start_sdk()
{
    return ok(sal_core_init()) && ok(sal_appl_init()) && ok(vexo_sysconf_init()) &&
           ok(vexo_sysconf_probe());
}

void choose_unit()
{
    vexo_bcm_unit = 0;
    uint16_t device = 0;
    uint8_t revision = 0;
    soc_cm_get_id(vexo_bcm_unit, &device, &revision); // not used further
}

// A module that cannot be prepared does not stop the bring-up.
void prepare_daughter_module()
{
    if (DetectDaughterModuleID() != sfp_module)
        return;
    BoardInitPCA9555_SFP(sfp_expander);
    ResetSFPPHYOnBoard(sfp_expander, 0);
    ResetSFPPHYOnBoard(sfp_expander, 1);
}

// Chip ports 26 to 29 are the 10 Gb/s ports. The SDK reads this while it attaches the device.
void name_xe_ports(int unit)
{
    char name[32] = {};
    char value[32] = {};
    std::snprintf(name, sizeof name, "pbmp_xport_xe.%d", unit);
    std::snprintf(value, sizeof value, "0x3c000000");
    sal_config_set(name, value); // deliberately unchecked
}

bool init_chip(int unit)
{
    constexpr int queues = 8;
    return ok(vexo_sysconf_attach(unit)) && ok(vexo_bcm_sdk_system_init(unit)) &&
           ok(bcm_cosq_config_set(unit, queues));
}

bool prepare_port_tables()
{
    if (!map_build_uport_to_user_port())
        return false;
    std::memset(vexo_user_port_to_lport, 0xFF, sizeof vexo_user_port_to_lport);
    // Deliberately unchecked: without the callback the ports stay unmapped and bring-up goes on.
    bcmx_uport_create_callback_set(vexo_uport_create_cb);
    return true;
}

bool bring_up_chip()
{
    if (!start_sdk())
        return false;
    choose_unit();
    prepare_daughter_module();
    name_xe_ports(vexo_bcm_unit);
    return init_chip(vexo_bcm_unit) && prepare_port_tables();
}

bool set_port_defaults(int lport)
{
    constexpr int on = 1;
    constexpr bcm_stg_t default_group = 1;
    constexpr uint32_t both_ways = BCM_PORT_VLAN_MEMBER_INGRESS | BCM_PORT_VLAN_MEMBER_EGRESS;
    return ok(bcmx_port_autoneg_set(lport, on)) &&
           ok(bcmx_stg_stp_set(default_group, lport, BCM_STG_STP_FORWARD)) &&
           ok(bcmx_port_vlan_member_set(lport, both_ways));
}

} // namespace

bool vexo_hwutil_init()
{
    if (!bring_up_chip() || !ok(bcmx_device_attach(vexo_bcm_unit)))
        return false;
    map_build_user_port_to_module_port();
    vexo_init_ledproc(); // a dark LED does not stop the bring-up
    return true;
}

bool vexo_hwutil_card_insert()
{
    if (!vexo_hwutil_default_port_config_init())
        return false;
    // Index 0 is deliberately left at the SDK's defaults.
    for (int i = 1; i < vexo_port_rows; ++i) {
        if (!set_port_defaults(vexo_user_port_to_lport[vexo_uport_to_user_port[i]]))
            return false;
    }
    return true;
}
