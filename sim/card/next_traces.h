#pragma once

#include <string>
#include <utility>
#include <vector>

#include "sim/chip/port_names.h"
#include "sim/pipeline/observer.h"

namespace vexosim {

/// Tells the way of the next frames. Used under the chip's lock.
class NextTraces : public FrameObserver {
public:
    /// @param port a chip port, or -1 for any.
    void start(unsigned count, int port, const PortNames& names);
    bool done() const { return left_ == 0; }
    std::vector<std::string> take() { return std::exchange(texts_, {}); }

    void arrives(const Chip& chip, const CpuReceive& cpu, int port, FrameView frame) override;

private:
    unsigned left_ = 0;
    int port_ = -1;
    PortNames names_;
    std::vector<std::string> texts_;
};

} // namespace vexosim
