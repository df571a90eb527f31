#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

unsigned next_lag(Words& words)
{
    return words.number("LAG", 0, INT32_MAX);
}

void create(Shell& shell, Words& words)
{
    const unsigned number = words.empty() ? 0 : words.number("NUMBER", 1, UINT32_MAX);
    words.end();
    auto driver = shell.session().driver();
    shell.out() << "lag " << shell.session().lags().create(*driver, number) << '\n';
}

void destroy(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    words.end();
    auto driver = shell.session().driver();
    shell.session().lags().destroy(*driver, id);
}

void add_ports(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    words.end();
    auto driver = shell.session().driver();
    shell.session().lags().add_ports(*driver, id, ports);
}

void remove_ports(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    words.end();
    auto driver = shell.session().driver();
    shell.session().lags().remove_ports(*driver, id, ports);
}

void criterion(Shell& shell, Words& words)
{
    const unsigned id = next_lag(words);
    const auto criterion = next_enum<lag_psc_t>(words, "criterion");
    words.end();
    auto driver = shell.session().driver();
    shell.session().lags().set_criterion(*driver, id, criterion);
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
};

} // namespace

std::span<const Command> lag_commands()
{
    return kCommands;
}

} // namespace vexosh
