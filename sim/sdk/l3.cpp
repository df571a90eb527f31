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

int create(Chip& chip, bcmx_l3_intf_t* intf)
{
    constexpr std::uint32_t known = BCM_L3_ADD_TO_ARL | BCM_L3_WITH_ID | BCM_L3_REPLACE;
    if (intf == nullptr || (intf->l3i_flags & ~known) != 0)
        return BCM_E_PARAM;
    const L3Interface made{load_mac(intf->l3i_mac_addr), intf->l3i_vid,
                           intf->l3i_flags & BCM_L3_ADD_TO_ARL};
    if ((intf->l3i_flags & BCM_L3_WITH_ID) == 0)
        return chip.l3_interfaces.create(made, intf->l3i_intf_id);
    const bool replace = (intf->l3i_flags & BCM_L3_REPLACE) != 0;
    return chip.l3_interfaces.create_id(made, intf->l3i_intf_id, replace);
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

int destroy(Chip& chip, const bcmx_l3_intf_t* intf)
{
    return intf == nullptr ? int{BCM_E_PARAM} : chip.l3_interfaces.destroy(intf->l3i_intf_id);
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
    return sdk_call("bcmx_l3_intf_delete", args(intf),
                    [&](Chip& chip) { return destroy(chip, intf); });
}

extern "C" int bcmx_l3_intf_delete_all(void)
{
    return sdk_call("bcmx_l3_intf_delete_all", args(),
                    [](Chip& chip) { return chip.l3_interfaces.destroy_all(); });
}
