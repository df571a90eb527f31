#include "sim/wire/tap_wire.h"

#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "sim/wire/interface.h"

namespace vexosim {

namespace {

const char* const kDevice = "/dev/net/tun";

std::string open_error(int error)
{
    if (error == EACCES || error == EPERM) {
        return std::string("no permission for ") + kDevice + "; run as root";
    }
    if (error == ENOENT || error == ENXIO || error == ENODEV) {
        return std::string(kDevice) +
               " is missing; load the module tun, or give it to the container";
    }
    return std::string("cannot open ") + kDevice + ": " + std::strerror(error);
}

std::string attach_error(int error)
{
    switch (error) {
    case EPERM:
        return "no permission to create or use this TAP; run as root, or let root create it: "
               "ip tuntap add NAME mode tap user USER";
    case EBUSY:
        return "in use, by another port or another program";
    case EINVAL:
        return "exists and is not a single-queue TAP; name another interface";
    default:
        return std::strerror(error);
    }
}

std::string up_error(int error)
{
    return std::string("cannot be brought up: ") + std::strerror(error) +
           "; run as root, or let root bring it up";
}

// Empty when the descriptor has become the interface and the interface is up.
std::string become(int fd, const std::string& name)
{
    ifreq req{};
    name.copy(req.ifr_name, IFNAMSIZ - 1);
    req.ifr_flags = IFF_TAP | IFF_NO_PI;
    if (::ioctl(fd, TUNSETIFF, &req) != 0) {
        return attach_error(errno);
    }
    const Fd socket(::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0));
    return bring_interface_up(socket.get(), name) ? "" : up_error(errno);
}

} // namespace

OpenedWire TapWire::open(const std::string& name)
{
    std::string why = interface_name_error(name);
    if (!why.empty()) {
        return {nullptr, "tap:" + name + ": " + why};
    }
    Fd fd(::open(kDevice, O_RDWR | O_NONBLOCK | O_CLOEXEC));
    if (!fd) {
        return {nullptr, "tap:" + name + ": " + open_error(errno)};
    }
    // Asked before it is an interface, when no frame can be lost by it.
    IoRing* const ring = IoRing::of_this_thread();
    const bool batched = ring != nullptr && ring->takes(fd.get());
    why = become(fd.get(), name);
    if (!why.empty()) {
        return {nullptr, "tap:" + name + ": " + why};
    }
    return {std::make_unique<TapWire>(name, std::move(fd), batched), {}};
}

TapWire::TapWire(std::string name, Fd fd, bool batched)
    : name_(std::move(name)), fd_(std::move(fd)), batched_(batched), drops_before_(kernel_drops())
{
}

// Pays off from a few frames on.
IoRing* TapWire::ring_for(std::size_t frames) const
{
    return batched_ && frames > 2 ? IoRing::of_this_thread() : nullptr;
}

std::span<IoRing::Transfer> TapWire::read(FrameBatch& batch, Transfers& transfers)
{
    IoRing* const ring = ring_for(expected_);
    const std::size_t count = ring != nullptr ? std::min(expected_, batch.free_frames()) : 1;
    for (std::size_t i = 0; i < count; ++i) {
        const auto room = batch.room(i);
        transfers[i] = {room.data(), room.size()};
    }
    const auto reads = std::span(transfers).first(count);
    if (ring != nullptr) {
        ring->read(fd_.get(), reads);
    } else {
        const ssize_t size = ::read(fd_.get(), reads[0].bytes, reads[0].size);
        reads[0].result = size < 0 ? -errno : static_cast<int>(size);
    }
    return reads;
}

bool TapWire::receive(FrameBatch& batch)
{
    Transfers transfers;
    std::size_t frames = 0, too_long = 0;
    int error = 0;
    while (!batch.full() && error == 0) {
        for (const IoRing::Transfer& read : read(batch, transfers)) {
            if (read.result < 0) {
                error = -read.result;
            } else if (const auto size = static_cast<std::size_t>(read.result);
                       size > FrameBatch::kMaxFrameBytes) {
                ++too_long;
            } else {
                batch.take({read.bytes, size});
                ++frames;
            }
        }
        expected_ = std::clamp<std::size_t>(2 * frames, 2, FrameBatch::kMaxFrames);
    }
    // One more than came this time, to see at once that no other waits.
    expected_ = std::clamp<std::size_t>(frames + 1, 2, FrameBatch::kMaxFrames);
    count_.received.fetch_add(frames, std::memory_order_relaxed);
    count_.too_long.fetch_add(too_long, std::memory_order_relaxed);
    // The kernel's word for a TAP that was deleted under us.
    return error != EBADFD;
}

std::size_t TapWire::send_singly(std::span<const FrameView> frames)
{
    std::size_t sent = 0;
    for (const FrameView frame : frames) {
        sent += ::write(fd_.get(), frame.data(), frame.size()) >= 0 ? 1 : 0;
    }
    return sent;
}

std::size_t TapWire::send_batched(IoRing& ring, std::span<const FrameView> frames)
{
    Transfers transfers;
    std::size_t sent = 0;
    while (!frames.empty()) {
        const std::size_t count = std::min(frames.size(), transfers.size());
        for (std::size_t i = 0; i < count; ++i) {
            // Only read from.
            transfers[i] = {const_cast<std::uint8_t*>(frames[i].data()), frames[i].size()};
        }
        const auto writes = std::span(transfers).first(count);
        ring.write(fd_.get(), writes);
        sent += static_cast<std::size_t>(std::count_if(
            writes.begin(), writes.end(), [](const auto& write) { return write.result >= 0; }));
        frames = frames.subspan(count);
    }
    return sent;
}

void TapWire::send(std::span<const FrameView> frames)
{
    IoRing* const ring = ring_for(frames.size());
    const std::size_t sent = ring != nullptr ? send_batched(*ring, frames) : send_singly(frames);
    count_.sent.fetch_add(sent, std::memory_order_relaxed);
    count_.drops.fetch_add(frames.size() - sent, std::memory_order_relaxed);
}

// A TAP polls writable while its interface is up, in whatever namespace that has been moved to.
bool TapWire::carrier() const
{
    pollfd item{fd_.get(), POLLOUT, 0};
    return ::poll(&item, 1, 0) > 0 && (item.revents & (POLLOUT | POLLERR)) == POLLOUT;
}

void TapWire::set_carrier(bool up)
{
    int value = up ? 1 : 0;
    ::ioctl(fd_.get(), TUNSETCARRIER, &value);
}

std::uint64_t TapWire::kernel_drops() const
{
    ifreq req{};
    if (::ioctl(fd_.get(), TUNGETIFF, &req) != 0) {
        return drops_before_;
    }
    const Fd home(::ioctl(fd_.get(), TUNGETDEVNETNS));
    return interface_transmit_drops(req.ifr_name, home.get());
}

WireCounters TapWire::counters() const
{
    WireCounters now = Wire::counters();
    const std::uint64_t drops = kernel_drops();
    now.receive_overflow = drops > drops_before_ ? drops - drops_before_ : 0;
    return now;
}

} // namespace vexosim
