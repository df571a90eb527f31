#include "tools/vexosh/refusal.h"

#include <bcm/error.h>

#include <algorithm>
#include <string_view>

#include "platform/port_map.h"
#include "tools/vexosh/grammar.h"
#include "tools/vexosh/input.h"
#include "vexosim/calls.h"
#include "vexosim/state.h"

namespace vexosh {

namespace {

struct Refusal {
    std::string operation;
    vexosim::FailedCall call;
};

thread_local Refusal last;

/// What arguments name by its number, which stands first in a row of a table.
struct Named {
    std::string_view usage;
    const char* what;
    vexosim::TextTable (*table)();
};

constexpr Named kNamed[] = {
    {"VID", "VLAN", vexosim::vlans_table},
    {"LAG", "lag", vexosim::lags_table},
    {"INTERFACE", "L3 interface", vexosim::l3_interfaces_table},
};

/// What the driver does not take, whatever else it is told.
struct Reason {
    std::string_view operation; // what its name begins with
    const char* text;
};

constexpr Reason kReasons[] = {
    {"add_of_flow_with_id", "it takes no flow with an id that was chosen for it"},
    {"add_system_mac", "a group address cannot be the CPU's"},
    {"get_port_stat_enabled", "it never tells"},
};

bool is_number(std::string_view word)
{
    return !word.empty() && word.find_first_not_of("0123456789") == std::string_view::npos;
}

/// MODULE/PORT that is none of the card's ports.
bool is_no_port(std::string_view word)
{
    const std::size_t slash = word.find('/');
    int user_port = 0;
    return slash != std::string_view::npos && is_number(word.substr(0, slash)) &&
           is_number(word.substr(slash + 1)) && !map_mp_to_user_port(parse_port(word), user_port);
}

std::string missing_port(const std::vector<std::string>& arguments)
{
    const auto port = std::ranges::find_if(arguments, is_no_port);
    return port == arguments.end() ? "" : "there is no port " + *port;
}

/// The first argument that names something by a number that nothing of its kind has.
std::string missing_thing(const Command& command, const std::vector<std::string>& arguments)
{
    const std::vector<std::string> usage = split_words(command.usage);
    for (std::size_t at = 0; at < std::min(usage.size(), arguments.size()); ++at) {
        for (const Named& kind : kNamed) {
            const std::string& number = arguments[at];
            if (usage[at].find(kind.usage) != std::string::npos && is_number(number) &&
                std::ranges::none_of(kind.table().rows,
                                     [&](const auto& row) { return row[0] == number; })) {
                return std::string("there is no ") + kind.what + " " + number;
            }
        }
    }
    return "";
}

std::string known_reason(const std::string& operation)
{
    const auto* const reason = std::ranges::find_if(
        kReasons, [&](const Reason& each) { return operation.starts_with(each.operation); });
    return reason != std::end(kReasons) ? reason->text : "it does not take these values";
}

} // namespace

bool keep_refusal(const char* operation, bool done)
{
    if (!done) {
        last = {operation, vexosim::failed_call()};
    }
    return done;
}

void forget_refusal()
{
    last = {};
}

std::string why_refused(const Command& command, const std::vector<std::string>& arguments)
{
    const vexosim::FailedCall& call = last.call;
    std::string why;
    if (call.name == nullptr || call.code == BCM_E_PORT) {
        why = missing_port(arguments);
    }
    if (why.empty() && (call.name == nullptr || call.code == BCM_E_NOT_FOUND)) {
        why = missing_thing(command, arguments);
    }
    if (call.name != nullptr) {
        const std::string failed =
            std::string(call.name) + " reported " + std::to_string(call.code) + ", " + call.text();
        return why.empty() ? failed : why + " (" + failed + ")";
    }
    return why.empty() ? known_reason(last.operation) : why;
}

} // namespace vexosh
