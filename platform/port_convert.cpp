// Conversions between `Mp` and `Usp`, singly and by list. One surprise: expanding a physical `Usp`
// that is out of range succeeds.
#include "l2/lag.h"
#include "l2/vlan.h"
#include "platform/port_map.h"

namespace {

constexpr unsigned slot_physical = 1;
constexpr unsigned slot_lag = 2;
constexpr unsigned slot_vlan = 3;

bool get_members(const Usp& usp, std::list<Mp>& members)
{
    unsigned id = 0;
    if (is_port_logical_lag(usp))
        return vexosdk_lag_usp_to_lag_id(usp, id) && get_lag_member(id, members);
    return is_port_logical_vlan(usp) && get_vlan_port_member(usp.port(), members);
}

} // namespace

bool is_port_physical(const Usp& usp)
{
    return usp.slot() != 0 && usp.slot() <= slot_physical;
}

bool is_port_logical_lag(const Usp& usp)
{
    return usp.slot() == slot_lag;
}

bool is_port_logical_vlan(const Usp& usp)
{
    return usp.slot() == slot_vlan;
}

bool vexo_mp_to_usp(const Mp& mp, Usp& usp)
{
    int user_port = -1;
    if (!map_mp_to_user_port(mp, user_port))
        return false;
    usp = Usp(1, static_cast<unsigned>(self_slot_id), static_cast<unsigned>(user_port) + 1);
    return true;
}

bool vexo_usp_to_mp(const Usp& usp, Mp& mp)
{
    if (!is_port_physical(usp) || usp.port() > vexo_port_rows)
        return false;
    return map_user_port_to_mp(static_cast<int>(usp.port()) - 1, mp);
}

bool vexo_mp_list_to_usp_list(const std::list<Mp>& mps, std::list<Usp>& usps)
{
    for (const Mp& mp : mps) {
        Usp usp;
        if (!vexo_mp_to_usp(mp, usp))
            return false;
        usps.push_back(usp);
    }
    return true;
}

bool vexo_usp_to_mp_list(const Usp& usp, std::list<Mp>& mps)
{
    if (usp.unit() != 1)
        return false;
    if (is_port_physical(usp)) {
        Mp mp;
        vexo_usp_to_mp(usp,
                       mp); // deliberately not looked at: out of range gives (0, 0) and success
        mps.push_back(mp);
        return true;
    }
    std::list<Mp> members;
    if (!get_members(usp, members))
        return false;
    mps.splice(mps.end(), members);
    return true;
}

bool vexo_usp_list_to_mp_list(const std::list<Usp>& usps, std::list<Mp>& mps)
{
    for (const Usp& usp : usps) {
        Mp mp;
        std::list<Mp> members;
        if (is_port_physical(usp)) {
            if (vexo_usp_to_mp(usp, mp))
                mps.push_back(mp);
        } else if (vexo_usp_to_mp_list(usp, members)) {
            mps.splice(mps.end(), members);
        }
    }
    mps.sort();
    mps.unique();
    return true;
}
