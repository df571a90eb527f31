// The record of which ports are configured into each LAG and of the name of each LAG. The chip is
// never asked here.
#include <algorithm>

#include "l2/lag.h"

std::list<LagNode> lag_list;
std::map<unsigned, Usp> lag_id_usp_map;

namespace {

template <class List>
auto find_node(List& list, unsigned id)
{
    return std::find_if(list.begin(), list.end(),
                        [id](const LagNode& node) { return node.id() == id; });
}

} // namespace

bool LagNode::add_member_port(std::list<Mp>& ports)
{
    member_ports_.insert(member_ports_.end(), ports.begin(), ports.end());
    member_ports_.sort();
    member_ports_.unique();
    return true;
}

bool LagNode::delete_member_port(std::list<Mp>& ports)
{
    for (const Mp& port : ports) {
        const auto member = std::find(member_ports_.begin(), member_ports_.end(), port);
        if (member != member_ports_.end())
            member_ports_.erase(member);
    }
    return true;
}

bool LagNode::get_member_port(std::list<Mp>& ports) const
{
    ports = member_ports_;
    return true;
}

// By value deliberately: the exported signature is fixed.
bool is_lag_exist(unsigned id,
                  std::list<LagNode> list) // NOLINT(performance-unnecessary-value-param)
{
    return find_node(list, id) != list.end();
}

bool add_lag_to_list(unsigned id, std::list<LagNode>& list)
{
    if (find_node(list, id) != list.end())
        return false;
    list.emplace_back(id);
    return true;
}

bool delete_lag_from_list(unsigned id, std::list<LagNode>& list)
{
    const auto node = find_node(list, id);
    if (node == list.end())
        return false;
    list.erase(node);
    return true;
}

bool add_lag_member(unsigned id, std::list<LagNode>& list, std::list<Mp>& ports)
{
    const auto node = find_node(list, id);
    return node != list.end() && node->add_member_port(ports);
}

bool delete_lag_member(unsigned id, std::list<LagNode>& list, std::list<Mp>& ports)
{
    const auto node = find_node(list, id);
    return node != list.end() && node->delete_member_port(ports);
}

bool get_lag_member(unsigned id, std::list<Mp>& ports)
{
    const auto node = find_node(lag_list, id);
    return node != lag_list.end() && node->get_member_port(ports);
}

bool vexosdk_add_lag_mapping(const Usp& usp, unsigned id)
{
    lag_id_usp_map[id] = usp;
    return true;
}

bool vexosdk_delete_lag_mapping(const Usp&, unsigned id)
{
    lag_id_usp_map.erase(id);
    return true;
}

bool vexosdk_lag_id_to_lag_usp(unsigned id, Usp& usp)
{
    const auto entry = lag_id_usp_map.find(id);
    if (entry == lag_id_usp_map.end())
        return false;
    usp = entry->second;
    return true;
}

bool vexosdk_lag_usp_to_lag_id(const Usp& usp, unsigned& id)
{
    const auto entry = std::find_if(lag_id_usp_map.begin(), lag_id_usp_map.end(),
                                    [&usp](const auto& mapping) { return mapping.second == usp; });
    if (entry == lag_id_usp_map.end())
        return false;
    id = entry->first;
    return true;
}
