// VLAN membership, kept by the chip alone: every change is computed from what the chip answers.
// One surprise: a member changes its tagging by leaving the VLAN and joining again.
#include "l2/vlan.h"

#include <algorithm>
#include <iostream>

#include <bcmx/l2.h>
#include <bcmx/vlan.h>

#include "core/bcm_sdk.h"
#include "core/port_list.h"
#include "core/trace.h"

using namespace vexolc;

std::list<LagNode> vlan_port_member_list;

namespace {

bcm_vlan_t vlan_of(unsigned vid)
{
    return static_cast<bcm_vlan_t>(vid);
}

/// Unmapped ports go in as -1, which the chip then refuses.
bool add_ports(const std::list<Mp>& ports, PortList& list)
{
    return std::all_of(ports.begin(), ports.end(),
                       [&](const Mp& mp) { return list.add(lport_of(mp)); });
}

bool add_ports(const std::list<Mp>& ports, PortList& list, PortList& all)
{
    return std::all_of(ports.begin(), ports.end(), [&](const Mp& mp) {
        const int lport = lport_of(mp);
        return list.add(lport) && all.add(lport);
    });
}

bool contains(const PortList& list, bcmx_lport_t wanted)
{
    bcmx_lport_t lport = 0;
    int i = 0;
    BCMX_LPLIST_ITER(list.list(), lport, i)
    {
        if (lport == wanted)
            return true;
    }
    return false;
}

/// Takes the ports of `untagged` out of `all`, which then holds the tagged ones.
bool remove_ports(PortList& all, const PortList& untagged)
{
    bcmx_lport_t lport = 0;
    int i = 0;
    BCMX_LPLIST_ITER(untagged.list(), lport, i)
    {
        if (!ok(bcmx_lplist_remove(all.get(), lport), BCM_E_NOT_FOUND))
            return false;
    }
    return true;
}

/// Adds to `out` each port of `list` that is also in `other`.
bool add_common(const PortList& list, const PortList& other, PortList& out)
{
    bcmx_lport_t lport = 0;
    int i = 0;
    BCMX_LPLIST_ITER(list.list(), lport, i)
    {
        if (contains(other, lport) && !out.add(lport))
            return false;
    }
    return true;
}

/// The VLAN's members: `tagged` and `untagged` are replaced.
bool get_members(unsigned vid, PortList& tagged, PortList& untagged)
{
    return ok(bcmx_vlan_port_get(vlan_of(vid), tagged.get(), untagged.get())) &&
           remove_ports(tagged, untagged);
}

/// Takes out of the VLAN the members whose tagging is not as wanted.
bool remove_retagged(unsigned vid, int capacity, const PortList& new_tagged,
                     const PortList& new_untagged)
{
    PortList move(capacity);
    PortList tagged(capacity, move);
    PortList untagged(capacity, tagged);
    return untagged.valid() && get_members(vid, tagged, untagged) &&
           add_common(tagged, new_untagged, move) && add_common(untagged, new_tagged, move) &&
           ok(bcmx_vlan_port_remove(vlan_of(vid), move.list()));
}

void append_ports(const PortList& list, std::list<Mp>& ports)
{
    bcmx_lport_t lport = 0;
    int i = 0;
    BCMX_LPLIST_ITER(list.list(), lport, i)
    {
        Mp mp;
        map_lport_to_mp(lport, mp); // a port that does not map is given as (0, 0)
        ports.push_back(mp);
    }
}

bool get_cpu_lport(int& lport)
{
    if (vexo_bcm_sdk_get_cpu_lport(lport))
        return true;
    std::cout << "failed to get cpu port." << std::endl;
    return false;
}

/// The message for a failed removal too, deliberately in the words of a failed addition.
void trace_cpu_port_failure(unsigned vid)
{
    if (sdk_trace_enabled)
        std::cout << "failed to add cpu port to vlan " << vid << " when creating vlan" << std::endl;
}

} // namespace

bool VexoBcmSdk::create_vlan(unsigned vid)
{
    if (!ok(bcmx_vlan_create(vlan_of(vid)), BCM_E_EXISTS))
        return false;
    add_cpu_port_to_vlan(vid); // virtual and without effect on the result, deliberately
    return true;
}

bool VexoBcmSdk::delete_vlan(unsigned vid)
{
    bcmx_l2_addr_delete_by_vlan(vlan_of(vid), BCM_L2_DELETE_STATIC); // result ignored on purpose
    return ok(bcmx_vlan_destroy(vlan_of(vid)), BCM_E_NOT_FOUND);
}

bool VexoBcmSdk::add_ports_to_vlan(unsigned vid, const std::list<Mp>& tagged,
                                   const std::list<Mp>& untagged)
{
    PortList all(port_count);
    PortList new_tagged(port_count, all);
    PortList new_untagged(port_count, new_tagged);
    return new_untagged.valid() && add_ports(tagged, new_tagged, all) &&
           add_ports(untagged, new_untagged, all) &&
           remove_retagged(vid, port_count, new_tagged, new_untagged) &&
           ok(bcmx_vlan_port_add(vlan_of(vid), all.list(), new_untagged.list())) && all.free() &&
           new_untagged.free();
}

bool VexoBcmSdk::delete_ports_from_vlan(unsigned vid, const std::list<Mp>& ports)
{
    PortList list(port_count);
    return list.valid() && add_ports(ports, list) &&
           ok(bcmx_vlan_port_remove(vlan_of(vid), list.list())) && list.free();
}

bool VexoBcmSdk::add_cpu_port_to_vlan(unsigned vid)
{
    int lport = -1;
    if (!get_cpu_lport(lport))
        return false;
    PortList cpu;
    PortList untagged;
    if (!cpu.add(lport))
        return false;
    if (ok(bcmx_vlan_port_add(vlan_of(vid), cpu.list(), untagged.list())))
        return true;
    trace_cpu_port_failure(vid);
    return false;
}

bool VexoBcmSdk::delete_cpu_port_from_vlan(unsigned vid)
{
    int lport = -1;
    if (!get_cpu_lport(lport))
        return false;
    PortList cpu;
    if (!cpu.add(lport))
        return false;
    if (ok(bcmx_vlan_port_remove(vlan_of(vid), cpu.list()), BCM_E_NOT_FOUND))
        return true;
    trace_cpu_port_failure(vid);
    return false;
}

bool VexoBcmSdk::get_vlan_info(unsigned vid, std::list<Mp>& tagged, std::list<Mp>& untagged)
{
    PortList cur_tagged(port_count);
    PortList cur_untagged(port_count, cur_tagged);
    if (!cur_untagged.valid() || !get_members(vid, cur_tagged, cur_untagged))
        return false;
    append_ports(cur_tagged, tagged);
    append_ports(cur_untagged, untagged);
    return cur_tagged.free() && cur_untagged.free(); // deliberately after the outputs are written
}

bool get_vlan_port_member(unsigned vid, std::list<Mp>& ports)
{
    const auto node = std::find_if(vlan_port_member_list.begin(), vlan_port_member_list.end(),
                                   [vid](const LagNode& each) { return each.id() == vid; });
    return node != vlan_port_member_list.end() && node->get_member_port(ports);
}
