#include "sim/wire/interface.h"

#include <fcntl.h>
#include <linux/ethtool.h>
#include <linux/sockios.h>
#include <net/if.h>
#include <sched.h>
#include <sys/ioctl.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "sim/wire/fd.h"

namespace vexosim {

namespace {

ifreq request(const std::string& name)
{
    ifreq req{};
    name.copy(req.ifr_name, IFNAMSIZ - 1);
    return req;
}

// Lets this thread, and no other, see another network namespace for a while.
class NamespaceVisit {
public:
    explicit NamespaceVisit(int target)
    {
        if (target >= 0) {
            home_ = Fd(::open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC));
            there_ = home_ && ::setns(target, CLONE_NEWNET) == 0;
        }
    }
    NamespaceVisit(const NamespaceVisit&) = delete;
    NamespaceVisit& operator=(const NamespaceVisit&) = delete;
    ~NamespaceVisit()
    {
        if (there_) {
            ::setns(home_.get(), CLONE_NEWNET);
        }
    }

private:
    Fd home_;
    bool there_ = false;
};

} // namespace

std::string interface_name_error(const std::string& name)
{
    if (name.empty()) {
        return "an interface name is missing";
    }
    if (name.size() >= IFNAMSIZ) {
        return "the interface name is too long; at most 15 characters are allowed";
    }
    // The kernel would take '%' for a pattern and choose a name of its own.
    if (name.find_first_of("/:% \t\n\v\f\r") != std::string::npos || name == "." || name == "..") {
        return "not an interface name";
    }
    return {};
}

std::optional<unsigned> interface_flags(int socket, const std::string& name)
{
    ifreq req = request(name);
    if (::ioctl(socket, SIOCGIFFLAGS, &req) != 0) {
        return std::nullopt;
    }
    return static_cast<unsigned short>(req.ifr_flags);
}

// Asked this way the kernel first acts on link changes that it has only noted, so that an interface
// that has just come up also takes frames. IFF_RUNNING lags behind.
bool interface_has_link(int socket, const std::string& name)
{
    const unsigned flags = interface_flags(socket, name).value_or(0);
    ethtool_value link{ETHTOOL_GLINK, 0};
    ifreq req = request(name);
    req.ifr_data = reinterpret_cast<char*>(&link);
    if (::ioctl(socket, SIOCETHTOOL, &req) != 0) {
        link.data = flags & IFF_RUNNING;
    }
    return (flags & IFF_UP) != 0 && link.data != 0;
}

bool bring_interface_up(int socket, const std::string& name)
{
    const auto flags = interface_flags(socket, name);
    if (!flags || (*flags & IFF_UP) != 0) {
        return flags.has_value();
    }
    ifreq req = request(name);
    req.ifr_flags = static_cast<short>(*flags | IFF_UP);
    return ::ioctl(socket, SIOCSIFFLAGS, &req) == 0;
}

std::uint64_t interface_transmit_drops(const std::string& name, int net_namespace)
{
    const NamespaceVisit visit(net_namespace);
    std::ifstream table("/proc/thread-self/net/dev");
    for (std::string line; std::getline(table, line);) {
        const auto colon = line.find(':');
        const auto begin = line.find_first_not_of(' ');
        if (colon == std::string::npos || line.substr(begin, colon - begin) != name) {
            continue;
        }
        std::istringstream numbers(line.substr(colon + 1));
        std::uint64_t value = 0;
        for (int column = 0; column < 12; ++column) { // 8 of receive, bytes, packets, errors, drops
            numbers >> value;
        }
        return value;
    }
    return 0;
}

} // namespace vexosim
