#include "sim/chip/lpm_trie.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace vexosim {

int IpBits::common(const IpBits& other) const
{
    if (high != other.high)
        return std::countl_zero(high ^ other.high);
    return 64 + std::countl_zero(low ^ other.low);
}

void LpmTrie::add(const IpBits& net, int length, Number number)
{
    if (number >= prefixes_.size())
        prefixes_.resize(std::max<std::size_t>(2 * prefixes_.size(), number + 1u));
    prefixes_[number] = {net, static_cast<std::uint8_t>(length)};
    if (length == 0) {
        all_ = number;
        return;
    }
    make_room();
    const int home = home_depth(length);
    for (Link* link = &root_;; link = &below(*link, net)) {
        if (*link == kNothing) {
            *link = link_to(number);
            return;
        }
        const int depth = std::min({net.common(net_of(*link)) / 4 * 4, depth_of(*link), home});
        if (!is_node(*link) || depth < depth_of(*link))
            split(*link, depth);
        if (depth == home) {
            place(nodes_[*link], number);
            return;
        }
    }
}

void LpmTrie::erase(Number number, Number next)
{
    const Prefix gone = std::exchange(prefixes_[number], {});
    if (gone.length == 0) {
        all_ = kNone;
        return;
    }
    Link* above = nullptr;
    Link* link = &root_;
    while (is_node(*link) && depth_of(*link) != gone.home()) {
        above = link;
        link = &below(*link, gone.net);
    }
    if (is_node(*link)) {
        for (Slot& slot : nodes_[*link].slots)
            slot.number = slot.number == number ? next : slot.number;
        above = link;
    } else {
        *link = kNothing;
    }
    if (above != nullptr)
        tidy(*above);
}

/// So that the node that an addition may need does not move the others.
void LpmTrie::make_room()
{
    if (!free_.empty())
        return;
    const std::size_t had = nodes_.size();
    nodes_.resize(std::min<std::size_t>(had * 2 + 2, kPrefix));
    for (std::size_t i = nodes_.size(); i-- > had;)
        free_.push_back(static_cast<Link>(i));
}

/// Where the node's prefixes and nodes that have the bits of `net` are.
LpmTrie::Link& LpmTrie::below(Link node, const IpBits& net)
{
    return nodes_[node].slots[net.nibble(nodes_[node].depth)].below;
}

const IpBits& LpmTrie::net_of(Link link) const
{
    return is_node(link) ? nodes_[link].net : prefixes_[number_of(link)].net;
}

int LpmTrie::depth_of(Link link) const
{
    return is_node(link) ? nodes_[link].depth : prefixes_[number_of(link)].home();
}

/// Puts a node in between, or one in which a prefix is that was alone.
void LpmTrie::split(Link& link, int depth)
{
    const Link old = std::exchange(link, free_.back());
    free_.pop_back();
    nodes_[link].net = net_of(old);
    nodes_[link].depth = static_cast<std::uint8_t>(depth);
    if (!is_node(old) && depth_of(old) == depth)
        place(nodes_[link], number_of(old));
    else
        below(link, net_of(old)) = old;
}

/// The prefix ends within the node's bits: it has the slots that no longer one has.
void LpmTrie::place(Node& node, Number number)
{
    const auto& [net, length] = prefixes_[number];
    const std::size_t first = net.nibble(node.depth);
    const std::size_t count = std::size_t{1} << (node.depth + 4 - length);
    for (std::size_t i = first; i < first + count; ++i) {
        Number& in_slot = node.slots[i].number;
        in_slot = in_slot == kNone || prefixes_[in_slot].length < length ? number : in_slot;
    }
}

/// Takes a node out that is for one thing only, which takes its place.
void LpmTrie::tidy(Link& link)
{
    Link only = kNothing;
    for (const Slot& slot : nodes_[link].slots) {
        for (const Link thing : {slot.below, link_to(slot.number)}) {
            if (thing != kNothing && only != kNothing && thing != only)
                return;
            only = thing != kNothing ? thing : only;
        }
    }
    nodes_[link] = Node{};
    free_.push_back(std::exchange(link, only));
}

} // namespace vexosim
