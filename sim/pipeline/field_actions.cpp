// What the entries that match a frame do to it together.
#include "sim/pipeline/field_actions.h"

#include <bcm/field.h>

#include "sim/chip/field_text.h"
#include "sim/pipeline/recorder.h"

namespace vexosim {

namespace {

/// Takes the value unless an entry before has given one. @return whether it is taken.
bool take(int& number, std::uint32_t value)
{
    if (number >= 0)
        return false;
    number = static_cast<int>(value);
    return true;
}

bool take(bool& given, MacAddress& mac, MacAddress value)
{
    if (given)
        return false;
    mac = value;
    return given = true;
}

bool take(bool& flag)
{
    flag = true;
    return true;
}

/// `place` is where the entry of the action sends the frame, if that counts.
bool apply(FieldVerdict& v, const FieldAction& action, FieldPlace place)
{
    switch (action.action) {
    case bcmFieldActionOuterVlanPrioNew:
        return take(v.edits.priority, action.param0);
    case bcmFieldActionTosNew:
        return take(v.edits.tos, action.param0);
    case bcmFieldActionOuterVlanNew:
        return take(v.edits.vid, action.param0);
    case bcmFieldActionSrcMacNew:
        return take(v.edits.new_src, v.edits.src, action.mac);
    case bcmFieldActionDstMacNew:
        return take(v.edits.new_dst, v.edits.dst, action.mac);
    case bcmFieldActionInnerVlanDelete:
        return take(v.edits.delete_inner);
    case bcmFieldActionBypassStp:
        return take(v.bypass_stp);
    case bcmFieldActionEgressMask:
        v.mask |= action.ports;
        return true;
    case bcmFieldActionUpdateCounter:
        return true;
    default:
        break;
    }
    if (place == FieldPlace::kOwn || place_of(action) != place)
        return false;
    v.place = place;
    v.redirect = action.ports;
    return true;
}

/// The same of an entry whose actions need not be looked at one by one.
void apply(FieldVerdict& v, const FieldEffect& effect, FieldPlace place)
{
    v.mask |= effect.mask;
    if (place == FieldPlace::kOwn)
        return;
    v.place = place;
    v.redirect = effect.redirect;
}

} // namespace

void settle_actions(const Packet& p, FieldVerdict& v)
{
    for (std::size_t i = 0; i < v.hit_count; ++i) {
        const FieldHit& hit = *v.hits[i];
        const FieldPlace place = v.place == FieldPlace::kOwn ? hit.effect.place : FieldPlace::kOwn;
        if (!hit.effect.more && p.recorder == nullptr) [[likely]] {
            apply(v, hit.effect, place);
            continue;
        }
        for (const FieldAction& action : hit.entry->installed->actions) {
            const bool wins = apply(v, action, place);
            explain(p, [&](const PortNames& names) {
                return "entry " + std::to_string(hit.id) + ": " + action_text(action, names) +
                       (wins ? "" : ", overruled");
            });
        }
    }
}

} // namespace vexosim
