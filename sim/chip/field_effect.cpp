#include "sim/chip/field_effect.h"

#include <bcm/field.h>

namespace vexosim {

FieldPlace place_of(const FieldAction& action)
{
    switch (action.action) {
    case bcmFieldActionRedirectPbmp:
        return FieldPlace::kRedirect;
    case bcmFieldActionLoopback:
        return FieldPlace::kLoopback;
    case bcmFieldActionTrapToCpu:
        return FieldPlace::kTrap;
    case bcmFieldActionDrop:
        return FieldPlace::kDrop;
    default:
        return FieldPlace::kOwn;
    }
}

FieldEffect effect_of(const FieldRule& rule)
{
    FieldEffect effect;
    for (const FieldAction& action : rule.actions) {
        const FieldPlace place = place_of(action);
        if (place > effect.place) {
            effect.place = place;
            effect.redirect = action.ports;
        } else if (action.action == bcmFieldActionUpdateCounter) {
            effect.counts = true;
        } else if (action.action == bcmFieldActionEgressMask) {
            effect.mask = action.ports;
        } else if (place == FieldPlace::kOwn) {
            effect.more = true;
        }
    }
    return effect;
}

} // namespace vexosim
