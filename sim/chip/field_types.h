/// @file
/// What the field processor is made of.
#pragma once

#include <bitset>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// What a group's entries may match: fields by bcm_field_qualify_t, and user-defined fields by id.
struct FieldSet {
    std::bitset<96> fields;
    std::bitset<96> udfs;

    bool operator==(const FieldSet&) const = default;
    void digest(Digest& d) const;
};

struct FieldGroup {
    int priority = 0; ///< a larger one wins
    FieldSet set;
    std::size_t entries = 0;

    bool operator==(const FieldGroup&) const = default;
    void digest(Digest& d) const;
};

/// A field of the frame and what it has to be. A MAC address is a number whose most significant
/// byte comes first on the wire, like the four bytes of a user-defined field.
struct FieldMatch {
    static constexpr int kUdf = 1000; ///< user-defined field n is number kUdf + n

    int field = 0; ///< bcm_field_qualify_t, or kUdf + id
    std::uint64_t data = 0;
    std::uint64_t mask = 0; ///< a clear bit matches anything

    bool operator==(const FieldMatch&) const = default;
    void digest(Digest& d) const;
};

struct FieldAction {
    int action = 0; ///< bcm_field_action_t
    std::uint32_t param0 = 0;
    std::uint32_t param1 = 0;
    std::uint64_t mac = 0; ///< of a MAC rewrite
    PortSet ports;         ///< of an action on ports

    bool operator==(const FieldAction&) const = default;
    void digest(Digest& d) const;
};

/// Both lists rise by field and by action, and hold each once.
struct FieldRule {
    std::vector<FieldMatch> matches;
    std::vector<FieldAction> actions;

    bool operator==(const FieldRule&) const = default;
    void digest(Digest& d) const;
};

struct FieldEntry {
    int group = 0;
    int priority = 0;                     ///< within the group a larger one wins, then the lower id
    FieldRule rule;                       ///< as programmed so far
    std::optional<FieldRule> installed;   ///< as it acts on frames
    std::optional<std::uint64_t> packets; ///< its counter, when it has one

    bool operator==(const FieldEntry&) const = default;
    void digest(Digest& d) const;
};

/// Where a user-defined field lies: word n covers frame bytes 4n-2 to 4n+1.
struct FieldUdf {
    std::uint32_t flags = 0; ///< BCM_FIELD_USER_*
    std::uint32_t word = 0;

    bool operator==(const FieldUdf&) const = default;
    void digest(Digest& d) const;
};

} // namespace vexosim
