#include "flow/field_qset.h"

#include <bcmx/field.h>

#include "tests/flow/flow_fixture.h"

namespace {

using Ids = std::vector<unsigned>;

std::vector<bcm_udf_s> words_at(const std::vector<uint32_t>& offsets)
{
    std::vector<bcm_udf_s> words;
    words.reserve(offsets.size());
    for (const uint32_t offset : offsets)
        words.push_back({0, offset, {}, {}});
    return words;
}

Ids ids_of(const std::vector<bcm_udf_s>& words)
{
    Ids ids;
    for (const bcm_udf_s& word : words)
        ids.push_back(word.udf_id);
    return ids;
}

std::vector<int> bits_of(const uint32_t (&words)[3])
{
    std::vector<int> bits;
    for (int bit = 0; bit < 96; ++bit) {
        if ((words[bit / 32] >> (bit % 32) & 1u) != 0)
            bits.push_back(bit);
    }
    return bits;
}

struct FieldQset : FlowCard {
    FieldQset() { BCM_FIELD_QSET_INIT(qset); }

    int add_udfs(bool ip_level = false)
    {
        int rc = 99;
        text = printed([&] { rc = qset_add_udfs(&qset, words, ip_level); });
        return rc;
    }

    std::vector<bcm_udf_s> words = words_at({14, 18});
    bcm_field_qset_t qset;
    std::string text;
};

TEST_F(FieldQset, MakesAUdfForEachWordAndAddsIt)
{
    clear_calls();
    EXPECT_EQ(add_udfs(), 0);
    EXPECT_EQ(all_calls(), "bcm_field_udf_spec_t_init(out)\n"
                           "bcmx_field_udf_spec_set(out, 0x380, 4)\n"
                           "bcmx_field_udf_create_id({flags=0x380, offset=4}, 1)\n"
                           "bcmx_field_qset_add_udf(qset:[], 1)\n"
                           "bcm_field_udf_spec_t_init(out)\n"
                           "bcmx_field_udf_spec_set(out, 0x380, 5)\n"
                           "bcmx_field_udf_create_id({flags=0x380, offset=5}, 2)\n"
                           "bcmx_field_qset_add_udf(qset:[]+udf:[1], 2)\n");
    EXPECT_EQ(text, "bcmx_field_qset_add_udf: udf_ids[0] = 1, offset = 14, bcm_offset = 4\n"
                    "bcmx_field_qset_add_udf: udf_ids[1] = 2, offset = 18, bcm_offset = 5\n");
    EXPECT_EQ(ids_of(words), (Ids{1, 2}));
    EXPECT_EQ(bits_of(qset.udf_map), (std::vector<int>{1, 2}));
    EXPECT_EQ(udfs_in_use(), (Ids{1, 2}));
}

TEST_F(FieldQset, UdfsOfIpLevelFlowsAreForFramesOfEveryFormat)
{
    EXPECT_EQ(add_udfs(true), 0);
    EXPECT_EQ(take_calls(), "bcmx_field_udf_create_id({flags=0, offset=4}, 1)\n"
                            "bcmx_field_qset_add_udf(qset:[], 1)\n"
                            "bcmx_field_udf_create_id({flags=0, offset=5}, 2)\n"
                            "bcmx_field_qset_add_udf(qset:[]+udf:[1], 2)\n");
}

TEST_F(FieldQset, TheChipsWordIsTheOneThatTheOffsetLiesIn)
{
    words = words_at({0, 1, 2, 13, 17});
    EXPECT_EQ(add_udfs(), 0);
    EXPECT_EQ(text, "bcmx_field_qset_add_udf: udf_ids[0] = 1, offset = 0, bcm_offset = 0\n"
                    "bcmx_field_qset_add_udf: udf_ids[1] = 2, offset = 1, bcm_offset = 0\n"
                    "bcmx_field_qset_add_udf: udf_ids[2] = 3, offset = 2, bcm_offset = 1\n"
                    "bcmx_field_qset_add_udf: udf_ids[3] = 4, offset = 13, bcm_offset = 3\n"
                    "bcmx_field_qset_add_udf: udf_ids[4] = 5, offset = 17, bcm_offset = 4\n");
}

TEST_F(FieldQset, WithoutASetNothingIsTaken)
{
    EXPECT_EQ(qset_add_udfs(nullptr, words, false), -4);
    EXPECT_EQ(flow_flags_to_qset(0x1000, nullptr, words), -4);
    EXPECT_EQ(udfs_in_use(), Ids{});
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FieldQset, WithoutWordsNothingIsAskedFor)
{
    words.clear();
    EXPECT_EQ(add_udfs(), 0);
    EXPECT_EQ(text, "");
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FieldQset, MoreWordsThanUdfsAreOutOfResources)
{
    words = words_at(std::vector<uint32_t>(93, 14));
    EXPECT_EQ(add_udfs(), -14);
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(udfs_in_use(), Ids{});
}

TEST_F(FieldQset, MoreWordsThanFreeUdfsAreOutOfResourcesAndMakeNone)
{
    std::fill(vexo_udf_usage + 1, vexo_udf_usage + 92, uint8_t{1});
    EXPECT_EQ(add_udfs(), -14);
    EXPECT_EQ(take_calls(), "");
    EXPECT_EQ(text, "");
    EXPECT_EQ(ids_of(words), (Ids{0, 0}));
    EXPECT_EQ(vexo_udf_usage[92], 0);
}

TEST_F(FieldQset, StopsAtTheFirstFailureAndGivesNothingBack)
{
    const std::string first = "bcmx_field_qset_add_udf: udf_ids[0] = 1, offset = 14, bcm_offset = "
                              "4\n";
    const std::string second = "bcmx_field_qset_add_udf: udf_ids[1] = 2, offset = 18, bcm_offset ="
                               " 5\n";
    const struct {
        const char* call;
        unsigned nth;
        std::string text;
        Ids ids;
    } cases[] = {
        {"bcmx_field_udf_spec_set", 1, "", {0, 0}},
        {"bcmx_field_udf_create_id", 1, "", {0, 0}},
        {"bcmx_field_qset_add_udf", 1, first, {0, 0}},
        {"bcmx_field_udf_spec_set", 2, first, {1, 0}},
        {"bcmx_field_udf_create_id", 2, first, {1, 0}},
        {"bcmx_field_qset_add_udf", 2, first + second, {1, 0}},
    };
    for (const auto& c : cases) {
        bcmx_field_init();
        vexolc::reset_udf_pool();
        words = words_at({14, 18});
        fail(c.call, -11, c.nth);
        EXPECT_EQ(add_udfs(), -11) << c.call << c.nth;
        EXPECT_EQ(text, c.text) << c.call << c.nth;
        EXPECT_EQ(ids_of(words), c.ids) << c.call << c.nth;
        EXPECT_EQ(udfs_in_use(), (Ids{1, 2})) << c.call << c.nth;
    }
}

TEST_F(FieldQset, UdfsMadeBeforeAFailureStayInTheChip)
{
    fail("bcmx_field_udf_create_id", -1, 2);
    EXPECT_EQ(add_udfs(), -1);
    clear_faults();
    EXPECT_EQ(bcmx_field_udf_destroy(1), 0);
    EXPECT_EQ(bcmx_field_udf_destroy(2), -7);
}

TEST_F(FieldQset, EachFlagAsksForItsField)
{
    const std::pair<unsigned, int> fields[] = {
        {0x0001, 12}, {0x0002, 6},  {0x0004, 7},  {0x0008, 29}, {0x0010, 18}, {0x0020, 19},
        {0x0040, 9},  {0x0080, 10}, {0x0100, 27}, {0x0200, 28}, {0x0400, 30}, {0x0800, 31},
    };
    for (const auto& [flag, field] : fields) {
        EXPECT_EQ(flow_flags_to_qset(flag, &qset, words), 0);
        EXPECT_EQ(bits_of(qset.w), std::vector<int>{field}) << flag;
    }
    EXPECT_EQ(flow_flags_to_qset(0xffffefff, &qset, words), 0);
    EXPECT_EQ(bits_of(qset.w), (std::vector<int>{6, 7, 9, 10, 12, 18, 19, 27, 28, 29, 30, 31}));
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FieldQset, ASetIsFilledAnew)
{
    memset(&qset, 0xff, sizeof qset);
    EXPECT_EQ(flow_flags_to_qset(0, &qset, words), 0);
    EXPECT_EQ(bits_of(qset.w), std::vector<int>{});
    EXPECT_EQ(bits_of(qset.udf_map), std::vector<int>{});
}

TEST_F(FieldQset, UdfsAreForEveryFormatNextToIpAddressesL4PortsAndProtocolOnly)
{
    for (const unsigned flag : {0x0001u, 0x0002u, 0x0004u, 0x0008u, 0x0010u, 0x0020u, 0x0040u,
                                0x0080u, 0x0100u, 0x0200u, 0x0400u, 0x0800u}) {
        words = words_at({14});
        EXPECT_EQ(flow_flags_to_qset(0x1000 | flag, &qset, words), 0);
        const bool ip_level = flag >= 0x0040 && flag <= 0x0400;
        const std::string created = ip_level ? "{flags=0, " : "{flags=0x380, ";
        EXPECT_NE(take_calls().find(created), std::string::npos) << flag;
    }
    EXPECT_EQ(flow_flags_to_qset(0x1002 | 0x0400, &qset, words), 0);
    EXPECT_NE(take_calls().find("{flags=0, "), std::string::npos);
}

TEST_F(FieldQset, TheResultOfTheUdfsIsPassedOn)
{
    fail("bcmx_field_qset_add_udf", -6);
    EXPECT_EQ(flow_flags_to_qset(0x1000, &qset, words), -6);
    words.clear();
    clear_faults();
    EXPECT_EQ(flow_flags_to_qset(0x1002, &qset, words), 0);
    EXPECT_EQ(bits_of(qset.w), std::vector<int>{6});
    EXPECT_EQ(bits_of(qset.udf_map), std::vector<int>{});
}

} // namespace
