// Reading of pcapng files, by the wire that plays them.
#include <gtest/gtest.h>

#include "tests/sim/pcapng_blocks.h"

using namespace vexosim;

namespace {

struct WirePcapng : testing::Test {
    // What is played of a file, and the notice or the refusal, with the file as `FILE`.
    std::string played(const Bytes& bytes)
    {
        const std::string in = dir.write("in.pcapng", bytes);
        OpenedWire opened = open_wire("pcap:" + in + ",");
        FrameBatch batch;
        std::string text = opened.error;
        if (opened.wire) {
            while (opened.wire->receive(batch)) {
            }
            text = marks(batch.frames()) + "; " + opened.wire->notice();
        }
        for (auto at = text.find(in); at != std::string::npos; at = text.find(in)) {
            text.replace(at, in.size(), "FILE");
        }
        return text;
    }

    // When the first packet was captured, with an option of its interface.
    std::int64_t time_of(std::uint64_t ticks, std::uint32_t option, const Bytes& value)
    {
        Blocks blocks;
        blocks.interface(1, blocks.option(option, value)).packet(0, ticks, frame(1));
        const auto in = dir.write("in.pcapng", blocks.bytes());
        return open_wire("pcap:" + in + ",").wire->next_time()->count();
    }

    TempDir dir;
};

} // namespace

TEST_F(WirePcapng, PlaysPacketsOfEitherByteOrder)
{
    for (const bool big_endian : {false, true}) {
        Blocks blocks(big_endian);
        blocks.interface().packet(0, 1, frame(1)).packet(0, 2, frame(2, 1513));
        EXPECT_EQ(played(blocks.bytes()), "1 2; ") << big_endian;
    }
}

TEST_F(WirePcapng, PlaysSeveralInterfacesAndSections)
{
    Bytes file = Blocks().interface().interface().packet(1, 1, frame(1)).bytes();
    const Bytes other = Blocks(true).interface().packet(0, 2, frame(2)).bytes();
    file.insert(file.end(), other.begin(), other.end());
    EXPECT_EQ(played(file), "1 2; ");
}

TEST_F(WirePcapng, LeavesOutWhatAPortSentAndBlocksThatAreNoPackets)
{
    Blocks blocks;
    blocks.interface();
    blocks.packet(0, 1, frame(1), blocks.direction(1)).packet(0, 2, frame(2), blocks.direction(2));
    blocks.block(0x5, blocks.fields().word(0).word(0)).packet(0, 3, frame(3), blocks.direction(0));
    EXPECT_EQ(played(blocks.bytes()), "1 3; ");
}

TEST_F(WirePcapng, PlaysSimpleAndObsoletePackets)
{
    Blocks blocks;
    blocks.interface().block(3, blocks.fields().word(60).append(frame(1)));
    Fields old = blocks.fields();
    blocks.block(2, old.half(0).half(9).word(0).word(0).word(60).word(60).append(frame(2)));
    EXPECT_EQ(played(blocks.bytes()), "1 2; ");
}

TEST_F(WirePcapng, LeavesOutAnFcs)
{
    Blocks blocks;
    Bytes with_fcs = frame(5);
    with_fcs.insert(with_fcs.end(), {0xaa, 0xbb, 0xcc, 0xdd});
    blocks.interface(1, blocks.option(13, {4})).packet(0, 1, with_fcs);
    EXPECT_EQ(played(blocks.bytes()), "5; ");
}

TEST_F(WirePcapng, ReadsTimesOfEveryResolution)
{
    constexpr std::int64_t kThree = 3'000'000'000;
    EXPECT_EQ(time_of(3'000'001, 0x7777, {}), kThree + 1000);
    EXPECT_EQ(time_of(3'000'000'001, 9, {9}), kThree + 1);
    EXPECT_EQ(time_of(3'000'000'001'999, 9, {12}), kThree + 1);
    EXPECT_EQ(time_of(3, 9, {0}), kThree);
    EXPECT_EQ(time_of(7, 9, {0x81}), kThree + 500'000'000);
    EXPECT_EQ(time_of(std::uint64_t{7} << 39, 9, {0xa8}), kThree + 500'000'000);
    EXPECT_EQ(time_of(1'000'000, 14, {2, 0, 0, 0, 0, 0, 0, 0}), kThree);
    EXPECT_EQ(time_of(7, 9, {127}), 0);
}

TEST_F(WirePcapng, CountsPacketsOfWhichOnlyTheBeginningWasKept)
{
    Blocks blocks;
    blocks.interface().packet(0, 1, frame(1), {}, 100).packet(0, 2, frame(2));
    EXPECT_EQ(played(blocks.bytes()), "2; FILE: 1 frames that were captured in part or are too "
                                      "long were not played");
}

TEST_F(WirePcapng, RefusesLinksThatAreNoEthernet)
{
    EXPECT_EQ(played(Blocks().interface(113).bytes()),
              "pcap:FILE,: FILE is a capture of link type 113; only Ethernet, type 1, can be "
              "replayed");
}

TEST_F(WirePcapng, AFileWithoutPacketsPlaysNothingAndIsInOrder)
{
    EXPECT_EQ(played(Blocks().bytes()), "; ");
    EXPECT_EQ(played(Blocks().interface().bytes()), "; ");
}

TEST_F(WirePcapng, ACutFileIsPlayedUpToTheCutWhereverThatIs)
{
    Blocks blocks;
    blocks.interface().packet(0, 1, frame(1)).packet(0, 2, frame(2));
    const std::size_t packet = 20 + 12 + 60, all = blocks.bytes().size();
    for (std::size_t cut = 1; cut < all; ++cut) {
        const std::string said = played(blocks.cut_by(cut));
        const bool between = cut == packet || cut == 2 * packet || cut == 2 * packet + 20;
        EXPECT_EQ(said.find("FILE") == std::string::npos, between) << cut << ": " << said;
        EXPECT_EQ(said.starts_with("1; "), cut <= packet) << cut << ": " << said;
    }
    EXPECT_EQ(played(blocks.cut_by(1)),
              "1; FILE is cut short in the block with record 2; 1 records before it were read");
}

TEST_F(WirePcapng, DamageIsSaidInOneLine)
{
    const std::string behind_one = "; 1 records before it were read";
    const auto after_one = [&](auto&& damage) {
        Blocks blocks;
        blocks.interface().packet(0, 1, frame(1));
        damage(blocks);
        return played(blocks.packet(0, 9, frame(9)).bytes());
    };
    EXPECT_EQ(after_one([](Blocks& blocks) { blocks.packet(7, 1, frame(2)); }),
              "1; FILE names no interface for record 2" + behind_one);
    EXPECT_EQ(after_one([](Blocks& blocks) { blocks.block(6, blocks.fields().word(0)); }),
              "1; FILE has too short a block for record 2" + behind_one);
    EXPECT_EQ(after_one([](Blocks& blocks) {
                  Fields body = blocks.fields();
                  blocks.block(6, body.word(0).word(0).word(0).word(61).word(61).append(frame(2)));
              }),
              "1; FILE claims 61 bytes for record 2" + behind_one);
    EXPECT_EQ(after_one([](Blocks& blocks) { blocks.block(1, blocks.fields().word(1)); }),
              "1; FILE has an interface without a link type in front of record 2" + behind_one);
    EXPECT_EQ(after_one([](Blocks& blocks) { blocks.interface(105); }),
              "1; FILE is a capture of link type 105; only Ethernet, type 1, can be replayed");
    EXPECT_EQ(after_one([](Blocks& blocks) {
                  Fields body = blocks.fields();
                  blocks.block(0x0a0d0d0a, body.word(0x11223344).word(0).word(0).word(0));
              }),
              "1; FILE is not a capture file: no byte order in front of record 2" + behind_one);
}

TEST_F(WirePcapng, DoesNotBelieveAbsurdLengths)
{
    for (const std::uint32_t length : {0U, 8U, 13U, (16U << 20) + 4, 0x80000000U, 0xfffffffcU}) {
        Bytes file = Blocks().interface().packet(0, 1, frame(1)).bytes();
        const Bytes more = Fields(false).word(6).word(length).append(Bytes(500, 0)).bytes();
        file.insert(file.end(), more.begin(), more.end());
        EXPECT_EQ(played(file), "1; FILE claims " + std::to_string(length) +
                                    " bytes for the block with record 2; 1 records before it were "
                                    "read");
    }
}

TEST_F(WirePcapng, OptionsThatReachBeyondTheirBlockAreNone)
{
    Blocks blocks;
    blocks.interface(1, blocks.fields().half(9).half(200).word(9).bytes());
    blocks.packet(0, 1, frame(1), blocks.fields().half(2).half(0xffff).word(2).bytes());
    EXPECT_EQ(played(blocks.bytes()), "1; ");
}
