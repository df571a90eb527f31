/// @file
/// Somebody who is told of every frame, e.g. to capture it.
#pragma once

#include <vector>

#include "sim/chip/port_set.h"
#include "vexosim/drops.h"
#include "vexosim/frame.h"

namespace vexosim {

struct Chip;
class CpuReceive;
struct Packet;

/// Told of each frame in this order, under the chip's lock. Views are valid during the call only.
class FrameObserver {
public:
    FrameObserver() = default;
    FrameObserver(const FrameObserver&) = delete;
    FrameObserver& operator=(const FrameObserver&) = delete;
    virtual ~FrameObserver() = default;

    /// A frame comes in at a chip port; the chip is as it was before.
    virtual void arrives(const Chip& /*chip*/, const CpuReceive& /*cpu*/, int /*port*/,
                         FrameView /*frame*/)
    {
    }
    /// All is decided about it.
    virtual void decided(const Packet& /*p*/) {}
    /// It leaves through these ports in this form; through the CPU port: the CPU gets it.
    virtual void leaves(const Packet& /*p*/, PortSet /*ports*/, FrameView /*form*/) {}
    /// These ports would have sent it in this form, and do not.
    virtual void is_lost(const Packet& /*p*/, PortSet /*ports*/, FrameView /*form*/,
                         DropReason /*why*/)
    {
    }
    /// The frames that came in together have all been told of.
    virtual void batch_ends() {}
};

using FrameObservers = std::vector<FrameObserver*>;

} // namespace vexosim
