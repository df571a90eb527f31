// What people read: traces and tables.
#include <bcm/l2.h>

#include "path.h"
#include "sim/chip/tables_as_text.h"

namespace vexosim {
namespace {

const TestFrame kToAll(kBroadcastMac, kHostA), kToB(kHostB, kHostA);

struct Text : ::testing::Test, Path {
    Text()
    {
        only({1, 2, 3});
        vlan(10, {1, 2}, {3});
        names.set(3, 33);
    }
    std::string trace(int port, FrameView frame)
    {
        return trace_frame(chip, cpu, port, frame, names).text;
    }
};

TEST_F(Text, ATraceTellsWhatEachStageDecided)
{
    MacEntry e;
    e.key = mac_key(kHostB, 10);
    e.port = 3;
    e.flags = BCM_L2_STATIC;
    chip.macs.add(e, false, 0);
    EXPECT_EQ(trace(1, kToB.tag(10, 5)),
              "port               enters at port 1, which is up\n"
              "parse              64 bytes, tag VLAN 10 priority 5, type 0x0800\n"
              "VLAN               VLAN 10, by its tag, priority 5\n"
              "membership filter  the port is in the VLAN\n"
              "spanning tree      the port is forwarding in group 1\n"
              "learning           00:aa:00:00:00:01 is unknown; learned here\n"
              "destination        00:bb:00:00:00:02 is at port 33, by a static entry\n"
              "egress queue       queue 2, by priority 5\n"
              "tagging            untagged to 33\n"
              "result             untagged to 33\n");
}

TEST_F(Text, ATraceFitsInto80Columns)
{
    MacEntry e;
    e.key = mac_key(kHostB, 10);
    e.port = 5;
    chip.macs.add(e, false, 0);
    const std::string text = trace(1, kToB.tag(10));
    EXPECT_TRUE(text.ends_with(
        "                   dropped: the destination is not in the VLAN\n"
        "result             dropped, egress_not_member: the destination is not in the\n"
        "                   VLAN\n"))
        << text;
}

TEST_F(Text, ATraceNamesOnlyThePortsThatSendUnderTagging)
{
    vlan(20, {}, {1, 2, 3});
    EXPECT_NE(trace(1, kToAll.tag(20)).find("tagging            untagged to 2,33\n"),
              std::string::npos);
}

TEST_F(Text, ATraceEndsWithTheReason)
{
    chip.stgs.set(1, 1, 1);
    EXPECT_EQ(trace(1, kToAll),
              "port               enters at port 1, which is up\n"
              "parse              60 bytes, type 0x0800\n"
              "VLAN               VLAN 1, the port's own, priority 0\n"
              "membership filter  the port is in the VLAN\n"
              "spanning tree      the port is blocking in group 1\n"
              "                   dropped: spanning tree blocks the ingress port\n"
              "result             dropped, stp_blocking: spanning tree blocks the ingress port\n");
}

TEST_F(Text, ATraceTellsThatAStaticEntryStays)
{
    MacEntry e;
    e.key = mac_key(kHostA, 1);
    e.port = 3;
    e.flags = BCM_L2_STATIC;
    chip.macs.add(e, false, 0);
    std::string text = trace(1, kToAll);
    EXPECT_NE(text.find("00:aa:00:00:00:01 has a static entry at port 33; not learned\n"),
              std::string::npos)
        << text;
}

TEST_F(Text, ATraceTellsWhyTheCpuGetsACopy)
{
    EXPECT_TRUE(trace(1, TestFrame(kBridgeGroup, kHostA))
                    .ends_with("result          to the CPU (BPDU, queue 0)\n"));
}

TEST_F(Text, ATraceOfAFloodTellsWhatIsBlockedAndWhoIsDown)
{
    vlan(20, {1, 2, 3, 4, 5});
    chip.flood_block.set(1, 2, 1);
    chip.ports.set_link(4, false);
    std::string text = trace(1, kToAll.tag(20));
    EXPECT_NE(text.find("broadcast to 2,4,5,33, blocked to 2\n"), std::string::npos) << text;
    EXPECT_NE(text.find("not through 4: the destination is disabled or has no link\n"),
              std::string::npos)
        << text;
    EXPECT_NE(text.find("result             tagged to 5,33\n"), std::string::npos) << text;
}

TEST_F(Text, VlansAreShownByUserPort)
{
    EXPECT_EQ(vlans_table(chip, names).text(), "vlan  tagged  untagged\n"
                                               "   1  none    1,2,33\n"
                                               "  10  1,2     33\n");
}

TEST_F(Text, EntriesAreShownByVlanAndAddress)
{
    send(3, kToAll);
    send(1, TestFrame(kBroadcastMac, kHostB).tag(10));
    MacEntry e;
    e.key = mac_key(kHostC, 1);
    e.flags = BCM_L2_STATIC;
    chip.macs.add(e, false, 0);
    EXPECT_EQ(fdb_table(chip, names).text(), "vlan  mac                port  kind\n"
                                             "   1  00:aa:00:00:00:01  33    learned\n"
                                             "   1  00:cc:00:00:00:03  cpu   static\n"
                                             "  10  00:bb:00:00:00:02  1     learned\n");
}

TEST_F(Text, CountersAndDropsShowWhatHasHappened)
{
    send(1, kToAll);
    chip.ports.set_discard(1, 1);
    send(1, kToAll);
    EXPECT_EQ(counters_table(chip, names).text(),
              "port  in_frames  in_octets  in_drop  in_err  out_frames  out_octets  out_drop\n"
              "   1          2        128        1       0           0           0         0\n"
              "   2          0          0        0       0           1          64         0\n"
              "  33          0          0        0       0           1          64         0\n");
    EXPECT_EQ(drops_table(chip).text(),
              "what         frames  copies  mirror  why\n"
              "in                2       2       0\n"
              "delivered         1       2       0\n"
              "discard_all       1       0       0  the port discards all frames\n");
    EXPECT_EQ(port_counters_table(chip, 2).text().substr(0, 70),
              "counter                      value\n"
              "snmpIfOutOctets                 64\n");
}

TEST_F(Text, PortsAreShownInTheOrderOfTheirUserPorts)
{
    names.set(50, 49);
    names.set(49, 50);
    chip.ports.set_enable(50, 0);
    TextTable table = ports_table(chip, names);
    ASSERT_EQ(table.rows.size(), 54u);
    EXPECT_EQ(table.rows[0][0], "1");
    EXPECT_EQ(table.rows[48][0], "49");
    EXPECT_EQ(table.rows[48][1], "down");
    EXPECT_EQ(table.rows[53][0], "cpu");
}

TEST(DropReasons, EveryReasonHasAName)
{
    EXPECT_STREQ(drop_name(DropReason::kNone), "none");
    EXPECT_STREQ(drop_name(DropReason::truncated), "truncated");
    EXPECT_STREQ(drop_name(DropReason::cpu_queue_full), "cpu_queue_full");
    EXPECT_STREQ(drop_text(DropReason::cpu_queue_full), "the CPU's queue is full");
}

TEST(DropCounters, AFrameOrACopyTooManyIsNoticed)
{
    Chip chip;
    EXPECT_EQ(chip.check_conservation(), "");
    chip.drops.frames_in = 1;
    EXPECT_EQ(
        chip.check_conservation(),
        "frames: 1 in, 0 delivered, 0 dropped; copies: 0 meant, 0 sent, 0 to the CPU, 0 dropped; "
        "mirror copies: 0 meant, 0 sent, 0 dropped");
    chip.drops.frames[1] = 1;
    EXPECT_EQ(chip.check_conservation(), "");
    chip.drops.copies_sent = 1;
    EXPECT_NE(chip.check_conservation(), "");
    chip.drops.copies_meant = 1;
    EXPECT_EQ(chip.check_conservation(), "");
    chip.drops.mirrors_meant = 1;
    EXPECT_NE(chip.check_conservation(), "");
    chip.drops.mirrors[1] = 1;
    EXPECT_EQ(chip.check_conservation(), "");
}

TEST(Chips, ACopyIsEqualUntilOneOfThemChanges)
{
    Chip a, b;
    EXPECT_EQ(a, b);
    EXPECT_EQ(a.digest(), b.digest());
    b.vlans.create(5);
    EXPECT_NE(a, b);
    EXPECT_NE(a.digest(), b.digest());
    a = b;
    EXPECT_EQ(a, b);
    EXPECT_EQ(a.digest(), b.digest());
    b = Chip{};
    EXPECT_NE(a.digest(), b.digest());
}

} // namespace
} // namespace vexosim
