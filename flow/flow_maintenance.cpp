// Deleting, ranking and counting flows.
#include <bcmx/field.h>

#include <cstdio>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "flow/field_group.h"
#include "flow/flow_entry.h"

using namespace vexolc;

namespace {

/// Reads the hit counter of a flow with the SDK's call for its width.
template <class Counter, class Value>
bool read_counter(unsigned id, int (*read)(bcm_field_entry_t, int, Counter*), Value& value)
{
    int entry = -1;
    if (!find_flow(id, entry)) {
        std::printf("cannot find flow entry, id = %d\n", static_cast<int>(id));
        return false;
    }
    constexpr int index = 0;
    Counter packets = 0;
    const int rc = read(entry, index, &packets);
    if (!ok(rc)) {
        std::printf("bcmx_field_counter_get failed, entry = %d, rc = %d, reason = %s\n", entry, rc,
                    sdk_reason(rc));
        return false;
    }
    return store(value, packets);
}

} // namespace

bool VexoBcmSdk::delete_of_flow(unsigned id)
{
    const auto flow = fid_fe_map.find(id);
    if (flow == fid_fe_map.end())
        return true;
    const int entry = flow->second;
    if (!ok(bcmx_field_entry_destroy(entry), BCM_E_NOT_FOUND) ||
        !ok(bcmx_field_counter_destroy(entry), BCM_E_NOT_FOUND))
        return false; // deliberately still mapped, even when the entry is gone
    fid_fe_map.erase(flow);
    if (!vexosdk_delete_entry_from_group(entry))
        return false;
    vexosdk_remove_unused_group(); // result ignored on purpose
    return true;
}

bool VexoBcmSdk::clear_of_flow_table()
{
    for (const auto& [id, entry] : fid_fe_map)
        bcmx_field_entry_destroy(entry); // result ignored on purpose
    fid_fe_map.clear();
    return true; // deliberately with the counters, the groups and their members left
}

bool VexoBcmSdk::set_of_flow_priority(unsigned id, int priority)
{
    int entry = -1;
    return find_flow(id, entry) && ok(bcmx_field_entry_prio_set(entry, priority));
}

bool VexoBcmSdk::get_of_flow_priority(unsigned id, int& priority)
{
    int entry = -1;
    int read = 0;
    return find_flow(id, entry) && ok(bcmx_field_entry_prio_get(entry, &read)) &&
           store(priority, read);
}

bool VexoBcmSdk::get_of_flow_stat_counter64(unsigned id, unsigned long long& value)
{
    return read_counter(id, bcmx_field_counter_get, value);
}

bool VexoBcmSdk::get_of_flow_stat_counter32(unsigned id, unsigned& value)
{
    return read_counter(id, bcmx_field_counter_get32, value);
}
