#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "flow/flow_types.h"
#include "tools/vexosh/input.h"

/// Flow matches and actions in words.
namespace vexosh {

/// `any`, or fields with commas: in_port=1,src_mac=..,dst_mac=..,ether_type=0x800,vlan=10,pri=3,
/// src_ip=10.0.0.0/8,dst_ip=10.0.0.1,sport=80,dport=80,proto=6,tos=0,udf.
of_flow_mp_s parse_flow(std::string_view word);
/// The same the other way round.
std::string text(const of_flow_mp_s& flow);

/// TYPE or TYPE:VALUE, where VALUE is a number or a MAC address.
of_action_param_s parse_action_param(std::string_view word);

struct MaskedIp {
    std::uint32_t address = 0;
    std::uint32_t mask = UINT32_MAX;
};
/// ADDRESS, ADDRESS/LENGTH or ADDRESS/MASK.
MaskedIp parse_masked_ip(std::string_view word);
/// The same the other way round.
std::string text(const MaskedIp& ip);

/// A number, or the name of a well-known IP protocol.
unsigned parse_ip_protocol(std::string_view word);

/// Fields of a match by their words: in-port, l4-dst, ...
bool is_flow_field(std::string_view word);
/// Puts a field into a match, with a value that frames can have. `udf` only sets the flag.
void set_flow_field(of_flow_mp_s& flow, std::string_view word, std::string_view value);
/// The words, with commas.
std::string flow_field_words();

/// What one call of the driver's action operations is given.
struct FlowAction {
    of_action_t action = OF_ACTION_REINSTALL;
    of_action_param_s param{};
    Mp port;
};
/// Whether an action's word is followed by a value. Throws for a word that is no action.
bool takes_value(std::string_view word);
/// An action in words; a redirection to several ports is one for each.
std::vector<FlowAction> parse_flow_action(std::string_view word, std::string_view value);

} // namespace vexosh
