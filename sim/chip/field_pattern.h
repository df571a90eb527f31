/// @file
/// What the field processor sees of a frame, and what an installed entry wants to see.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "sim/chip/field_effect.h"
#include "sim/chip/field_types.h"
#include "vexosim/frame.h"

namespace vexosim {

/// Kinds of frame that a user-defined field's flags tell apart, by what follows the tags.
inline constexpr std::uint32_t kFieldKindIp4 = 0x080;
inline constexpr std::uint32_t kFieldKindIp6 = 0x100;
inline constexpr std::uint32_t kFieldKindOther = 0x200;

/// Bits of a field, and which of them the frame has.
struct FieldBits {
    std::uint64_t bits = 0;
    std::uint64_t present = 0;
};

/// The fields of a frame by bcm_field_qualify_t. One that was not set is absent.
class FieldValues {
public:
    FrameView frame;
    std::uint32_t kind = kFieldKindOther;
    unsigned tags = 0;
    std::size_t ip_at = 0; ///< where the IP header begins; 0: there is none

    void set(int field, std::uint64_t value)
    {
        present_ |= std::uint64_t{1} << field;
        values_[static_cast<std::size_t>(field)] = value;
    }
    FieldBits of(int field) const
    {
        const bool present = (present_ >> field & 1) != 0;
        return present ? FieldBits{values_[static_cast<std::size_t>(field)], ~std::uint64_t{0}}
                       : FieldBits{};
    }
    /// A user-defined field, of which bytes may lie outside the frame. All are absent when the
    /// field is for other formats.
    FieldBits of(const FieldUdf& udf) const;

private:
    std::uint64_t present_ = 0;
    std::array<std::uint64_t, 64> values_; ///< meaningful where present
};

/// Bits of one field that are compared.
struct FieldPart {
    int field = 0; ///< as in FieldMatch
    std::uint64_t mask = 0;
    FieldUdf udf; ///< of a user-defined field

    FieldBits bits_in(const FieldValues& values) const
    {
        return field >= FieldMatch::kUdf ? values.of(udf) : values.of(field);
    }
    bool operator==(const FieldPart&) const = default;
};

/// An entry's match. Parts rise by field; none has an empty mask.
struct FieldPattern {
    std::vector<FieldPart> parts;
    std::vector<std::uint64_t> key; ///< what each part has to be, under its mask
};

/// An installed entry, as a search finds it.
struct FieldHit {
    FieldEntry* entry = nullptr; ///< for FieldTable::count_packet(); others only read it
    int id = 0;
    int priority = 0;
    FieldEffect effect; ///< of `entry`, which few frames have to read then

    bool beats(const FieldHit& other) const
    {
        return priority != other.priority ? priority > other.priority : id < other.id;
    }
};

} // namespace vexosim
