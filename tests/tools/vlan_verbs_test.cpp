#include "tests/tools/shell_test_fixture.h"

using namespace vexosh;

using VlanVerbs = ShellTest;

TEST_F(VlanVerbs, OneVlanIsReadThroughTheDriver)
{
    EXPECT_EQ(run("vlan create 10; vlan add 10 tagged 3-5 untagged 1; show vlans 10"),
              "vlan  tagged   untagged\n"
              "  10  cpu,3-5         1\n");
}

TEST_F(VlanVerbs, TheCpuPortLeavesAndJoins)
{
    EXPECT_EQ(run("vlan create 10; vlan cpu 10 out; show vlans 10"), "vlan  tagged  untagged\n"
                                                                     "  10  -       -\n");
    EXPECT_EQ(run("vlan cpu 10 in; show vlans 10"), "vlan  tagged  untagged\n"
                                                    "  10  cpu     -\n");
}

TEST_F(VlanVerbs, RulesGiveUntaggedFramesAVlan)
{
    EXPECT_EQ(run("show vlan-rules"), "no VLAN rules\n");
    run("vlan create 10; vlan mac 02:00:00:00:00:01 10 3; vlan subnet 192.0.2.77/24 10");
    run("vlan subnet 2001:db8::/32 10 5; vlan subnet 0.0.0.0/0 1");
    run("vlan protocol 1-2 ethernet 0x8137 10; vlan protocol 2 snap 0x809b 10");
    run("vlan protocol 2 802.3 0xe0e0 10");
    EXPECT_EQ(run("show vlan-rules"), "by        match              port  vlan  priority\n"
                                      "mac       02:00:00:00:00:01  all     10  3\n"
                                      "subnet    0.0.0.0/0          all      1  0\n"
                                      "subnet    192.0.2.0/24       all     10  0\n"
                                      "subnet    2001:db8::/32      all     10  5\n"
                                      "protocol  ethernet 0x8137    1       10  -\n"
                                      "protocol  ethernet 0x8137    2       10  -\n"
                                      "protocol  snap 0x809b        2       10  -\n"
                                      "protocol  802.3 0xe0e0       2       10  -\n");
}

TEST_F(VlanVerbs, ProtocolRulesAreForgottenOneByOneOrAllOfAPort)
{
    run("vlan protocol 1-2 ethernet 0x8137 1; vlan protocol 1-2 snap 0x809b 1");
    run("vlan no-protocol 1 ethernet 0x8137; vlan no-protocol 2 all");
    EXPECT_EQ(run("show vlan-rules"), "by        match        port  vlan  priority\n"
                                      "protocol  snap 0x809b     1     1  -\n");
}

TEST_F(VlanVerbs, BadInputIsOneLine)
{
    const BadCommand cases[] = {
        {"show vlans 7", "there is no VLAN 7"},
        {"vlan cpu 1", "missing in or out; usage: vlan cpu VID in|out"},
        {"vlan cpu 7 in", "vlan cpu 7: the driver refused: there is no VLAN 7 (bcmx_vlan_port_add "
                          "reported -7, Entry not found)"},
        {"vlan create 0",
         "vlan create 0: the driver refused: bcmx_vlan_create reported -4, Invalid parameter"},
        {"vlan create 4095",
         "vlan create 4095: the driver refused: bcmx_vlan_create reported -4, Invalid parameter"},
        {"vlan mac 01:00:5e:00:00:01 1", "vlan mac 01:00:5e:00:00:01: the driver refused: "
                                         "bcmx_vlan_mac_add reported -4, Invalid parameter"},
        {"vlan mac 02:00:00:00:00:01 1 8", "bad PRIORITY '8': a number from 0 to 7 is wanted"},
        {"vlan subnet 192.0.2.0 1", "'192.0.2.0' has no prefix length; usage: vlan subnet "
                                    "ADDRESS/BITS VID [PRIORITY]"},
        {"vlan subnet 192.0.2.0/33 1", "bad prefix length '33': a number from 0 to 32 is wanted"},
        {"vlan subnet 2001:db8::/129 1",
         "bad prefix length '129': a number from 0 to 128 is wanted"},
        {"vlan subnet 192.0.2.0/24 4095", "vlan subnet 192.0.2.0/24: the driver refused: "
                                          "bcmx_vlan_ip4_add reported -4, Invalid parameter"},
        {"vlan protocol 1 arcnet 1 1",
         "bad frame type 'arcnet': one of ethernet, 802.3, snap is wanted"},
        {"vlan protocol 1 snap 0x10000 1",
         "bad protocol type '0x10000': a number from 0 to 65535 is wanted"},
        {"vlan no-protocol 1 snap 1",
         "vlan no-protocol 1: the driver refused: bcmx_port_protocol_vlan_delete reported -7, "
         "Entry not found"},
    };
    for (const auto& [line, error] : cases) {
        EXPECT_EQ(error_of(line), error) << line;
    }
}
