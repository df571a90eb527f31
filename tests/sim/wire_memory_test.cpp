#include <gtest/gtest.h>

#include "tests/sim/wire_frames.h"

using namespace vexosim;

TEST(FrameBatch, KeepsFramesInOrderAndIsFullAtItsLimit)
{
    FrameBatch batch(3);
    for (const int mark : {1, 2, 3}) {
        EXPECT_FALSE(batch.full());
        EXPECT_TRUE(batch.add(frame(mark)));
    }
    EXPECT_FALSE(batch.add(frame(4)));
    EXPECT_EQ(marks(batch.frames()), "1 2 3");
}

TEST(FrameBatch, TakesTheLongestFrameAndNoLonger)
{
    FrameBatch batch;
    EXPECT_FALSE(batch.add(frame(1, FrameBatch::kMaxFrameBytes + 1)));
    EXPECT_TRUE(batch.add(frame(2, FrameBatch::kMaxFrameBytes)));
    EXPECT_EQ(marks(batch.frames()), "2");
}

TEST(FrameBatch, HasRoomForAFullBurstOfLongestFrames)
{
    FrameBatch batch;
    for (std::size_t i = 0; i < FrameBatch::kMaxFrames; ++i) {
        ASSERT_TRUE(batch.add(frame(static_cast<int>(i), FrameBatch::kMaxFrameBytes)));
    }
    for (std::size_t i = 0; i < FrameBatch::kMaxFrames; ++i) {
        EXPECT_EQ(batch.frames()[i].back(), i);
    }
}

TEST(FrameBatch, IsEmptyAgainAfterClear)
{
    FrameBatch batch(1);
    batch.add(frame(1));
    batch.clear();
    EXPECT_TRUE(batch.empty());
    EXPECT_TRUE(batch.add(frame(2)));
    EXPECT_EQ(marks(batch.frames()), "2");
}

TEST(MemoryWire, HandsFramesOverInOrderInBursts)
{
    MemoryWire wire;
    for (int mark = 0; mark < 70; ++mark) {
        wire.push(frame(mark));
    }
    FrameBatch first, second;
    wire.receive(first);
    wire.receive(second);
    EXPECT_EQ(first.size(), 64U);
    EXPECT_EQ(first.frames()[63].back(), 63);
    EXPECT_EQ(marks(second.frames()), "64 65 66 67 68 69");
    EXPECT_EQ(wire.counters().received, 70U);
}

TEST(MemoryWire, PollsReadableExactlyWhileFramesWait)
{
    MemoryWire wire;
    EXPECT_FALSE(readable(wire));
    wire.push(frame(1));
    wire.push(frame(2));
    EXPECT_TRUE(readable(wire));
    FrameBatch one(1);
    wire.receive(one);
    EXPECT_TRUE(readable(wire));
    one.clear();
    wire.receive(one);
    EXPECT_FALSE(readable(wire));
}

TEST(MemoryWire, CountsWhatDoesNotFitItsQueue)
{
    MemoryWire wire(2);
    for (const int mark : {1, 2, 3, 4, 5}) {
        wire.push(frame(mark));
    }
    FrameBatch batch;
    wire.receive(batch);
    EXPECT_EQ(marks(batch.frames()), "1 2");
    EXPECT_EQ(wire.counters().receive_overflow, 3U);
}

TEST(MemoryWire, CountsFramesThatAreTooLong)
{
    MemoryWire wire;
    wire.push(frame(1, FrameBatch::kMaxFrameBytes + 1));
    FrameBatch batch;
    wire.receive(batch);
    EXPECT_TRUE(batch.empty());
    EXPECT_EQ(wire.counters().receive_too_long, 1U);
}

TEST(MemoryWire, KeepsSentFramesInOrder)
{
    MemoryWire wire;
    send(wire, {7, 8, 9});
    EXPECT_EQ(marks(wire.sent()), "7 8 9");
    EXPECT_EQ(marks(wire.take_sent()), "7 8 9");
    EXPECT_EQ(marks(wire.sent()), "");
    EXPECT_EQ(wire.counters().sent, 3U);
}

TEST(MemoryWire, CanCountSentFramesWithoutKeepingThem)
{
    MemoryWire wire;
    wire.count_only();
    send(wire, {7, 8, 9});
    EXPECT_EQ(marks(wire.sent()), "");
    EXPECT_EQ(wire.counters().sent, 3U);
}

TEST(MemoryWire, ShowsCarrierBothWays)
{
    MemoryWire wire;
    EXPECT_TRUE(wire.carrier());
    wire.set_far_end(false);
    EXPECT_FALSE(wire.carrier());
    EXPECT_FALSE(wire.link());
    wire.set_carrier(true);
    EXPECT_TRUE(wire.link());
}
