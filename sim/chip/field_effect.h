/// @file
/// What an installed entry does to frames, drawn together from its actions.
#pragma once

#include <cstdint>

#include "sim/chip/field_types.h"

namespace vexosim {

/// Where a frame goes when entries have a say in it; of one entry's places the last one counts.
enum class FieldPlace : std::uint8_t {
    kOwn, ///< where the tables send it
    kRedirect,
    kLoopback,
    kTrap,
    kDrop
};

/// The place that an action names; kOwn for one that is about something else.
FieldPlace place_of(const FieldAction& action);

struct FieldEffect {
    FieldPlace place = FieldPlace::kOwn;
    bool counts = false; ///< in the entry's counter
    bool more = false;   ///< the entry has actions that are about other things
    PortSet redirect;    ///< meaningful for kRedirect
    PortSet mask;        ///< ports that do not send the frame
};

FieldEffect effect_of(const FieldRule& rule);

} // namespace vexosim
