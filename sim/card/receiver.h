#pragma once

#include <array>

#include "sim/card/task.h"
#include "sim/pipeline/cpu_receive.h"

namespace vexosim {

/// Packet receive: hands the frames that wait for the CPU to the handlers, as fast as the rate
/// limits allow.
class Receiver : public Task {
public:
    CpuReceive queues; ///< under the chip's lock

    std::uint64_t due_us() override;
    void run() override;

private:
    std::size_t take();

    std::array<CpuFrame, 32> frames_; // used by run() only
};

} // namespace vexosim
