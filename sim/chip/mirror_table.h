/// @file
/// Which ports are mirrored, and where to.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// How one port is mirrored.
struct Mirror {
    int destination = -1;    ///< chip-local port; -1: not mirrored
    std::uint32_t flags = 0; ///< BCM_MIRROR_PORT_*

    bool operator==(const Mirror&) const = default;
    void digest(Digest& d) const
    {
        d.add(destination);
        d.add(flags);
    }
};

class MirrorTable {
public:
    int init();
    /// PARAM: not 0 or 1.
    int set_format(int mode);
    /// Flags 0 stop the port's mirroring. PORT: either port; PARAM: flags that say no direction or
    /// nothing known, a port to itself.
    int set(int port, int destination, std::uint32_t flags);

    const Mirror& of(int port) const { return mirrors_[static_cast<std::size_t>(port)]; }
    bool any() const { return (ingress_ | egress_).any(); }
    /// Ports of which what they receive is copied, and what they send.
    PortSet ingress() const { return ingress_; }
    PortSet egress() const { return egress_; }
    /// Copies keep the format in which the frame was received.
    bool as_received() const { return format_ == 1; }

    bool operator==(const MirrorTable&) const = default;
    void digest(Digest& d) const
    {
        d.add(mirrors_);
        d.add(format_);
    }

private:
    std::array<Mirror, kPortCount> mirrors_{};
    PortSet ingress_, egress_;
    int format_ = 0;
};

} // namespace vexosim
