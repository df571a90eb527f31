// tap_relay TAP TAP: copies frames between two TAPs with one read and one write each, and nothing
// else. What any program between two TAPs must at least spend.
#include <fcntl.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdio>
#include <string>

namespace {

constexpr int kBurst = 64;

int open_tap(const std::string& name)
{
    const int fd = ::open("/dev/net/tun", O_RDWR | O_NONBLOCK);
    ifreq request{};
    name.copy(request.ifr_name, IFNAMSIZ - 1);
    request.ifr_flags = IFF_TAP | IFF_NO_PI;
    if (fd < 0 || ::ioctl(fd, TUNSETIFF, &request) != 0) {
        std::perror(name.c_str());
        return -1;
    }
    return fd;
}

void copy_burst(int from, int to)
{
    std::array<std::uint8_t, 2048> frame;
    for (int i = 0; i < kBurst; ++i) {
        const ssize_t size = ::read(from, frame.data(), frame.size());
        if (size <= 0) {
            return;
        }
        if (::write(to, frame.data(), static_cast<std::size_t>(size)) < 0) {
            continue; // the far end is down: the frame is lost
        }
    }
}

} // namespace

int main(int argc, char** argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: tap_relay TAP TAP\n");
        return 2;
    }
    std::array<pollfd, 2> ends{{{open_tap(argv[1]), POLLIN, 0}, {open_tap(argv[2]), POLLIN, 0}}};
    if (ends[0].fd < 0 || ends[1].fd < 0) {
        return 1;
    }
    for (;;) {
        ::poll(ends.data(), ends.size(), -1);
        for (std::size_t i = 0; i < ends.size(); ++i) {
            if ((ends[i].revents & POLLIN) != 0) {
                copy_burst(ends[i].fd, ends[1 - i].fd);
            }
        }
    }
}
