#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <string>
#include <vector>

#include "l2/lag.h"
#include "tests/l2/driver.h"
#include "vexosim/card.h"
#include "vexosim/wire.h"

/// A card that is up, with ports that can be given link.
struct Lag : testing::Test {
    VexoBcmSdk& sdk = driver_with_log();
    std::size_t lists_before = vexosim::live_lplists();

    ~Lag() override
    {
        vexosim::clear_faults();
        vexosim::detach_all();
    }

    void give_link(const std::vector<unsigned>& user_ports)
    {
        for (const unsigned user_port : user_ports) {
            const int number = static_cast<int>(user_port);
            ASSERT_EQ(vexosim::attach(number, std::make_unique<vexosim::MemoryWire>()), "");
        }
        vexosim::advance(std::chrono::seconds(2));
        vexosim::drain();
        for (const unsigned user_port : user_ports) {
            phy_state_t state = PHY_LINK_DOWN;
            ASSERT_TRUE(sdk.get_port_phy_state(port(user_port), state));
            ASSERT_EQ(state, PHY_LINK_UP) << user_port;
        }
        calls_made();
    }

    /// A LAG of ports with link, in the chip and in the bookkeeping.
    unsigned make_lag(const std::vector<unsigned>& user_ports)
    {
        unsigned id = 77;
        Mps members = ports(user_ports);
        EXPECT_TRUE(sdk.create_lag(id));
        EXPECT_TRUE(add_lag_to_list(id, lag_list));
        EXPECT_TRUE(add_lag_member(id, lag_list, members));
        EXPECT_TRUE(sdk.add_ports_to_lag(id, members));
        calls_made();
        return id;
    }

    std::size_t lists_left() const { return vexosim::live_lplists() - lists_before; }
};

/// A trunk's record as the call log has it, with one port designated for everything.
inline std::string trunk_info(int psc, const std::string& members, const std::string& designated)
{
    return "{psc=" + std::to_string(psc) + ", ports=[" + members + "], dlf_port=" + designated +
           ", mc_port=" + designated + ", ipmc_port=" + designated + "}";
}
