// Flow actions: each change goes into the flow's entry, which is then installed again. Changes made
// before a failure stay in the entry, and act when a later change succeeds.
#include <bcmx/field.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "core/bcm_sdk.h"
#include "core/result.h"
#include "flow/flow_entry.h"
#include "flow/flow_redirect.h"

using namespace vexolc;

namespace {

struct Change {
    int entry;
    of_action_param_s param;
    const Mp& port;
    bool add;
};

/// An action that is added and deleted as such.
struct PlainAction {
    bcm_field_action_t action;
    bool takes_number;  ///< that of the change; otherwise 0
    bool message_entry; ///< the message of a failure names the entry
    const char* name;
};

constexpr PlainAction bypass_stp = {bcmFieldActionBypassStp, false, true,
                                    "bcmFieldActionBypassStp action"};
constexpr PlainAction loopback = {bcmFieldActionLoopback, false, true,
                                  "bcmFieldActionLoopback action"};
constexpr PlainAction drop = {bcmFieldActionDrop, false, true, "bcmFieldActionDrop"};

struct Rewrite {
    uint32_t type;
    PlainAction plain;
};

constexpr Rewrite rewrites[] = {
    {OF_MODIFY_OUTER_VLAN_ID,
     {bcmFieldActionOuterVlanNew, true, false, "bcmFieldActionOuterVlanNew"}},
    {OF_MODIFY_OUTER_VLAN_PRI,
     {bcmFieldActionOuterVlanPrioNew, true, false, "bcmFieldActionOuterVlanPrioNew"}},
    {OF_MODIFY_DELETE_INNER_VLAN,
     {bcmFieldActionInnerVlanDelete, false, false, "bcmFieldActionInnerVlanDelete"}},
    {OF_MODIFY_TOS, {bcmFieldActionTosNew, true, false, "bcmFieldActionTosNew"}},
};

void report(const PlainAction& plain, int entry, int rc)
{
    std::printf("add/del %s failed", plain.name);
    if (plain.message_entry)
        std::printf(", entry = %d", entry);
    std::printf(", rc = %d, reason = %s\n", rc, sdk_reason(rc));
}

bool apply(const Change& change, const PlainAction& plain)
{
    const auto call = change.add ? bcmx_field_action_add : bcmx_field_action_delete;
    const uint32_t number = plain.takes_number ? change.param.value.number : 0;
    const int rc = call(change.entry, plain.action, number, 0);
    if (!ok(rc))
        report(plain, change.entry, rc);
    return ok(rc);
}

/// Deliberately adds, also when the address is to be removed.
bool add_mac(Change change, bcm_field_action_t action)
{
    return ok(bcmx_field_action_mac_add(change.entry, action, change.param.value.mac));
}

bool output(const Change& change)
{
    switch (change.param.type) {
    case OF_OUTPUT_ALL_BYPASS_STP:
        return redirect_to_all(change.entry, change.add) && apply(change, bypass_stp);
    case OF_OUTPUT_ALL:
        return redirect_to_all(change.entry, change.add);
    case OF_OUTPUT_CPU:
    case OF_OUTPUT_CPU_ALIAS:
        return redirect_to_cpu(change.entry, change.port, change.add);
    case OF_OUTPUT_NONE:
    case OF_OUTPUT_NONE_ALIAS:
        return true;
    case OF_OUTPUT_LOOPBACK:
        return apply(change, loopback);
    default:
        return redirect_to_port(change.entry, change.port, change.add);
    }
}

bool nothing(const Change&)
{
    return true;
}

bool drop_frames(const Change& change)
{
    return apply(change, drop);
}

bool modify(const Change& change)
{
    if (change.param.type == OF_MODIFY_SRC_MAC)
        return add_mac(change, bcmFieldActionSrcMacNew);
    if (change.param.type == OF_MODIFY_DST_MAC)
        return add_mac(change, bcmFieldActionDstMacNew);
    const auto* rewrite =
        std::find_if(std::begin(rewrites), std::end(rewrites),
                     [&](const Rewrite& row) { return row.type == change.param.type; });
    if (rewrite != std::end(rewrites))
        return apply(change, rewrite->plain);
    std::puts("unhandled case of add/del modify action");
    return false;
}

bool bypass(const Change& change)
{
    return apply(change, bypass_stp);
}

/// By `of_action_t`.
constexpr bool (*kinds[])(const Change&) = {output, nothing, drop_frames, modify, bypass};

bool reinstall(int entry)
{
    const int rc = bcmx_field_entry_reinstall(entry);
    if (!ok(rc))
        std::printf("reinstall failed, entry = %d(0x%x), rc = %d, reason = %s\n", entry,
                    static_cast<unsigned>(entry), rc, sdk_reason(rc));
    return ok(rc);
}

} // namespace

bool VexoBcmSdk::do_change_of_flow_action(int entry, of_action_t action, of_action_param_s param,
                                          const Mp& port, bool add)
{
    const auto kind = static_cast<unsigned>(action);
    if (kind >= std::size(kinds)) {
        std::puts("unhandled action");
        return false;
    }
    return kinds[kind]({entry, param, port, add}) && reinstall(entry);
}

bool VexoBcmSdk::add_of_flow_action(unsigned id, of_action_t action, of_action_param_s param,
                                    const Mp& port)
{
    int entry = -1;
    return find_flow(id, entry) && do_change_of_flow_action(entry, action, param, port, true);
}

bool VexoBcmSdk::delete_of_flow_action(unsigned id, of_action_t action, of_action_param_s param,
                                       const Mp& port)
{
    int entry = -1;
    return find_flow(id, entry) && do_change_of_flow_action(entry, action, param, port, false);
}

bool VexoBcmSdk::clear_of_flow_action(unsigned id)
{
    int entry = -1;
    // Deliberately without installing the entry again, and with the counting of hits gone.
    return find_flow(id, entry) && ok(bcmx_field_action_remove_all(entry));
}
