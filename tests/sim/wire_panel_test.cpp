#include <gtest/gtest.h>

#include <condition_variable>
#include <filesystem>

#include "tests/sim/wire_captures.h"
#include "vexosim/clock.h"

using namespace vexosim;

namespace {

// A memory wire in a port, which owns it.
MemoryWire& plug(int user_port)
{
    auto wire = std::make_unique<MemoryWire>();
    MemoryWire& reference = *wire;
    EXPECT_EQ(attach(user_port, std::move(wire)), "");
    return reference;
}

std::size_t open_files()
{
    const std::filesystem::directory_iterator all("/proc/self/fd");
    return static_cast<std::size_t>(std::distance(begin(all), end(all)));
}

// Writes down arriving frames as PORT:MARK, and lets a test wait for them.
struct Arrivals {
    Arrivals()
    {
        on_wire_receive(
            [this](int port, std::span<const FrameView> frames) { take(port, frames); });
    }
    ~Arrivals() { on_wire_receive({}); }

    void take(int port, std::span<const FrameView> frames)
    {
        const std::lock_guard lock(mutex);
        for (const FrameView bytes : frames) {
            text += std::to_string(port) + ":" + std::to_string(bytes.back()) + " ";
        }
        batches += 1;
        changed.notify_all();
    }

    bool wait_for(const std::string& expected)
    {
        std::unique_lock lock(mutex);
        return changed.wait_for(lock, std::chrono::seconds(20), [&] { return text == expected; });
    }

    std::mutex mutex;
    std::condition_variable changed;
    std::string text;
    int batches = 0;
};

} // namespace

TEST(WirePanel, APortTakesOneWireUntilItIsDetached)
{
    plug(4);
    EXPECT_EQ(attach(4, "mem"), "port 4: already attached to mem; detach it first");
    EXPECT_EQ(attach(4, std::make_unique<MemoryWire>()),
              "port 4: already attached to mem; detach it first");
    EXPECT_EQ(detach(4), "");
    EXPECT_EQ(attach(4, "mem"), "");
}

TEST(WirePanel, OnlyFrontPanelPortsTakeWires)
{
    for (const int port : {-1, 53, 54, 1000000}) {
        const std::string why =
            "port " + std::to_string(port) + ": no such port; wires go into ports 0 to 52";
        EXPECT_EQ(attach(port, "mem"), why);
        EXPECT_EQ(attach(port, std::make_unique<MemoryWire>()), why);
        EXPECT_EQ(detach(port), why);
    }
    EXPECT_EQ(attach(0, "mem"), "");
    EXPECT_EQ(attach(52, "mem"), "");
}

TEST(WirePanel, DetachingAnEmptyPortSaysSo)
{
    EXPECT_EQ(detach(7), "port 7: nothing is attached");
}

TEST(WirePanel, AnUnknownWireIsRefusedWithWhatIsPossible)
{
    for (const std::string spec : {"", "tap", "veth", "pcap", "mem:", "serial:x", ":x"}) {
        EXPECT_NE(open_wire(spec).error, "") << spec;
    }
    EXPECT_EQ(attach(1, "serial:x"), "port 1: unknown wire \"serial:x\"; expected tap:NAME, "
                                     "veth:NAME, pcap:IN,OUT or mem");
}

TEST(WirePanel, ARefusedPortOpensNothing)
{
    const TempDir dir;
    const auto out = dir.path("out.pcap");
    plug(1);
    EXPECT_NE(attach(1, "pcap:," + out), "");
    EXPECT_NE(attach(53, "pcap:," + out), "");
    EXPECT_FALSE(std::filesystem::exists(out));
}

TEST(WirePanel, RefusalsAndDetachingLeaveNoDescriptorsBehind)
{
    const TempDir dir;
    plug(1);
    const auto before = open_files();
    const auto bad = dir.write("bad.pcap", {1, 2, 3});
    for (int i = 0; i < 10; ++i) {
        EXPECT_NE(attach(1, std::make_unique<MemoryWire>()), "");
        EXPECT_NE(attach(2, "pcap:" + bad + ","), "");
        EXPECT_EQ(attach(2, "pcap:," + dir.path("out.pcap")), "");
        EXPECT_EQ(detach(2), "");
    }
    EXPECT_EQ(open_files(), before);
}

TEST(WirePanel, ListsWhatIsAttachedByPortNumber)
{
    plug(9).set_far_end(false);
    plug(3);
    const auto all = attachments();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(all[0].user_port, 3);
    EXPECT_EQ(all[0].wire, "mem");
    EXPECT_TRUE(all[0].carrier);
    EXPECT_EQ(all[1].user_port, 9);
    EXPECT_FALSE(all[1].carrier);
}

TEST(WirePanel, APortSeesItsFarEnd)
{
    MemoryWire& wire = plug(2);
    EXPECT_TRUE(wire_carrier(2));
    wire.set_far_end(false);
    EXPECT_FALSE(wire_carrier(2));
    EXPECT_FALSE(wire_carrier(3));
    EXPECT_FALSE(wire_carrier(-1));
    EXPECT_FALSE(wire_carrier(53));
}

TEST(WirePanel, TheFarEndSeesThePortsLink)
{
    MemoryWire& wire = plug(2);
    EXPECT_TRUE(wire.link());
    set_wire_carrier(2, false);
    EXPECT_FALSE(wire.link());
    set_wire_carrier(2, true);
    EXPECT_TRUE(wire.link());
}

TEST(WirePanel, AWireAttachedLaterLearnsThePortsLink)
{
    set_wire_carrier(2, false);
    EXPECT_FALSE(plug(2).link());
}

TEST(WirePanel, SentFramesLeaveThroughTheirPortOnly)
{
    MemoryWire &one = plug(1), &two = plug(2);
    const Bytes bytes = frame(5);
    const std::vector<FrameView> frames{bytes};
    send_to_wire(2, frames);
    send_to_wire(3, frames);
    send_to_wire(-1, frames);
    send_to_wire(53, frames);
    EXPECT_EQ(marks(one.sent()), "");
    EXPECT_EQ(marks(two.sent()), "5");
}

TEST(WirePanel, PollingDeliversEverythingThatWaitsPortByPort)
{
    Arrivals arrivals;
    MemoryWire &two = plug(2), &one = plug(1);
    two.push(frame(21));
    one.push(frame(11));
    one.push(frame(12));
    EXPECT_EQ(poll_wires(), 3U);
    EXPECT_EQ(arrivals.text, "1:11 1:12 2:21 ");
    EXPECT_EQ(arrivals.batches, 2);
    EXPECT_EQ(poll_wires(), 0U);
}

TEST(WirePanel, PollingGoesOnUntilNoBurstIsLeft)
{
    Arrivals arrivals;
    MemoryWire& wire = plug(0);
    for (int i = 0; i < 200; ++i) {
        wire.push(frame(1));
    }
    EXPECT_EQ(poll_wires(), 200U);
    EXPECT_EQ(arrivals.batches, 4);
}

TEST(WirePanel, DrainingWithTheManualClockPolls)
{
    Arrivals arrivals;
    use_manual_clock();
    plug(3).push(frame(1));
    drain();
    EXPECT_EQ(arrivals.text, "3:1 ");
}

TEST(WirePanel, TheThreadDeliversInOrderAndPollingThenDoesNothing)
{
    Arrivals arrivals;
    MemoryWire& wire = plug(6);
    start_wires();
    wire.push(frame(1));
    EXPECT_TRUE(arrivals.wait_for("6:1 "));
    wire.push(frame(2));
    wire.push(frame(3));
    EXPECT_TRUE(arrivals.wait_for("6:1 6:2 6:3 "));
    EXPECT_EQ(poll_wires(), 0U);
    stop_wires();
}

TEST(WirePanel, WiresAttachedWhileTheThreadRunsAreRead)
{
    Arrivals arrivals;
    start_wires();
    plug(6).push(frame(1));
    EXPECT_TRUE(arrivals.wait_for("6:1 "));
    EXPECT_EQ(detach(6), "");
    plug(6).push(frame(2));
    EXPECT_TRUE(arrivals.wait_for("6:1 6:2 "));
    stop_wires();
}

TEST(WirePanel, AStoppedThreadLeavesFramesAtTheWire)
{
    Arrivals arrivals;
    MemoryWire& wire = plug(6);
    start_wires();
    start_wires();
    stop_wires();
    stop_wires();
    wire.push(frame(1));
    EXPECT_EQ(arrivals.text, "");
    EXPECT_EQ(poll_wires(), 1U);
    EXPECT_EQ(arrivals.text, "6:1 ");
}

TEST(WirePanel, FramesMayBeSentAndWiresDetachedWhileTheyArrive)
{
    MemoryWire& wire = plug(1);
    std::size_t sent = 0;
    on_wire_receive([&](int port, std::span<const FrameView> frames) {
        send_to_wire(port, frames);
        sent = wire.sent().size();
        EXPECT_EQ(detach(port), "");
    });
    wire.push(frame(1));
    EXPECT_EQ(poll_wires(), 1U);
    EXPECT_EQ(sent, 1U);
    EXPECT_TRUE(attachments().empty());
}

TEST(WirePanel, CapturesPlayOnlyWhenAskedInTheOrderInWhichTheyWereRecorded)
{
    Arrivals arrivals;
    const TempDir dir;
    const auto a =
        dir.write("a", Capture().record(1, 0, frame(1)).record(1, 500, frame(4)).bytes());
    const auto b = dir.write("b", Capture(0xa1b23c4d, true)
                                      .record(1, 100, frame(2))
                                      .record(1, 200, frame(3))
                                      .record(2, 0, frame(5))
                                      .bytes());
    EXPECT_EQ(attach(8, "pcap:" + a + ","), "");
    EXPECT_EQ(attach(5, "pcap:" + b + ","), "");
    EXPECT_EQ(poll_wires(), 0U);
    const Replay replay = replay_captures();
    EXPECT_EQ(arrivals.text, "8:1 5:2 5:3 8:4 5:5 ");
    EXPECT_EQ(replay.frames, 5U);
    EXPECT_TRUE(replay.notices.empty());
    EXPECT_EQ(replay_captures().frames, 0U);
}

TEST(WirePanel, AReplayTellsTheTimeBetweenFrames)
{
    const TempDir dir;
    const auto in = dir.write("in", Capture()
                                        .record(1, 0, frame(1))
                                        .record(1, 0, frame(2))
                                        .record(1, 30, frame(3))
                                        .record(4, 0, frame(4))
                                        .bytes());
    attach(1, "pcap:" + in + ",");
    std::string gaps;
    replay_captures(
        [&](std::chrono::nanoseconds gap) { gaps += std::to_string(gap.count()) + " "; });
    EXPECT_EQ(gaps, "30000 2999970000 ");
}

TEST(WirePanel, ACaptureWrittenDuringAReplayHasTheReplaysTimes)
{
    const TempDir dir;
    const auto in =
        dir.write("in", Capture().record(1, 7, frame(1)).record(2, 9, frame(2)).bytes());
    attach(1, "pcap:" + in + ",");
    attach(2, "pcap:," + dir.path("out"));
    on_wire_receive([](int, std::span<const FrameView> frames) { send_to_wire(2, frames); });
    replay_captures();
    on_wire_receive({});
    Bytes expected = dir.read("in");
    expected[16] = 0, expected[17] = 0, expected[18] = 4; // the snap length
    EXPECT_EQ(dir.read("out"), expected);
}

TEST(WirePanel, AReplayReportsACaptureThatIsCutShort)
{
    const TempDir dir;
    const auto in = dir.write("in", Capture().record(1, 0, frame(1)).cut_by(2));
    attach(1, "pcap:" + in + ",");
    const Replay replay = replay_captures();
    ASSERT_EQ(replay.notices.size(), 1U);
    EXPECT_EQ(replay.notices[0], in + " is cut short in record 1; 0 records before it were read");
}
