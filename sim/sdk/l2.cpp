// The MAC table: entries and ageing.
#include <bcmx/l2.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"
#include "sim/sdk/port_lists.h"

namespace {

using namespace vexosim;

constexpr int kVlanMax = 4095;

/// Where the entry says the address is. PORT; NOT_FOUND: no such trunk; PARAM.
int place(const Chip& chip, const bcmx_l2_addr_t& addr, MacEntry& entry)
{
    if ((addr.flags & BCM_L2_TRUNK_MEMBER) != 0) {
        entry.trunk = static_cast<std::uint8_t>(addr.tgid);
        return chip.trunks.check(addr.tgid);
    }
    const int port = card().ports.chip_port(addr.lport);
    entry.port = static_cast<std::uint8_t>(port);
    return port < 0 ? BCM_E_PORT : BCM_E_NONE;
}

int add(Chip& chip, const bcmx_l2_addr_t& addr, const bcmx_lplist_t* port_block)
{
    if (addr.vid > kVlanMax)
        return BCM_E_PARAM;
    MacEntry entry;
    entry.key = mac_key(load_mac(addr.mac), addr.vid);
    if (const int rc = place(chip, addr, entry); rc != BCM_E_NONE)
        return rc;
    const auto block = port_block == nullptr ? PortSet{} : port_set(*port_block);
    if (!block)
        return BCM_E_PORT;
    entry.block = *block;
    entry.flags = static_cast<std::uint16_t>(addr.flags);
    entry.l2mc_index = static_cast<std::uint16_t>(addr.l2mc_index);
    entry.auth = static_cast<std::uint16_t>(addr.auth);
    entry.rtag = static_cast<std::uint8_t>(addr.rtag);
    entry.cos_dst = static_cast<std::uint8_t>(addr.cos_dst);
    entry.cos_src = static_cast<std::uint8_t>(addr.cos_src);
    return chip.macs.add(entry, (addr.flags & BCM_L2_REPLACE_DYNAMIC) != 0, chip.now_us);
}

bool good_delete_flags(std::uint32_t flags)
{
    return (flags & ~BCM_L2_DELETE_STATIC) == 0;
}

bool with_static(std::uint32_t flags)
{
    return (flags & BCM_L2_DELETE_STATIC) != 0;
}

int delete_by_mac(Chip& chip, const std::uint8_t* mac, std::uint32_t flags)
{
    if (mac == nullptr || !good_delete_flags(flags))
        return BCM_E_PARAM;
    return chip.macs.erase_by_mac(load_mac(mac), with_static(flags)) == 0 ? BCM_E_NOT_FOUND
                                                                          : BCM_E_NONE;
}

int delete_by_vlan(Chip& chip, bcm_vlan_t vid, std::uint32_t flags)
{
    if (vid > kVlanMax || !good_delete_flags(flags))
        return BCM_E_PARAM;
    chip.macs.erase_by_vlan(vid, with_static(flags));
    return BCM_E_NONE;
}

int delete_by_port(Chip& chip, int port, std::uint32_t flags)
{
    if (!good_delete_flags(flags))
        return BCM_E_PARAM;
    chip.macs.erase_by_port(port, with_static(flags));
    return BCM_E_NONE;
}

int delete_by_trunk(Chip& chip, bcm_trunk_t tid, std::uint32_t flags)
{
    if (!good_delete_flags(flags))
        return BCM_E_PARAM;
    const int rc = chip.trunks.check(tid);
    if (rc == BCM_E_NONE)
        chip.macs.erase_by_trunk(tid, with_static(flags));
    return rc;
}

} // namespace

extern "C" int bcmx_l2_addr_add(bcmx_l2_addr_t* addr, bcmx_lplist_t* port_block)
{
    return sdk_call("bcmx_l2_addr_add", args(addr, Ports{port_block}), [&](Chip& chip) -> int {
        return addr == nullptr ? BCM_E_PARAM : add(chip, *addr, port_block);
    });
}

extern "C" int bcmx_l2_addr_delete(bcm_mac_t mac, bcm_vlan_t vid)
{
    return sdk_call("bcmx_l2_addr_delete", args(Mac{mac}, vid), [&](Chip& chip) -> int {
        const bool good = mac != nullptr && vid <= kVlanMax;
        return good ? chip.macs.erase(mac_key(load_mac(mac), vid)) : BCM_E_PARAM;
    });
}

extern "C" int bcmx_l2_addr_delete_by_mac(bcm_mac_t mac, uint32_t flags)
{
    return sdk_call("bcmx_l2_addr_delete_by_mac", args(Mac{mac}, Flags{flags}),
                    [&](Chip& chip) { return delete_by_mac(chip, mac, flags); });
}

extern "C" int bcmx_l2_addr_delete_by_vlan(bcm_vlan_t vid, uint32_t flags)
{
    return sdk_call("bcmx_l2_addr_delete_by_vlan", args(vid, Flags{flags}),
                    [&](Chip& chip) { return delete_by_vlan(chip, vid, flags); });
}

extern "C" int bcmx_l2_addr_delete_by_port(bcmx_lport_t port, uint32_t flags)
{
    return port_call("bcmx_l2_addr_delete_by_port", port, args(Lport{port}, Flags{flags}),
                     [&](Chip& chip, int p) { return delete_by_port(chip, p, flags); });
}

extern "C" int bcmx_l2_addr_delete_by_trunk(bcm_trunk_t tid, uint32_t flags)
{
    return sdk_call("bcmx_l2_addr_delete_by_trunk", args(tid, Flags{flags}),
                    [&](Chip& chip) { return delete_by_trunk(chip, tid, flags); });
}

extern "C" int bcmx_l2_age_timer_set(int age_seconds)
{
    return sdk_call("bcmx_l2_age_timer_set", args(age_seconds),
                    [&](Chip& chip) { return chip.macs.set_age_seconds(age_seconds); });
}

extern "C" int bcmx_l2_age_timer_get(int* age_seconds)
{
    return sdk_call("bcmx_l2_age_timer_get", args(Out{age_seconds}), [&](Chip& chip) {
        if (age_seconds == nullptr)
            return BCM_E_PARAM;
        *age_seconds = chip.macs.age_seconds();
        return BCM_E_NONE;
    });
}
