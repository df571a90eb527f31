// What flows do to frames, in words.
#include <algorithm>

#include "tools/vexosh/flow_words.h"

namespace vexosh {
namespace {

struct Word {
    std::string_view word;
    bool value;
    std::vector<FlowAction> (*make)(std::string_view value);
};

FlowAction plain(of_action_t action)
{
    FlowAction made;
    made.action = action;
    return made;
}

FlowAction output(std::uint32_t type)
{
    FlowAction made = plain(OF_ACTION_OUTPUT);
    made.param.type = type;
    return made;
}

FlowAction modify(of_modify_t field)
{
    FlowAction made = plain(OF_ACTION_MODIFY);
    made.param.type = field;
    return made;
}

FlowAction set_number(of_modify_t field, std::string_view value, const char* what, int most)
{
    FlowAction made = modify(field);
    made.param.value.number = static_cast<std::uint16_t>(parse_number(value, what, 0, most));
    return made;
}

FlowAction set_mac(of_modify_t field, std::string_view value)
{
    FlowAction made = modify(field);
    std::ranges::copy(parse_mac(value), made.param.value.mac);
    return made;
}

std::vector<FlowAction> redirect(std::string_view value)
{
    if (value == "all") {
        return {output(OF_OUTPUT_ALL)};
    }
    if (value == "all-bypass-stp") {
        return {output(OF_OUTPUT_ALL_BYPASS_STP)};
    }
    std::vector<FlowAction> actions;
    for (const Mp& port : parse_ports(value)) {
        actions.push_back(output(port == parse_port("cpu") ? OF_OUTPUT_CPU : OF_OUTPUT_PORT));
        actions.back().port = port;
    }
    if (actions.empty()) {
        throw BadInput("bad redirection '-': there is no port in it; `drop` sends frames nowhere");
    }
    return actions;
}

using Value = std::string_view;
using Actions = std::vector<FlowAction>;

constexpr Word kWords[] = {
    {"drop", false, [](Value) { return Actions{plain(OF_ACTION_DROP)}; }},
    {"redirect", true, redirect},
    {"loopback", false, [](Value) { return Actions{output(OF_OUTPUT_LOOPBACK)}; }},
    {"output", true,
     [](Value v) {
         return Actions{
             output(static_cast<std::uint32_t>(parse_number(v, "kind of output", 0, 6)))};
     }},
    {"vlan", true,
     [](Value v) { return Actions{set_number(OF_MODIFY_OUTER_VLAN_ID, v, "vlan", 4094)}; }},
    {"vlan-priority", true,
     [](Value v) { return Actions{set_number(OF_MODIFY_OUTER_VLAN_PRI, v, "vlan-priority", 7)}; }},
    {"delete-inner-tag", false, [](Value) { return Actions{modify(OF_MODIFY_DELETE_INNER_VLAN)}; }},
    {"src-mac", true, [](Value v) { return Actions{set_mac(OF_MODIFY_SRC_MAC, v)}; }},
    {"dst-mac", true, [](Value v) { return Actions{set_mac(OF_MODIFY_DST_MAC, v)}; }},
    {"tos", true, [](Value v) { return Actions{set_number(OF_MODIFY_TOS, v, "tos", 255)}; }},
    {"bypass-stp", false, [](Value) { return Actions{plain(OF_ACTION_BYPASS_STP)}; }},
    {"reinstall", false, [](Value) { return Actions{plain(OF_ACTION_REINSTALL)}; }},
};

const Word& find_word(std::string_view word)
{
    const auto* known = std::ranges::find(kWords, word, &Word::word);
    if (known != std::end(kWords)) {
        return *known;
    }
    std::string wanted;
    for (const Word& candidate : kWords) {
        wanted += (wanted.empty() ? "" : ", ") + std::string(candidate.word);
    }
    throw BadInput("bad action '" + std::string(word) + "': one of " + wanted + " is wanted");
}

} // namespace

bool takes_value(std::string_view word)
{
    return find_word(word).value;
}

std::vector<FlowAction> parse_flow_action(std::string_view word, std::string_view value)
{
    return find_word(word).make(value);
}

} // namespace vexosh
