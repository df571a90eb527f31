#include "sim/wire/packet_wire.h"

#include <arpa/inet.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <net/if_arp.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "sim/wire/interface.h"
#include "sim/wire/packet_burst.h"

namespace vexosim {

namespace {

constexpr int kReceiveBuffer = 8 << 20;

bool is_ethernet(int socket, const std::string& name)
{
    ifreq req{};
    name.copy(req.ifr_name, IFNAMSIZ - 1);
    return ::ioctl(socket, SIOCGIFHWADDR, &req) == 0 && req.ifr_hwaddr.sa_family == ARPHRD_ETHER;
}

template <typename T>
bool set_option(int fd, int option, const T& value)
{
    return ::setsockopt(fd, SOL_PACKET, option, &value, sizeof value) == 0;
}

// Bound last: until then the socket has no protocol and takes nothing.
bool configure(int fd, int index)
{
    packet_mreq promiscuous{};
    promiscuous.mr_ifindex = index;
    promiscuous.mr_type = PACKET_MR_PROMISC;
    sockaddr_ll address{};
    address.sll_family = AF_PACKET;
    address.sll_protocol = htons(ETH_P_ALL);
    address.sll_ifindex = index;
    if (::setsockopt(fd, SOL_SOCKET, SO_RCVBUFFORCE, &kReceiveBuffer, sizeof(int)) != 0) {
        ::setsockopt(fd, SOL_SOCKET, SO_RCVBUF, &kReceiveBuffer, sizeof(int));
    }
    set_option(fd, PACKET_IGNORE_OUTGOING, 1); // receiving checks it too, for kernels before 4.20
    return set_option(fd, PACKET_AUXDATA, 1) &&
           set_option(fd, PACKET_ADD_MEMBERSHIP, promiscuous) &&
           ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

// Empty when the socket is on the interface and the interface is up.
std::string use(int fd, const std::string& name)
{
    const unsigned index = ::if_nametoindex(name.c_str());
    if (index == 0) {
        return "no such interface; create it with: ip link add " + name +
               " type veth peer name PEER";
    }
    if (!is_ethernet(fd, name)) {
        return "not an Ethernet interface";
    }
    if (!bring_interface_up(fd, name) || !configure(fd, static_cast<int>(index))) {
        return std::strerror(errno);
    }
    return {};
}

std::string socket_error(int error)
{
    return error == EPERM ? "no permission for packet sockets; run as root"
                          : std::string("no packet socket: ") + std::strerror(error);
}

} // namespace

OpenedWire PacketWire::open(const std::string& name)
{
    std::string why = interface_name_error(name);
    if (!why.empty()) {
        return {nullptr, "veth:" + name + ": " + why};
    }
    Fd fd(::socket(AF_PACKET, SOCK_RAW | SOCK_NONBLOCK | SOCK_CLOEXEC, 0));
    why = fd ? use(fd.get(), name) : socket_error(errno);
    if (!why.empty()) {
        return {nullptr, "veth:" + name + ": " + why};
    }
    return {std::make_unique<PacketWire>(name, std::move(fd)), {}};
}

bool PacketWire::receive(FrameBatch& batch)
{
    PacketBurst burst;
    const PacketBurst::Result got = burst.receive(fd_.get(), batch);
    count_.received.fetch_add(got.frames, std::memory_order_relaxed);
    count_.too_long.fetch_add(got.too_long, std::memory_order_relaxed);
    // The interface may only have been set down: that ends nothing.
    return got.error == 0 || interface_flags(fd_.get(), name_).has_value();
}

void PacketWire::send(std::span<const FrameView> frames)
{
    std::size_t sent = 0;
    for (std::size_t at = 0; at < frames.size(); at += FrameBatch::kMaxFrames) {
        PacketBurst burst;
        sent += burst.send(
            fd_.get(), frames.subspan(at, std::min(frames.size() - at, FrameBatch::kMaxFrames)));
    }
    count_.sent.fetch_add(sent, std::memory_order_relaxed);
    count_.drops.fetch_add(frames.size() - sent, std::memory_order_relaxed);
}

bool PacketWire::carrier() const
{
    return interface_has_link(fd_.get(), name_);
}

WireCounters PacketWire::counters() const
{
    WireCounters now = Wire::counters();
    const std::lock_guard lock(statistics_mutex_);
    tpacket_stats kernel{};
    socklen_t size = sizeof kernel;
    if (::getsockopt(fd_.get(), SOL_PACKET, PACKET_STATISTICS, &kernel, &size) == 0) {
        kernel_drops_ += kernel.tp_drops;
    }
    now.receive_overflow = kernel_drops_;
    return now;
}

} // namespace vexosim
