#include "tools/vexosh/grammar.h"

#include <gtest/gtest.h>

#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/manual_page.h"

using namespace vexosh;

namespace {

using Names = std::vector<std::string>;

std::size_t longest_line(const std::string& text)
{
    std::size_t longest = 0;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        longest = std::max(longest, line.size());
    }
    return longest;
}

} // namespace

TEST(Completion, OffersTheWordsOfCommands)
{
    EXPECT_EQ(completions({"lag"}, ""),
              (Names{"create", "delete", "add", "remove", "criterion", "book", "unbook"}));
    EXPECT_EQ(completions({"fdb", "limit"}, "p"), Names{"port"});
    EXPECT_EQ(completions({"nothing"}, ""), Names{});
}

TEST(Completion, OffersWhatTheUsageSpellsOutWhereItMayStand)
{
    EXPECT_EQ(completions({"port", "duplex"}, ""), Names{});
    EXPECT_EQ(completions({"port", "duplex", "1"}, ""), (Names{"half", "full"}));
    EXPECT_EQ(completions({"port", "duplex", "1", "full"}, ""), Names{});
    EXPECT_EQ(completions({"port", "storm", "1", "all"}, "o"), Names{"off"});
    EXPECT_EQ(completions({"fdb", "flush", "vlan", "1"}, ""), Names{"static"});
    EXPECT_EQ(completions({"show", "fdb", "vlan", "1"}, "l"), (Names{"lag", "learned"}));
    EXPECT_EQ(completions({"port", "block", "1", "2", "all"}, "k"), Names{"known-multicast"});
}

TEST(Completion, ShowsWordsInColumnsThatFitTheScreen)
{
    const std::string word(30, 'a');
    EXPECT_EQ(in_columns({"b", word, word, "c"}),
              "b" + std::string(31, ' ') + word + "\n" + word + "  c");
    EXPECT_EQ(in_columns({}), "");
}

TEST(Help, FoldsLongLinesAtBlanksAndBehindBars)
{
    const std::string word(30, 'a');
    EXPECT_EQ(folded(word + " " + word + " " + word, 4), word + " " + word + "\n    " + word);
    EXPECT_EQ(folded(std::string(90, 'a'), 4), std::string(90, 'a'));
    EXPECT_EQ(folded(word + "|" + word + "|" + word, 4), word + "|" + word + "|\n    " + word);
}

TEST(ManualPage, ShowsTextsAsTheyStand)
{
    const std::string page = manual_page({{"--option", ".a\\b-c"}, {"--other", "'d"}});
    EXPECT_NE(page.find("\\fB\\-\\-option\\fR\n\\&.a\\eb\\-c\n"), std::string::npos) << page;
    EXPECT_NE(page.find("\\fR\n\\&'d\n"), std::string::npos) << page;
}

TEST_F(ShellTest, HelpFitsTheScreenAndTellsOfEveryCommand)
{
    const std::string all = run("help");
    EXPECT_LE(longest_line(all), 80u);
    for (const Command* command : all_commands()) {
        EXPECT_NE(all.find(std::string("  ") + command->words + "  "), std::string::npos)
            << command->words;
        const std::string one = run(std::string("help ") + command->words);
        EXPECT_LE(longest_line(one), 80u) << one;
        EXPECT_TRUE(one.starts_with(command->words)) << one;
    }
}

TEST_F(ShellTest, TablesFitTheScreen)
{
    run("attach 0-52=mem; wait 1s; vlan create 4000; vlan add 4000 tagged "
        "1,3,5,7,9,11,13,15,17,19,21,23,25,27,29,31,33,35,37,39 untagged 0,2,4,6,8,10,12,14,16");
    run("lag create 4000000000; lag add 0 1,3,5,7,9,11,13,52; send 0 type=0x88b5");
    run("fdb system 02:00:00:00:00:01 1; port storm 1 all 1000000000; mirror from 1 to 2 both");
    run("vlan subnet 2001:db8:1111:2222:3333:4444:5555:6666/128 4000 7");
    run("trap add arp 255.255.255.255/255.0.255.0; trap add protocol 255");
    run("flow add match in-port 52 src-mac 02:00:00:00:00:01 src-ip 255.255.255.255/255.0.255.0 "
        "l4-dst 65535 udf 1000:00112233445566778899aabbccddeeff priority -2147483648 "
        "action redirect 1,3,5,7,9,11,13,15,17,19,21,23,25,27,29,31,33,35,37,39 vlan 4000");
    run("l3 interface add 02:00:00:00:00:01 1; "
        "fault bcmx_l3_host_t_init 1; l3 host add 2001:db8:1111:2222:3333:4444:5555:6666 "
        "02:00:00:00:00:01 0 lag 0; l3 route add 2001:db8:1111:2222:3333:4444:5555:6666/128 "
        "02:00:00:00:00:01 0 lag 0; l3 route add 255.255.255.255/32 02:00:00:00:00:01 0 52 via "
        "255.255.255.255");
    for (const Command* command : all_commands()) {
        const std::string words = command->words;
        if (words.starts_with("show ") && words != "show capture") {
            const bool of_one =
                words == "show port" || words == "show flow" || words == "show counters driver";
            const bool of_two = words == "show counter" || words == "show counter brief";
            const std::string table = of_two ? "" : run(words + (of_one ? " 0" : ""));
            EXPECT_LE(longest_line(table), 80u) << table;
        }
    }
}
