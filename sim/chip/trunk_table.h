#pragma once

#include <array>
#include <cstdint>
#include <vector>

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
};

/// Trunks by id. Results are SDK codes; outputs are written on success only.
class TrunkTable {
public:
    TrunkTable();

    int create(int* id);
    int create_id(int id);
    int destroy(int id);

    /// Replaces members, criterion and designated ports. A designated port that is not a member
    /// counts as -1.
    int set(int id, Trunk trunk);
    int set_criterion(int id, int criterion);

    /// What an operation on trunk `id` would answer: 0, NOT_FOUND or PARAM.
    int check(int id) const;
    /// Trunk `id`, which must exist.
    const Trunk& at(int id) const { return trunks_[static_cast<std::size_t>(id)]; }
    /// The trunk that a chip-local port is in, or -1.
    int trunk_of(int port) const { return trunk_of_port_[static_cast<std::size_t>(port)]; }

    bool operator==(const TrunkTable&) const = default;

private:
    bool taken_elsewhere(int id, const std::vector<int>& ports) const;
    void mark(const std::vector<int>& ports, int id);

    std::vector<Trunk> trunks_;
    std::array<std::int16_t, 54> trunk_of_port_;
};

} // namespace vexosim
