#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "frames.h"
#include "vexosim/wire.h"

namespace vexokit {

/// Plugs memory into every front-panel port that has no wire. Far ends are up.
void attach_memory_wires();
/// The memory behind a port. Throws when there is none.
vexosim::MemoryWire& wire(int user_port);

/// What each port has sent since the last time, by user port; ports that sent nothing are absent.
std::map<int, std::vector<TestFrame>> take_sent();
/// The ports that send something when `frame` arrives at a port, e.g. "2 3"; "none".
std::string ports_reached(const TestFrame& frame, int in_port);

/// Expects that a frame which arrives at `in_port` leaves once through each of these front-panel
/// ports and through no other; each copy is the frame, with one tag, its own or none at all.
void expect_forwarded(const TestFrame& frame, int in_port, const std::set<int>& ports);
/// The same, and byte for byte what each port sends.
void expect_copies(const TestFrame& frame, int in_port, const std::map<int, TestFrame>& copies);
/// Expects that the frame reaches neither port nor CPU, and is counted as dropped for a reason
/// ("vlan_unknown", see vexosim/drops.h).
void expect_dropped(const TestFrame& frame, int in_port, const std::string& reason);
/// Expects that the CPU is sent one copy, or none.
void expect_to_cpu(const TestFrame& frame, int in_port, bool to_cpu = true);

/// Whether every frame, and every copy, is accounted for; if not, what is not.
std::string conservation();

} // namespace vexokit
