#pragma once

#include "sim/card/task.h"

namespace vexosim {

/// Packet receive: hands the packets that wait for the CPU to the handlers, as fast as the rate
/// limits allow.
class Receiver : public Task {
public:
    std::uint64_t due_us() override { return kNever; }
    void run() override {}
};

} // namespace vexosim
