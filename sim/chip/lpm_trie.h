/// @file
/// The longest of many prefixes that an address has.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "sim/chip/l3_types.h"

namespace vexosim {

/// Up to 128 bits of an address, the first bit on the wire is the highest.
struct IpBits {
    std::uint64_t high = 0, low = 0;

    explicit IpBits(const IpAddress& address) : high(address.high()), low(address.low()) {}
    IpBits() = default;

    /// The four bits from `at` on, a multiple of 4 below 128.
    unsigned nibble(int at) const
    {
        return static_cast<unsigned>((at < 64 ? high >> (60 - at) : low >> (124 - at)) & 15);
    }
    /// Whether the first `bits`, 0 to 127, are the same.
    bool agrees(const IpBits& other, int bits) const
    {
        if (bits < 64) [[likely]]
            return (high ^ other.high) >> 1 >> (63 - bits) == 0;
        return high == other.high && (low ^ other.low) >> 1 >> (127 - bits) == 0;
    }
    /// How many of the first bits are the same.
    int common(const IpBits& other) const;
};

/// Prefixes of one family, each with a number. A node looks at four bits of the address and stands
/// for the prefixes that end within them: each of its 16 slots has the longest of these that the
/// slot's bits have. Nodes that would have one child and no prefix are left out, and a node knows
/// the bits in front of its own. So 16,384 random prefixes are found in 4 or 5 steps, whatever the
/// family; there are at most two nodes for each prefix; and a change touches two nodes at most.
class LpmTrie {
public:
    using Number = std::uint16_t;
    static constexpr Number kNone = 0;

    /// Bits of the prefix that the nodes in front of its own look at; length is 1 to 128.
    static constexpr int home_depth(int length) { return (length - 1) / 4 * 4; }

    /// Adds a prefix of 0 to 128 bits that is not there; no other bits of `net` are set. At most
    /// 32,767 prefixes.
    void add(const IpBits& net, int length, Number number);
    /// Removes a prefix that is there. In its place is the longest of the shorter ones that contain
    /// it, if that has more bits than home_depth(): its length and number, else 0 and kNone.
    void erase(const IpBits& net, int length, int next_length, Number next);

    /// The number of the longest prefix that the address has, or kNone.
    Number find(const IpBits& address) const
    {
        Number best = all_;
        for (Index i = root_; i != 0;) {
            const Node& node = nodes_[i];
            if (!address.agrees(node.net, node.depth))
                break;
            const Slot& slot = node.slots[address.nibble(node.depth)];
            best = slot.number != kNone ? slot.number : best;
            i = slot.child;
        }
        return best;
    }

private:
    using Index = std::uint16_t; // 0: no node

    struct Slot {
        Number number = kNone;
        Index child = 0;
    };
    struct alignas(64) Node {
        IpBits net; // the bits in front of the node's own, and others that do not count
        std::uint8_t depth = 0;
        std::array<std::uint8_t, 16> lengths{}; // by slot, of the prefix
        std::array<Slot, 16> slots;
    };

    void make_room();
    Index take(const IpBits& net, int depth);
    void give_back(Index& link);
    Index home(const IpBits& net, int depth);
    bool tidy(Index& link);
    template <class Change>
    void for_slots(Node& node, const IpBits& net, int length, Change change);

    Number all_ = kNone; // of the prefix without bits
    Index root_ = 0;
    std::vector<Node> nodes_;
    std::vector<Index> free_;
};

} // namespace vexosim
