#include "tools/vexosh/lags.h"

#include <algorithm>
#include <optional>

#include "l2/lag.h"
#include "tools/vexosh/shell.h"

namespace vexosh {
namespace {

constexpr unsigned kLagSlot = 2;
constexpr unsigned kNoLag = ~0u;

std::string lag_text(unsigned id)
{
    return "lag " + std::to_string(id);
}

std::list<Mp> members_of(unsigned id)
{
    std::list<Mp> members;
    if (!get_lag_member(id, members)) {
        throw BadInput("there is no " + lag_text(id) + "; `show lags` lists them");
    }
    return members;
}

bool contains(const std::list<Mp>& ports, const Mp& port)
{
    return std::ranges::find(ports, port) != ports.end();
}

std::optional<unsigned> lag_of(const Mp& port)
{
    for (const LagNode& lag : lag_list) {
        if (contains(lag.member_ports(), port)) {
            return lag.id();
        }
    }
    return std::nullopt;
}

std::set<Mp> ports_with_link(VexoSdkBase& sdk, const std::list<Mp>& ports)
{
    std::set<Mp> up;
    for (const Mp& port : ports) {
        phy_state_t state = PHY_LINK_DOWN;
        if (sdk.get_port_phy_state(port, state) && state == PHY_LINK_UP) {
            up.insert(port);
        }
    }
    return up;
}

} // namespace

unsigned Lags::create(VexoSdkBase& sdk, unsigned number)
{
    unsigned holder = 0;
    if (number != 0 && vexosdk_lag_usp_to_lag_id(Usp(1, kLagSlot, number), holder)) {
        throw BadInput("1/2/" + std::to_string(number) + " is " + lag_text(holder) + " already");
    }
    unsigned id = kNoLag;
    if (!sdk.create_lag(id)) {
        if (id != kNoLag) {
            sdk.delete_lag(id); // made, but its criterion was refused
        }
        throw Refused("lag create: the driver refused");
    }
    const Usp usp(1, kLagSlot, number == 0 ? id + 1 : number);
    if (number == 0 && vexosdk_lag_usp_to_lag_id(usp, holder)) {
        sdk.delete_lag(id);
        throw BadInput("1/2/" + std::to_string(id + 1) + " is " + lag_text(holder) +
                       " already; say another number");
    }
    add_lag_to_list(id, lag_list);
    vexosdk_add_lag_mapping(usp, id);
    return id;
}

void Lags::destroy(VexoSdkBase& sdk, unsigned id)
{
    const std::list<Mp> members = members_of(id);
    require(sdk.delete_lag(id), "lag delete " + std::to_string(id));
    unbook(id);
    criteria_.erase(id);
    for (const Mp& port : members) {
        active_.erase(port);
    }
}

void Lags::unbook(unsigned id)
{
    Usp usp;
    vexosdk_lag_id_to_lag_usp(id, usp);
    vexosdk_delete_lag_mapping(usp, id);
    delete_lag_from_list(id, lag_list);
}

void Lags::book(unsigned id, unsigned number, std::list<Mp> ports)
{
    unbook(id);
    add_lag_to_list(id, lag_list);
    vexosdk_add_lag_mapping(Usp(1, kLagSlot, number), id);
    add_lag_member(id, lag_list, ports);
}

std::string Lags::booking(unsigned id)
{
    std::list<Mp> members;
    Usp usp;
    if (!get_lag_member(id, members) || !vexosdk_lag_id_to_lag_usp(id, usp)) {
        return "lag unbook " + std::to_string(id);
    }
    return "lag book " + std::to_string(id) + " " + std::to_string(usp.port()) + " " +
           text(members);
}

void Lags::read_active()
{
    active_.clear();
    for (const auto& row : vexosim::lags_table().rows) {
        const std::list<Mp> ports = parse_ports(row[2] == "none" ? "-" : row[2].c_str());
        active_.insert(ports.begin(), ports.end());
    }
}

/// Makes those members active that have a link. Their links are read before and after, so that it
/// is known which ones the driver took even when one changes meanwhile.
bool Lags::activate(VexoSdkBase& sdk, unsigned id, const std::list<Mp>& members)
{
    for (;;) {
        const std::set<Mp> before = ports_with_link(sdk, members);
        if (!sdk.add_ports_to_lag(id, members)) {
            return false;
        }
        if (ports_with_link(sdk, members) == before) {
            if (!before.empty()) { // else the driver leaves the trunk as it was
                std::ranges::for_each(members, [&](const Mp& port) { active_.erase(port); });
                active_.insert(before.begin(), before.end());
            }
            return true;
        }
    }
}

void Lags::add_ports(VexoSdkBase& sdk, unsigned id, const std::list<Mp>& ports)
{
    std::list<Mp> added;
    const std::list<Mp> members = members_of(id);
    for (const Mp& port : ports) {
        if (const auto other = lag_of(port); other && *other != id) {
            throw BadInput("port " + text(port) + " is in " + lag_text(*other));
        }
        if (!contains(members, port) && !contains(added, port)) {
            added.push_back(port);
        }
    }
    if (members.size() + added.size() > kMostMembers) {
        throw BadInput(lag_text(id) + " would have " +
                       std::to_string(members.size() + added.size()) + " ports; " +
                       std::to_string(kMostMembers) + " is the most");
    }
    add_lag_member(id, lag_list, added);
    if (!activate(sdk, id, members_of(id))) {
        delete_lag_member(id, lag_list, added);
        throw Refused("lag add " + std::to_string(id) + ": the driver refused");
    }
}

void Lags::remove_ports(VexoSdkBase& sdk, unsigned id, std::list<Mp> ports)
{
    const std::list<Mp> members = members_of(id);
    for (const Mp& port : ports) {
        if (!contains(members, port)) {
            throw BadInput("port " + text(port) + " is not in " + lag_text(id));
        }
    }
    require(sdk.delete_ports_from_lag(id, ports), "lag remove " + std::to_string(id));
    delete_lag_member(id, lag_list, ports);
    for (const Mp& port : ports) {
        active_.erase(port);
    }
    keep_criterion(sdk, id);
}

void Lags::set_criterion(VexoSdkBase& sdk, unsigned id, lag_psc_t criterion)
{
    members_of(id);
    require(sdk.set_lag_psc(id, criterion), "lag criterion " + std::to_string(id));
    criteria_[id] = criterion;
}

/// A trunk that is emptied is made anew, with the criterion of a new one.
void Lags::keep_criterion(VexoSdkBase& sdk, unsigned id)
{
    lag_psc_t now = LAG_PSC_SRC_DST_MAC;
    const auto wanted = criteria_.find(id);
    if (wanted != criteria_.end() && sdk.get_lag_psc(id, now) && now != wanted->second) {
        sdk.set_lag_psc(id, wanted->second);
    }
}

bool Lags::link_changed(VexoSdkBase& sdk, const Mp& port, bool up)
{
    const std::optional<unsigned> id = lag_of(port);
    if (!id || active_.contains(port) == up) {
        return true;
    }
    if (up) {
        const bool added = sdk.port_add_to_egress_list(port);
        if (added) {
            active_.insert(port);
        }
        return added;
    }
    active_.erase(port);
    const bool removed = sdk.port_remove_from_egress_list(port);
    keep_criterion(sdk, *id);
    return removed;
}

} // namespace vexosh
