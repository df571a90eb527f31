// Which frames have which fields. Each row drops what one match finds.
#include "tests/sim/field_path.h"

namespace vexosim {

namespace {

using FieldMatching = FieldPath;

constexpr std::uint32_t kIpA = 0x0a000001, kIpB = 0x0a000002;

/// An IP packet with protocol 17, TOS 0x2c and ports 1000 and 2000, 20 or 40 bytes of header.
TestFrame packet(int type)
{
    TestFrame base(kHostB, kHostA);
    base.type(type);
    Frame bytes = base.ip(kIpB, kIpA).bytes();
    const bool is_4 = type == 0x0800;
    const std::size_t l4 = is_4 ? 34 : 54;
    bytes.resize(64);
    bytes[14] = is_4 ? 0x45 : 0x62;
    bytes[15] = is_4 ? 0x2c : 0xc0;
    bytes[is_4 ? 23 : 20] = 17;
    const std::uint8_t ports[] = {0x03, 0xe8, 0x07, 0xd0};
    std::copy(std::begin(ports), std::end(ports), bytes.begin() + static_cast<long>(l4));
    return TestFrame(bytes);
}

TestFrame with(const TestFrame& frame, std::size_t at, std::uint8_t value)
{
    Frame bytes = frame.bytes();
    bytes[at] = value;
    return TestFrame(bytes);
}

TestFrame cut(const TestFrame& frame, std::size_t bytes)
{
    return TestFrame(
        Frame(frame.bytes().begin(), frame.bytes().begin() + static_cast<long>(bytes)));
}

const FieldMatch kSrcIp = is(bcmFieldQualifySrcIp, kIpA), kDstIp = is(bcmFieldQualifyDstIp, kIpB),
                 kSrcPort = is(bcmFieldQualifyL4SrcPort, 1000),
                 kDstPort = is(bcmFieldQualifyL4DstPort, 2000),
                 kProtocol = is(bcmFieldQualifyIpProtocol, 17), kTos = is(bcmFieldQualifyTos, 0x2c),
                 kIp = is(bcmFieldQualifyIpType, 8), kArp = is(bcmFieldQualifyIpType, 9);

struct Row {
    const char* what;
    FieldMatch match;
    TestFrame frame;
    bool matches;
};

TEST_F(FieldMatching, LooksAtTheseFields)
{
    const TestFrame ip4 = packet(0x0800), ip6 = packet(0x86dd), two = ip4.tag(9).tag(1);
    TestFrame arp(kHostB, kHostA), length(kHostB, kHostA);
    arp.type(0x0806);
    length.type(0x05ff);
    const Row rows[] = {
        {"ingress port", is(bcmFieldQualifyInPort, 1), ip4, true},
        {"another port", is(bcmFieldQualifyInPort, 2), ip4, false},
        {"source", is(bcmFieldQualifySrcMac, kHostA), ip4, true},
        {"source, not destination", is(bcmFieldQualifySrcMac, kHostB), ip4, false},
        {"masked source", is(bcmFieldQualifySrcMac, 0x00aa000000ff, 0xffffffffff00), ip4, true},
        {"type", is(bcmFieldQualifyEtherType, 0x0800), ip4, true},
        {"type behind a tag", is(bcmFieldQualifyEtherType, 0x0800), ip4.tag(1), true},
        {"type behind two tags", is(bcmFieldQualifyEtherType, 0x0800), two, true},
        {"type of the inner tag", is(bcmFieldQualifyEtherType, 0x8100), two, false},
        {"a length", is(bcmFieldQualifyEtherType, 0x05ff), length, false},
        {"VLAN of the port", is(bcmFieldQualifyOuterVlanId, 1), ip4, true},
        {"VLAN of the tag", is(bcmFieldQualifyOuterVlanId, 1), ip4.tag(1), true},
        {"VLAN of the inner tag", is(bcmFieldQualifyOuterVlanId, 9), two, false},
        {"priority of the tag", is(bcmFieldQualifyOuterVlanPri, 6), ip4.tag(0, 6), true},
        {"priority of the port", is(bcmFieldQualifyOuterVlanPri, 6), ip4, false},
        {"IPv4 source", kSrcIp, ip4, true},
        {"IPv4 source behind two tags", kSrcIp, two, true},
        {"a network", is(bcmFieldQualifySrcIp, 0x0a0000ff, 0xffffff00), ip4, true},
        {"IPv4 destination", kDstIp, ip4, true},
        {"IPv6 has no IPv4 source", kSrcIp, ip6, false},
        {"TOS", kTos, ip4, true},
        {"traffic class", kTos, ip6, true},
        {"IPv4 protocol", kProtocol, ip4, true},
        {"IPv6 next header", kProtocol, ip6, true},
        {"source port", kSrcPort, ip4, true},
        {"destination port", kDstPort, ip4, true},
        {"destination port, not source", is(bcmFieldQualifyL4DstPort, 1000), ip4, false},
        {"IPv6 destination port", kDstPort, ip6, true},
        {"TCP has ports", kDstPort, with(ip4, 23, 6), true},
        {"ICMP has none", kDstPort, with(ip4, 23, 1), false},
        {"first fragment", kDstPort, with(ip4, 20, 0x20), true},
        {"later fragment", kDstPort, with(ip4, 21, 1), false},
        {"protocol of a later fragment", kProtocol, with(ip4, 21, 1), true},
        {"options in front of the ports", kDstPort, with(ip4, 14, 0x46), false},
        {"ports cut off", kDstPort, cut(ip4, 37), false},
        {"ports just there", kDstPort, cut(ip4, 38), true},
        {"header cut short", kProtocol, cut(ip4, 33), false},
        {"header just whole", kProtocol, cut(ip4, 34), true},
        {"options cut short", kProtocol, cut(with(ip4, 14, 0x46), 37), false},
        {"too short a header length", kSrcIp, with(ip4, 14, 0x44), false},
        {"version 5", kSrcIp, with(ip4, 14, 0x55), false},
        {"IPv6 header cut short", kProtocol, cut(ip6, 53), false},
        {"IPv4 is IP", kIp, ip4, true},
        {"IPv6 is IP", kIp, ip6, true},
        {"a cut header is not IP", kIp, cut(ip4, 33), false},
        {"ARP is not IP", kIp, arp, false},
        {"ARP", kArp, arp, true},
        {"ARP behind two tags", kArp, arp.tag(2).tag(1), true},
        {"IP is not ARP", kArp, ip4, false},
    };
    for (const Row& row : rows) {
        const int id = entry(row.match, {kDropIt});
        EXPECT_EQ(matches(row.frame), row.matches) << row.what;
        EXPECT_EQ(counted(id), row.matches ? 1u : 0u) << row.what;
        const int g = chip.field.find(id)->group;
        EXPECT_EQ(chip.field.destroy_entry(id), 0);
        EXPECT_EQ(chip.field.destroy_group(g), 0);
    }
}

TEST_F(FieldMatching, AnEmptyMaskAsksForNothing)
{
    const int g = group({bcmFieldQualifySrcIp});
    entry(g, {{bcmFieldQualifySrcIp, kIpA, 0}}, {kDropIt});
    TestFrame arp(kHostB, kHostA);
    arp.type(0x0806);
    EXPECT_TRUE(matches(arp));
}

TEST_F(FieldMatching, EveryMatchOfAnEntryHasToAgree)
{
    const int g = group({bcmFieldQualifySrcIp, bcmFieldQualifyL4DstPort});
    entry(g, {kSrcIp, kDstPort}, {kDropIt});
    const TestFrame ip4 = packet(0x0800);
    EXPECT_TRUE(matches(ip4));
    EXPECT_FALSE(matches(with(ip4, 29, 9)));
    EXPECT_FALSE(matches(with(ip4, 37, 9)));
}

struct UdfRow {
    const char* what;
    std::uint32_t flags, word, data, mask;
    TestFrame frame;
    bool matches;
};

TEST_F(FieldMatching, UserDefinedFieldsAreBytesOfFramesOfTheirFormat)
{
    const TestFrame ip4 = packet(0x0800), ip6 = packet(0x86dd), one = ip4.tag(1), two = one.tag(1);
    constexpr std::uint32_t kAll = 0xffffffff;
    const UdfRow rows[] = {
        {"word 1 is bytes 2 to 5", 0, 1, 0x00000003, kAll, TestFrame(kHostC, kHostA), true},
        {"word 7 is bytes 26 to 29", 0x380, 7, kIpA, kAll, ip4, true},
        {"the same bytes behind a tag", 0, 8, kIpA, kAll, one, true},
        {"0x380: not behind a tag", 0x380, 8, kIpA, kAll, one, false},
        {"0x388: behind one tag", 0x388, 8, kIpA, kAll, one, true},
        {"0x388: not without", 0x388, 7, kIpA, kAll, ip4, false},
        {"0x388: not behind two", 0x388, 9, kIpA, kAll, two, false},
        {"0: behind two", 0, 9, kIpA, kAll, two, true},
        {"0x80: IPv4", 0x80, 7, kIpA, kAll, ip4, true},
        {"0x80: not IPv6", 0x80, 4, 0, 0x00000001, ip6, false},
        {"0x100: IPv6", 0x100, 4, 0, 0x00000001, ip6, true},
        {"0x200: neither", 0x200, 7, kIpA, kAll, ip4, false},
        {"bytes in front of the frame", 0, 0, 0, kAll, ip4, false},
        {"unless they are masked", 0, 0, 0x000000bb, 0x0000ffff, ip4, true},
        {"bytes behind the frame", 0, 16, 0, kAll, ip4, false},
        {"the last two bytes", 0, 16, 0, 0xffff0000, ip4, true},
        {"far behind the frame", 0, 0xffffffff, 0, 1, ip4, false},
    };
    for (const UdfRow& row : rows) {
        EXPECT_EQ(chip.field.create_udf(5, {row.flags, row.word}), 0);
        const int g = group({FieldMatch::kUdf + 5});
        const int id = entry(g, {is(FieldMatch::kUdf + 5, row.data, row.mask)}, {kDropIt});
        EXPECT_EQ(matches(row.frame), row.matches) << row.what;
        EXPECT_EQ(chip.field.destroy_entry(id), 0);
        EXPECT_EQ(chip.field.destroy_group(g), 0);
        EXPECT_EQ(chip.field.destroy_udf(5), 0);
    }
}

} // namespace

} // namespace vexosim
