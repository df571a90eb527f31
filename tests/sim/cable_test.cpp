// What happens to cables: pulled, flapping, losing and delaying frames.
#include "vexosim/cable.h"

#include "tests/kit/kit.h"
#include "tests/sim/wire_frames.h"

namespace {

struct Cables : CardTest {
    Cables() { take_sent(); }

    static bool up(int port) { return wire(port).link(); }

    /// The far end of a port sends frames of these marks, as broadcasts.
    static void arrive(int port, int first, int last)
    {
        for (int mark = first; mark <= last; ++mark) {
            ::Bytes bytes = frame(mark);
            std::fill_n(bytes.begin(), 6, std::uint8_t{0xff});
            wire(port).push(bytes);
        }
        drain();
    }
    /// The marks that a port sent since the last time.
    static std::string sent(int port) { return marks(wire(port).take_sent()); }

    static std::vector<CableStatus> wrong() { return impaired_cables(); }
};

std::string impair(int port, CableWay way, double loss, std::chrono::microseconds delay,
                   std::uint64_t seed = 1)
{
    return impair_cable(port, way, {loss, delay, seed});
}

} // namespace

TEST_F(Cables, APulledCableTakesTheLinkFromBothEndsAndCarriesNothing)
{
    EXPECT_EQ(plug_cable(3, false), "");
    EXPECT_FALSE(up(3));
    EXPECT_FALSE(wire_carrier(3));
    EXPECT_FALSE(attachments()[3].carrier);
    arrive(3, 1, 1);
    arrive(4, 2, 2);
    EXPECT_EQ(sent(5), "2");
    EXPECT_EQ(sent(3), "");
}

TEST_F(Cables, ACableThatIsPluggedInAgainCarriesFrames)
{
    plug_cable(3, false);
    printed([] { advance(1s); });
    EXPECT_EQ(plug_cable(3, true), "");
    printed([] { advance(1s); });
    let_ports_forward();
    EXPECT_TRUE(up(3));
    EXPECT_TRUE(wrong().empty());
    arrive(3, 1, 1);
    EXPECT_EQ(sent(5), "1");
}

TEST_F(Cables, APortThatIsSwitchedOffKeepsItsFarEndDownWhateverTheCable)
{
    sdk().set_port_enable(mp(3), false);
    printed([] { advance(1s); });
    ASSERT_FALSE(up(3));
    plug_cable(3, false);
    plug_cable(3, true);
    EXPECT_FALSE(up(3));
}

TEST_F(Cables, AFlappingCableIsPulledForTheFirstHalfOfEachPeriod)
{
    EXPECT_EQ(flap_cable(3, 2s), "");
    std::string seen;
    for (int quarter = 0; quarter < 12; ++quarter) {
        seen += wire_carrier(3) ? '+' : '-';
        printed([] { advance(500ms); });
    }
    EXPECT_EQ(seen, "--++--++--++");
    ASSERT_EQ(wrong().size(), 1u);
    EXPECT_EQ(wrong()[0].flap_period, 2s);
}

TEST_F(Cables, FlappingEndsWithTheCablePluggedInOrPulled)
{
    for (const bool plugged : {true, false}) {
        flap_cable(3, 2s);
        plug_cable(3, plugged);
        printed([] { advance(10s); });
        EXPECT_EQ(wire_carrier(3), plugged);
    }
}

TEST_F(Cables, TheSameFramesAreLostWithTheSameSeed)
{
    std::vector<std::string> runs;
    for (const std::uint64_t seed : {7U, 7U, 8U}) {
        impair(3, CableWay::in, 30, 0s, seed);
        arrive(3, 1, 50);
        arrive(3, 51, 100);
        runs.push_back(sent(5));
    }
    EXPECT_EQ(runs[0], runs[1]);
    EXPECT_NE(runs[0], runs[2]);
    // Written down, so that another version or machine loses the same.
    EXPECT_EQ(runs[0].substr(0, 30), "1 2 3 6 7 8 10 13 14 15 16 17 ");
}

TEST_F(Cables, AsManyFramesAreLostAsWasSaid)
{
    for (const auto& [percent, least, most] : {std::tuple{0.0, 0u, 0u},
                                               {1.0, 60u, 140u},
                                               {50.0, 4800u, 5200u},
                                               {100.0, 10000u, 10000u}}) {
        impair(3, CableWay::in, percent, 1s);
        for (int burst = 0; burst < 100; ++burst) {
            arrive(3, 1, 100);
        }
        const auto lost = static_cast<unsigned>(percent == 0 ? 0 : wrong().at(0).in.lost);
        EXPECT_GE(lost, least) << percent;
        EXPECT_LE(lost, most) << percent;
        advance(2s);
        EXPECT_EQ(wire(5).take_sent().size(), 10000 - lost) << percent;
        take_sent();
    }
}

TEST_F(Cables, EachWayLosesFramesOfItsOwn)
{
    impair(3, CableWay::in, 50, 0s);
    arrive(3, 1, 100);
    const std::string in = sent(5);
    impair(3, CableWay::in, 0, 0s);
    impair(3, CableWay::out, 50, 0s);
    arrive(4, 1, 100);
    const std::string out = sent(3);
    EXPECT_NE(out, in);
    EXPECT_EQ(wrong()[0].in.lost, 0u);
    EXPECT_GT(wrong()[0].out.lost, 0u);
}

TEST_F(Cables, DelayedFramesArriveLaterInTheirOrder)
{
    impair(3, CableWay::out, 0, 30ms);
    arrive(4, 1, 3);
    EXPECT_EQ(sent(3), "");
    EXPECT_EQ(sent(5), "1 2 3");
    EXPECT_EQ(wrong()[0].out.waiting, 3u);
    advance(29999us);
    EXPECT_EQ(sent(3), "");
    advance(1us);
    EXPECT_EQ(sent(3), "1 2 3");
    EXPECT_EQ(wrong()[0].out.waiting, 0u);
}

TEST_F(Cables, FramesOnTheirWayArriveAfterTheDelayIsTakenAway)
{
    impair(3, CableWay::in, 0, 30ms);
    arrive(3, 1, 1);
    impair(3, CableWay::in, 0, 0s);
    arrive(3, 2, 2);
    EXPECT_EQ(sent(5), "2");
    EXPECT_EQ(wrong()[0].in.waiting, 1u);
    advance(30ms);
    EXPECT_EQ(sent(5), "1");
    EXPECT_TRUE(wrong().empty());
}

TEST_F(Cables, FramesOnTheirWayAreLostWithTheCable)
{
    impair(3, CableWay::out, 0, 30ms);
    arrive(4, 1, 1);
    plug_cable(3, false);
    advance(1ms);
    detach(5);
    impair(4, CableWay::in, 0, 30ms);
    arrive(4, 2, 2);
    detach(4);
    printed([] { advance(1s); });
    EXPECT_EQ(sent(3), "");
    EXPECT_EQ(sent(6), "1");
}

TEST_F(Cables, ANewWireHasANewCable)
{
    impair(3, CableWay::in, 50, 30ms);
    flap_cable(3, 2s);
    detach(3);
    attach(3, "mem");
    EXPECT_TRUE(wrong().empty());
    EXPECT_TRUE(wire_carrier(3));
    printed([] { advance(1s); });
    EXPECT_TRUE(wire_carrier(3));
}

TEST_F(Cables, WhatNoCableDoesIsRefused)
{
    detach(9);
    EXPECT_EQ(plug_cable(9, true), "port 9: nothing is attached");
    EXPECT_EQ(flap_cable(53, 1s), "port 53: no such port; wires go into ports 0 to 52");
    EXPECT_EQ(flap_cable(3, 999us), "a cable cannot flap that fast; the shortest period is 1 ms");
    EXPECT_EQ(impair(3, CableWay::in, 100.1, 0s), "a cable loses 0 to 100 percent of its frames");
    EXPECT_EQ(impair(3, CableWay::in, std::stod("nan"), 0s),
              "a cable loses 0 to 100 percent of its frames");
    EXPECT_EQ(impair(3, CableWay::in, 0, -1us),
              "a cable cannot deliver frames before they are sent");
    EXPECT_TRUE(wrong().empty());
}
