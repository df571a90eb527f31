#pragma once

#include <gtest/gtest.h>

#include <list>
#include <string>
#include <vector>

#include "core/factory.h"
#include "platform/mp.h"
#include "vexosim/calls.h"
#include "vexosim/card.h"
#include "vexosim/clock.h"
#include "vexosim/faults.h"
#include "vexosim/ports.h"
#include "vexosim/profile.h"

namespace vexokit {

/// The `Mp` of a user port (53: the CPU), and of several.
Mp mp(unsigned user_port);
std::list<Mp> mps(const std::vector<unsigned>& user_ports);

/// The digest of the chip's whole state.
std::uint64_t chip_digest();

/// A powered card that nobody has brought up: manual clock, device nodes of the board, no daughter
/// module, memory wires. For tests of the bring-up itself.
class BareCardTest : public testing::Test {
protected:
    BareCardTest();
    ~BareCardTest() override;

    /// Makes the driver's instance, which brings the card up as far as faults allow. Calls are
    /// logged meanwhile and stay logged.
    /// @return what was printed on standard output.
    std::string bring_up();

    /// The instance. Throws when there is none.
    VexoBcmSdk& sdk();
};

/// A card that is up, with the call log on and empty. Every front-panel port has a link to a memory
/// wire and forwards in all spanning-tree groups.
class CardTest : public BareCardTest {
protected:
    CardTest();
};

/// A card that is up, as the driver leaves it before link scan has seen any port.
class QuietCardTest : public BareCardTest {
protected:
    QuietCardTest();
};

/// Lets every front-panel port forward in all spanning-tree groups, which is a manager's job: the
/// driver leaves ports blocking when their link comes up.
void let_ports_forward();

/// The chip calls logged since the last time.
std::string take_calls();

} // namespace vexokit
