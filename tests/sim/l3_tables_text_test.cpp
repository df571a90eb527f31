// How people read layer-3 interfaces, hosts and routes.
#include <gtest/gtest.h>

#include "sim/chip/tables_as_text.h"

namespace {

using namespace vexosim;

struct L3TablesText : testing::Test {
    Chip chip;
    PortNames names;

    static IpAddress ip6(std::uint8_t last)
    {
        std::uint8_t bytes[16] = {0x20, 0x01, 0x0d, 0xb8};
        bytes[15] = last;
        return IpAddress::from_ip6(bytes);
    }
};

TEST_F(L3TablesText, InterfacesAreListedById)
{
    unsigned id = 7;
    chip.l3_interfaces.create_id({0x001122334455, 10, 0}, id, false);
    chip.l3_interfaces.create({0x001122334456, 4094, 0}, id);
    EXPECT_EQ(l3_interfaces_table(chip).text(), "interface  mac                vlan\n"
                                                "        0  00:11:22:33:44:56  4094\n"
                                                "        7  00:11:22:33:44:55    10\n");
}

TEST_F(L3TablesText, HostsSayWhereTheyAreAndWhatIsKnownOfThem)
{
    chip.l3_hosts.add(ip6(9), {{2, 0xbb, false, kCpuPort, 0}, true, true}, false);
    chip.l3_hosts.add(IpAddress::from_ip4(0x0a010203), {{511, 0xaa, true, 3, 0}, false, false},
                      false);
    EXPECT_EQ(l3_hosts_table(chip, names).text(),
              "host         mac                interface  port   hit  valid\n"
              "10.1.2.3     00:00:00:00:00:aa        511  lag 3  no   no\n"
              "2001:db8::9  00:00:00:00:00:bb          2  cpu    yes  yes\n");
}

TEST_F(L3TablesText, NetworksAreWrittenAsPeopleWriteThem)
{
    chip.l3_routes.add({IpAddress::from_ip4(0), 0}, {{1, 0xaa, false, 5, 0x0a000001}, true}, false);
    chip.l3_routes.add({IpAddress::from_ip4(0x0a000000), 8}, {{1, 0xaa, false, 5, 0}, false},
                       false);
    chip.l3_routes.add({ip6(0), 32}, {{2, 0xbb, true, 127, 0}, false}, false);
    EXPECT_EQ(l3_routes_table(chip, names).text(),
              "network        via       mac                interface  port     hit\n"
              "0.0.0.0/0      10.0.0.1  00:00:00:00:00:aa          1  5        yes\n"
              "10.0.0.0/8     -         00:00:00:00:00:aa          1  5        no\n"
              "2001:db8::/32  -         00:00:00:00:00:bb          2  lag 127  no\n");
}

} // namespace
