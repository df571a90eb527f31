#pragma once

#include <string>
#include <vector>

/// The user ports of uports 1 to 52, in the order in which operations visit them: user port 47 is
/// left out.
inline std::vector<unsigned> swept_ports()
{
    std::vector<unsigned> list = {48};
    const auto add = [&list](unsigned first, unsigned last) {
        for (unsigned user_port = first; user_port <= last; ++user_port)
            list.push_back(user_port);
    };
    add(8, 15);
    add(20, 27);
    add(32, 39);
    for (const unsigned user_port : {50u, 49u, 52u, 51u})
        list.push_back(user_port);
    add(0, 7);
    add(16, 19);
    add(28, 31);
    add(40, 46);
    return list;
}

/// The lines `call(PORT, rest)` for the swept ports but `skipped`.
inline std::string swept(const std::string& call, const std::string& rest, unsigned skipped = 99)
{
    std::string lines;
    for (const unsigned user_port : swept_ports()) {
        if (user_port != skipped)
            lines += call + "(" + std::to_string(user_port) + ", " + rest + ")\n";
    }
    return lines;
}

/// The first `count` lines of a log.
inline std::string first_lines(const std::string& lines, unsigned count)
{
    std::size_t end = 0;
    for (; count > 0; --count)
        end = lines.find('\n', end) + 1;
    return lines.substr(0, end);
}
