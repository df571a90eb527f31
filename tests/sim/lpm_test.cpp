// The longest prefix, against a search through all of them.
#include <gtest/gtest.h>

#include <map>
#include <random>

#include "sim/chip/l3_forwarding_table.h"

namespace {

using namespace vexosim;

/// Prefixes that share many of their bits, so that nodes are split and joined in every way.
class Networks {
public:
    Networks(bool ip6, std::uint32_t seed) : random_(seed), ip6_(ip6) {}

    IpAddress address()
    {
        std::uint8_t bytes[16];
        for (std::uint8_t& byte : bytes)
            byte = kBytes[pick(4)];
        if (ip6_)
            return IpAddress::from_ip6(bytes);
        IpAddress v4;
        std::copy_n(bytes, 4, v4.bytes.begin());
        return v4;
    }
    IpPrefix prefix()
    {
        const int length = static_cast<int>(pick(ip6_ ? 129 : 33));
        return {address().masked(length), length};
    }
    unsigned pick(unsigned below) { return static_cast<unsigned>(random_()) % below; }

private:
    static constexpr std::uint8_t kBytes[] = {0, 0x0f, 0x80, 0xff};
    std::mt19937 random_;
    bool ip6_;
};

using All = std::map<IpPrefix, unsigned>;

/// The interface of the longest prefix that has the address, or -1.
int brute_force(const All& all, const IpAddress& address)
{
    int best = -1, length = -1;
    for (const auto& [prefix, id] : all) {
        if (prefix.length > length && prefix.contains(address)) {
            best = static_cast<int>(id);
            length = prefix.length;
        }
    }
    return best;
}

int find(const L3RouteTable& table, const IpAddress& address)
{
    const auto number = table.longest(address);
    return number == 0 ? -1 : static_cast<int>(table.item(number).entry.next_hop.interface);
}

struct Lpm : testing::TestWithParam<bool> {
    L3RouteTable table;
    All all;
    Networks networks{GetParam(), 1};

    void add(const IpPrefix& prefix, unsigned id)
    {
        const int rc = table.add(prefix, {{id, 0, false, 0, 0}, false}, false);
        ASSERT_EQ(rc == 0, all.emplace(prefix, id).second);
    }
    /// By value: it may be the key in `all`.
    void erase(IpPrefix prefix) { ASSERT_EQ(table.erase(prefix) == 0, all.erase(prefix) != 0); }
    void compare(int addresses)
    {
        for (int i = 0; i < addresses; ++i) {
            const IpAddress address = networks.address();
            ASSERT_EQ(find(table, address), brute_force(all, address)) << i;
        }
    }
};

TEST_P(Lpm, RandomPrefixesAreFoundAsASearchThroughAllFindsThem)
{
    for (unsigned i = 0; i < 1000; ++i)
        add(networks.prefix(), i);
    compare(2000);
}

TEST_P(Lpm, AlsoWhileTheyComeAndGo)
{
    for (unsigned i = 0; i < 3000; ++i) {
        if (networks.pick(2) == 0)
            add(networks.prefix(), i);
        else if (!all.empty())
            erase(std::next(all.begin(), networks.pick(static_cast<unsigned>(all.size())))->first);
        compare(5);
    }
}

TEST_P(Lpm, WhatHasComeAndGoneLeavesNothingBehind)
{
    for (int round = 0; round < 40; ++round) {
        for (unsigned i = 0; i < 1000; ++i)
            add(networks.prefix(), i);
        while (!all.empty())
            erase(all.begin()->first);
        compare(10);
    }
    EXPECT_EQ(table, L3RouteTable{});
    EXPECT_EQ(table.longest(networks.address()), 0);
}

TEST_P(Lpm, ACopyFindsTheSame)
{
    for (unsigned i = 0; i < 100; ++i)
        add(networks.prefix(), i);
    L3RouteTable copy = table;
    EXPECT_EQ(copy, table);
    table.erase_if([](const IpPrefix&, const L3Route&) { return true; });
    EXPECT_NE(copy, table);
    for (int i = 0; i < 100; ++i) {
        const IpAddress address = networks.address();
        EXPECT_EQ(find(copy, address), brute_force(all, address));
    }
}

INSTANTIATE_TEST_SUITE_P(Family, Lpm, testing::Bool(),
                         [](const auto& family) { return family.param ? "Ip6" : "Ip4"; });

/// As many as the table holds, each with all bits of its own.
TEST(LpmCapacity, AFullTableOfHostRoutesIsFound)
{
    L3RouteTable table;
    const auto address = [](std::uint32_t i) {
        const std::uint32_t mixed = i * 0x9e3779b1u;
        return IpAddress::from_ip4(mixed);
    };
    for (std::uint32_t i = 0; i < L3RouteTable::kCapacity; ++i)
        ASSERT_EQ(table.add({address(i), 32}, {{i % 512, 0, false, 0, 0}, false}, false), 0);
    for (std::uint32_t i = 0; i < L3RouteTable::kCapacity; ++i)
        ASSERT_EQ(find(table, address(i)), static_cast<int>(i % 512));
    for (std::uint32_t i = 0; i < L3RouteTable::kCapacity; i += 2)
        ASSERT_EQ(table.erase({address(i), 32}), 0);
    for (std::uint32_t i = 0; i < L3RouteTable::kCapacity; ++i)
        ASSERT_EQ(find(table, address(i)), i % 2 == 0 ? -1 : static_cast<int>(i % 512));
}

IpBits scattered(std::uint32_t i, std::uint32_t flipped = 0)
{
    return IpBits(IpAddress::from_ip4(i * 0x9e3779b1u ^ flipped));
}

TEST(LpmCapacity, ATrieHasRoomFor32767Prefixes)
{
    LpmTrie trie;
    for (std::uint32_t i = 1; i <= 32767; ++i)
        trie.add(scattered(i), 32, static_cast<LpmTrie::Number>(i));
    for (std::uint32_t i = 1; i <= 32767; ++i)
        ASSERT_EQ(trie.find(scattered(i)), i);
}

/// Two prefixes take a node: where they part, at their last nibble but one.
TEST(LpmCapacity, TheNodesOfPrefixesThatGoAreUsedAgain)
{
    LpmTrie trie;
    for (std::uint32_t i = 0; i < 100'000; ++i) {
        const IpBits one = scattered(i), other = scattered(i, 0x10);
        trie.add(one, 32, 1);
        trie.add(other, 32, 2);
        ASSERT_EQ(trie.find(one), 1) << i;
        ASSERT_EQ(trie.find(other), 2) << i;
        trie.erase(1, LpmTrie::kNone);
        ASSERT_EQ(trie.find(one), LpmTrie::kNone) << i;
        ASSERT_EQ(trie.find(other), 2) << i;
        trie.erase(2, LpmTrie::kNone);
    }
}

} // namespace
