// What the field processor knows: its fields with their widths, and its actions.
#include "sim/chip/field_rules.h"

#include <bcm/field.h>

#include <algorithm>
#include <iterator>
#include <limits>

namespace vexosim {

namespace {

struct Field {
    int field;
    int bits;
};

constexpr Field kFields[] = {
    {bcmFieldQualifySrcMac, 48},      {bcmFieldQualifyDstMac, 48},
    {bcmFieldQualifySrcIp, 32},       {bcmFieldQualifyDstIp, 32},
    {bcmFieldQualifyInPort, 8},       {bcmFieldQualifyOuterVlanId, 12},
    {bcmFieldQualifyOuterVlanPri, 3}, {bcmFieldQualifyL4SrcPort, 16},
    {bcmFieldQualifyL4DstPort, 16},   {bcmFieldQualifyEtherType, 16},
    {bcmFieldQualifyIpProtocol, 8},   {bcmFieldQualifyTos, 8},
    {bcmFieldQualifyIpType, 8},
};

constexpr std::uint32_t kAny = std::numeric_limits<std::uint32_t>::max();

struct Action {
    int action;
    ActionKind kind;
    std::uint32_t max_param0;
};

constexpr Action kActions[] = {
    {bcmFieldActionOuterVlanPrioNew, ActionKind::number, 7},
    {bcmFieldActionTosNew, ActionKind::number, 255},
    {bcmFieldActionTrapToCpu, ActionKind::number, kAny},
    {bcmFieldActionEgressMask, ActionKind::ports, kAny},
    {bcmFieldActionRedirectPbmp, ActionKind::ports, kAny},
    {bcmFieldActionDrop, ActionKind::number, kAny},
    {bcmFieldActionUpdateCounter, ActionKind::number, kAny},
    {bcmFieldActionInnerVlanDelete, ActionKind::number, kAny},
    {bcmFieldActionOuterVlanNew, ActionKind::number, 4094},
    {bcmFieldActionLoopback, ActionKind::number, kAny},
    {bcmFieldActionBypassStp, ActionKind::number, kAny},
    {bcmFieldActionSrcMacNew, ActionKind::mac, kAny},
    {bcmFieldActionDstMacNew, ActionKind::mac, kAny},
};

const Action* find_action(int action)
{
    const auto known = std::find_if(std::begin(kActions), std::end(kActions),
                                    [action](const Action& a) { return a.action == action; });
    return known != std::end(kActions) ? known : nullptr;
}

} // namespace

int width_of(int field)
{
    if (field >= FieldMatch::kUdf)
        return 32;
    const auto known = std::find_if(std::begin(kFields), std::end(kFields),
                                    [field](const Field& f) { return f.field == field; });
    return known != std::end(kFields) ? known->bits : 0;
}

bool is_valid(const FieldMatch& match)
{
    if (match.field == bcmFieldQualifyIpType && match.data != BCM_FIELD_IP_TYPE_IP_PROTOCOL &&
        match.data != BCM_FIELD_IP_TYPE_ARP)
        return false;
    const std::uint64_t beyond = ~((std::uint64_t{1} << width_of(match.field)) - 1);
    return (match.data & beyond) == 0 && (match.mask & beyond) == 0;
}

bool is_valid(const FieldSet& set)
{
    for (std::size_t field = 0; field < set.fields.size(); ++field) {
        if (set.fields[field] && width_of(static_cast<int>(field)) == 0)
            return false;
    }
    return true;
}

ActionKind kind_of(int action)
{
    const Action* known = find_action(action);
    return known != nullptr ? known->kind : ActionKind::unknown;
}

bool is_valid(const FieldAction& action)
{
    const Action* known = find_action(action.action);
    return known != nullptr && action.param0 <= known->max_param0;
}

} // namespace vexosim
