#pragma once

#include "sim/card/task.h"

namespace vexosim {

/// Has cables flap, and slow frames arrive, when it is time.
class CableTask : public Task {
public:
    std::uint64_t due_us() override;
    void run() override;
};

} // namespace vexosim
