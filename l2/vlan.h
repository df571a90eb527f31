#pragma once

#include <list>

#include "l2/lag.h"
#include "platform/mp.h"

/// Ports by VLAN id, for expanding a VLAN `Usp`. Deliberately never filled: the chip keeps VLAN
/// membership, so a VLAN `Usp` never expands.
extern std::list<LagNode> vlan_port_member_list;

/// Replaces the contents of `ports` by the members of the first node with id `vid` of
/// `vlan_port_member_list`. False, with `ports` untouched, when there is none.
bool get_vlan_port_member(unsigned vid, std::list<Mp>& ports);
