#include "sim/wire/io_ring.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <string>
#include <vector>

using namespace vexosim;

namespace {

// A pipe that never waits. Systems without io_uring, such as emulated ones, skip these tests.
class IoRingTest : public testing::Test {
protected:
    void SetUp() override
    {
        if (ring == nullptr) {
            GTEST_SKIP() << "no io_uring here";
        }
        std::array<int, 2> ends{};
        ASSERT_EQ(::pipe2(ends.data(), O_NONBLOCK), 0);
        from = Fd(ends[0]);
        to = Fd(ends[1]);
    }

    IoRing* ring = IoRing::of_this_thread();
    Fd from, to;
};

// One transfer of one byte for each character.
std::vector<IoRing::Transfer> bytes_of(std::string& text)
{
    std::vector<IoRing::Transfer> transfers;
    for (char& c : text) {
        transfers.push_back({reinterpret_cast<std::uint8_t*>(&c), 1});
    }
    return transfers;
}

std::vector<int> results(const std::vector<IoRing::Transfer>& transfers)
{
    std::vector<int> all;
    for (const auto& transfer : transfers) {
        all.push_back(transfer.result);
    }
    return all;
}

} // namespace

TEST_F(IoRingTest, TransfersInOrderTimeAndAgain)
{
    for (int round = 0; round < 10; ++round) {
        std::string sent = "the quick brown fox jumps over the lazy dog, and then it does so";
        ASSERT_EQ(sent.size(), IoRing::kTransfers);
        std::string got(sent.size(), '?');
        auto writes = bytes_of(sent);
        auto reads = bytes_of(got);
        ring->write(to.get(), writes);
        ring->read(from.get(), reads);
        EXPECT_EQ(results(writes), std::vector<int>(sent.size(), 1));
        EXPECT_EQ(results(reads), std::vector<int>(sent.size(), 1));
        EXPECT_EQ(got, sent);
    }
}

TEST_F(IoRingTest, WithNothingMoreToReadDoesNotWait)
{
    std::string sent = "ab";
    std::string got = "????";
    auto writes = bytes_of(sent);
    auto reads = bytes_of(got);
    ring->write(to.get(), writes);
    ring->read(from.get(), reads);
    EXPECT_EQ(results(reads), (std::vector<int>{1, 1, -EAGAIN, -EAGAIN}));
    EXPECT_EQ(got, "ab??");
}

TEST_F(IoRingTest, ADescriptorThatIsNoneIsAnErrorOfEachTransfer)
{
    std::string text = "ab";
    auto reads = bytes_of(text);
    ring->read(-1, reads);
    EXPECT_EQ(results(reads), (std::vector<int>{-EBADF, -EBADF}));
}

TEST_F(IoRingTest, KnowsWhichDescriptorsCanBeReadWithoutWaiting)
{
    EXPECT_TRUE(ring->takes(from.get()));
    const Fd file(::open("/proc/self/status", O_RDONLY | O_CLOEXEC));
    EXPECT_FALSE(ring->takes(file.get()));
}
