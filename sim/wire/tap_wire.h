#pragma once

#include <array>

#include "sim/wire/fd.h"
#include "sim/wire/io_ring.h"
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

    TapWire(std::string name, Fd fd, bool batched);

private:
    using Transfers = std::array<IoRing::Transfer, IoRing::kTransfers>;

    IoRing* ring_for(std::size_t frames) const;
    std::span<IoRing::Transfer> read(FrameBatch& batch, Transfers& transfers);
    std::size_t send_batched(IoRing& ring, std::span<const FrameView> frames);
    std::size_t send_singly(std::span<const FrameView> frames);
    std::uint64_t kernel_drops() const;

    std::string name_; // as opened; the interface may be renamed and moved afterwards
    Fd fd_;
    bool batched_;             // an IoRing may be used
    std::size_t expected_ = 2; // reads to ask for at once
    std::uint64_t drops_before_ = 0;
};

} // namespace vexosim
