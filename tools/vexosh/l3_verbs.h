#pragma once

#include "tools/vexosh/l3_words.h"
#include "tools/vexosh/verbs.h"

/// What commands about interfaces, hosts and routes share.
namespace vexosh {

/// Where packets leave. The driver reads the number of a LAG from an `Mp`'s port.
struct Egress {
    Mp place;
    bool lag = false;
};

inline Egress next_egress(Words& words)
{
    if (words.take("lag")) {
        return {Mp(0, words.number("LAG", 0, INT32_MAX)), true};
    }
    return {parse_port(words.next("PORT or lag")), false};
}

inline unsigned next_interface(Words& words)
{
    return words.number("INTERFACE", 0, UINT32_MAX);
}

/// The interface that a command is about, or every other one.
struct Interfaces {
    unsigned id = 0;
    bool others = false; ///< every one but `id`
};

inline Interfaces next_interfaces(Words& words)
{
    const unsigned id = next_interface(words);
    const bool others = words.take("others");
    words.end();
    return {id, others};
}

/// Runs "...": an operation on everything.
template <auto Delete>
void delete_all(Shell& shell, Words& words)
{
    words.end();
    auto driver = shell.session().driver();
    require(((*driver).*Delete)(), words.command());
}

inline void print_next_hop(Shell& shell, const Mac& mac, unsigned interface, const std::string& via)
{
    shell.out() << "mac        " << text(mac) << '\n' << "interface  " << interface << '\n' << via;
}

} // namespace vexosh
