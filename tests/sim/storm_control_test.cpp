// Storm control: frames per second of a class that a port accepts. Ports 1 to 3 are in VLAN 1, and
// frames come in at port 1.
#include <bcm/l2.h>
#include <bcmx/rate.h>

#include "path.h"

namespace vexosim {
namespace {

struct Kind {
    const char* name;
    StormClass storm;
    int flags;
    const char* drop;
    TestFrame frame, other;
};

void PrintTo(const Kind& kind, std::ostream* out)
{
    *out << kind.name;
}

const TestFrame kBroadcast(kBroadcastMac, kHostA), kMulticast(kGroup, kHostA),
    kUnknown(kHostB, kHostA);

struct Limits : Path {
    Limits() { only({1, 2, 3}); }

    void limit(const Kind& kind, int rate)
    {
        EXPECT_EQ(chip.rates.set(1, kind.storm, rate, kind.flags), 0);
    }
    /// How many of `n` frames that arrive now are forwarded.
    int passing(const TestFrame& frame, int n, int port = 1)
    {
        int passed = 0;
        for (int i = 0; i < n; ++i)
            passed += send(port, frame).starts_with("drop:") ? 0 : 1;
        return passed;
    }
};

class StormControl : public ::testing::TestWithParam<Kind>, protected Limits {};

TEST_P(StormControl, AsManyPassASecondAsTheLimitSays)
{
    const Kind& kind = GetParam();
    EXPECT_EQ(passing(kind.frame, 50), 50);
    limit(kind, 10);
    EXPECT_EQ(passing(kind.frame, 50), 10);
    chip.now_us += 1'000'000;
    EXPECT_EQ(passing(kind.frame, 50), 10);
    chip.now_us += 99'999;
    EXPECT_EQ(passing(kind.frame, 50), 0);
    chip.now_us += 1;
    EXPECT_EQ(passing(kind.frame, 50), 1);
    chip.now_us += 3'600'000'000;
    EXPECT_EQ(passing(kind.frame, 50), 10) << "no more than a second's are saved up";
}

TEST_P(StormControl, FramesBeyondItAreCountedAsDropped)
{
    const Kind& kind = GetParam();
    limit(kind, 2);
    EXPECT_EQ(send(1, kind.frame), "2 3");
    EXPECT_EQ(send(1, kind.frame), "2 3");
    EXPECT_EQ(send(1, kind.frame), std::string("drop:") + kind.drop);
    EXPECT_EQ(chip.counters[1].in_discards, 1u);
    EXPECT_EQ(chip.counters[1].in.frames(), 3u);
}

TEST_P(StormControl, OtherClassesAndOtherPortsAreNotLimited)
{
    const Kind& kind = GetParam();
    limit(kind, 1);
    EXPECT_EQ(passing(kind.frame, 5), 1);
    EXPECT_EQ(passing(kind.other, 5), 5);
    EXPECT_EQ(passing(kind.frame, 5, 2), 5);
}

TEST_P(StormControl, ALimitOfZeroLiftsIt)
{
    const Kind& kind = GetParam();
    limit(kind, 1);
    EXPECT_EQ(passing(kind.frame, 5), 1);
    limit(kind, 0);
    EXPECT_EQ(passing(kind.frame, 5), 5);
}

TEST_P(StormControl, ANewLimitStartsAfresh)
{
    const Kind& kind = GetParam();
    limit(kind, 3);
    EXPECT_EQ(passing(kind.frame, 5), 3);
    limit(kind, 2);
    EXPECT_EQ(passing(kind.frame, 5), 2);
}

TEST_P(StormControl, TracingUsesNothingUp)
{
    const Kind& kind = GetParam();
    limit(kind, 1);
    const Chip before = chip;
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(trace_frame(chip, cpu, 1, kind.frame, names).drop, DropReason::kNone);
    EXPECT_EQ(chip, before);
    EXPECT_EQ(passing(kind.frame, 3), 1);
}

INSTANTIATE_TEST_SUITE_P(All, StormControl,
                         ::testing::Values(Kind{"Broadcast", StormClass::kBcast, BCM_RATE_BCAST,
                                                "storm_broadcast", kBroadcast, kMulticast},
                                           Kind{"Multicast", StormClass::kMcast, BCM_RATE_MCAST,
                                                "storm_multicast", kMulticast, kUnknown},
                                           Kind{"UnknownUnicast", StormClass::kDlf, BCM_RATE_DLF,
                                                "storm_unknown_unicast", kUnknown, kBroadcast}),
                         [](const auto& test) { return test.param.name; });

struct StormControlOf : ::testing::Test, Limits {
    void limit_all(int rate)
    {
        EXPECT_EQ(chip.rates.set(1, StormClass::kBcast, rate, BCM_RATE_BCAST), 0);
        EXPECT_EQ(chip.rates.set(1, StormClass::kMcast, rate, BCM_RATE_MCAST), 0);
        EXPECT_EQ(chip.rates.set(1, StormClass::kDlf, rate, BCM_RATE_DLF), 0);
    }
    void know(MacAddress mac)
    {
        MacEntry e;
        e.key = mac_key(mac, 1);
        e.port = 2;
        e.flags = BCM_L2_STATIC;
        EXPECT_EQ(chip.macs.add(e, false, 0), 0);
    }
};

TEST_F(StormControlOf, KnownUnicastsAreNeverLimited)
{
    limit_all(1);
    know(kHostB);
    EXPECT_EQ(passing(kUnknown, 20), 20);
}

TEST_F(StormControlOf, AMulticastThatTheTableKnowsIsLimitedToo)
{
    limit_all(4);
    know(kGroup);
    EXPECT_EQ(send(1, kMulticast), "2");
    EXPECT_EQ(passing(kMulticast, 20), 3);
}

TEST_F(StormControlOf, BpdusAreNotLimited)
{
    limit_all(1);
    EXPECT_EQ(passing(TestFrame(kBridgeGroup, kHostA), 5), 5);
}

TEST_F(StormControlOf, FramesThatCouldNotEnterUseNothingUp)
{
    limit_all(2);
    chip.ports.set_discard(1, 1);
    EXPECT_EQ(passing(kBroadcast, 5), 0);
    chip.ports.set_discard(1, 0);
    EXPECT_EQ(passing(kBroadcast, 5), 2);
}

TEST_F(StormControlOf, ARefusedFramesSourceIsLearned)
{
    limit_all(1);
    EXPECT_EQ(send(1, TestFrame(kBroadcastMac, kHostC)), "2 3");
    EXPECT_EQ(send(1, kBroadcast), "drop:storm_broadcast");
    EXPECT_NE(chip.macs.find(mac_key(kHostA, 1)), nullptr);
}

TEST_F(StormControlOf, ARefusedUnknownUnicastIsNotCopiedToTheCpu)
{
    limit_all(1);
    EXPECT_EQ(chip.controls.set(SwitchControls::kUnknownUnicastToCpu, 1), 0);
    EXPECT_EQ(send(1, kUnknown), "2 3 cpu");
    EXPECT_EQ(send(1, kUnknown), "drop:storm_unknown_unicast");
}

TEST_F(StormControlOf, FramesOfOneBatchAreCountedOneByOne)
{
    limit_all(3);
    const std::vector<FrameView> batch(10, kBroadcast);
    outputs.clear();
    forward_batch(chip, cpu, 1, batch, outputs);
    EXPECT_EQ(outputs.frames(2).size(), 3u);
    EXPECT_EQ(drops(DropReason::storm_broadcast), 7u);
    EXPECT_EQ(chip.check_conservation(), "");
}

TEST_F(StormControlOf, ATraceTellsTheLimit)
{
    limit_all(1);
    const auto line = [&] {
        for (const Recorder::Line& l : trace_frame(chip, cpu, 1, kBroadcast, names).lines) {
            if (l.stage == "storm control")
                return l.text;
        }
        return std::string();
    };
    EXPECT_EQ(line(), "within 1 broadcasts per second");
    send(1, kBroadcast);
    EXPECT_EQ(line(), "beyond 1 broadcasts per second");
    limit_all(0);
    EXPECT_EQ(line(), "");
}

} // namespace
} // namespace vexosim
