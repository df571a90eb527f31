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
    /// Whether the first `bits`, 0 to 128, are the same.
    bool agrees(const IpBits& other, int bits) const
    {
        if (bits < 64) [[likely]]
            return (high ^ other.high) >> 1 >> (63 - bits) == 0;
        return high == other.high && (bits == 64 || (low ^ other.low) >> (128 - bits) == 0);
    }
    /// How many of the first bits are the same.
    int common(const IpBits& other) const;
};

/// Prefixes of one family, each with a number. A node looks at four bits of the address and stands
/// for the prefixes that end within them: each of its 16 slots has the longest of these that the
/// slot's bits have. There are nodes only where prefixes part: a prefix that is alone behind a slot
/// is named there, and a node knows the bits in front of its own. So there are fewer nodes than
/// prefixes, 16,384 random ones are found in 3 or 4 steps, whatever the family, and a change
/// touches two nodes at most.
class LpmTrie {
public:
    using Number = std::uint16_t;
    static constexpr Number kNone = 0;

    /// Bits of the prefix that the nodes in front of its own look at; length is 1 to 128.
    static constexpr int home_depth(int length) { return (length - 1) / 4 * 4; }

    /// Adds a prefix of 0 to 128 bits that is not there; no other bits of `net` are set. Numbers
    /// are 1 to 32,767, each of one prefix.
    void add(const IpBits& net, int length, Number number);
    /// Removes a prefix that is there. In its place is the longest of the shorter ones that contain
    /// it, if that has more bits than home_depth(), else kNone.
    void erase(Number number, Number next);

    /// The number of the longest prefix that the address has, or kNone.
    Number find(const IpBits& address) const
    {
        Number best = all_;
        Link link = root_;
        while (is_node(link)) {
            const Node& node = nodes_[link];
            if (!address.agrees(node.net, node.depth))
                return best;
            const Slot& slot = node.slots[address.nibble(node.depth)];
            best = slot.number != kNone ? slot.number : best;
            link = slot.below;
        }
        const bool found = link != kNothing && has(address, prefixes_[number_of(link)]);
        return found ? number_of(link) : best;
    }

private:
    /// A node, or with the highest bit set the number of a prefix; with number 0 it is nothing.
    using Link = std::uint16_t;
    static constexpr Link kPrefix = 0x8000, kNothing = kPrefix;
    static bool is_node(Link link) { return link < kPrefix; }
    static Number number_of(Link link) { return static_cast<Number>(link - kPrefix); }
    static Link link_to(Number number) { return static_cast<Link>(number + kPrefix); }

    struct Slot {
        Number number = kNone;
        Link below = kNothing;
    };
    struct alignas(64) Node {
        IpBits net; // the bits in front of the node's own, and others that do not count
        std::uint8_t depth = 0;
        std::array<Slot, 16> slots;
    };
    struct Prefix {
        IpBits net;
        std::uint8_t length = 0;

        int home() const { return home_depth(length); }
    };
    static bool has(const IpBits& address, const Prefix& prefix)
    {
        return address.agrees(prefix.net, prefix.length);
    }

    void make_room();
    Link& below(Link node, const IpBits& net);
    const IpBits& net_of(Link link) const;
    int depth_of(Link link) const;
    void split(Link& link, int depth);
    void place(Node& node, Number number);
    void tidy(Link& link);

    Number all_ = kNone; // of the prefix without bits
    Link root_ = kNothing;
    std::vector<Node> nodes_;
    std::vector<Link> free_;
    std::vector<Prefix> prefixes_; // by number
};

} // namespace vexosim
