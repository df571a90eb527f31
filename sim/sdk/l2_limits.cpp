// Learning limits.
#include <bcmx/l2.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

/// The limit that a record is about. UNAVAIL, PORT, NOT_FOUND, PARAM.
int find(Chip& chip, const bcm_l2_learn_limit_t& record, int*& limit)
{
    LearnLimits& limits = chip.learn_limits;
    if (!card().profile.learn_limits)
        return BCM_E_UNAVAIL;
    switch (record.flags) {
    case 0:
    case BCM_L2_LEARN_LIMIT_SYSTEM:
        limit = &limits.system;
        return BCM_E_NONE;
    case BCM_L2_LEARN_LIMIT_VLAN:
        limit = &limits.by_vlan[record.vlan % kVlanIds];
        if (!is_vlan_id(record.vlan))
            return BCM_E_PARAM;
        return chip.vlans.exists(record.vlan) ? BCM_E_NONE : BCM_E_NOT_FOUND;
    case BCM_L2_LEARN_LIMIT_PORT:
        if (card().ports.chip_port(record.port) < 0)
            return BCM_E_PORT;
        limit = &limits.by_port[static_cast<std::size_t>(card().ports.chip_port(record.port))];
        return BCM_E_NONE;
    case BCM_L2_LEARN_LIMIT_TRUNK:
        if (const int rc = chip.trunks.check(record.trunk); rc != BCM_E_NONE)
            return rc;
        limit = &limits.by_trunk[static_cast<std::size_t>(record.trunk)];
        return BCM_E_NONE;
    default:
        return BCM_E_PARAM;
    }
}

int set(Chip& chip, const bcm_l2_learn_limit_t* record)
{
    int* limit = nullptr;
    if (record == nullptr)
        return BCM_E_PARAM;
    const int rc = find(chip, *record, limit);
    if (rc != BCM_E_NONE)
        return rc;
    const bool good = record->flags != 0 && record->limit >= LearnLimits::kNone &&
                      record->limit <= static_cast<int>(chip.macs.capacity());
    if (good)
        *limit = record->limit;
    return good ? BCM_E_NONE : BCM_E_PARAM;
}

int get(Chip& chip, bcm_l2_learn_limit_t* record)
{
    int* limit = nullptr;
    if (record == nullptr)
        return BCM_E_PARAM;
    const int rc = find(chip, *record, limit);
    if (rc == BCM_E_NONE)
        record->limit = *limit;
    return rc;
}

} // namespace

extern "C" void bcmx_l2_learn_limit_t_init(bcm_l2_learn_limit_t* limit)
{
    sure_call("bcmx_l2_learn_limit_t_init", CallClass::local, args(Out{limit}), [&] {
        if (limit != nullptr) {
            *limit = {};
            limit->limit = LearnLimits::kNone;
        }
    });
}

extern "C" int bcmx_l2_learn_limit_set(bcm_l2_learn_limit_t* limit)
{
    return sdk_call("bcmx_l2_learn_limit_set", args(limit),
                    [&](Chip& chip) { return set(chip, limit); });
}

extern "C" int bcmx_l2_learn_limit_get(bcm_l2_learn_limit_t* limit)
{
    return sdk_call("bcmx_l2_learn_limit_get", args(limit),
                    [&](Chip& chip) { return get(chip, limit); });
}
