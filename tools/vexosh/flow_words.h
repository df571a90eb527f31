#pragma once

#include <string_view>

#include "flow/flow_types.h"

/// Flow matches and actions in words.
namespace vexosh {

/// `any`, or fields with commas: in_port=1,src_mac=..,dst_mac=..,ether_type=0x800,vlan=10,pri=3,
/// src_ip=10.0.0.0/8,dst_ip=10.0.0.1,sport=80,dport=80,proto=6,tos=0,udf.
of_flow_mp_s parse_flow(std::string_view word);

/// TYPE or TYPE:VALUE, where VALUE is a number or a MAC address.
of_action_param_s parse_action_param(std::string_view word);

} // namespace vexosh
