// Field processor: what entries do.
#include <bcmx/field.h>

#include "sim/chip/chip.h"
#include "sim/chip/field_rules.h"
#include "sim/sdk/gate.h"
#include "sim/sdk/port_lists.h"

using namespace vexosim;

namespace {

FieldAction with_number(int action, std::uint32_t param0, std::uint32_t param1)
{
    FieldAction made;
    made.action = action;
    made.param0 = param0;
    made.param1 = param1;
    return made;
}

/// Adds an action of the kind that the call is for; PARAM for one of another kind.
int add(Chip& chip, int entry, ActionKind kind, const FieldAction& action)
{
    if (chip.field.find(entry) == nullptr)
        return BCM_E_NOT_FOUND;
    return kind_of(action.action) == kind ? chip.field.add_action(entry, action) : int{BCM_E_PARAM};
}

int add_mac(Chip& chip, int entry, int action, const std::uint8_t* mac)
{
    if (mac == nullptr)
        return BCM_E_PARAM;
    FieldAction made;
    made.action = action;
    made.mac = load_mac(mac);
    return add(chip, entry, ActionKind::mac, made);
}

int add_ports(Chip& chip, int entry, int action, const bcmx_lplist_t& list)
{
    const auto ports = port_set(list);
    if (!ports)
        return BCM_E_PORT;
    FieldAction made;
    made.action = action;
    made.ports = *ports;
    return add(chip, entry, ActionKind::ports, made);
}

int get_ports(const Chip& chip, int entry, int action, bcmx_lplist_t* list)
{
    if (list == nullptr || kind_of(action) != ActionKind::ports)
        return BCM_E_PARAM;
    const FieldAction* found = chip.field.find_action(entry, action);
    return found != nullptr ? make_list_of(list, found->ports) : int{BCM_E_NOT_FOUND};
}

} // namespace

extern "C" int bcmx_field_action_add(bcm_field_entry_t entry, bcm_field_action_t action,
                                     uint32_t param0, uint32_t param1)
{
    return sdk_call("bcmx_field_action_add", args(entry, action, param0, param1), [&](Chip& chip) {
        return add(chip, entry, ActionKind::number, with_number(action, param0, param1));
    });
}

extern "C" int bcmx_field_action_delete(bcm_field_entry_t entry, bcm_field_action_t action,
                                        uint32_t param0, uint32_t param1)
{
    return sdk_call("bcmx_field_action_delete", args(entry, action, param0, param1),
                    [&](Chip& chip) { return chip.field.delete_action(entry, action); });
}

extern "C" int bcmx_field_action_remove_all(bcm_field_entry_t entry)
{
    return sdk_call("bcmx_field_action_remove_all", args(entry),
                    [&](Chip& chip) { return chip.field.delete_all_actions(entry); });
}

extern "C" int bcmx_field_action_mac_add(bcm_field_entry_t entry, bcm_field_action_t action,
                                         bcm_mac_t mac)
{
    return sdk_call("bcmx_field_action_mac_add", args(entry, action, Mac{mac}),
                    [&](Chip& chip) { return add_mac(chip, entry, action, mac); });
}

extern "C" int bcmx_field_action_ports_add(bcm_field_entry_t entry, bcm_field_action_t action,
                                           bcmx_lplist_t ports)
{
    return sdk_call("bcmx_field_action_ports_add", args(entry, action, Ports{&ports}),
                    [&](Chip& chip) { return add_ports(chip, entry, action, ports); });
}

extern "C" int bcmx_field_action_ports_get(bcm_field_entry_t entry, bcm_field_action_t action,
                                           bcmx_lplist_t* ports)
{
    return sdk_call("bcmx_field_action_ports_get", args(entry, action, Out{ports}),
                    [&](Chip& chip) { return get_ports(chip, entry, action, ports); });
}
