#pragma once

#include "platform/port_map.h"
#include "tests/kit/card_test.h"

/// A card that the driver has brought up. Nothing borrowed from the SDK may be left at the end.
struct CardThatIsUp : vexokit::QuietCardTest {
    ~CardThatIsUp() override { EXPECT_EQ(vexosim::live_lplists(), 0u); }

    /// The logical port of a user port.
    static int lport(int user_port) { return vexo_user_port_to_lport[user_port]; }
};
