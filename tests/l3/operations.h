#pragma once

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "tests/l3/addresses.h"

/// Outputs as no chip gives them, so that a write shows.
struct L3Outputs {
    unsigned number = 0x5a5a5a5a;
    unsigned next_hop = 0x5a5a5a5a;
    Mac mac = {0x5a, 0x5a, 0x5a, 0x5a, 0x5a, 0x5a};

    bool operator==(const L3Outputs&) const = default;
};

/// What an operation's port argument is, and how that reads in the log.
struct L3Egress {
    Mp port;
    bool is_trunk;
    std::string flags4;
    std::string flags6;
    std::string text;
};

inline const L3Egress port_3 = {mp(3), false, "0", "0x20000", "port=3"};
/// A trunk is named by number alone: module and port name no port.
inline const L3Egress trunk_77 = {Mp(5, 77), true, "0x200", "0x20200", "trunk=77"};
inline const L3Egress nowhere = {Mp(1, 5), false, "", "", ""};

struct L3Call {
    std::string line; ///< as in the log
    int tolerated;    ///< a code that counts as success besides 0

    std::string name() const { return line.substr(0, line.find('(')); }
};

struct L3Operation {
    std::string name;
    std::string init; ///< the SDK function that prepares the record; empty: none
    std::vector<L3Call> calls;
    std::function<bool(VexoBcmSdk&, L3Outputs&)> act;
    int init_must_answer = 0;
    bool if_init_fails = false; ///< what it returns then
    bool has_egress = false;
};

/// All 26, with each port argument an egress.
std::vector<L3Operation> l3_operations(const L3Egress& egress);
