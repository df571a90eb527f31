#include "tools/vexosh/frame_words.h"

#include <gtest/gtest.h>

using namespace vexosh;

namespace {

Bytes frame(const char* words)
{
    return frame_from_words(split_words(words));
}

std::string error_of(const char* words)
{
    try {
        frame(words);
    } catch (const BadInput& problem) {
        return problem.what();
    }
    return "no error";
}

unsigned ones_sum(const Bytes& bytes, std::size_t from, std::size_t count)
{
    unsigned sum = 0;
    for (std::size_t i = from; i < from + count; i += 2) {
        sum += bytes[i] * 256u + (i + 1 < from + count ? bytes[i + 1] : 0u);
    }
    while (sum > 0xffff) {
        sum = (sum & 0xffff) + (sum >> 16);
    }
    return sum;
}

} // namespace

TEST(FrameWords, AFrameIsPaddedToTheShortestOnAWire)
{
    EXPECT_EQ(frame("type=0x88b5").size(), 60u);
    EXPECT_EQ(frame("type=0x88b5 len=100").size(), 100u);
    EXPECT_EQ(frame("type=0x88b5 len=5").size(), 5u);
}

TEST(FrameWords, AddressesTagsAndTypeStandInWireOrder)
{
    const Bytes bytes =
        frame("src=02:00:00:00:00:0a dst=02:00:00:00:00:0b vlan=10 prio=5 type=0x1234 data=cafe");
    EXPECT_EQ(hex(bytes.data(), 20), "02000000000b02000000000a8100a00a1234cafe");
    EXPECT_EQ(hex(frame("vlan=10 inner=20 type=0x1234").data() + 12, 10), "8100000a810000141234");
}

TEST(FrameWords, IpAndUdpChecksumsAreRight)
{
    const Bytes udp = frame("ip=192.0.2.1>192.0.2.2 udp=1000>2000 data=010203");
    EXPECT_EQ(ones_sum(udp, 14, 20), 0xffffu);
    EXPECT_EQ(describe_frame(udp), "UDP 192.0.2.1:1000 > 192.0.2.2:2000");
    // Over pseudo header (addresses, protocol 17, length 11) and datagram.
    Bytes pseudo(udp.begin() + 26, udp.begin() + 34);
    pseudo.insert(pseudo.end(), {0, 17, 0, 11});
    pseudo.insert(pseudo.end(), udp.begin() + 34, udp.begin() + 45);
    EXPECT_EQ(ones_sum(pseudo, 0, pseudo.size()), 0xffffu);
}

TEST(FrameWords, TcpAndIcmpChecksumsAreRight)
{
    const Bytes tcp = frame("ip=192.0.2.1>192.0.2.2 tcp=1000>80");
    Bytes pseudo(tcp.begin() + 26, tcp.begin() + 34);
    pseudo.insert(pseudo.end(), {0, 6, 0, 20});
    pseudo.insert(pseudo.end(), tcp.begin() + 34, tcp.begin() + 54);
    EXPECT_EQ(ones_sum(pseudo, 0, pseudo.size()), 0xffffu);
    const Bytes icmp = frame("ip=192.0.2.1>192.0.2.2 icmp");
    EXPECT_EQ(ones_sum(icmp, 34, 8), 0xffffu);
}

TEST(FrameWords, DescriptionsNameWhatTheFrameCarries)
{
    EXPECT_EQ(describe_frame(frame("vlan=10 arp=192.0.2.1>192.0.2.2")),
              "vlan 10 ARP who has 192.0.2.2? tell 192.0.2.1");
    EXPECT_EQ(describe_frame(frame("ip=2001:db8::1>2001:db8::2 icmp")),
              "ICMPv6 echo request 2001:db8::1 > 2001:db8::2");
    EXPECT_EQ(describe_frame(frame("ip=192.0.2.1>192.0.2.2 tcp=1000>80")),
              "TCP 192.0.2.1:1000 > 192.0.2.2:80 syn");
    EXPECT_EQ(describe_frame(frame("type=0x88cc")), "LLDP");
    EXPECT_EQ(describe_frame(frame("type=0x9999")), "EtherType 0x9999");
    EXPECT_EQ(describe_frame(Bytes(5)), "a piece of 5 bytes");
}

TEST(FrameWords, AnyBytesCanBeDescribed)
{
    unsigned seed = 1;
    for (int round = 0; round < 20000; ++round) {
        Bytes bytes(seed % 70);
        for (auto& byte : bytes) {
            seed = seed * 1103515245 + 12345;
            byte = static_cast<std::uint8_t>(seed >> 16);
        }
        if (bytes.size() > 13) {
            const unsigned types[] = {0x0800, 0x0806, 0x86dd, 0x8100};
            bytes[12] = static_cast<std::uint8_t>(types[seed % 4] >> 8);
            bytes[13] = static_cast<std::uint8_t>(types[seed % 4]);
        }
        EXPECT_FALSE(describe_frame(bytes).empty());
        seed = seed * 1103515245 + 12345;
    }
}

TEST(FrameWords, ErrorsNameTheWord)
{
    EXPECT_EQ(error_of("src=1"),
              "bad MAC address '1': six bytes like 02:00:00:00:00:01 are wanted");
    EXPECT_EQ(error_of("ip=192.0.2.1"), "bad ip '192.0.2.1': FROM>TO is wanted");
    EXPECT_EQ(error_of("src"), "'src' wants a value, as in src=...");
    EXPECT_EQ(error_of("len=1 len=2"), "'len' stands twice in a frame");
    EXPECT_EQ(error_of("colour=red").substr(0, 33), "unknown word 'colour=red' in a fr");
    EXPECT_EQ(error_of("").substr(0, 20), "a frame is wanted: s");
    EXPECT_EQ(error_of("len=16385").substr(0, 10), "bad length");
}
