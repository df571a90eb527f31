#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/json_table.h"

using namespace vexosh;

TEST(Json, ARowIsAnObjectWhoseNumbersAreNumbers)
{
    const vexosim::TextTable table{{"vlan", "in packets", "ports"}, {{"10", "0", "1,2"}}};
    EXPECT_EQ(json_of("show vlans", table).dump(),
              R"({"vexosh":1,"show":"vlans","rows":[{"vlan":10,"in_packets":0,"ports":[1,2]}]})");
}

TEST(Json, ATableWithoutRowsIsAnEmptyList)
{
    EXPECT_EQ(json_of("show fdb", {{"vlan"}, {}}).dump(), R"({"vexosh":1,"show":"fdb","rows":[]})");
}

TEST(Json, PortListsAreListsWhateverTheirLength)
{
    const vexosim::TextTable table{{"ports"}, {{"3"}, {"1,4-6,cpu"}, {"none"}, {"-"}}};
    EXPECT_EQ(json_of("show x", table)["rows"].dump(),
              R"([{"ports":[3]},{"ports":[1,4,5,6,"cpu"]},{"ports":[]},{"ports":[]}])");
}

TEST(Json, TextsStayTextsThatLookLikeNumbers)
{
    EXPECT_EQ(json_of("show traps", {{"for"}, {{"6"}}})["rows"].dump(), R"([{"for":"6"}])");
}

TEST(Json, NumbersThatDoNotFitStayText)
{
    const vexosim::TextTable table{{"n"}, {{"99999999999999999999"}, {"-1"}, {"0x10"}}};
    EXPECT_EQ(json_of("show x", table)["rows"].dump(),
              R"([{"n":"99999999999999999999"},{"n":"-1"},{"n":"0x10"}])");
}

TEST(Json, PropertiesAreOneObject)
{
    const vexosim::TextTable table{{"port", "7"}, {{"admin", "on"}, {"packets, 32 bits", "5"}}};
    EXPECT_EQ(json_of_properties("show port", table).dump(),
              R"({"vexosh":1,"show":"port","port":7,"properties":{"admin":"on",)"
              R"("packets_32_bits":5}})");
}

struct JsonShell : ShellTest {};

TEST_F(JsonShell, ACommandBehindJsonPrintsJsonAndTheNextDoesNot)
{
    EXPECT_EQ(run("vlan create 9; vlan add 9 untagged 1; json show vlans 9; show vlans 9"),
              "{\"vexosh\":1,\"show\":\"vlans\",\"rows\":[{\"vlan\":9,\"tagged\":[\"cpu\"],"
              "\"untagged\":[1]}]}\n"
              "vlan  tagged  untagged\n"
              "   9  cpu            1\n");
}

TEST_F(JsonShell, AFailureLeavesTextAsItWas)
{
    EXPECT_EQ(error_of("json show bogus"), error_of("show bogus"));
    EXPECT_EQ(run("show vlans").substr(0, 4), "vlan");
}

TEST_F(JsonShell, EveryShowIsALineOfJson)
{
    for (const Command* command : all_commands()) {
        const std::string words = command->words;
        const std::string usage = command->usage;
        const bool alone = usage.empty() || usage[0] == '[';
        if (!words.starts_with("show ") || !alone) {
            continue;
        }
        const std::string text = run("json " + words);
        ASSERT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << words << ": " << text;
        const auto json = nlohmann::json::parse(text, nullptr, false);
        ASSERT_TRUE(json.is_object()) << words << ": " << text;
        EXPECT_EQ(json["vexosh"], 1) << words;
        EXPECT_EQ(json["show"], words.substr(5));
        EXPECT_TRUE(json.contains("rows") != json.contains("properties")) << text;
    }
}

TEST_F(JsonShell, WatchRunsACommandAgainAndAgain)
{
    EXPECT_EQ(run("watch times 3 echo hello there"), "hello there\n\nhello there\n\nhello there\n");
    EXPECT_EQ(error_of("watch times 2"), "missing COMMAND; usage: watch [every DURATION] [times N] "
                                         "COMMAND...");
}

TEST_F(JsonShell, AScriptThatKeepsGoingCountsItsFailures)
{
    shell_->keep_going(true);
    const std::string path = script("echo 1\nbogus\necho 2\n");
    EXPECT_EQ(run("source " + path), "1\n2\n");
    EXPECT_EQ(shell_->failures(), 1);
}

TEST_F(JsonShell, ACaptureIsStartedShownAndStopped)
{
    const std::string path = script("");
    EXPECT_EQ(error_of("capture stop"), "no capture is running");
    run("attach 1-2=mem; wait 1s; capture start " + path + " 1-2 received");
    EXPECT_EQ(error_of("capture start x"), "a capture into " + path + " is running; stop it first");
    run("send 1 type=0x88b5");
    EXPECT_EQ(run("capture stop"), "1 packet in " + path + "\n");
    EXPECT_EQ(run("show capturing"), "no capture is running\n");
}
