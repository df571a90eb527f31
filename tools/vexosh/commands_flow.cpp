// Flows: what they match, and what they do.
#include <algorithm>
#include <optional>

#include "flow/flow_entry.h"
#include "flow/trap_filter.h"
#include "flow/udf_pool.h"
#include "tools/vexosh/flow_words.h"
#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

struct Match {
    of_flow_mp_s flow{};
    Arg<const of_flow_qualify_udf_s&> udf;
};

bool ends_match(const std::string& word)
{
    return word.empty() || word == "priority" || word == "action";
}

std::string next_value(Words& words, const std::string& of)
{
    return words.next(("value of " + of).c_str());
}

void next_field(Words& words, Match& match)
{
    const std::string field = words.next("field");
    if (!is_flow_field(field)) {
        throw BadInput("bad field '" + field + "': one of " + flow_field_words() +
                       " is wanted, or any alone");
    }
    const std::string value = next_value(words, field);
    set_flow_field(match.flow, field, value);
    if (field != "udf") {
        return;
    }
    match.udf = {};
    match.udf.read(value, "udf");
    if (match.udf.value.length == 0) {
        throw BadInput("bad udf '" + value + "': there are no bytes to match");
    }
}

void next_match(Words& words, Match& match)
{
    if (!words.take("match")) {
        words.usage_error("missing match");
    }
    if (words.take("any")) {
        return;
    }
    do {
        next_field(words, match);
    } while (!ends_match(words.peek()));
}

std::vector<FlowAction> next_actions(Words& words)
{
    const std::string word = words.next("action");
    return parse_flow_action(word, takes_value(word) ? next_value(words, word) : "");
}

/// What stands behind the match. Steps are named for errors.
struct Rest {
    std::optional<int> priority;
    std::vector<std::pair<std::string, FlowAction>> actions;
};

int next_priority(Words& words)
{
    return static_cast<int>(parse_number(words.next("N"), "priority", INT32_MIN, INT32_MAX));
}

Rest next_rest(Words& words)
{
    Rest rest;
    while (!words.empty()) {
        if (words.take("priority")) {
            rest.priority = next_priority(words);
        } else if (words.take("action")) {
            do {
                const std::string name = words.peek();
                for (const FlowAction& action : next_actions(words)) {
                    rest.actions.emplace_back(name, action);
                }
            } while (!ends_match(words.peek()));
        } else {
            words.end();
        }
    }
    return rest;
}

/// What the driver refused of it; empty when nothing.
std::string set_up(Sdk& sdk, unsigned id, const Rest& rest)
{
    if (rest.priority && !sdk.set_of_flow_priority(id, *rest.priority)) {
        return "priority";
    }
    for (const auto& [name, action] : rest.actions) {
        if (!sdk.add_of_flow_action(id, action.action, action.param, action.port)) {
            return "action " + name;
        }
    }
    return "";
}

/// The driver takes the first flow's udf for free where an ARP trap has it, once: it marks it in
/// use, and is right from then on.
bool add_flow(Sdk& sdk, const Match& match, unsigned& id)
{
    const bool mistaken = (match.flow.flags & OF_QUALIFY_UDF) != 0 && arp_udf_id_one_vlan != -1 &&
                          vexo_udf_usage[arp_udf_id_one_vlan] == 0;
    return sdk.add_of_flow(match.flow, id, match.udf.value) ||
           (mistaken && sdk.add_of_flow(match.flow, id, match.udf.value));
}

void add(Shell& shell, Words& words)
{
    Match match;
    next_match(words, match);
    const Rest rest = next_rest(words);
    auto driver = shell.session().driver();
    unsigned id = 0;
    require(add_flow(*driver, match, id), words.command());
    if (const std::string refused = set_up(*driver, id, rest); !refused.empty()) {
        driver->delete_of_flow(id);
        throw Refused("flow add: the driver refused " + refused + ", so the flow is gone again");
    }
    shell.out() << "flow " << id << '\n';
}

void add_with_id(Shell& shell, Words& words)
{
    const unsigned id = words.number("FLOW", 0, UINT32_MAX);
    Match match;
    next_match(words, match);
    words.end();
    require(shell.session().driver()->add_of_flow_with_id(match.flow, id),
            "flow add-with-id " + std::to_string(id));
}

unsigned next_flow(Words& words)
{
    const unsigned id = words.number("FLOW", 0, UINT32_MAX);
    if (!fid_fe_map.contains(id)) {
        throw BadInput("there is no flow " + std::to_string(id));
    }
    return id;
}

void remove(Shell& shell, Words& words)
{
    const unsigned id = next_flow(words);
    words.end();
    require(shell.session().driver()->delete_of_flow(id), "flow delete " + std::to_string(id));
}

void clear(Shell& shell, Words& words)
{
    words.end();
    require(shell.session().driver()->clear_of_flow_table(), words.command());
}

template <auto Change>
void change_action(Shell& shell, Words& words)
{
    const unsigned id = next_flow(words);
    const std::vector<FlowAction> actions = next_actions(words);
    words.end();
    auto driver = shell.session().driver();
    for (const FlowAction& action : actions) {
        require(((*driver).*Change)(id, action.action, action.param, action.port),
                words.command() + " " + std::to_string(id));
    }
}

void clear_actions(Shell& shell, Words& words)
{
    const unsigned id = next_flow(words);
    words.end();
    require(shell.session().driver()->clear_of_flow_action(id),
            words.command() + " " + std::to_string(id));
}

void priority(Shell& shell, Words& words)
{
    const unsigned id = next_flow(words);
    const int value = next_priority(words);
    words.end();
    require(shell.session().driver()->set_of_flow_priority(id, value),
            words.command() + " " + std::to_string(id));
}

constexpr const char* kChange =
    "FLOW drop|redirect|loopback|output|vlan|vlan-priority|delete-inner-tag|src-mac|dst-mac|tos|"
    "bypass-stp|reinstall [VALUE]";

constexpr Command kCommands[] = {
    {"flow add",
     "match any|in-port|src-mac|dst-mac|ether-type|vlan|vlan-priority|src-ip|dst-ip|ip-proto|tos|"
     "l4-src|l4-dst|udf VALUE ... [priority N] [action drop|redirect|loopback|output|vlan|"
     "vlan-priority|delete-inner-tag|src-mac|dst-mac|tos|bypass-stp|reinstall [VALUE] ...]",
     "a flow for frames that match all fields, and its actions; says its id. IP addresses take "
     "/LENGTH or /MASK; udf takes OFFSET:DATA or OFFSET:DATA/MASK, bytes of the frame in "
     "hexadecimal",
     add},
    {"flow add-with-id", "FLOW match any|FIELD VALUE ...",
     "ask for a flow under an id of one's own; the driver refuses, for it chooses the ids",
     add_with_id},
    {"flow delete", "FLOW", "delete a flow and its counter", remove},
    {"flow clear", "",
     "delete all flows; their groups and counters stay, and ids go on where they were", clear},
    {"flow priority", "FLOW N",
     "of the matching flows of a group the one of highest priority acts; 0 at first", priority},
    {"flow action add", kChange,
     "one more action. redirect takes PORTS (which join those there are), all or "
     "all-bypass-stp (every port but 47); output is the driver's number of an output, 0 to 6",
     change_action<&Sdk::add_of_flow_action>},
    {"flow action remove", kChange,
     "take an action out. As the driver has it, a port that is removed from a redirection stays "
     "in it and is masked out, and a MAC rewrite is added once more",
     change_action<&Sdk::delete_of_flow_action>},
    {"flow action clear", "FLOW",
     "remove all actions, the counting too; acts from the flow's next change on", clear_actions},
};

} // namespace

std::span<const Command> flow_commands()
{
    return kCommands;
}

} // namespace vexosh
