// Field processor: groups, entries, counters and user-defined fields.
#include <bcmx/field.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

using namespace vexosim;

namespace {

std::bitset<96> bits_of(const std::uint32_t (&words)[3])
{
    std::bitset<96> bits;
    for (std::size_t bit = 0; bit < bits.size(); ++bit)
        bits[bit] = (words[bit / 32] >> (bit % 32) & 1u) != 0;
    return bits;
}

FieldSet set_of(const bcm_field_qset_t& qset)
{
    return {bits_of(qset.w), bits_of(qset.udf_map)};
}

int get_priority(const Chip& chip, bcm_field_entry_t id, int* prio)
{
    if (prio == nullptr)
        return BCM_E_PARAM;
    const FieldEntry* entry = chip.field.find(id);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    *prio = entry->priority;
    return BCM_E_NONE;
}

/// Reads a counter into a narrower output, which keeps the low bits.
int get_counter32(const Chip& chip, bcm_field_entry_t entry, int counter, std::uint32_t* value)
{
    if (value == nullptr)
        return BCM_E_PARAM;
    std::uint64_t packets = 0;
    const int rc = chip.field.count(entry, counter, &packets);
    if (rc == BCM_E_NONE)
        *value = static_cast<std::uint32_t>(packets);
    return rc;
}

int set_udf_spec(bcm_field_udf_spec_t* spec, std::uint32_t flags, std::uint32_t offset)
{
    if (spec == nullptr)
        return BCM_E_PARAM;
    *spec = {};
    spec->flags = flags;
    spec->udf_offset = offset;
    return BCM_E_NONE;
}

int create_udf(Chip& chip, int id, const bcm_field_udf_spec_t* spec)
{
    return spec == nullptr ? int{BCM_E_PARAM}
                           : chip.field.create_udf(id, {spec->flags, spec->udf_offset});
}

int add_udf_to_set(const Chip& chip, bcm_field_qset_t* qset, int id)
{
    if (qset == nullptr)
        return BCM_E_PARAM;
    const int rc = chip.field.check_udf(id);
    if (rc == BCM_E_NONE)
        qset->udf_map[id / 32] |= 1u << (id % 32);
    return rc;
}

} // namespace

extern "C" int bcmx_field_init(void)
{
    return sdk_call("bcmx_field_init", args(), [](Chip& chip) { return chip.field.init(); });
}

extern "C" int bcmx_field_control_set(bcm_field_control_t control, uint32_t state)
{
    return sdk_call("bcmx_field_control_set", args(control, state),
                    [&](Chip& chip) { return chip.field.set_control(control, state); });
}

extern "C" int bcmx_field_group_create(bcm_field_qset_t qset, int priority,
                                       bcm_field_group_t* group)
{
    return sdk_call("bcmx_field_group_create", args(qset, priority, Out{group}), [&](Chip& chip) {
        return chip.field.create_group(set_of(qset), priority, group);
    });
}

extern "C" int bcmx_field_group_create_id(bcm_field_qset_t qset, int priority,
                                          bcm_field_group_t group)
{
    return sdk_call("bcmx_field_group_create_id", args(qset, priority, group), [&](Chip& chip) {
        return chip.field.create_group_id(set_of(qset), priority, group);
    });
}

extern "C" int bcmx_field_group_destroy(bcm_field_group_t group)
{
    return sdk_call("bcmx_field_group_destroy", args(group),
                    [&](Chip& chip) { return chip.field.destroy_group(group); });
}

extern "C" int bcmx_field_entry_create(bcm_field_group_t group, bcm_field_entry_t* entry)
{
    return sdk_call("bcmx_field_entry_create", args(group, Out{entry}),
                    [&](Chip& chip) { return chip.field.create_entry(group, entry); });
}

extern "C" int bcmx_field_entry_destroy(bcm_field_entry_t entry)
{
    return sdk_call("bcmx_field_entry_destroy", args(entry),
                    [&](Chip& chip) { return chip.field.destroy_entry(entry); });
}

extern "C" int bcmx_field_entry_install(bcm_field_entry_t entry)
{
    return sdk_call("bcmx_field_entry_install", args(entry),
                    [&](Chip& chip) { return chip.field.install(entry); });
}

extern "C" int bcmx_field_entry_reinstall(bcm_field_entry_t entry)
{
    return sdk_call("bcmx_field_entry_reinstall", args(entry),
                    [&](Chip& chip) { return chip.field.install(entry); });
}

extern "C" int bcmx_field_entry_remove(bcm_field_entry_t entry)
{
    return sdk_call("bcmx_field_entry_remove", args(entry),
                    [&](Chip& chip) { return chip.field.remove(entry); });
}

extern "C" int bcmx_field_entry_prio_set(bcm_field_entry_t entry, int prio)
{
    return sdk_call("bcmx_field_entry_prio_set", args(entry, prio),
                    [&](Chip& chip) { return chip.field.set_priority(entry, prio); });
}

extern "C" int bcmx_field_entry_prio_get(bcm_field_entry_t entry, int* prio)
{
    return sdk_call("bcmx_field_entry_prio_get", args(entry, Out{prio}),
                    [&](Chip& chip) { return get_priority(chip, entry, prio); });
}

extern "C" int bcmx_field_counter_create(bcm_field_entry_t entry)
{
    return sdk_call("bcmx_field_counter_create", args(entry),
                    [&](Chip& chip) { return chip.field.create_counter(entry); });
}

extern "C" int bcmx_field_counter_destroy(bcm_field_entry_t entry)
{
    return sdk_call("bcmx_field_counter_destroy", args(entry),
                    [&](Chip& chip) { return chip.field.destroy_counter(entry); });
}

extern "C" int bcmx_field_counter_get(bcm_field_entry_t entry, int counter, uint64_t* value)
{
    return sdk_call("bcmx_field_counter_get", args(entry, counter, Out{value}),
                    [&](Chip& chip) { return chip.field.count(entry, counter, value); });
}

extern "C" int bcmx_field_counter_get32(bcm_field_entry_t entry, int counter, uint32_t* value)
{
    return sdk_call("bcmx_field_counter_get32", args(entry, counter, Out{value}),
                    [&](Chip& chip) { return get_counter32(chip, entry, counter, value); });
}

extern "C" void bcm_field_udf_spec_t_init(bcm_field_udf_spec_t* udf_spec)
{
    sure_call("bcm_field_udf_spec_t_init", CallClass::local, args(Out{udf_spec}),
              [&] { set_udf_spec(udf_spec, 0, 0); });
}

extern "C" int bcmx_field_udf_spec_set(bcm_field_udf_spec_t* udf_spec, uint32_t flags,
                                       uint32_t offset)
{
    return local_call("bcmx_field_udf_spec_set", args(Out{udf_spec}, Flags{flags}, offset),
                      [&] { return set_udf_spec(udf_spec, flags, offset); });
}

extern "C" int bcmx_field_udf_create_id(bcm_field_udf_spec_t* udf_spec, int udf_id)
{
    return sdk_call("bcmx_field_udf_create_id", args(udf_spec, udf_id),
                    [&](Chip& chip) { return create_udf(chip, udf_id, udf_spec); });
}

extern "C" int bcmx_field_udf_destroy(int udf_id)
{
    return sdk_call("bcmx_field_udf_destroy", args(udf_id),
                    [&](Chip& chip) { return chip.field.destroy_udf(udf_id); });
}

extern "C" int bcmx_field_qset_add_udf(bcm_field_qset_t* qset, int udf_id)
{
    return sdk_call("bcmx_field_qset_add_udf", args(qset, udf_id),
                    [&](Chip& chip) { return add_udf_to_set(chip, qset, udf_id); });
}
