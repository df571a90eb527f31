#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <list>
#include <string>
#include <vector>

#include "platform/mp.h"
#include "tests/l2/driver.h"
#include "vexosim/card.h"

using Mps = std::list<Mp>;

inline Mp port(unsigned user_port)
{
    return Mp(user_port == 53 ? 3 : user_port < 49 ? 0 : 2, user_port);
}

inline Mps ports(const std::vector<unsigned>& user_ports)
{
    Mps list;
    for (const unsigned user_port : user_ports)
        list.push_back(port(user_port));
    return list;
}

inline std::string text(const Mps& list)
{
    std::string result;
    for (const Mp& mp : list)
        result += std::to_string(mp.module()) + "/" + std::to_string(mp.port()) + " ";
    return result;
}

/// Results of the SDK, one that is not a code and one above 0 included.
inline std::vector<int> codes_except(std::vector<int> tolerated)
{
    std::vector<int> codes;
    for (int code = -1; code >= -20; --code) {
        if (std::find(tolerated.begin(), tolerated.end(), code) == tolerated.end())
            codes.push_back(code);
    }
    codes.push_back(1);
    return codes;
}

/// Most tests start from VLAN 10 with members: 3 and 4 tagged, 5 and 6 untagged, and the CPU port.
struct Vlan : testing::Test {
    VexoBcmSdk& sdk = driver_with_log();
    std::size_t lists_before = vexosim::live_lplists();

    ~Vlan() override
    {
        vexosim::clear_faults();
        vexosdk_delete_sdk_instance(nullptr);
    }

    void make_vlan_10()
    {
        ASSERT_TRUE(sdk.create_vlan(10));
        ASSERT_TRUE(sdk.add_ports_to_vlan(10, ports({3, 4}), ports({5, 6})));
        calls_made();
    }

    std::string members(unsigned vid)
    {
        Mps tagged;
        Mps untagged;
        if (!sdk.get_vlan_info(vid, tagged, untagged))
            return "none";
        calls_made();
        return "tagged " + text(tagged) + "untagged " + text(untagged);
    }

    std::size_t lists_left() const { return vexosim::live_lplists() - lists_before; }
};

inline void fail_next(const std::string& call, int code = -1, unsigned nth = 1)
{
    vexosim::clear_faults();
    vexosim::inject({.call = call, .nth = nth, .code = code});
}
