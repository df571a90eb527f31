// Port properties that are settings of one port.
#include <bcmx/port.h>

#include <algorithm>
#include <array>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"
#include "sim/sdk/port_get.h"

namespace {

using namespace vexosim;

std::array<std::uint8_t, 6> bytes_of(const std::uint8_t* mac)
{
    std::array<std::uint8_t, 6> bytes{};
    std::copy_n(mac, bytes.size(), bytes.begin());
    return bytes;
}

int get_pause(const PortConfig& port, int* pause_tx, int* pause_rx)
{
    if (pause_tx == nullptr || pause_rx == nullptr)
        return BCM_E_PARAM;
    *pause_tx = port.pause_tx ? 1 : 0;
    *pause_rx = port.pause_rx ? 1 : 0;
    return BCM_E_NONE;
}

} // namespace

extern "C" int bcmx_port_enable_set(bcmx_lport_t port, int enable)
{
    return port_call("bcmx_port_enable_set", port, args(Lport{port}, enable),
                     [&](Chip& chip, int p) { return chip.ports.set_enable(p, enable); });
}

extern "C" int bcmx_port_enable_get(bcmx_lport_t port, int* enable)
{
    return port_get("bcmx_port_enable_get", port, enable,
                    [](const PortConfig& p) { return p.enable ? 1 : 0; });
}

extern "C" int bcmx_port_autoneg_set(bcmx_lport_t port, int autoneg)
{
    return port_call("bcmx_port_autoneg_set", port, args(Lport{port}, autoneg),
                     [&](Chip& chip, int p) { return chip.ports.set_autoneg(p, autoneg); });
}

extern "C" int bcmx_port_autoneg_get(bcmx_lport_t port, int* autoneg)
{
    return port_get("bcmx_port_autoneg_get", port, autoneg,
                    [](const PortConfig& p) { return p.autoneg ? 1 : 0; });
}

extern "C" int bcmx_port_speed_set(bcmx_lport_t port, int speed)
{
    return port_call("bcmx_port_speed_set", port, args(Lport{port}, speed),
                     [&](Chip& chip, int p) { return chip.ports.set_speed(p, speed); });
}

extern "C" int bcmx_port_speed_get(bcmx_lport_t port, int* speed)
{
    return port_get("bcmx_port_speed_get", port, speed,
                    [](const PortConfig& p) { return p.speed; });
}

extern "C" int bcmx_port_duplex_set(bcmx_lport_t port, int duplex)
{
    return port_call("bcmx_port_duplex_set", port, args(Lport{port}, duplex),
                     [&](Chip& chip, int p) { return chip.ports.set_duplex(p, duplex); });
}

extern "C" int bcmx_port_duplex_get(bcmx_lport_t port, int* duplex)
{
    return port_get("bcmx_port_duplex_get", port, duplex, [](const PortConfig& p) {
        return p.duplex_full ? BCM_PORT_DUPLEX_FULL : BCM_PORT_DUPLEX_HALF;
    });
}

extern "C" int bcmx_port_pause_set(bcmx_lport_t port, int pause_tx, int pause_rx)
{
    return port_call(
        "bcmx_port_pause_set", port, args(Lport{port}, pause_tx, pause_rx),
        [&](Chip& chip, int p) { return chip.ports.set_pause(p, pause_tx, pause_rx); });
}

extern "C" int bcmx_port_pause_get(bcmx_lport_t port, int* pause_tx, int* pause_rx)
{
    return port_call(
        "bcmx_port_pause_get", port, args(Lport{port}, Out{pause_tx}, Out{pause_rx}),
        [&](Chip& chip, int p) { return get_pause(chip.ports[p], pause_tx, pause_rx); });
}

extern "C" int bcmx_port_jam_set(bcmx_lport_t port, int enable)
{
    return port_call("bcmx_port_jam_set", port, args(Lport{port}, enable),
                     [&](Chip& chip, int p) { return chip.ports.set_jam(p, enable); });
}

extern "C" int bcmx_port_jam_get(bcmx_lport_t port, int* enable)
{
    return port_get("bcmx_port_jam_get", port, enable,
                    [](const PortConfig& p) { return p.jam ? 1 : 0; });
}

extern "C" int bcmx_port_pause_addr_set(bcmx_lport_t port, bcm_mac_t mac)
{
    return port_call("bcmx_port_pause_addr_set", port, args(Lport{port}, Mac{mac}),
                     [&](Chip& chip, int p) -> int {
                         return mac == nullptr ? BCM_E_PARAM
                                               : chip.ports.set_pause_addr(p, bytes_of(mac));
                     });
}

extern "C" int bcmx_port_pause_addr_get(bcmx_lport_t port, bcm_mac_t mac)
{
    return port_call("bcmx_port_pause_addr_get", port, args(Lport{port}, Out{mac}),
                     [&](Chip& chip, int p) {
                         if (mac == nullptr)
                             return BCM_E_PARAM;
                         std::ranges::copy(chip.ports[p].pause_addr, mac);
                         return BCM_E_NONE;
                     });
}

extern "C" int bcmx_port_frame_max_set(bcmx_lport_t port, int size)
{
    return port_call("bcmx_port_frame_max_set", port, args(Lport{port}, size),
                     [&](Chip& chip, int p) { return chip.ports.set_frame_max(p, size); });
}

extern "C" int bcmx_port_frame_max_get(bcmx_lport_t port, int* size)
{
    return port_get("bcmx_port_frame_max_get", port, size,
                    [](const PortConfig& p) { return p.frame_max; });
}

extern "C" int bcmx_port_link_status_get(bcmx_lport_t port, int* status)
{
    return port_call("bcmx_port_link_status_get", port, args(Lport{port}, Out{status}),
                     [&](Chip& chip, int p) {
                         if (status == nullptr)
                             return BCM_E_PARAM;
                         const bool up = chip.ports.link().test(p);
                         *status = up ? BCM_PORT_LINK_STATUS_UP : BCM_PORT_LINK_STATUS_DOWN;
                         return BCM_E_NONE;
                     });
}
