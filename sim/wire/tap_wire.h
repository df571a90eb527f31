#pragma once

#include "sim/wire/fd.h"
#include "vexosim/wire.h"

namespace vexosim {

/// A TAP interface: the host behind it is the far end.
class TapWire : public Wire {
public:
    static OpenedWire open(const std::string& name);

    void send(std::span<const FrameView> frames) override;
    bool receive(FrameBatch& batch) override;
    int poll_fd() const override { return fd_.get(); }
    bool carrier() const override;
    void set_carrier(bool up) override;
    std::string describe() const override { return "tap:" + name_; }
    WireCounters counters() const override;

    TapWire(std::string name, Fd fd);

private:
    std::uint64_t kernel_drops() const;

    std::string name_; // as opened; the interface may be renamed and moved afterwards
    Fd fd_;
    std::uint64_t drops_before_ = 0;
};

} // namespace vexosim
