#pragma once

#include <sys/socket.h>

#include <array>
#include <cstddef>

#include "vexosim/wire.h"

namespace vexosim {

/// Up to FrameBatch::kMaxFrames frames through a packet socket with one system call.
class PacketBurst {
public:
    struct Result {
        std::size_t frames = 0;
        std::size_t too_long = 0;
        int error = 0; ///< errno of a socket whose interface went down; 0 when just nothing waits
    };

    /// Appends what waits, with VLAN tags put back that the kernel took out of the frames.
    Result receive(int fd, FrameBatch& batch);
    /// @return how many the interface took.
    std::size_t send(int fd, std::span<const FrameView> frames);

private:
    static constexpr std::size_t kMax = FrameBatch::kMaxFrames;

    void prepare(FrameBatch& batch);
    void keep(std::size_t index, FrameBatch& batch, Result& result);

    std::array<mmsghdr, kMax> messages_;
    std::array<iovec, kMax> parts_;
    struct alignas(8) Control {
        std::array<std::uint8_t, 64> bytes;
    };
    std::array<Control, kMax> control_;
    struct alignas(8) Address {
        std::array<std::uint8_t, 32> bytes;
    };
    std::array<Address, kMax> from_;
};

} // namespace vexosim
