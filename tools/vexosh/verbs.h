#pragma once

#include "core/sdk_base.h"
#include "tools/vexosh/call_args.h"
#include "tools/vexosh/call_names.h"
#include "tools/vexosh/shell.h"

/// Commands that set one property of each port of a list are rows: the operation, and how its value
/// is read.
namespace vexosh {

/// A value of an enum by its name, and by nothing else.
template <class Enum>
Enum parse_enum(const std::string& word, const char* what)
{
    std::string wanted;
    for (const NamedValue& value : enum_names(typeid(Enum))) {
        if (word == value.name) {
            return static_cast<Enum>(value.value);
        }
        wanted += (wanted.empty() ? "" : ", ") + std::string(value.name);
    }
    throw BadInput(std::string("bad ") + what + " '" + word + "': one of " + wanted + " is wanted");
}

/// Does the same to each port of a list; the first refusal ends it, and names the port.
template <class Change>
void each_port(Shell& shell, const Words& words, const std::list<Mp>& ports, Change change)
{
    auto driver = shell.session().driver();
    for (const Mp& port : ports) {
        require(change(*driver, port), words.command() + " " + text(port));
    }
}

/// Runs "... PORTS VALUE": `Set` on each port with the value that `Read` takes from the words.
template <auto Set, auto Read>
void set_ports(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const auto value = Read(words);
    words.end();
    each_port(shell, words, ports,
              [&value](VexoSdkBase& sdk, const Mp& port) { return (sdk.*Set)(port, value); });
}

/// Runs "... PORTS": `Set` on each port with a fixed value.
template <auto Set, auto Value>
void fix_ports(Shell& shell, Words& words)
{
    set_ports<Set, [](Words&) { return Value; }>(shell, words);
}

template <class Enum, class Name>
Enum next_enum(Words& words, Name what)
{
    return parse_enum<Enum>(words.next(what), what);
}

inline bool next_switch(Words& words)
{
    return parse_switch(words.next("on|off"), "switch");
}

inline unsigned next_vid(Words& words)
{
    return parse_vid(words.next("VID"));
}

} // namespace vexosh
