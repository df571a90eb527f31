#include "tools/vexosh/input.h"

#include <gtest/gtest.h>

#include "platform/port_map.h"

using namespace vexosh;

namespace {

using List = std::vector<std::string>;

std::string error_of(auto&& parse)
{
    try {
        parse();
    } catch (const BadInput& problem) {
        return problem.what();
    }
    return "no error";
}

/// Module/port pairs as a brought-up card has them.
void fill_port_table()
{
    map_build_uport_to_user_port();
    map_build_user_port_to_module_port();
}

} // namespace

TEST(SplitWords, SeparatesAtBlanksKeepsQuotedBlanksAndStopsAtAComment)
{
    EXPECT_EQ(split_words("  vlan  create\t10 # ten"), (List{"vlan", "create", "10"}));
    EXPECT_EQ(split_words("echo \"a  b\" 'c #d'e"), (List{"echo", "a  b", "c #de"}));
    EXPECT_EQ(split_words("   # nothing"), List{});
    EXPECT_EQ(error_of([] { split_words("echo \"open"); }), "a quote is not closed");
}

TEST(SplitCommands, SeparatesAtSemicolonsOutsideQuotes)
{
    EXPECT_EQ(split_commands("a 1; b ';' 2 ;c"), (List{"a 1", " b ';' 2 ", "c"}));
}

TEST(ParseNumber, TakesDecimalAndHexadecimalWithinLimitsOnly)
{
    EXPECT_EQ(parse_number("42", "n", 0, 100), 42);
    EXPECT_EQ(parse_number("-4", "n", -10, 100), -4);
    EXPECT_EQ(parse_number("0x2a", "n", 0, 100), 42);
    for (const char* bad : {"", "x", "4x", "0x", "101", "-1", "4 ", "99999999999999999999"}) {
        EXPECT_EQ(error_of([&] { parse_number(bad, "count", 0, 100); }),
                  "bad count '" + std::string(bad) + "': a number from 0 to 100 is wanted");
    }
}

TEST(ParsePorts, ReadsUserPortsRangesCpuAndModulePortPairs)
{
    fill_port_table();
    EXPECT_EQ(parse_user_ports("1,4-6,cpu"), (std::vector<int>{1, 4, 5, 6, 53}));
    EXPECT_EQ(parse_user_ports("-"), std::vector<int>{});
    EXPECT_EQ(parse_port("5"), Mp(0, 5));
    EXPECT_EQ(parse_port("50"), Mp(2, 50));
    EXPECT_EQ(parse_port("cpu"), Mp(3, 53));
    EXPECT_EQ(parse_port("7/99"), Mp(7, 99));
    EXPECT_EQ(parse_ports("1,7/99"), (std::list<Mp>{Mp(0, 1), Mp(7, 99)}));
}

TEST(ParsePorts, RefusesPortsThatNoCardHas)
{
    for (const char* bad : {"53", "54", "-1", "", "x", "1-", "1,,2"}) {
        EXPECT_NE(error_of([&] { parse_user_ports(bad); }), "no error") << bad;
    }
    EXPECT_EQ(error_of([] { parse_user_ports("6-4"); }),
              "bad port range '6-4': the lower port comes first");
}

TEST(ParseAddresses, ReadMacIp4AndIp6)
{
    EXPECT_EQ(text(parse_mac("02:0:00:ab:CD:1")), "02:00:00:ab:cd:01");
    EXPECT_EQ(parse_ip4("192.0.2.1"), 0xc0000201u);
    EXPECT_EQ(parse_ip6("2001:db8::1")[15], 1);
    for (const char* bad : {"", "02:00:00:00:00", "02:00:00:00:00:100", "0200.0000.0001",
                            "02:00:00:00:00:0g", "02:00:00:00:00:00:00"}) {
        EXPECT_NE(error_of([&] { parse_mac(bad); }), "no error") << bad;
    }
    EXPECT_NE(error_of([] { parse_ip4("192.0.2"); }), "no error");
    EXPECT_NE(error_of([] { parse_ip6("2001:db8"); }), "no error");
}

TEST(ParseHex, PassesOverSeparatorsAndRefusesHalfBytes)
{
    EXPECT_EQ(parse_hex("01:02-0a.ff"), (Bytes{1, 2, 10, 255}));
    EXPECT_NE(error_of([] { parse_hex("012"); }), "no error");
    EXPECT_NE(error_of([] { parse_hex("0g"); }), "no error");
}
