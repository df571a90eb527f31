#include "sim/chip/field_pattern.h"

#include <bcm/field.h>

namespace vexosim {

namespace {

static_assert((kFieldKindIp4 | kFieldKindIp6 | kFieldKindOther) == BCM_FIELD_USER_L3_ALL);

bool has_format(const FieldValues& values, std::uint32_t flags)
{
    if (flags == 0)
        return true;
    const unsigned tags = (flags & BCM_FIELD_USER_VLAN_ONE_TAG) != 0 ? 1 : 0;
    const std::uint32_t kinds = flags & BCM_FIELD_USER_L3_ALL;
    return values.tags == tags && (kinds == 0 || (kinds & values.kind) != 0);
}

} // namespace

/// The first word begins two bytes in front of the frame.
FieldBits FieldValues::of(const FieldUdf& udf) const
{
    FieldBits word;
    if (!has_format(*this, udf.flags))
        return word;
    const std::uint64_t end = std::uint64_t{udf.word} * 4 + 4; // counted from the first word on
    for (std::uint64_t at = end - 4; at < end; ++at) {
        word.bits <<= 8;
        word.present <<= 8;
        if (at >= 2 && at - 2 < frame.size()) {
            word.bits |= frame[static_cast<std::size_t>(at - 2)];
            word.present |= 0xff;
        }
    }
    return word;
}

} // namespace vexosim
