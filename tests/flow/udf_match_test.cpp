#include "flow/udf_match.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>

#include "tests/kit/captured_output.h"

namespace {

const std::array<uint8_t, 400> ones = [] {
    std::array<uint8_t, 400> bytes;
    bytes.fill(0xff);
    return bytes;
}();
const std::array<uint8_t, 400> zeroes = {};

std::string hex(const uint8_t (&bytes)[4])
{
    char text[9];
    std::snprintf(text, sizeof text, "%02x%02x%02x%02x", bytes[0], bytes[1], bytes[2], bytes[3]);
    return text;
}

/// "offset: data/mask" of each word.
std::string split(uint32_t offset, const std::vector<uint8_t>& data,
                  const std::vector<uint8_t>& mask)
{
    std::vector<bcm_udf_s> words;
    EXPECT_EQ(split_qualify_udf(
                  {offset, static_cast<uint32_t>(data.size()), data.data(), mask.data()}, words),
              0);
    std::string text;
    for (const bcm_udf_s& word : words) {
        EXPECT_EQ(word.udf_id, 0u);
        text += std::to_string(word.offset) + ": " + hex(word.data) + "/" + hex(word.mask) + "\n";
    }
    return text;
}

std::string split(uint32_t offset, const std::vector<uint8_t>& data)
{
    return split(offset, data, std::vector<uint8_t>(data.size(), 0xff));
}

TEST(UdfMatch, SixBytesAt14AreTwoWordsOfWhichTheSecondIsHalfFull)
{
    EXPECT_EQ(split(14, {1, 2, 3, 4, 5, 6}), "14: 01020304/ffffffff\n18: 05060000/ffff0000\n");
}

TEST(UdfMatch, TwoBytesAt13LieInTwoWords)
{
    EXPECT_EQ(split(13, {1, 2}), "13: 00000001/000000ff\n17: 02000000/ff000000\n");
}

TEST(UdfMatch, EveryAlignmentAndLengthFillsTheWordsItTouches)
{
    const struct {
        uint32_t offset;
        std::vector<uint8_t> data;
        const char* words;
    } cases[] = {
        {2, {1}, "2: 01000000/ff000000\n"},
        {2, {1, 2, 3, 4}, "2: 01020304/ffffffff\n"},
        {2, {1, 2, 3, 4, 5}, "2: 01020304/ffffffff\n6: 05000000/ff000000\n"},
        {3, {1, 2, 3}, "3: 00010203/00ffffff\n"},
        {3, {1, 2, 3, 4}, "3: 00010203/00ffffff\n7: 04000000/ff000000\n"},
        {0, {1, 2}, "0: 00000102/0000ffff\n"},
        {0, {1, 2, 3}, "0: 00000102/0000ffff\n4: 03000000/ff000000\n"},
        {1, {1}, "1: 00000001/000000ff\n"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(split(c.offset, c.data), c.words);
}

TEST(UdfMatch, WordsWithoutAMaskAreLeftOut)
{
    EXPECT_EQ(
        split(2, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}, {0xff, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1}),
        "2: 01020304/ff000000\n10: 090a0b0c/00000001\n");
    EXPECT_EQ(split(2, {1, 2, 3, 4, 5}, {0, 0, 0, 0, 0}), "");
}

TEST(UdfMatch, DataIsKeptAsGivenUnderTheMask)
{
    EXPECT_EQ(split(2, {0xff, 0xff, 0xff, 0xff}, {0x0f, 0, 0, 0}), "2: ffffffff/0f000000\n");
}

TEST(UdfMatch, ALengthOf0IsABadParameterAndGivesNoWords)
{
    std::vector<bcm_udf_s> words;
    EXPECT_EQ(split_qualify_udf({14, 0, ones.data(), ones.data()}, words), -4);
    EXPECT_TRUE(words.empty());
}

TEST(UdfMatch, BytesThatAreNotThereAreABadParameter)
{
    std::vector<bcm_udf_s> words;
    EXPECT_EQ(split_qualify_udf({14, 4, nullptr, ones.data()}, words), -4);
    EXPECT_EQ(split_qualify_udf({14, 4, ones.data(), nullptr}, words), -4);
    EXPECT_TRUE(words.empty());
}

TEST(UdfMatch, WordsAreAppended)
{
    std::vector<bcm_udf_s> words(1);
    EXPECT_EQ(split_qualify_udf({14, 4, ones.data(), ones.data()}, words), 0);
    EXPECT_EQ(words.size(), 2u);
}

TEST(UdfMatch, ALongMatchHasAsManyWordsAsItTakes)
{
    std::vector<bcm_udf_s> words;
    EXPECT_EQ(split_qualify_udf({2, 400, zeroes.data(), ones.data()}, words), 0);
    EXPECT_EQ(words.size(), 100u);
    EXPECT_EQ(words.back().offset, 2u + 4 * 99);
}

TEST(UdfMatch, DumpsNothingUnlessTheSwitchIs1)
{
    for (const uint8_t off : {uint8_t{0}, uint8_t{2}, uint8_t{255}}) {
        field_dbg = off;
        EXPECT_EQ(vexokit::printed([] { dump_hex_bytes(ones.data(), 4); }), "");
    }
}

TEST(UdfMatch, DumpsSixteenBytesToALineAndEndsWithAnEmptyOne)
{
    const auto dumped = [](int length) {
        return vexokit::printed([length] { dump_hex_bytes(zeroes.data(), length); });
    };
    const std::string line = "00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 00 \n";
    EXPECT_EQ(field_dbg, 0);
    field_dbg = 1;
    EXPECT_EQ(dumped(0), "\n");
    EXPECT_EQ(dumped(-1), "\n");
    EXPECT_EQ(dumped(2), "00 00 \n\n");
    EXPECT_EQ(dumped(16), line + "\n");
    EXPECT_EQ(dumped(17), line + "00 \n\n");
}

} // namespace
