/// @file
/// Trunks: ports that act as one.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// Frames of which a trunk sends one copy, through the member designated for them.
enum class TrunkFlood : std::uint8_t { kUnknownUnicast, kMulticast, kIpMulticast };
inline constexpr std::size_t kTrunkFloods = 3;

/// A trunk. Ports are chip-local; -1 is none.
struct Trunk {
    static constexpr int kNoPort = -1;

    bool exists = false;
    int criterion = 3;        ///< source and destination MAC
    std::vector<int> members; ///< in the order given; a port may be there more than once
    int dlf_port = kNoPort;   ///< for unknown destinations; -1: the first member
    int mc_port = kNoPort;    ///< for multicast and broadcast; -1: the first member
    int ipmc_port = kNoPort;  ///< for IP multicast; -1: the first member

    PortSet ports() const;
    /// The member that sends for the trunk, which has members.
    int designated(TrunkFlood kind) const;

    bool operator==(const Trunk&) const = default;
    void digest(Digest& d) const;
};

/// Trunks by id, which every call answers PARAM for when it is outside the table. Outputs are
/// written on success only.
class TrunkTable {
public:
    static constexpr std::size_t kCapacity = 128;

    /// At most 128.
    explicit TrunkTable(std::size_t capacity = kCapacity);

    /// FULL; PARAM: null.
    int create(int* id);
    /// EXISTS.
    int create_id(int id);
    /// NOT_FOUND.
    int destroy(int id);

    /// Replaces members, criterion and designated ports. A designated port that is not a member
    /// counts as -1. NOT_FOUND; PARAM: no members or more than 8, criterion outside 1 to 6; PORT:
    /// no front port; RESOURCE: a port of another trunk.
    int set(int id, Trunk trunk);
    /// NOT_FOUND; PARAM: criterion outside 1 to 6.
    int set_criterion(int id, int criterion);

    /// 0 when the trunk exists, else NOT_FOUND or PARAM.
    int check(int id) const;
    /// Trunk `id`, which must exist.
    const Trunk& at(int id) const { return trunks_[static_cast<std::size_t>(id)]; }
    /// The trunk that a chip-local port is in, or -1.
    int trunk_of(int port) const { return trunk_of_port_[static_cast<std::size_t>(port)]; }

    /// The ports that act as one with a chip-local port: the members of its trunk, or it alone.
    PortSet companions(int port) const { return companions_[static_cast<std::size_t>(port)]; }
    /// The members of all trunks but the designated ones.
    PortSet not_designated(TrunkFlood kind) const
    {
        return not_designated_[static_cast<std::size_t>(kind)];
    }

    bool operator==(const TrunkTable&) const = default;
    void digest(Digest& d) const;

private:
    bool taken_elsewhere(int id, const std::vector<int>& ports) const;
    void join(int id, const Trunk& trunk);
    void leave(const Trunk& trunk);

    std::vector<Trunk> trunks_;
    std::array<std::int16_t, kPortCount> trunk_of_port_;
    std::array<PortSet, kPortCount> companions_;
    std::array<PortSet, kTrunkFloods> not_designated_{};
};

} // namespace vexosim
