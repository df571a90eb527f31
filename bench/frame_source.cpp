// frame_source INTERFACE DESTINATION SOURCE SECONDS [FRAMES_PER_SECOND]: sends 64-byte frames, FCS
// included, as fast as the interface takes them or at a pace, and prints how many it took.
#include <arpa/inet.h>
#include <linux/if_ether.h>
#include <linux/if_packet.h>
#include <net/if.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

constexpr std::size_t kBatch = 64, kSmallBatch = 16;
constexpr std::size_t kFrame = 60;
using Clock = std::chrono::steady_clock;
using Frame = std::array<std::uint8_t, kFrame>;

bool put_address(const char* text, std::uint8_t* to)
{
    std::array<unsigned, 6> part{};
    if (std::sscanf(text, "%x:%x:%x:%x:%x:%x", &part[0], &part[1], &part[2], &part[3], &part[4],
                    &part[5]) != 6) {
        return false;
    }
    std::transform(part.begin(), part.end(), to,
                   [](unsigned value) { return static_cast<std::uint8_t>(value); });
    return true;
}

// Of the EtherType for experiments: hosts count it and take no more notice.
Frame experiment()
{
    Frame frame{};
    frame[12] = 0x88;
    frame[13] = 0xb5;
    return frame;
}

int open_interface(const char* name)
{
    const int fd = ::socket(AF_PACKET, SOCK_RAW, 0);
    sockaddr_ll address{};
    address.sll_family = AF_PACKET;
    address.sll_ifindex = static_cast<int>(::if_nametoindex(name));
    const int buffer = 8 << 20;
    ::setsockopt(fd, SOL_SOCKET, SO_SNDBUFFORCE, &buffer, sizeof buffer);
    if (address.sll_ifindex == 0 ||
        ::bind(fd, reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        std::perror(name);
        return -1;
    }
    return fd;
}

struct Sent {
    double frames = 0, seconds = 0;
};

// Pace 0: as fast as possible.
Sent send_for(int fd, Frame& frame, double duration, double pace)
{
    iovec part{frame.data(), frame.size()};
    std::array<mmsghdr, kBatch> batch{};
    for (mmsghdr& message : batch) {
        message.msg_hdr.msg_iov = &part;
        message.msg_hdr.msg_iovlen = 1;
    }
    const auto start = Clock::now();
    Sent sent;
    for (;;) {
        sent.seconds = std::chrono::duration<double>(Clock::now() - start).count();
        if (sent.seconds >= duration) {
            return sent;
        }
        const std::size_t size = pace > 0 ? kSmallBatch : kBatch;
        if (pace > 0 && sent.frames + static_cast<double>(size) > sent.seconds * pace) {
            continue;
        }
        const int taken = ::sendmmsg(fd, batch.data(), static_cast<unsigned>(size), 0);
        sent.frames += taken > 0 ? taken : 0;
    }
}

} // namespace

int main(int argc, char** argv)
{
    Frame frame = experiment();
    if (argc < 5 || !put_address(argv[2], frame.data()) || !put_address(argv[3], &frame[6])) {
        std::fprintf(stderr, "usage: frame_source INTERFACE DESTINATION SOURCE SECONDS "
                             "[FRAMES_PER_SECOND]\n");
        return 2;
    }
    const int fd = open_interface(argv[1]);
    if (fd < 0) {
        return 1;
    }
    const Sent sent = send_for(fd, frame, std::atof(argv[4]), argc > 5 ? std::atof(argv[5]) : 0);
    std::printf("%.0f %.6f\n", sent.frames, sent.seconds);
}
