// Installing flows: one field entry each, in a group that flows of the same kind share. What was
// made before a failure deliberately stays in the chip.
#include "flow/flow_entry.h"

#include <bcmx/field.h>

#include <cstdio>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "flow/field_group.h"
#include "flow/field_qset.h"

using namespace vexolc;

std::map<unsigned, int> fid_fe_map;
uint32_t next_flow_id = 0;

namespace {

using Words = std::vector<bcm_udf_s>;

bool make_qset(unsigned flags, bcm_field_qset_t& qset, Words& words)
{
    const int rc = flow_flags_to_qset(flags, &qset, words);
    if (!ok(rc))
        std::printf("bcmx_qset_add_fields failed, flags = 0x%x, rc = %d, reason = %s.\n", flags, rc,
                    sdk_reason(rc));
    return ok(rc);
}

bool create_group(const bcm_field_qset_t& qset, int& group)
{
    constexpr int priority = 0;
    const int rc = bcmx_field_group_create(qset, priority, &group);
    if (!ok(rc))
        std::printf("bcmx_field_group_create failed, rc = %d, reason = %s\n", rc, sdk_reason(rc));
    return ok(rc);
}

bool make_group(unsigned flags, Words& words, int& group)
{
    bcm_field_qset_t qset;
    if (!make_qset(flags, qset, words) || !create_group(qset, group))
        return false;
    if (vexosdk_add_field_group(group, flags, words))
        return true;
    bcmx_field_group_destroy(group);
    return false;
}

/// A group that the flow can share, or else a new one.
bool find_or_make_group(unsigned flags, Words& words, int& group)
{
    unsigned id = 0;
    if (!is_group_type_exists(fg_list, flags, words, id))
        return make_group(flags, words, group);
    group = static_cast<int>(id);
    return true;
}

bool create_entry(int group, int& entry)
{
    const int rc = bcmx_field_entry_create(group, &entry);
    if (!ok(rc))
        std::printf("bcmx_field_entry_create failed, rc = %d, reason = %s\n", rc, sdk_reason(rc));
    return ok(rc);
}

bool qualify(const of_flow_mp_s& flow, int entry, const Words& words)
{
    const int rc = qualify_flow_entry(flow, entry, words);
    if (!ok(rc))
        std::printf("bcmx_field_entry_add_qualify failed, bcm_fe = %d(0x%x), rc = %d, reason = "
                    "%s\n",
                    entry, static_cast<unsigned>(entry), rc, sdk_reason(rc));
    return ok(rc);
}

bool create_counter(int entry)
{
    const int rc = bcmx_field_counter_create(entry);
    if (!ok(rc))
        std::printf("bcmx_field_counter_create failed, entry = %d, rc = %d\n", entry, rc);
    return ok(rc);
}

bool count_hits(int entry)
{
    const int rc = bcmx_field_action_add(entry, bcmFieldActionUpdateCounter, 1, 0);
    if (!ok(rc))
        std::printf("add update counter action failed, entry = %d, rc = %d\n", entry, rc);
    return ok(rc);
}

bool install(int entry)
{
    const int rc = bcmx_field_entry_install(entry);
    if (!ok(rc))
        std::printf("bcmx_field_entry_install failed, bcm_fe = %d(0x%x), rc = %d, reason = %s\n",
                    entry, static_cast<unsigned>(entry), rc, sdk_reason(rc));
    return ok(rc);
}

unsigned record_flow(int entry)
{
    const unsigned id = next_flow_id++;
    fid_fe_map.insert_or_assign(fid_fe_map.end(), id, entry);
    return id;
}

} // namespace

bool vexolc::find_flow(unsigned flow_id, int& entry)
{
    const auto flow = fid_fe_map.find(flow_id);
    return flow != fid_fe_map.end() && store(entry, flow->second);
}

bool VexoBcmSdk::add_of_flow(const of_flow_mp_s& flow, unsigned& id,
                             const of_flow_qualify_udf_s& udf)
{
    Words words;
    int group = -1;
    int entry = -1;
    const bool has_udf = (flow.flags & OF_QUALIFY_UDF) != 0;
    if ((has_udf && !ok(split_qualify_udf(udf, words))) ||
        !find_or_make_group(flow.flags, words, group) || !create_entry(group, entry) ||
        !qualify(flow, entry, words) || !create_counter(entry) || !count_hits(entry) ||
        !install(entry))
        return false;
    const unsigned new_id = record_flow(entry);
    if (!vexosdk_add_entry_to_group(entry, group))
        return false;              // deliberately with the flow installed
    vexosdk_remove_unused_group(); // result ignored on purpose
    return store(id, new_id);
}

bool VexoBcmSdk::add_of_flow_with_id(const of_flow_mp_s&, unsigned)
{
    return false; // deliberately a placeholder
}
