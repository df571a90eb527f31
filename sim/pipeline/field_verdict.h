/// @file
/// What the field processor wants done with a frame.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip/field_table.h"
#include "sim/chip/mac_table.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// New contents of what leaves through ports.
struct FieldEdits {
    int vid = -1, priority = -1, tos = -1; ///< -1: as it is
    bool new_src = false, new_dst = false, delete_inner = false;
    MacAddress src = 0, dst = 0;
    std::size_t ip_at = 0; ///< where the frame's IP header begins; 0: there is none

    bool any() const
    {
        return vid >= 0 || priority >= 0 || tos >= 0 || new_src || new_dst || delete_inner;
    }
};

struct FieldVerdict {
    FieldPlace place = FieldPlace::kOwn;
    PortSet redirect; ///< meaningful for kRedirect
    PortSet mask;     ///< ports that do not send it
    bool bypass_stp = false;
    FieldEdits edits;

    std::size_t hit_count = 0;
    /// One of each group that matches; valid until the table changes.
    std::array<const FieldHit*, FieldTable::kMaxGroups> hits;

    FieldVerdict() {} // NOLINT(modernize-use-equals-default): that would clear `hits`
};

} // namespace vexosim
