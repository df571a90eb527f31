#include "sim/chip/lpm_trie.h"

#include <algorithm>
#include <bit>

namespace vexosim {

int IpBits::common(const IpBits& other) const
{
    if (high != other.high)
        return std::countl_zero(high ^ other.high);
    return 64 + std::countl_zero(low ^ other.low);
}

/// The slots of a node whose bits have a prefix that ends there.
template <class Change>
void LpmTrie::for_slots(Node& node, const IpBits& net, int length, Change change)
{
    const std::size_t first = net.nibble(node.depth);
    const std::size_t count = std::size_t{1} << (node.depth + 4 - length);
    for (std::size_t i = first; i < first + count; ++i)
        change(node.slots[i], node.lengths[i]);
}

void LpmTrie::add(const IpBits& net, int length, Number number)
{
    if (length == 0) {
        all_ = number;
        return;
    }
    make_room();
    Node& node = nodes_[home(net, home_depth(length))];
    for_slots(node, net, length, [&](Slot& slot, std::uint8_t& of) {
        if (of > length)
            return;
        slot.number = number;
        of = static_cast<std::uint8_t>(length);
    });
}

void LpmTrie::erase(const IpBits& net, int length, int next_length, Number next)
{
    if (length == 0) {
        all_ = kNone;
        return;
    }
    Index* above = nullptr;
    Index* link = &root_;
    while (nodes_[*link].depth != home_depth(length)) {
        above = link;
        link = &nodes_[*link].slots[net.nibble(nodes_[*link].depth)].child;
    }
    for_slots(nodes_[*link], net, length, [&](Slot& slot, std::uint8_t& of) {
        if (of != length)
            return;
        slot.number = next;
        of = static_cast<std::uint8_t>(next_length);
    });
    if (tidy(*link) && above != nullptr)
        tidy(*above);
}

/// So that the two nodes that an addition may need do not move the others.
void LpmTrie::make_room()
{
    if (free_.size() >= 2)
        return;
    const std::size_t had = std::max<std::size_t>(nodes_.size(), 1); // node 0 is none
    nodes_.resize(std::min<std::size_t>(had * 2 + 2, 0x10000));
    for (std::size_t i = nodes_.size(); i-- > had;)
        free_.push_back(static_cast<Index>(i));
}

LpmTrie::Index LpmTrie::take(const IpBits& net, int depth)
{
    const Index taken = free_.back();
    free_.pop_back();
    nodes_[taken].net = net;
    nodes_[taken].depth = static_cast<std::uint8_t>(depth);
    return taken;
}

void LpmTrie::give_back(Index& link)
{
    const Index gone = link;
    link = 0;
    nodes_[gone] = Node{};
    free_.push_back(gone);
}

/// The node for prefixes that end behind `depth` bits of `net`, made if there is none.
LpmTrie::Index LpmTrie::home(const IpBits& net, int depth)
{
    Index* link = &root_;
    while (*link != 0) {
        const Index below = *link;
        const int known = nodes_[below].depth;
        const int same = std::min({net.common(nodes_[below].net) / 4 * 4, depth, known});
        if (same < known) { // a node in between
            *link = take(net, same);
            nodes_[*link].slots[nodes_[below].net.nibble(same)].child = below;
        }
        if (same == depth)
            return *link;
        link = &nodes_[*link].slots[net.nibble(same)].child;
    }
    return *link = take(net, depth);
}

/// Takes a node out that has no prefix and fewer than two children.
/// @return whether it left nothing behind.
bool LpmTrie::tidy(Index& link)
{
    Node& node = nodes_[link];
    Index child = 0;
    for (const Slot& slot : node.slots) {
        if (slot.number != kNone || (slot.child != 0 && child != 0))
            return false;
        child = slot.child != 0 ? slot.child : child;
    }
    give_back(link);
    link = child;
    return child == 0;
}

} // namespace vexosim
