// The frame builders make what they say.
#include <gtest/gtest.h>

#include "tests/kit/frames.h"

using namespace vexokit;

namespace {

std::uint32_t sum16(const vexosim::Frame& bytes, std::size_t from, std::size_t count)
{
    std::uint32_t sum = 0;
    for (std::size_t i = 0; i < count; ++i)
        sum += static_cast<std::uint32_t>(bytes[from + i]) << (i % 2 == 0 ? 8 : 0);
    while (sum > 0xFFFF)
        sum = (sum & 0xFFFF) + (sum >> 16);
    return sum;
}

TEST(Frames, AUdpFrameHasAddressesLengthsAndChecksums)
{
    const vexosim::Frame frame = udp(host1, host2, 19).bytes();
    EXPECT_EQ(describe(frame).substr(0, 44), "61 bytes: 020000000002 020000000001 08004500");
    EXPECT_EQ(sum16(frame, 14, 20), 0xFFFFu) << "IPv4 header";
    const std::uint32_t pseudo = 17 + 8 + 19;
    const std::uint32_t all = sum16(frame, 26, 8) + sum16(frame, 34, 8 + 19) + pseudo;
    EXPECT_EQ((all & 0xFFFF) + (all >> 16), 0xFFFFu) << "UDP";
}

TEST(Frames, ATagGoesInFrontOfTheEtherTypeAndComesOffAgain)
{
    const TestFrame plain = udp(host1, host2);
    const TestFrame tagged = plain.tagged(10, 5);
    EXPECT_EQ(tagged.bytes().size(), plain.bytes().size() + 4);
    EXPECT_EQ(tagged.bytes()[12], 0x81);
    EXPECT_EQ(tagged.bytes()[14], 0xa0);
    EXPECT_EQ(tagged.bytes()[15], 10);
    EXPECT_EQ(tagged.bytes()[16], 0x08);
    EXPECT_EQ(tagged.untagged(), plain);
    EXPECT_EQ(plain.untagged(), plain);
}

TEST(Frames, NoFrameIsShorterThanEthernetAllows)
{
    for (const TestFrame& frame : {udp(host1, host2, 0), arp(host1, host2), bpdu(host1),
                                   lldp(host1), ethernet(host1.mac, host2.mac, 0x88b5)})
        EXPECT_GE(frame.bytes().size(), 60u);
    EXPECT_EQ(udp(host1, host2).sized(20).bytes().size(), 20u);
}

TEST(Frames, GroupFramesGoToTheirGroupsAddress)
{
    EXPECT_EQ(describe(multicast(host1, 0xEF818283u).bytes()).substr(10, 12), "01005e018283");
    EXPECT_EQ(describe(broadcast(host1).bytes()).substr(10, 12), "ffffffffffff");
    EXPECT_EQ(describe(arp(host1, host2).bytes()).substr(10, 12), "ffffffffffff");
    EXPECT_EQ(describe(bpdu(host1).bytes()).substr(10, 12), "0180c2000000");
    EXPECT_EQ(describe(lldp(host1).bytes()).substr(10, 12), "0180c200000e");
}

} // namespace
