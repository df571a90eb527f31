/// @file
/// Trunks: ports that act as one.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// A trunk. Ports are chip-local; -1 is none.
struct Trunk {
    static constexpr int kNoPort = -1;

    bool exists = false;
    int criterion = 3;        ///< source and destination MAC
    std::vector<int> members; ///< in the order given; a port may be there more than once
    int dlf_port = kNoPort;   ///< for unknown destinations; -1: the first member
    int mc_port = kNoPort;    ///< for multicast and broadcast; -1: the first member
    int ipmc_port = kNoPort;  ///< for IP multicast; -1: the first member

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

    bool operator==(const TrunkTable&) const = default;
    void digest(Digest& d) const;

private:
    bool taken_elsewhere(int id, const std::vector<int>& ports) const;
    void mark(const std::vector<int>& ports, int id);

    std::vector<Trunk> trunks_;
    std::array<std::int16_t, kPortCount> trunk_of_port_;
};

} // namespace vexosim
