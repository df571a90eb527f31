/// @file
/// The test kit, whole.
///
///     struct Vlan : CardTest {};
///
///     TEST_F(Vlan, AFrameStaysInItsVlan)
///     {
///         sdk().create_vlan(10);
///         sdk().add_ports_to_vlan(10, mps({1, 2, 3}), {});
///         expect_forwarded(udp(host1, host2).tagged(10), 1, {2, 3});
///     }
#pragma once

#include "captured_output.h"
#include "card_test.h"
#include "fault_sweep.h"
#include "frames.h"
#include "wires.h"

using namespace vexokit; // NOLINT(google-build-using-namespace): tests read as sentences
using namespace vexosim; // NOLINT(google-build-using-namespace)
using namespace std::chrono_literals;
