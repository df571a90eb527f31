#pragma once

#include <map>

#include "flow/trap_filter.h"
#include "tests/flow/flow_fixture.h"

using Filters = std::map<uint32_t, int32_t>;

constexpr unsigned ip4(unsigned a, unsigned b, unsigned c, unsigned d)
{
    return a << 24 | b << 16 | c << 8 | d;
}

/// The six calls and more that make one filter's entry.
inline std::string trap_calls(int group, int entry, const std::string& match, int ip_type)
{
    const std::string number = std::to_string(entry);
    const std::string type =
        "bcmx_field_qualify_IpType(" + number + ", " + std::to_string(ip_type) + ")\n";
    const std::string qualifiers =
        ip_type == 8 ? type + "bcmx_field_qualify_" + match : "bcmx_field_qualify_" + match + type;
    return "bcmx_field_entry_create(" + std::to_string(group) + ", out)\n" + qualifiers +
           "bcmx_field_action_add(" + number + ", 21, 0, 0)\n" + "bcmx_field_entry_install(" +
           number + ")\n";
}
