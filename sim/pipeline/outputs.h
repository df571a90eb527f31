/// @file
/// The copies that a batch of frames makes, by port, until they are given to the wires.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "sim/chip/port_set.h"
#include "sim/pipeline/observer.h"
#include "vexosim/frame.h"

namespace vexosim {

/// Memory for changed frames, taken piece by piece and given back at once. Keeps what it has got.
class FrameArena {
public:
    /// Memory for a frame, until clear().
    std::uint8_t* take(std::size_t bytes);
    void clear() { block_ = used_ = 0; }

private:
    static constexpr std::size_t kBlockBytes = std::size_t{128} * 1024;

    struct Block {
        std::unique_ptr<std::uint8_t[]> memory;
        std::size_t bytes;
    };
    std::vector<Block> blocks_;
    std::size_t block_ = 0, used_ = 0;
};

/// Frames per port, in the order in which they leave. They lie in the arena or, when unchanged,
/// where the sender put them. Reused from batch to batch without allocating.
class Outputs {
public:
    void push(int port, FrameView frame)
    {
        used_.set(port);
        frames_[static_cast<std::size_t>(port)].push_back(frame);
    }
    /// Ports that have frames.
    PortSet used() const { return used_; }
    std::span<const FrameView> frames(int port) const
    {
        return frames_[static_cast<std::size_t>(port)];
    }
    void clear();

    FrameArena arena;
    FrameObservers observers; ///< told of what is put out, and of what is not

private:
    PortSet used_;
    std::array<std::vector<FrameView>, kPortCount> frames_;
};

} // namespace vexosim
