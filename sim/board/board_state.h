#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <vector>

#include "sim/board/i2c_bus.h"
#include "sim/board/nodes.h"
#include "vexosim/board.h"

namespace vexoboard {

using vexosim::board::Op;

/// An operation's fault: `error` 0 is none.
struct Fault {
    int error = 0;
    unsigned skip = 0;

    /// The errno to fail this one operation with, or 0. Counts it.
    int take();
};

struct NodeState {
    bool present = true;
    std::array<Fault, 6> faults{};

    int take_fault(Op op) { return faults[static_cast<std::size_t>(op)].take(); }
};

struct BoardState {
    std::array<NodeState, node_count> nodes{};
    unsigned daughter_field = 0;
    std::array<std::optional<std::vector<std::uint8_t>>, eeprom_count> eeproms{};
    I2cBus bus;
};

/// The board's state with its lock held. Held across fork, so that a child finds it consistent.
class LockedBoard {
public:
    LockedBoard();
    BoardState* operator->() const { return &state_; }
    BoardState& operator*() const { return state_; }

private:
    std::unique_lock<std::mutex> lock_;
    BoardState& state_;
};

/// Whether the nodes are served. Constant-initialised: read by calls that come before any
/// constructor has run.
extern constinit std::atomic<bool> serving;

} // namespace vexoboard
