#pragma once

#include <array>
#include <cstdint>

namespace vexosim {

/// How one port is mirrored.
struct Mirror {
    int destination = -1;    ///< chip-local port; -1: not mirrored
    std::uint32_t flags = 0; ///< BCM_MIRROR_PORT_*

    bool operator==(const Mirror&) const = default;
};

/// Port mirroring, by chip-local port. Results are SDK codes.
class MirrorTable {
public:
    int init();
    int set_format(int mode);
    int set(int port, int destination, std::uint32_t flags);

    const Mirror& of(int port) const { return mirrors_[static_cast<std::size_t>(port)]; }
    /// Copies keep the format in which the frame was received.
    bool as_received() const { return format_ == 1; }

    bool operator==(const MirrorTable&) const = default;

private:
    std::array<Mirror, 54> mirrors_{};
    int format_ = 0;
};

} // namespace vexosim
