// A port's physical properties: state, speed, duplex, pause, jamming, frame size and link. Most
// operations are one SDK call and deliberately leave a bad port for the SDK to refuse.
#include <algorithm>

#include <bcmx/l2.h>
#include <bcmx/port.h>

#include "core/bcm_sdk.h"
#include "core/enum_table.h"
#include "core/result.h"

using namespace vexolc;

namespace {

constexpr EnumTable<speed_type_t, 4> speeds = {{
    {SPEED_10M, 10},
    {SPEED_100M, 100},
    {SPEED_1G, 1000},
    {SPEED_10G, 10000},
}};
static_assert(speeds.two_way());

} // namespace

bool VexoBcmSdk::set_port_enable(const Mp& port, bool enable)
{
    const int lport = lport_of(port);
    if (!ok(bcmx_port_enable_set(lport, enable)))
        return false;
    if (!enable)
        bcmx_l2_addr_delete_by_port(lport, 0); // the port is off, whether or not this succeeds
    return true;
}

bool VexoBcmSdk::get_port_enabled(const Mp& port, bool& enabled)
{
    int value = 0;
    return ok(bcmx_port_enable_get(lport_of(port), &value)) && store(enabled, value != 0);
}

bool VexoBcmSdk::set_port_autoneg(const Mp& port, bool enable)
{
    int lport = -1;
    return map_mp_to_lport(port, lport) && ok(bcmx_port_autoneg_set(lport, enable));
}

bool VexoBcmSdk::get_port_autoneg(const Mp& port, bool& enabled)
{
    int lport = -1;
    int value = 0;
    return map_mp_to_lport(port, lport) && ok(bcmx_port_autoneg_get(lport, &value)) &&
           store(enabled, value == 1);
}

bool VexoBcmSdk::set_port_speed(const Mp& port, speed_type_t speed)
{
    int mbps = 0;
    return speeds.to_sdk(speed, mbps) && ok(bcmx_port_speed_set(lport_of(port), mbps));
}

bool VexoBcmSdk::get_port_speed(const Mp& port, speed_type_t& speed)
{
    int mbps = 0;
    return ok(bcmx_port_speed_get(lport_of(port), &mbps)) && speeds.from_sdk(mbps, speed);
}

bool VexoBcmSdk::set_port_duplex(const Mp& port, duplex_type_t duplex)
{
    // Deliberately full for every value but half: a bad value is not refused.
    const int value = duplex == DUPLEX_HALF ? BCM_PORT_DUPLEX_HALF : BCM_PORT_DUPLEX_FULL;
    return ok(bcmx_port_duplex_set(lport_of(port), value));
}

bool VexoBcmSdk::get_port_duplex(const Mp& port, duplex_type_t& duplex)
{
    int value = 0;
    return ok(bcmx_port_duplex_get(lport_of(port), &value)) &&
           store(duplex, value == BCM_PORT_DUPLEX_HALF ? DUPLEX_HALF : DUPLEX_FULL);
}

bool VexoBcmSdk::set_port_pause(const Mp& port, unsigned rx, unsigned tx)
{
    return ok(bcmx_port_pause_set(lport_of(port), static_cast<int>(tx), static_cast<int>(rx)));
}

bool VexoBcmSdk::get_port_pause(const Mp& port, unsigned& rx, unsigned& tx)
{
    int sent = 0;
    int obeyed = 0;
    return ok(bcmx_port_pause_get(lport_of(port), &sent, &obeyed)) && store(rx, obeyed) &&
           store(tx, sent);
}

bool VexoBcmSdk::set_port_jaming(const Mp& port, bool enable)
{
    return ok(bcmx_port_jam_set(lport_of(port), enable));
}

bool VexoBcmSdk::get_port_jaming(const Mp& port, bool& enabled)
{
    int value = 0;
    return ok(bcmx_port_jam_get(lport_of(port), &value)) && store(enabled, value == 1);
}

bool VexoBcmSdk::set_port_pause_addr(const Mp& port, const unsigned char* mac)
{
    bcm_mac_t address;
    std::copy_n(mac, 6, address);
    return ok(bcmx_port_pause_addr_set(lport_of(port), address));
}

bool VexoBcmSdk::get_port_pause_addr(const Mp& port, unsigned char (&mac)[6])
{
    return ok(bcmx_port_pause_addr_get(lport_of(port), mac));
}

bool VexoBcmSdk::set_port_mtu(const Mp& port, unsigned bytes)
{
    return ok(bcmx_port_frame_max_set(lport_of(port), static_cast<int>(bytes)));
}

bool VexoBcmSdk::get_port_mtu(const Mp& port, unsigned& bytes)
{
    int value = 0;
    return ok(bcmx_port_frame_max_get(lport_of(port), &value)) && store(bytes, value);
}

bool VexoBcmSdk::set_port_phy_state(const Mp&, phy_state_t)
{
    return true;
}

bool VexoBcmSdk::get_port_phy_state(const Mp& port, phy_state_t& state)
{
    int value = 0;
    return ok(bcmx_port_link_status_get(lport_of(port), &value)) &&
           store(state, value == BCM_PORT_LINK_STATUS_UP ? PHY_LINK_UP : PHY_LINK_DOWN);
}
