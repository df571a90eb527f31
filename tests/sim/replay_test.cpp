// Replay of capture files into ports of a card.
#include "vexosim/replay.h"

#include <bcmx/port.h>

#include "tests/kit/kit.h"
#include "tests/sim/pcapng_blocks.h"

namespace {

using Bytes = ::Bytes;

/// A broadcast with a mark, so that all ports show it.
Bytes shout(int mark)
{
    Bytes bytes = frame(mark);
    std::fill_n(bytes.begin(), 6, std::uint8_t{0xff});
    return bytes;
}

struct ReplayFiles : CardTest {
    ReplayFiles() { take_sent(); }

    /// A file with frames of these marks, each captured that many milliseconds after the start.
    std::string file(const std::string& name, const std::vector<std::pair<int, int>>& frames)
    {
        Capture capture;
        for (const auto& [mark, ms] : frames) {
            capture.record(100 + static_cast<unsigned>(ms) / 1000,
                           static_cast<unsigned>(ms) % 1000 * 1000, shout(mark));
        }
        return dir.write(name, capture.bytes());
    }

    /// The marks that a port sent since the last time.
    static std::string sent(int port) { return marks(wire(port).take_sent()); }

    TempDir dir;
};

} // namespace

TEST_F(ReplayFiles, PlaysAFileIntoItsPort)
{
    const Replayed done = replay_files({{file("a", {{1, 0}, {2, 0}}), 3}});
    EXPECT_EQ(done.frames, 2u);
    EXPECT_TRUE(done.finished);
    EXPECT_EQ(done.error, "");
    EXPECT_EQ(sent(4), "1 2");
    EXPECT_EQ(sent(3), "");
}

TEST_F(ReplayFiles, PlaysSeveralFilesInTheOrderOfTheirTimes)
{
    const std::vector<ReplayFile> files = {{file("a", {{1, 10}, {2, 30}, {3, 30}}), 1},
                                           {file("b", {{4, 0}, {5, 20}, {6, 40}}), 2}};
    for (const ReplaySpeed speed : {ReplaySpeed::original, ReplaySpeed::fixed, ReplaySpeed::full}) {
        EXPECT_EQ(replay_files(files, {speed}).frames, 6u);
        EXPECT_EQ(sent(3), "4 1 5 2 3 6");
        EXPECT_EQ(sent(1), "4 5 6");
        EXPECT_EQ(sent(2), "1 2 3");
    }
}

TEST_F(ReplayFiles, OriginalSpeedFollowsTheManualClock)
{
    const auto start = now();
    std::string times;
    ReplayOptions options;
    options.progress = [&](const ReplayProgress& so_far) {
        times += std::to_string(so_far.frames) + "@" + std::to_string((now() - start) / 1ms) + " ";
        return true;
    };
    replay_files({{file("a", {{1, 0}, {2, 0}, {3, 5}, {4, 2500}}), 1}}, options);
    EXPECT_EQ(times, "2@0 3@5 4@2500 ");
}

TEST_F(ReplayFiles, FixedSpeedIsSoManyFramesASecond)
{
    const auto start = now();
    ReplayOptions options{ReplaySpeed::fixed, 3};
    std::string times;
    options.progress = [&](const ReplayProgress&) {
        times += std::to_string((now() - start).count()) + " ";
        return true;
    };
    replay_files({{file("a", {{1, 0}, {2, 0}, {3, 0}, {4, 9000}}), 1}}, options);
    EXPECT_EQ(times, "0 333334 666667 1000000 ");
}

TEST_F(ReplayFiles, FullSpeedTakesNoTimeOfTheManualClock)
{
    const auto start = now();
    replay_files({{file("a", {{1, 0}, {2, 90000}}), 1}}, {ReplaySpeed::full});
    EXPECT_EQ(now(), start);
    EXPECT_EQ(sent(2), "1 2");
}

TEST_F(ReplayFiles, ATimeBeforeTheFirstFramesIsNotWaitedFor)
{
    const auto start = now();
    replay_files({{file("a", {{1, 50}, {2, 0}, {3, 60}}), 1}});
    EXPECT_EQ(now() - start, 10ms);
    EXPECT_EQ(sent(2), "1 2 3");
}

TEST_F(ReplayFiles, WhatTheCardDoesWithTimeHappensInBetween)
{
    wire(5).set_far_end(false);
    printed([&] { replay_files({{file("a", {{1, 0}, {2, 3000}}), 1}}); });
    EXPECT_EQ(sent(6), "1 2");
    EXPECT_EQ(sent(5), "1");
}

TEST_F(ReplayFiles, TheOneWhoWaitsMayEndIt)
{
    ReplayOptions options;
    options.wait = [](std::chrono::microseconds) { return false; };
    const Replayed done = replay_files({{file("a", {{1, 0}, {2, 10}}), 1}}, options);
    EXPECT_EQ(done.frames, 1u);
    EXPECT_FALSE(done.finished);
    EXPECT_EQ(sent(2), "1");
}

TEST_F(ReplayFiles, TheOneWhoIsToldMayEndIt)
{
    std::vector<std::pair<int, int>> frames(1000, {1, 0});
    const std::string path = file("a", frames);
    double part = 0;
    ReplayOptions options{ReplaySpeed::full};
    options.progress = [&](const ReplayProgress& so_far) {
        part = so_far.part;
        return so_far.frames < 500;
    };
    const Replayed done = replay_files({{path, 1}}, options);
    EXPECT_EQ(done.frames, 512u);
    EXPECT_FALSE(done.finished);
    EXPECT_NEAR(part, 0.512, 0.01);
    EXPECT_EQ(wire(2).take_sent().size(), 512u);
}

TEST_F(ReplayFiles, NothingIsPlayedUnlessAllFilesCanBe)
{
    const std::string good = file("a", {{1, 0}}), bad = dir.write("bad", {1, 2, 3});
    const Replayed done = replay_files({{good, 1}, {bad, 2}});
    EXPECT_EQ(done.error, bad + " is not a capture, or cut short: it has 3 of the 24 bytes of a "
                                "header");
    EXPECT_FALSE(done.finished);
    EXPECT_EQ(sent(3), "");
    EXPECT_EQ(replay_files({{good, 53}}).error, "port 53: frames arrive at ports 0 to 52");
    EXPECT_EQ(replay_files({{good, -1}}).error, "port -1: frames arrive at ports 0 to 52");
}

TEST_F(ReplayFiles, ACutFileIsPlayedUpToTheCutAndSaysSo)
{
    Capture capture;
    capture.record(1, 0, shout(1)).record(2, 0, shout(2));
    const std::string path = dir.write("a", capture.cut_by(1));
    const Replayed done = replay_files({{path, 1}, {file("b", {{3, 0}, {4, 9000}}), 1}});
    EXPECT_EQ(done.frames, 3u);
    EXPECT_TRUE(done.finished);
    EXPECT_EQ(done.error, path + " is cut short in record 2; 1 records before it were read");
}

TEST_F(ReplayFiles, FramesCapturedInPartAreSkippedAndCounted)
{
    Capture capture;
    capture.record(1, 0, shout(1)).header(2, 0, 60, 1514).append(shout(2));
    capture.record(3, 0, frame(3, FrameBatch::kMaxFrameBytes + 1)).record(4, 0, shout(4));
    const Replayed done = replay_files({{dir.write("a", capture.bytes()), 1}});
    EXPECT_EQ(done.frames, 2u);
    EXPECT_EQ(done.skipped, 2u);
    EXPECT_EQ(sent(2), "1 4");
}

TEST_F(ReplayFiles, OfAPcapngFileWhatArrivedIsPlayed)
{
    Blocks blocks;
    blocks.interface().packet(0, 0, shout(1), blocks.direction(1));
    blocks.packet(0, 7000, shout(2), blocks.direction(2)).packet(0, 9000, shout(3));
    const auto start = now();
    replay_files({{dir.write("a", blocks.bytes()), 1}});
    EXPECT_EQ(sent(2), "1 3");
    EXPECT_EQ(now() - start, 9ms);
}

TEST_F(ReplayFiles, TimesAtTheEndsOfTheirRangeDoNoHarm)
{
    Blocks blocks;
    blocks.interface(1, blocks.option(9, {9}));
    blocks.packet(0, std::uint64_t{1} << 63, shout(1))
        .packet(0, (std::uint64_t{1} << 63) - 1, shout(2));
    ReplayOptions options;
    std::chrono::microseconds waited{0};
    options.wait = [&](std::chrono::microseconds time) {
        waited = time;
        return false;
    };
    EXPECT_EQ(replay_files({{dir.write("a", blocks.bytes()), 1}}, options).frames, 1u);
    EXPECT_GT(waited, 24h * 365 * 290);
}
