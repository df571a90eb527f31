// Link scan.
#include <bcmx/link.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

LinkScan& scan()
{
    return card().background.link_scan;
}

} // namespace

extern "C" int bcm_linkscan_mode_set(int unit, bcm_port_t port, int mode)
{
    return unit_call("bcm_linkscan_mode_set", unit, args(unit, port, mode), [&](Chip&) -> int {
        return is_chip_port(port) ? scan().set_mode(port, mode) : BCM_E_PORT;
    });
}

extern "C" int bcm_linkscan_enable_set(int unit, int interval_us)
{
    return unit_call("bcm_linkscan_enable_set", unit, args(unit, interval_us), [&](Chip&) {
        scan().enable(interval_us);
        return BCM_E_NONE;
    });
}

extern "C" int bcmx_linkscan_enable_set(int interval_us)
{
    return sdk_call("bcmx_linkscan_enable_set", args(interval_us), [&](Chip&) {
        if (interval_us >= 0)
            scan().enable(interval_us);
        return BCM_E_NONE;
    });
}

extern "C" int bcmx_linkscan_device_add(int unit)
{
    return unit_call("bcmx_linkscan_device_add", unit, Stage::attached, args(unit), [](Chip&) {
        scan().add_unit();
        return BCM_E_NONE;
    });
}

extern "C" int bcmx_linkscan_register(bcmx_linkscan_handler_t handler)
{
    return sdk_call("bcmx_linkscan_register", args(Handler{handler}),
                    [&](Chip&) { return scan().add_handler(handler); });
}
