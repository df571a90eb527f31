// LAGs as the chip's trunks. A trunk holds the active members only; who is configured into a LAG
// stands in `lag_list`, which nothing here changes. One surprise: a trunk cannot be set to no
// members, so one that loses its last is destroyed and made anew under its id.
#include "l2/lag.h"

#include <algorithm>
#include <vector>

#include <bcmx/l2.h>
#include <bcmx/port.h>
#include <bcmx/stg.h>
#include <bcmx/trunk.h>

#include "core/bcm_sdk.h"
#include "core/enum_table.h"
#include "core/port_list.h"

using namespace vexolc;

namespace {

constexpr EnumTable<lag_psc_t, 6> criteria = {{
    {LAG_PSC_SRC_MAC, BCM_TRUNK_PSC_SRCMAC},
    {LAG_PSC_DST_MAC, BCM_TRUNK_PSC_DSTMAC},
    {LAG_PSC_SRC_DST_MAC, BCM_TRUNK_PSC_SRCDSTMAC},
    {LAG_PSC_SRC_IP, BCM_TRUNK_PSC_SRCIP},
    {LAG_PSC_DST_IP, BCM_TRUNK_PSC_DSTIP},
    {LAG_PSC_SRC_DST_IP, BCM_TRUNK_PSC_SRCDSTIP},
}};
static_assert(criteria.two_way());

constexpr bcm_trunk_t trunk_of(unsigned id)
{
    return static_cast<bcm_trunk_t>(id);
}

/// Destroys the trunk and makes it anew, without members.
bool empty_trunk(unsigned id)
{
    return ok(bcmx_l2_addr_delete_by_trunk(trunk_of(id), BCM_L2_DELETE_STATIC)) &&
           ok(bcmx_trunk_destroy(trunk_of(id))) && ok(bcmx_trunk_create_id(trunk_of(id)));
}

/// A trunk as the chip has it, to be changed and written back.
class Trunk {
public:
    explicit Trunk(unsigned id) : id_(id) {}

    ~Trunk()
    {
        if (has_list_)
            bcmx_lplist_free(&info_.ports);
    }

    Trunk(const Trunk&) = delete;
    Trunk& operator=(const Trunk&) = delete;

    /// Makes an empty member list, so that a lack of memory shows before anything is changed.
    bool reserve(int capacity)
    {
        has_list_ = ok(bcmx_lplist_init(&info_.ports, capacity, 0));
        return has_list_;
    }

    /// Reads the trunk. The SDK makes the member list anew, so one that was reserved goes first.
    bool read()
    {
        if (has_list_)
            bcmx_lplist_free(&info_.ports);
        bcmx_lplist_t_init(&info_.ports);
        has_list_ = ok(bcmx_trunk_get(trunk_of(id_), &info_));
        return has_list_;
    }

    int count() { return bcmx_lplist_count(&info_.ports); }

    bool contains(bcmx_lport_t wanted) const
    {
        bcmx_lport_t lport = 0;
        int i = 0;
        BCMX_LPLIST_ITER(info_.ports, lport, i)
        {
            if (lport == wanted)
                return true;
        }
        return false;
    }

    /// For SDK calls.
    bcmx_lplist_t* members() { return &info_.ports; }

    bool write() { return ok(bcmx_trunk_set(trunk_of(id_), &info_)); }

    /// Frees the member list now; false when the SDK fails to, which is not tried again.
    bool free()
    {
        has_list_ = false;
        return ok(bcmx_lplist_free(&info_.ports));
    }

private:
    unsigned id_;
    bcmx_trunk_add_info_t info_ = {};
    bool has_list_ = false;
};

bool has_link(int lport)
{
    int status = BCM_PORT_LINK_STATUS_DOWN;
    return ok(bcmx_port_link_status_get(lport, &status)) && status == BCM_PORT_LINK_STATUS_UP;
}

/// Adds those of `ports` that have link to `members`, and gives them in order.
std::vector<int> take_linked(const std::list<Mp>& ports, PortList& members)
{
    std::vector<int> taken;
    for (const Mp& mp : ports) {
        const int lport = lport_of(mp);
        if (has_link(lport)) {
            members.add(lport); // result ignored on purpose
            taken.push_back(lport);
        }
    }
    return taken;
}

/// Makes `members` all the members of a trunk, the first of them its designated port.
bool set_members(unsigned id, const PortList& members, int first)
{
    bcmx_trunk_add_info_t info = {};
    info.ports = members.list();
    info.dlf_port = info.mc_port = info.ipmc_port = first;
    return ok(bcmx_trunk_psc_get(trunk_of(id), &info.psc)) &&
           ok(bcmx_trunk_set(trunk_of(id), &info));
}

/// Blocks each of `leaving` that is a member, so that it cannot forward until the spanning tree
/// takes it over, and tells how many members will be left. A port listed twice counts twice.
int block_leaving(Trunk& trunk, const PortList& leaving)
{
    int left = trunk.count();
    bcmx_lport_t lport = 0;
    int i = 0;
    BCMX_LPLIST_ITER(leaving.list(), lport, i)
    {
        if (trunk.contains(lport)) {
            bcmx_port_stp_set(lport, BCM_STG_STP_BLOCK); // result ignored on purpose
            --left;
        }
    }
    return left;
}

bool remove_members(Trunk& trunk, const PortList& leaving)
{
    bcmx_lport_t lport = 0;
    int i = 0;
    BCMX_LPLIST_ITER(leaving.list(), lport, i)
    {
        bcmx_lplist_port_remove(trunk.members(), lport, 0); // result ignored on purpose
    }
    return trunk.write();
}

bool add_active_member(unsigned id, int lport)
{
    Trunk trunk(id);
    if (!trunk.read() || !ok(bcmx_lplist_add(trunk.members(), lport)) || !trunk.write())
        return false;
    bcmx_l2_addr_delete_by_port(lport, 0); // result ignored on purpose
    return trunk.free();
}

bool remove_active_member(unsigned id, int lport)
{
    Trunk trunk(id);
    return trunk.read() && ok(bcmx_lplist_remove(trunk.members(), lport), BCM_E_NOT_FOUND) &&
           (trunk.count() > 0 ? trunk.write() : empty_trunk(id)) && trunk.free();
}

/// Has `change` done to each LAG that `port` is configured into, until one fails.
bool for_each_lag_of(const Mp& port, bool (*change)(unsigned id, int lport))
{
    const int lport = lport_of(port);
    return std::all_of(lag_list.begin(), lag_list.end(), [&](const LagNode& lag) {
        const std::list<Mp>& members = lag.member_ports();
        const bool configured = std::find(members.begin(), members.end(), port) != members.end();
        return !configured || change(lag.id(), lport);
    });
}

} // namespace

bool VexoBcmSdk::create_lag(unsigned& id)
{
    bcm_trunk_t trunk = 0;
    if (!ok(bcmx_trunk_create(&trunk)))
        return false;
    id = static_cast<unsigned>(trunk); // the trunk exists now, whatever comes of the next call
    return ok(bcmx_trunk_psc_set(trunk, BCM_TRUNK_PSC_SRCDSTMAC));
}

bool VexoBcmSdk::delete_lag(unsigned id)
{
    // The result is ignored on purpose: whether the LAG is gone is for the next call to say.
    bcmx_l2_addr_delete_by_trunk(trunk_of(id), BCM_L2_DELETE_STATIC);
    return ok(bcmx_trunk_destroy(trunk_of(id)));
}

bool VexoBcmSdk::add_ports_to_lag(unsigned id, const std::list<Mp>& ports)
{
    PortList members(port_count);
    if (!members.valid())
        return false;
    const std::vector<int> taken = take_linked(ports, members);
    if (taken.empty())
        return true; // deliberately without a look at the LAG, which need not exist
    if (!set_members(id, members, taken.front()))
        return false;
    for (const int lport : taken)
        bcmx_l2_addr_delete_by_port(lport, 0); // result ignored on purpose
    return members.free();
}

bool VexoBcmSdk::delete_ports_from_lag(unsigned id, const std::list<Mp>& ports)
{
    PortList leaving(port_count);
    Trunk trunk(id);
    std::list<Mp> configured; // only whether the LAG is known counts
    if (!leaving.valid() || !trunk.reserve(port_count) || !get_lag_member(id, configured))
        return false;
    for (const Mp& mp : ports)
        leaving.add(lport_of(mp)); // result ignored on purpose
    return trunk.read() &&
           (block_leaving(trunk, leaving) > 0 ? remove_members(trunk, leaving) : empty_trunk(id)) &&
           leaving.free() && trunk.free();
}

bool VexoBcmSdk::set_lag_psc(unsigned id, lag_psc_t psc)
{
    int criterion = 0;
    return criteria.to_sdk(psc, criterion) && ok(bcmx_trunk_psc_set(trunk_of(id), criterion));
}

bool VexoBcmSdk::get_lag_psc(unsigned id, lag_psc_t& psc)
{
    int criterion = 0;
    return ok(bcmx_trunk_psc_get(trunk_of(id), &criterion)) && criteria.from_sdk(criterion, psc);
}

bool VexoBcmSdk::port_add_to_egress_list(Mp port)
{
    return for_each_lag_of(port, add_active_member);
}

bool VexoBcmSdk::port_remove_from_egress_list(Mp port)
{
    return for_each_lag_of(port, remove_active_member);
}
