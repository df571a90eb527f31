#pragma once

#include <array>
#include <vector>

#include "sim/wire/fd.h"
#include "vexosim/wire.h"

namespace vexosim {

/// A packet socket on an existing Ethernet interface, usually one end of a veth pair.
class PacketWire : public Wire {
public:
    static OpenedWire open(const std::string& name);

    void send(std::span<const FrameView> frames) override;
    bool receive(FrameBatch& batch) override;
    int poll_fd() const override { return fd_.get(); }
    bool carrier() const override;
    /// Does nothing: an interface that is not ours keeps its state.
    void set_carrier(bool) override {}
    std::string describe() const override { return "veth:" + name_; }
    WireCounters counters() const override;

    PacketWire(std::string name, Fd fd) : name_(std::move(name)), fd_(std::move(fd)) {}

private:
    std::string name_;
    Fd fd_;
    mutable std::mutex statistics_mutex_; // reading them resets the kernel's
    mutable std::uint64_t kernel_drops_ = 0;
};

} // namespace vexosim
