#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

unsigned next_lag(Words& words)
{
    return words.number("LAG", 0, INT32_MAX);
}

/// Tells a record what the bookkeeping of a LAG is now.
void record_booking(Shell& shell, unsigned id)
{
    if (CallRecord& record = shell.session().record(); record.on()) {
        record.line(Lags::booking(id));
    }
}

void create(Shell& shell, Words& words)
{
    const unsigned number = words.empty() ? 0 : words.number("NUMBER", 1, UINT32_MAX);
    words.end();
    auto driver = shell.session().driver();
    const unsigned id = shell.session().lags().create(*driver, number);
    record_booking(shell, id);
    shell.out() << "lag " << id << '\n';
}

void destroy(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    words.end();
    auto driver = shell.session().driver();
    shell.session().lags().destroy(*driver, id);
    record_booking(shell, id);
}

void add_ports(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    words.end();
    auto driver = shell.session().driver();
    shell.session().lags().add_ports(*driver, id, ports);
    record_booking(shell, id);
}

void remove_ports(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    words.end();
    auto driver = shell.session().driver();
    shell.session().lags().remove_ports(*driver, id, ports);
    record_booking(shell, id);
}

void criterion(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    const auto criterion = next_enum<lag_psc_t>(words, "criterion");
    words.end();
    auto driver = shell.session().driver();
    shell.session().lags().set_criterion(*driver, id, criterion);
}

void book(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    const unsigned number = words.number("NUMBER", 1, UINT32_MAX);
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    words.end();
    const auto driver = shell.session().driver();
    shell.session().lags().book(id, number, ports);
    record_booking(shell, id);
}

void unbook(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    words.end();
    const auto driver = shell.session().driver();
    shell.session().lags().unbook(id);
    record_booking(shell, id);
}

constexpr Command kCommands[] = {
    {"lag create", "[NUMBER]", "create a LAG and say its id; its Usp is 1/2/NUMBER", create},
    {"lag delete", "LAG", "delete a LAG and its MAC entries", destroy},
    {"lag add", "LAG PORTS",
     "configure ports into a LAG; they carry traffic while they have a link", add_ports},
    {"lag remove", "LAG PORTS",
     "take ports out of a LAG; they are left blocking (`stp port` lets them forward)",
     remove_ports},
    {"lag criterion", "LAG src-mac|dst-mac|src-dst-mac|src-ip|dst-ip|src-dst-ip",
     "what decides which member a frame takes", criterion},
    {"lag book", "LAG NUMBER PORTS",
     "the manager's bookkeeping of a LAG alone, its configured ports and its Usp 1/2/NUMBER: what "
     "recorded calls go by",
     book},
    {"lag unbook", "LAG", "and without it", unbook},
};

} // namespace

std::span<const Command> lag_commands()
{
    return kCommands;
}

} // namespace vexosh
