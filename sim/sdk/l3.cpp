// Layer-3 interfaces.
#include <bcmx/l3.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

using namespace vexosim;

namespace {

int clear(bcmx_l3_intf_t* intf)
{
    if (intf == nullptr)
        return BCM_E_PARAM;
    *intf = {};
    return BCM_E_NONE;
}

std::uint64_t key_of(const L3Interface& interface)
{
    return mac_key(interface.mac, interface.vid);
}

/// The router MAC's entry in the MAC table: what is for it and is not routed goes to the CPU. An
/// address that has a static entry keeps that one.
void add_to_arl(Chip& chip, const L3Interface& interface)
{
    MacEntry entry;
    entry.key = key_of(interface);
    entry.port = kCpuPort;
    entry.flags = BCM_L2_STATIC;
    if ((interface.flags & BCM_L3_ADD_TO_ARL) != 0)
        (void)chip.macs.add(entry, true, chip.now_us);
}

void remove_from_arl(Chip& chip, const L3Interface& interface)
{
    const MacEntry* entry = chip.macs.find(key_of(interface));
    const bool ours =
        entry != nullptr && entry->is_static() && !entry->on_trunk() && entry->port == kCpuPort;
    if ((interface.flags & BCM_L3_ADD_TO_ARL) != 0 && ours)
        (void)chip.macs.erase(entry->key);
}

/// Whether the MAC table has no room for a router MAC that shall be there.
bool lacks_room(const Chip& chip, const L3Interface& interface)
{
    return (interface.flags & BCM_L3_ADD_TO_ARL) != 0 && chip.macs.size() >= chip.macs.capacity() &&
           chip.macs.find(key_of(interface)) == nullptr;
}

int add(Chip& chip, const L3Interface& made, bcmx_l3_intf_t* intf)
{
    if ((intf->l3i_flags & BCM_L3_WITH_ID) == 0)
        return chip.l3_interfaces.create(made, intf->l3i_intf_id);
    const bool replace = (intf->l3i_flags & BCM_L3_REPLACE) != 0;
    return chip.l3_interfaces.create_id(made, intf->l3i_intf_id, replace);
}

int create(Chip& chip, bcmx_l3_intf_t* intf)
{
    constexpr std::uint32_t known = BCM_L3_ADD_TO_ARL | BCM_L3_WITH_ID | BCM_L3_REPLACE;
    if (intf == nullptr || (intf->l3i_flags & ~known) != 0)
        return BCM_E_PARAM;
    const L3Interface made{load_mac(intf->l3i_mac_addr), intf->l3i_vid,
                           intf->l3i_flags & BCM_L3_ADD_TO_ARL};
    if (lacks_room(chip, made))
        return BCM_E_FULL;
    const L3Interface* replaced = (intf->l3i_flags & BCM_L3_WITH_ID) != 0
                                      ? chip.l3_interfaces.find(intf->l3i_intf_id)
                                      : nullptr;
    const L3Interface old = replaced != nullptr ? *replaced : L3Interface{};
    const int rc = add(chip, made, intf);
    if (rc != BCM_E_NONE)
        return rc;
    remove_from_arl(chip, old);
    add_to_arl(chip, made);
    return BCM_E_NONE;
}

int get(const Chip& chip, bcmx_l3_intf_t* intf)
{
    if (intf == nullptr)
        return BCM_E_PARAM;
    const L3Interface* found = chip.l3_interfaces.find(intf->l3i_intf_id);
    if (found == nullptr)
        return BCM_E_NOT_FOUND;
    intf->l3i_flags = found->flags;
    intf->l3i_vid = static_cast<bcm_vlan_t>(found->vid);
    store_mac(found->mac, intf->l3i_mac_addr);
    return BCM_E_NONE;
}

int find(const Chip& chip, bcmx_l3_intf_t* intf)
{
    if (intf == nullptr)
        return BCM_E_PARAM;
    const auto id = is_vlan_id(intf->l3i_vid)
                        ? chip.l3_interfaces.find(load_mac(intf->l3i_mac_addr), intf->l3i_vid)
                        : std::nullopt;
    if (!id)
        return BCM_E_NOT_FOUND;
    intf->l3i_intf_id = *id;
    return get(chip, intf);
}

int destroy(Chip& chip, unsigned id)
{
    if (const L3Interface* interface = chip.l3_interfaces.find(id))
        remove_from_arl(chip, *interface);
    return chip.l3_interfaces.destroy(id);
}

int destroy_all(Chip& chip)
{
    for (unsigned id = 0; id < chip.l3_interfaces.capacity(); ++id) {
        if (const L3Interface* interface = chip.l3_interfaces.find(id))
            remove_from_arl(chip, *interface);
    }
    return chip.l3_interfaces.destroy_all();
}

} // namespace

extern "C" int bcmx_l3_intf_t_init(bcmx_l3_intf_t* intf)
{
    return local_call("bcmx_l3_intf_t_init", args(Out{intf}), [&] { return clear(intf); });
}

extern "C" int bcmx_l3_intf_create(bcmx_l3_intf_t* intf)
{
    return sdk_call("bcmx_l3_intf_create", args(intf),
                    [&](Chip& chip) { return create(chip, intf); });
}

extern "C" int bcmx_l3_intf_get(bcmx_l3_intf_t* intf)
{
    return sdk_call("bcmx_l3_intf_get", args(intf), [&](Chip& chip) { return get(chip, intf); });
}

extern "C" int bcmx_l3_intf_find(bcmx_l3_intf_t* intf)
{
    return sdk_call("bcmx_l3_intf_find", args(intf), [&](Chip& chip) { return find(chip, intf); });
}

extern "C" int bcmx_l3_intf_delete(bcmx_l3_intf_t* intf)
{
    return sdk_call("bcmx_l3_intf_delete", args(intf), [&](Chip& chip) {
        return intf == nullptr ? int{BCM_E_PARAM} : destroy(chip, intf->l3i_intf_id);
    });
}

extern "C" int bcmx_l3_intf_delete_all(void)
{
    return sdk_call("bcmx_l3_intf_delete_all", args(),
                    [](Chip& chip) { return destroy_all(chip); });
}
