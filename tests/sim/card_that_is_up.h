#pragma once

#include <gtest/gtest.h>

#include "core/factory.h"
#include "platform/port_map.h"
#include "vexosim/board.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"

/// A card that the driver has brought up, on a clock that stands still. Nothing borrowed from the
/// SDK may be left at the end.
struct CardThatIsUp : testing::Test {
    CardThatIsUp()
    {
        vexosim::board::enable();
        vexosim::use_manual_clock();
        vexosdk_create_sdk_instance();
    }

    ~CardThatIsUp() override { EXPECT_EQ(vexosim::live_lplists(), 0u); }

    /// The logical port of a user port.
    static int lport(int user_port) { return vexo_user_port_to_lport[user_port]; }
};
