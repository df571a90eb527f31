// Every one of the SDK's 78 counters, after frames of every kind; and what wraps.
#include <bcm/stat.h>

#include <map>

#include "path.h"

namespace vexosim {
namespace {

using Values = std::map<std::string, std::uint64_t>;

constexpr MacAddress kIp6Group = 0x333300000001, kPause = 0x0180c2000001;

Frame control_frame(MacAddress dst, int code)
{
    Frame frame = TestFrame(dst, kHostA).type(0x8808).bytes();
    frame[15] = static_cast<std::uint8_t>(code);
    return frame;
}

struct Counters : ::testing::Test, Path {
    Counters() { only({1, 2}); }

    Values of(int port) const
    {
        Values values;
        for (int counter = 0; counter < kStatCount; ++counter) {
            std::uint64_t value = 0;
            EXPECT_EQ(chip.counters.get(port, counter, value), 0);
            if (value != 0)
                values[stat_name(counter)] = value;
        }
        return values;
    }
    void send_typed(MacAddress dst, std::size_t bytes, int type)
    {
        send(1, TestFrame(dst, kHostA, bytes).type(type));
    }
    void frame_max(int port, int size) { EXPECT_EQ(chip.ports.set_frame_max(port, size), 0); }
    /// 11 frames from port 1 to port 2, one of each size class but two of 1024 to 1518 octets
    /// there, or three where they have lost their tags.
    void send_all_sizes()
    {
        frame_max(1, 9600);
        frame_max(2, 9600);
        send_typed(kHostB, 60, 0x0800);
        send_typed(kGroup, 61, 0x0800);
        send_typed(kBroadcastMac, 124, 0x0806);
        send_typed(kHostB, 252, 0x86dd);
        send_typed(kIp6Group, 508, 0x86dd);
        send_typed(kHostB, 1020, 0x88b5);
        send_typed(kHostB, 1514, 0x88b5);
        send(1, TestFrame(kHostB, kHostA, 1514).type(0x88b5).tag(1));
        send_typed(kHostB, 1600, 0x88b5);
        send_typed(kHostB, 2100, 0x88b5);
        send_typed(kHostB, 5000, 0x88b5);
    }
};

TEST_F(Counters, AfterFramesOfEveryKindOnIngress)
{
    send_all_sizes();
    send(1, control_frame(kPause, 1));
    send(1, control_frame(kPause, 2));
    chip.ports.set_discard(1, 1);
    send_typed(kHostB, 60, 0x88b5);
    chip.ports.set_discard(1, 0);
    send(1, Frame(13));
    frame_max(1, 1518);
    send_typed(kHostB, 1600, 0x88b5);
    frame_max(1, 9600);
    frame_max(2, 1518);
    send_typed(kHostB, 1600, 0x88b5);
    const std::uint64_t octets =
        64 + 65 + 128 + 256 + 512 + 1024 + 1518 + 1522 + 1604 + 2104 + 5004 + 64 + 64 + 64 + 1604;
    EXPECT_EQ(of(1), (Values{{"snmpIfInOctets", octets},
                             {"snmpIfHCInOctets", octets},
                             {"snmpIfInUcastPkts", 10},
                             {"snmpIfHCInUcastPkts", 10},
                             {"snmpIfInNUcastPkts", 5},
                             {"snmpIfInMulticastPkts", 4},
                             {"snmpIfHCInMulticastPkts", 4},
                             {"snmpIfInBroadcastPkts", 1},
                             {"snmpIfHCInBroadcastPkts", 1},
                             {"snmpIfInDiscards", 2},
                             {"snmpIfInErrors", 2},
                             {"snmpIpInReceives", 2},
                             {"snmpDot1dTpPortInFrames", 15},
                             {"snmpDot1dPortInDiscards", 2},
                             {"snmpEtherStatsMulticastPkts", 4},
                             {"snmpEtherStatsBroadcastPkts", 1},
                             {"snmpEtherStatsUndersizePkts", 1},
                             {"snmpEtherStatsOversizePkts", 1},
                             {"snmpEtherStatsPkts64Octets", 4},
                             {"snmpEtherStatsPkts65to127Octets", 1},
                             {"snmpEtherStatsPkts128to255Octets", 1},
                             {"snmpEtherStatsPkts256to511Octets", 1},
                             {"snmpEtherStatsPkts512to1023Octets", 1},
                             {"snmpEtherStatsPkts1024to1518Octets", 2},
                             {"snmpEtherStatsPkts1519to1522Octets", 1},
                             {"snmpEtherStatsPkts1523to2047Octets", 3},
                             {"snmpEtherStatsPkts2048to4095Octets", 1},
                             {"snmpEtherStatsPkts4096to9216Octets", 1},
                             {"snmpEtherStatsOctets", octets + 17 + 1604},
                             {"snmpEtherStatsPkts", 17},
                             {"snmpEtherStatsRXNoErrors", 15},
                             {"snmpDot3StatsFrameTooLongs", 1},
                             {"snmpDot3ControlInUnknownOpcodes", 1},
                             {"snmpDot3InPauseFrames", 1},
                             {"ipv6IfStatsInReceives", 2},
                             {"ipv6IfStatsInMcastPkts", 1}}));
}

TEST_F(Counters, AfterFramesOfEveryKindOnEgress)
{
    send_all_sizes();
    frame_max(2, 1518);
    send_typed(kHostB, 1600, 0x88b5);
    const std::uint64_t octets =
        64 + 65 + 128 + 256 + 512 + 1024 + 1518 + 1518 + 1604 + 2104 + 5004;
    EXPECT_EQ(of(2), (Values{{"snmpIfOutOctets", octets},
                             {"snmpIfHCOutOctets", octets},
                             {"snmpIfOutUcastPkts", 8},
                             {"snmpIfHCOutUcastPkts", 8},
                             {"snmpIfOutNUcastPkts", 3},
                             {"snmpIfHCOutMulticastPkts", 2},
                             {"snmpIfHCOutBroadcastPkts", 1},
                             {"snmpIfOutDiscards", 1},
                             {"snmpDot1dBasePortMtuExceededDiscards", 1},
                             {"snmpDot1dTpPortOutFrames", 11},
                             {"snmpEtherStatsMulticastPkts", 2},
                             {"snmpEtherStatsBroadcastPkts", 1},
                             {"snmpEtherStatsPkts64Octets", 1},
                             {"snmpEtherStatsPkts65to127Octets", 1},
                             {"snmpEtherStatsPkts128to255Octets", 1},
                             {"snmpEtherStatsPkts256to511Octets", 1},
                             {"snmpEtherStatsPkts512to1023Octets", 1},
                             {"snmpEtherStatsPkts1024to1518Octets", 3},
                             {"snmpEtherStatsPkts1523to2047Octets", 1},
                             {"snmpEtherStatsPkts2048to4095Octets", 1},
                             {"snmpEtherStatsPkts4096to9216Octets", 1},
                             {"snmpEtherStatsOctets", octets},
                             {"snmpEtherStatsPkts", 11},
                             {"snmpEtherStatsTXNoErrors", 11},
                             {"ipv6IfStatsOutMcastPkts", 1}}));
}

TEST_F(Counters, CopiesThatTheCpuHasNoRoomForAreDropEvents)
{
    for (std::size_t i = 0; i < CpuReceive::kQueueDepth + 3; ++i)
        send(1, TestFrame(kBridgeGroup, kHostA));
    EXPECT_EQ(of(1)["snmpEtherStatsDropEvents"], 3u);
    EXPECT_EQ(of(1)["snmpIfInDiscards"], 3u);
}

TEST_F(Counters, ControlFramesToThePortsOwnAddressEndThere)
{
    EXPECT_EQ(send(1, control_frame(kHostC, 1)), "2");
    EXPECT_EQ(chip.ports.set_pause_addr(1, {0, 0xcc, 0, 0, 0, 3}), 0);
    EXPECT_EQ(send(1, control_frame(kHostC, 1)), "drop:pause");
    EXPECT_EQ(send(1, control_frame(kHostC, 7)), "drop:pause");
    EXPECT_EQ(of(1)["snmpDot3InPauseFrames"], 1u);
    EXPECT_EQ(of(1)["snmpDot3ControlInUnknownOpcodes"], 1u);
    EXPECT_EQ(send(1, TestFrame(kHostC, kHostA)), "2") << "of another type";
}

TEST_F(Counters, APortWithoutAnAddressOfItsOwnLetsControlFramesToAddress0Pass)
{
    EXPECT_EQ(send(1, control_frame(0, 1)), "2");
}

TEST_F(Counters, APauseFrameMayEndWithItsCode)
{
    const Frame frame = control_frame(kPause, 1);
    send(1, FrameView(frame).first(16));
    EXPECT_EQ(of(1)["snmpDot3InPauseFrames"], 1u);
    send(1, FrameView(frame).first(15));
    EXPECT_EQ(of(1)["snmpDot3InPauseFrames"], 1u);
    EXPECT_EQ(of(1)["snmpDot3ControlInUnknownOpcodes"], 1u);
}

TEST_F(Counters, ATaggedFrameIsNoControlFrame)
{
    Frame frame = control_frame(kPause, 1);
    const std::uint8_t tag[] = {0x81, 0, 0, 1};
    frame.insert(frame.begin() + 12, std::begin(tag), std::end(tag));
    EXPECT_EQ(send(1, frame), "drop:pause") << "the address never passes";
    EXPECT_EQ(of(1).count("snmpDot3InPauseFrames"), 0u);
}

TEST_F(Counters, TheCpuPortCountsWhatItsCpuSendsAndNothingThatItGets)
{
    EXPECT_EQ(send_from_cpu(TestFrame(kHostB, kHostA).type(0x88b5).tag(1)), "1 2");
    const Values after = of(kCpuPort);
    EXPECT_EQ(after.at("snmpIfInUcastPkts"), 1u);
    EXPECT_EQ(after.at("snmpEtherStatsPkts"), 1u);
    EXPECT_EQ(send(1, TestFrame(kBridgeGroup, kHostA)), "cpu");
    EXPECT_EQ(of(kCpuPort), after);
}

TEST_F(Counters, FramesThatAPortWithoutLinkMissesAreNotCounted)
{
    chip.ports.set_link(1, false);
    send_typed(kHostB, 60, 0x0800);
    EXPECT_EQ(of(1), Values{});
}

} // namespace
} // namespace vexosim
