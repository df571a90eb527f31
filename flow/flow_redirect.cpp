#include "flow/flow_redirect.h"

#include <bcmx/field.h>

#include <cstdio>

#include "core/port_list.h"
#include "core/result.h"
#include "l2/port_sweep.h"

namespace {

using vexolc::ok;
using vexolc::PortList;
using vexolc::sdk_reason;

constexpr bcm_field_action_t list_action(bool add)
{
    return add ? bcmFieldActionRedirectPbmp : bcmFieldActionEgressMask;
}

int module_of(const Mp& mp)
{
    return static_cast<int>(mp.module());
}

int port_of(const Mp& mp)
{
    return static_cast<int>(mp.port());
}

/// The ports that an entry has under an action; no ports when it does not have the action.
struct ListAction {
    PortList ports;
    int rc = BCM_E_NONE;

    bool read(int entry, bcm_field_action_t action)
    {
        rc = bcmx_field_action_ports_get(entry, action, ports.get());
        return ok(rc, BCM_E_NOT_FOUND);
    }
    bool present() const { return ok(rc); }
    int count() const
    {
        const bcmx_lplist_t& list = ports.list();
        return list.lp_ports != nullptr && list.lp_last >= 0 ? list.lp_last + 1 : 0;
    }
};

bool delete_list(int entry, bcm_field_action_t action)
{
    if (ok(bcmx_field_action_delete(entry, action, 0, 0)))
        return true;
    std::printf("bcmx_field_action_delete failed, entry = %d, bcm_action = %d\n", entry, action);
    return false;
}

bool add_list(int entry, bcm_field_action_t action, const Mp& port, const ListAction& list)
{
    const int rc = bcmx_field_action_ports_add(entry, action, list.ports.list());
    if (!ok(rc))
        std::printf("add/del bcmFieldActionRedirectPort failed, mp = %d/%d, entry = %d, "
                    "port_list_count = %d, rc = %d, reason = %s\n",
                    module_of(port), port_of(port), entry, list.count(), rc, sdk_reason(rc));
    return ok(rc);
}

/// Puts `lport` behind the ports of `list` and makes that the entry's list.
bool extend(int entry, const Mp& port, bool add, int lport, ListAction& list)
{
    const bcm_field_action_t action = list_action(add);
    return list.ports.add(lport) && (!list.present() || delete_list(entry, action)) &&
           add_list(entry, action, port, list);
}

} // namespace

bool vexolc::redirect_to_all(int entry, bool add)
{
    PortList ports;
    return for_each_front_lport([&](int lport) { return ports.add(lport); }) &&
           ok(bcmx_field_action_ports_add(entry, list_action(add), ports.list()));
}

bool vexolc::redirect_to_cpu(int entry, const Mp& port, bool add)
{
    int lport = -1;
    if (!vexo_bcm_sdk_get_cpu_lport(lport)) {
        std::puts("cannot get cpu lport");
        return false;
    }
    ListAction list;
    if (list.read(entry, bcmFieldActionRedirectPbmp))
        return extend(entry, port, add, lport, list);
    std::printf("bcmx_field_action_ports_get failed, entry = %d, rc = %d, reason = %s\n", entry,
                list.rc, sdk_reason(list.rc));
    return false;
}

bool vexolc::redirect_to_port(int entry, const Mp& port, bool add)
{
    int lport = -1;
    if (!map_mp_to_lport(port, lport)) {
        std::printf("add/del action forward to single port failed, mp = %d/%d\n", module_of(port),
                    port_of(port));
        return false;
    }
    std::printf("add = %d, redirect to port, mp = (%d, %d)\n", add ? 1 : 0, module_of(port),
                port_of(port));
    ListAction list;
    if (list.read(entry, list_action(add)))
        return extend(entry, port, add, lport, list);
    std::printf("bcmx_field_action_ports_get failed, entry = %d, bcm_action = %d, rc = %d, "
                "reason = %s\n",
                entry, list_action(add), list.rc, sdk_reason(list.rc));
    return false;
}
