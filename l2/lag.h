#pragma once

#include <list>
#include <map>

#include "platform/mp.h"
#include "platform/usp.h"

/// LAG bookkeeping: which ports are configured into each LAG and which `Usp` stands for it.
///
/// The chip holds a trunk's active members, these lists the configured ones. The driver's trunk
/// operations do not change them: the line-card manager keeps both in step, from one thread.

/// One LAG's configured members, sorted and without duplicates.
class LagNode {
public:
    explicit LagNode(unsigned id) : id_(id) {}

    unsigned id() const { return id_; }
    void set_id(unsigned id) { id_ = id; }

    /// Adds the given ports; those already there stay once. Always true.
    bool add_member_port(std::list<Mp>& ports);

    /// Removes the given ports; absent ones are ignored. Always true.
    bool delete_member_port(std::list<Mp>& ports);

    /// Replaces the contents of `ports` by the members. Always true.
    bool get_member_port(std::list<Mp>& ports) const;

    /// The members, for walking without a copy.
    const std::list<Mp>& member_ports() const { return member_ports_; }

private:
    unsigned id_;
    std::list<Mp> member_ports_;
};

extern std::list<LagNode> lag_list;            ///< in order of creation, one node per trunk id
extern std::map<unsigned, Usp> lag_id_usp_map; ///< trunk id to the LAG's `Usp`

/// True when `list` holds a node with that id.
bool is_lag_exist(unsigned id, std::list<LagNode> list);

/// Appends an empty node. False when the id is already there.
bool add_lag_to_list(unsigned id, std::list<LagNode>& list);

/// False when the id is absent.
bool delete_lag_from_list(unsigned id, std::list<LagNode>& list);

/// Adds ports to a node's members. False when the id is absent.
bool add_lag_member(unsigned id, std::list<LagNode>& list, std::list<Mp>& ports);

/// Removes ports from a node's members; absent ports are ignored. False when the id is absent.
bool delete_lag_member(unsigned id, std::list<LagNode>& list, std::list<Mp>& ports);

/// Replaces the contents of `ports` by the members of a LAG of `lag_list`. False, with `ports`
/// untouched, when the id is absent.
bool get_lag_member(unsigned id, std::list<Mp>& ports);

/// Names the LAG `id` by `usp`, in place of an earlier name. Always true.
bool vexosdk_add_lag_mapping(const Usp& usp, unsigned id);

/// Forgets the name of LAG `id`; `usp` is not looked at. True also when there was none.
bool vexosdk_delete_lag_mapping(const Usp& usp, unsigned id);

/// False, with `usp` untouched, when the LAG has no name.
bool vexosdk_lag_id_to_lag_usp(unsigned id, Usp& usp);

/// Gives the lowest id named by `usp`. False, with `id` untouched, when there is none.
bool vexosdk_lag_usp_to_lag_id(const Usp& usp, unsigned& id);
