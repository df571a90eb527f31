#pragma once

#include <utility>

#include "sim/card/card.h"
#include "sim/pipeline/outputs.h"

namespace vexosim {

/// Sends what the chip put out to the wires. Without the chip's lock.
void send_to_wires(const Outputs& outputs);

/// Memory for what the chip puts out, one for each thread; used by one caller at a time.
Outputs& thread_outputs();

/// Has the chip put frames out, under its lock, and then sends them.
/// @param body called with the chip and the outputs; its result is returned.
template <class Body>
auto forward(Body&& body)
{
    Outputs& outputs = thread_outputs();
    outputs.clear();
    const auto result = [&] {
        const ChipLock chip;
        outputs.observers = card().observers;
        auto done = body(*chip, outputs);
        for (FrameObserver* observer : outputs.observers)
            observer->batch_ends();
        return done;
    }();
    send_to_wires(outputs);
    return result;
}

} // namespace vexosim
