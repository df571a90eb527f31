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

#include "tests/kit/captured_output.h"
#include "tests/kit/card_test.h"
#include "tests/kit/fault_sweep.h"
#include "tests/kit/frames.h"
#include "tests/kit/wires.h"

using namespace vexokit; // NOLINT(google-build-using-namespace): tests read as sentences
using namespace vexosim; // NOLINT(google-build-using-namespace)
using namespace std::chrono_literals;
