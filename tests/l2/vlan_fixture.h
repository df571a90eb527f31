#pragma once

#include <gtest/gtest.h>

#include <string>

#include "tests/l2/driver.h"
#include "vexosim/card.h"

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
