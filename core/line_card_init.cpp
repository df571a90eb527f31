// Bringing the line card up, and the set-ups that only a host asks for.
#include "core/line_card_init.h"

#include <bcmx/field.h>
#include <bcmx/l2.h>
#include <bcmx/link.h>
#include <bcmx/port.h>
#include <bcmx/rx.h>

#include <iostream>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "core/trace.h"
#include "flow/udf_pool.h"
#include "l2/stat_tables.h"
#include "platform/hwutil.h"
#include "platform/port_map.h"

using namespace vexolc;

bool VexoBcmSdk::initialize()
{
    const bool done = init_line_card();
    if (sdk_trace_enabled)
        std::cout << (done ? "line card init done" : "line card init failed") << '\n';
    return true; // deliberately: a card that does not come up still gets its instance
}

bool VexoBcmSdk::init_line_card()
{
    if (!vexo_hwutil_init() || !vexo_hwutil_card_insert())
        return false;
    fill_stat_to_stat_val();
    fill_brief_to_port_stat();
    VexoSdkBase& sdk = *this;
    sdk.enable_mirror(1); // deliberately unchecked, like the next call
    bcmx_field_init();
    constexpr bcm_field_control_t control = 8; // without a name in the SDK's headers
    if (!ok(bcmx_field_control_set(control, 1)))
        return false;
    reset_udf_pool();
    return init_filter_group_no_udf();
}

bool vexo_init_line_card(int& slot)
{
    number_lc_chips = 1;
    number_lc_ports = 24;
    self_slot_id = 1;
    number_lc_ppm = number_lc_ports / number_lc_chips;
    slot = self_slot_id;
    return true;
}

bool VexoBcmSdk::line_card_default_config_init()
{
    constexpr int own_period = -1;
    constexpr int unit = 0;
    constexpr uint32_t flags = BCM_PORT_FLOOD_BLOCK_UNKNOWN_UCAST |
                               BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST | BCM_PORT_FLOOD_BLOCK_BCAST;
    if (!ok(bcmx_linkscan_enable_set(own_period)) || !ok(bcmx_linkscan_device_add(unit)) ||
        !ok(bcmx_l2_notify_start()) || !ok(bcmx_rx_device_add(unit)) || !ok(bcmx_rx_start(nullptr)))
        return false;
    // Module 0 ends at port 48, so the chip refuses port 49 and this returns false: deliberate.
    for (unsigned port = 0; port < static_cast<unsigned>(port_count); ++port) {
        if (!ok(bcmx_port_flood_block_set(lport_of(Mp(0, port)), lport_of(Mp(0, 0)), flags)))
            return false;
    }
    return true;
}
