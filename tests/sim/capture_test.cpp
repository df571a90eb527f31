// What a capture says about frames: through a chip value, and through the card.
#include <bcmx/mirror.h>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <thread>
#include <utility>

#include "sim/capture/capture.h"
#include "tests/kit/comes_true.h"
#include "tests/kit/kit.h"
#include "tests/sim/path.h"
#include "tests/sim/pcapng_text.h"
#include "tests/sim/wire_captures.h"
#include "vexosim/capture.h"
#include "vexosim/trace.h"

namespace vexosim {
namespace {

/// A chip whose ports 1 to 3 are in VLAN 1, and a capture of them and the CPU.
struct Captures : Path {
    TempDir dir;
    std::unique_ptr<Capture> capture;

    explicit Captures(Captured what = Captured::all, PortSet ports = {kCpuPort, 1, 2, 3})
    {
        only({1, 2, 3});
        Capture::Plan plan;
        plan.ports = ports;
        plan.what = what;
        plan.descriptions[1] = "tap:one";
        capture = std::make_unique<Capture>(plan);
        EXPECT_EQ(capture->open(dir.path("all.pcapng")), "");
        outputs.observers = {capture.get()};
    }
    /// Frames without being traced first.
    void pass(int port, FrameView frame)
    {
        outputs.clear();
        forward_batch(chip, cpu, port, {&frame, 1}, outputs);
        capture->batch_ends();
    }
    PcapngText end()
    {
        EXPECT_EQ(capture->close(), "");
        return PcapngText(dir.read("all.pcapng"));
    }
    /// What is said of packets, without the interfaces before and the statistics behind.
    std::string said()
    {
        std::string text = end().text;
        text.erase(0, text.find('\n', text.rfind("interface ")) + 1);
        return text.substr(0, text.find("counted "));
    }
};

TEST(Capture, EveryPortIsAnInterfaceNamedAfterItAndDescribedByItsWire)
{
    Captures card;
    EXPECT_EQ(card.end().text, "interface port 1 (tap:one)\ninterface port 2\ninterface port 3\n"
                               "interface cpu\n"
                               "counted cpu: 0 0\ncounted port 1: 0 0\n"
                               "counted port 2: 0 0\ncounted port 3: 0 0\n");
}

TEST(Capture, AFrameSaysWhereItGoesAndItsCopiesWhereItCameFrom)
{
    Captures card;
    card.pass(1, TestFrame(kHostB, kHostA));
    card.pass(2, TestFrame(kHostA, kHostB));
    EXPECT_EQ(card.said(), "port 1 received #1 [forwarded] to ports 2,3 in VLAN 1\n"
                           "port 2 sent #1 from port 1 in VLAN 1\n"
                           "port 3 sent #1 from port 1 in VLAN 1\n"
                           "port 2 received #2 [forwarded] to port 1 in VLAN 1\n"
                           "port 1 sent #2 from port 2 in VLAN 1\n");
}

TEST(Capture, ADroppedFrameSaysWhy)
{
    Captures card;
    card.pass(1, TestFrame(kHostB, kHostA).tag(77));
    EXPECT_EQ(card.said(), "port 1 received #1 [vlan_unknown] dropped: the VLAN does not exist\n");
}

TEST(Capture, CopiesForTheCpuLeaveThroughItsInterface)
{
    Captures card;
    card.pass(1, TestFrame(kBridgeGroup, kHostA));
    const std::string said = card.said();
    EXPECT_EQ(said.substr(0, said.find('\n')),
              "port 1 received #1 [forwarded] to the CPU (BPDU) in VLAN 1");
    EXPECT_NE(said.find("cpu sent #1 from port 1 in VLAN 1\n"), std::string::npos) << said;
}

TEST(Capture, AFrameTooLongForAPortIsShownThereWithTheReason)
{
    Captures card;
    card.chip.ports.set_frame_max(3, 64);
    card.pass(1, TestFrame(kHostB, kHostA, 100));
    EXPECT_EQ(card.said(), "port 1 received #1 [forwarded] to port 2 in VLAN 1\n"
                           "port 2 sent #1 from port 1 in VLAN 1\n"
                           "port 3 sent #1 [egress_too_long] from port 1 in VLAN 1, not sent: "
                           "longer than the destination's maximum\n");
}

TEST(Capture, MirrorCopiesAreSentByTheDestination)
{
    Captures card;
    card.only({1, 2});
    ASSERT_EQ(card.chip.mirrors.set(1, 3, BCM_MIRROR_PORT_ENABLE | BCM_MIRROR_PORT_INGRESS), 0);
    card.pass(1, TestFrame(kHostB, kHostA));
    EXPECT_EQ(card.said(), "port 1 received #1 [forwarded] to port 2 in VLAN 1\n"
                           "port 2 sent #1 from port 1 in VLAN 1\n"
                           "port 3 sent #1 from port 1 in VLAN 1\n");
}

TEST(Capture, TwoCopiesFromOnePortAreTwoPacketsOfTheFramesBytes)
{
    Captures card;
    card.vlan(10, {1, 2}, {});
    ASSERT_EQ(card.chip.mirrors.set(1, 2, BCM_MIRROR_PORT_ENABLE | BCM_MIRROR_PORT_INGRESS), 0);
    const TestFrame first = TestFrame(kHostB, kHostA).tag(10), second = first.tag(10);
    card.pass(1, first);
    card.pass(1, second);
    const PcapngText file = card.end();
    std::vector<Bytes> frames(3, first.bytes());
    frames.insert(frames.end(), 3, second.bytes());
    EXPECT_EQ(file.frames, frames) << file.text;
}

TEST(Capture, CopiesStandInTheOrderInWhichTheyLeave)
{
    Captures card;
    card.vlan(10, {1}, {2});
    ASSERT_EQ(card.chip.mirrors.set(1, 2, BCM_MIRROR_PORT_ENABLE | BCM_MIRROR_PORT_INGRESS), 0);
    const TestFrame plain(kHostB, kHostA), tagged = plain.tag(10);
    card.pass(1, tagged);
    const PcapngText file = card.end();
    EXPECT_EQ(file.frames, (std::vector<Bytes>{tagged.bytes(), plain.bytes(), tagged.bytes()}))
        << file.text;
}

TEST(Capture, WhatAFrameOfAnotherPortSendsIsNotSaidOfTheOneBefore)
{
    Captures card(Captured::all, {1, 2});
    card.only({2, 3});
    const TestFrame stopped(kHostA, kHostB), sent(kHostC, kHostA);
    for (const auto& [port, frame] : {std::pair{1, stopped}, std::pair{3, sent}}) {
        const FrameView view = frame;
        forward_batch(card.chip, card.cpu, port, {&view, 1}, card.outputs);
    }
    card.capture->batch_ends();
    const PcapngText file = card.end();
    EXPECT_EQ(file.frames, (std::vector<Bytes>{stopped.bytes(), sent.bytes()})) << file.text;
}

TEST(Capture, StatisticsCountWhatWasDroppedAndNotSent)
{
    Captures card;
    card.chip.ports.set_frame_max(3, 64);
    card.pass(1, TestFrame(kHostB, kHostA, 100));
    card.pass(1, TestFrame(kHostB, kHostA).tag(77));
    const std::string text = card.end().text;
    EXPECT_EQ(text.substr(text.find("counted cpu")),
              "counted cpu: 0 0\ncounted port 1: 2 1\ncounted port 2: 1 0\n"
              "counted port 3: 1 1\n");
}

TEST(Capture, NothingOfAnOlderFileIsLeft)
{
    const TempDir dir;
    const std::string path = dir.path("old");
    std::ofstream(path) << std::string(100000, 'x');
    Capture capture(Capture::Plan{});
    ASSERT_EQ(capture.open(path), "");
    EXPECT_EQ(capture.close(), "");
    EXPECT_EQ(PcapngText(dir.read("old")).text, "");
}

TEST(Capture, FramesStandThereAsTheyCameAndAsTheyLeft)
{
    Captures card;
    card.vlan(10, {1}, {2});
    const TestFrame plain(kHostB, kHostA), tagged = plain.tag(10, 5);
    card.pass(1, tagged);
    const PcapngText file = card.end();
    ASSERT_EQ(file.frames.size(), 2u);
    EXPECT_EQ(file.frames[0], tagged.bytes());
    EXPECT_EQ(file.frames[1], plain.bytes());
    EXPECT_EQ(file.times[0], file.times[1]);
    EXPECT_GT(file.times[0], 1700000000u * std::uint64_t{1000000000});
}

TEST(Capture, FramesOfAnyLengthKeepTheBlocksWhole)
{
    Captures card;
    for (std::size_t bytes = 60; bytes < 68; ++bytes)
        card.pass(1, TestFrame(kHostB, kHostA, bytes));
    EXPECT_EQ(card.end().frames.size(), 8u * 3);
}

TEST(Capture, OfOnePortOnlyItsPacketsAreTaken)
{
    Captures card(Captured::all, {2});
    card.pass(1, TestFrame(kHostB, kHostA));
    EXPECT_EQ(card.said(), "port 2 sent #1 from port 1 in VLAN 1\n");
}

TEST(Capture, OnlyWhatIsReceivedSentOrDroppedIsTakenOnRequest)
{
    const auto of = [](Captured what) {
        Captures card(what);
        card.chip.ports.set_frame_max(3, 64);
        card.pass(1, TestFrame(kHostB, kHostA, 100));
        card.pass(1, TestFrame(kHostB, kHostA).tag(77));
        return card.said();
    };
    const std::string lost = "port 3 sent #1 [egress_too_long] from port 1 in VLAN 1, not sent: "
                             "longer than the destination's maximum\n";
    const std::string dropped = "port 1 received #2 [vlan_unknown] dropped: the VLAN does not "
                                "exist\n";
    EXPECT_EQ(of(Captured::received),
              "port 1 received #1 [forwarded] to port 2 in VLAN 1\n" + dropped);
    EXPECT_EQ(of(Captured::sent), "port 2 sent #1 from port 1 in VLAN 1\n");
    EXPECT_EQ(of(Captured::dropped), lost + dropped);
}

/// What a program prints; empty if it does not run.
std::string printed_by(const std::string& command)
{
    std::string text;
    std::array<char, 4096> part{};
    FILE* pipe = ::popen(command.c_str(), "r");
    while (pipe != nullptr && std::fgets(part.data(), part.size(), pipe) != nullptr)
        text += part.data();
    if (pipe != nullptr)
        ::pclose(pipe);
    return text;
}

TEST(Capture, TsharkReadsDirectionsIdsVerdictsAndComments)
{
    if (std::system("command -v tshark >/dev/null") != 0) {
        if (std::getenv("VEXOLC_REQUIRE_HOSTS") != nullptr)
            FAIL() << "tshark is not installed";
        GTEST_SKIP() << "tshark is not installed";
    }
    Captures card;
    card.pass(1, TestFrame(kHostB, kHostA));
    card.pass(1, TestFrame(kHostB, kHostA).tag(77));
    card.end();
    const std::string said = printed_by(
        "tshark -r " + card.dir.path("all.pcapng") +
        " -T fields -E separator=/s -e frame.interface_name -e frame.packet_flags_direction"
        " -e frame.packet_id -e frame.verdict.hw -e frame.comment 2>/dev/null");
    EXPECT_EQ(said,
              "port 1 0x00000001 1 66 6f 72 77 61 72 64 65 64 to ports 2,3 in VLAN 1\n"
              "port 2 0x00000002 1  from port 1 in VLAN 1\n"
              "port 3 0x00000002 1  from port 1 in VLAN 1\n"
              "port 1 0x00000001 2 76 6c 61 6e 5f 75 6e 6b 6e 6f 77 6e dropped: the VLAN does not "
              "exist\n");
}

TEST(Capture, CopiesInAnotherFormAndLostOnesStandBesideThoseSentAsReceived)
{
    Captures card;
    card.vlan(10, {1, 2}, {3});
    card.chip.ports.set_frame_max(2, 64);
    const TestFrame tagged = TestFrame(kHostB, kHostA, 96).tag(10);
    card.pass(1, tagged);
    card.chip.ports.set_frame_max(2, 200);
    card.pass(1, tagged);
    const PcapngText file = card.end();
    const std::vector<Bytes> frames = {tagged.bytes(), TestFrame(kHostB, kHostA, 96).bytes(),
                                       tagged.bytes(), tagged.bytes(),
                                       tagged.bytes(), TestFrame(kHostB, kHostA, 96).bytes()};
    EXPECT_EQ(file.frames, frames) << file.text;
}

TEST(Capture, OfFramesThatAreNotTakenThemselvesCopiesHaveTheirBytesAndIds)
{
    Captures card(Captured::all, {2});
    const TestFrame first(kHostB, kHostA, 70), second(kHostA, kHostB, 80);
    card.pass(1, first);
    card.pass(3, second);
    card.pass(2, second);
    const PcapngText file = card.end();
    EXPECT_EQ(file.frames, (std::vector<Bytes>{first.bytes(), second.bytes()})) << file.text;
    EXPECT_NE(file.text.find("port 2 sent #1 from port 1 in VLAN 1\n"
                             "port 2 received #3 [forwarded] to port 1 in VLAN 1\n"),
              std::string::npos)
        << file.text;
}

TEST(Capture, IsInTheFileAMomentLaterWithoutBeingStopped)
{
    Captures card;
    const auto frames_in_file = [&] {
        return PcapngText(card.dir.read("all.pcapng")).frames.size();
    };
    for (std::size_t frames = 3; frames <= 9; frames += 3) {
        card.pass(1, TestFrame(kHostB, kHostA));
        EXPECT_TRUE(comes_true([&] { return frames_in_file() == frames; })) << frames_in_file();
    }
}

TEST(Capture, NothingIsLostOrOutOfOrderWhenTheFileIsSlowerThanTheTraffic)
{
    constexpr std::size_t kFrames = 8000, kPerFrame = 3;
    Captures card;
    for (std::size_t n = 0; n < kFrames; ++n)
        card.pass(1, TestFrame(kHostB, kHostA, 60 + n % 1000));
    EXPECT_EQ(card.capture->packets(), kFrames * kPerFrame);
    const PcapngText file = card.end();
    ASSERT_EQ(file.frames.size(), kFrames * kPerFrame);
    for (std::size_t n = 0; n < file.frames.size(); ++n)
        ASSERT_EQ(file.frames[n].size(), 60 + n / kPerFrame % 1000);
    EXPECT_NE(file.text.find("counted port 1: 8000 0\ncounted port 2: 8000 0\n"),
              std::string::npos);
}

TEST(Capture, TheTrafficWaitsWhenTheMemoryForASlowFileIsUsedUp)
{
    Captures card;
    const std::string pipe = card.dir.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const Fd reader(::open(pipe.c_str(), O_RDONLY | O_NONBLOCK));
    Capture::Plan plan;
    plan.ports = PortSet::all();
    plan.memory = 1;
    Capture slow(plan);
    ASSERT_EQ(slow.open(pipe), "");
    card.outputs.observers = {&slow};
    constexpr int kFrames = 5000;
    std::atomic<int> passed = 0;
    std::thread traffic([&] {
        for (int n = 0; n < kFrames; ++n, ++passed) {
            card.pass(1, TestFrame(kHostB, kHostA, 1500));
            slow.batch_ends();
        }
    });
    int before = -1;
    EXPECT_TRUE(comes_true([&] { // it gets no further
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
        return std::exchange(before, passed.load()) == passed && passed > 0;
    }));
    EXPECT_LT(passed, kFrames);
    Bytes file;
    const auto read_on = [&] {
        std::array<std::uint8_t, 65536> part{};
        const ssize_t got = ::read(reader.get(), part.data(), part.size());
        if (got > 0)
            file.insert(file.end(), part.begin(), part.begin() + got);
        return got == 0;
    };
    std::thread end([&] {
        traffic.join();
        EXPECT_EQ(slow.close(), "");
    });
    EXPECT_TRUE(comes_true(read_on));
    end.join();
    EXPECT_EQ(PcapngText(file).frames.size(), std::size_t{kFrames} * 3);
}

TEST(Capture, AFullDiskIsSaidAndTheTrafficGoesOn)
{
    Captures card;
    card.outputs.observers.clear();
    Capture::Plan plan;
    plan.ports = {1};
    Capture full(plan);
    ASSERT_EQ(full.open("/dev/full"), "");
    card.outputs.observers = {&full};
    const std::string why = "cannot write /dev/full: No space left on device";
    EXPECT_TRUE(comes_true([&] { return full.error() == why; })) << full.error();
    for (int n = 0; n < 10000; ++n)
        card.pass(1, TestFrame(kHostB, kHostA));
    full.batch_ends();
    EXPECT_EQ(full.close(), why);
}

TEST(Capture, AFileThatCanGrowNoFurtherEndsWithAWholeBlock)
{
    Captures card;
    const rlimit small{10000, RLIM_INFINITY};
    ASSERT_EQ(std::signal(SIGXFSZ, SIG_IGN), SIG_DFL);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    for (int n = 0; n < 1000; ++n)
        card.pass(1, TestFrame(kHostB, kHostA));
    EXPECT_EQ(card.capture->close(),
              "cannot write " + card.dir.path("all.pcapng") + ": File too large");
    EXPECT_GT(PcapngText(card.dir.read("all.pcapng")).text.size(), 0u);
}

class CardCapture : public CardTest {
protected:
    TempDir dir_;
};

TEST_F(CardCapture, CapturesWhatTheCardForwards)
{
    ASSERT_EQ(start_capture(dir_.path("card.pcapng"), {{1, 2}, Captured::all}), "");
    receive(1, TestFrame(kHostB, kHostA));
    const auto status = stop_capture();
    ASSERT_TRUE(status);
    const PcapngText file(dir_.read("card.pcapng"));
    EXPECT_EQ(status->packets, file.frames.size());
    EXPECT_GE(file.frames.size(), 1u);
    EXPECT_EQ(file.text.find("interface port 1 (mem)\ninterface port 2 (mem)\n"), 0u) << file.text;
}

TEST_F(CardCapture, ThereIsOneAtATime)
{
    const std::string path = dir_.path("one.pcapng");
    ASSERT_EQ(start_capture(path), "");
    EXPECT_EQ(start_capture(dir_.path("two.pcapng")),
              "a capture into " + path + " is running; stop it first");
    EXPECT_EQ(capture_status()->path, path);
    EXPECT_EQ(stop_capture()->error, "");
    EXPECT_FALSE(stop_capture());
    EXPECT_FALSE(capture_status());
}

TEST_F(CardCapture, ABadPortOrPathStartsNothing)
{
    EXPECT_EQ(start_capture(dir_.path("x"), {{1, 99}, Captured::all}), "no port 99");
    EXPECT_EQ(start_capture("/nowhere/x"), "cannot write /nowhere/x: No such file or directory");
    EXPECT_FALSE(std::filesystem::exists(dir_.path("x")));
    EXPECT_FALSE(capture_status());
}

TEST_F(CardCapture, TheNextFramesOfAPortAreTracedAsWhatIfTellsThem)
{
    const TestFrame frame(kHostB, kHostA);
    const std::string before = what_if(1, frame);
    ASSERT_EQ(trace_next(1, 1), "");
    receive(2, TestFrame(kHostA, kHostC));
    EXPECT_TRUE(take_traces().empty());
    const std::string way = what_if(1, frame);
    EXPECT_EQ(way, before);
    receive(1, frame);
    receive(1, frame);
    const auto traces = take_traces();
    ASSERT_EQ(traces.size(), 1u);
    EXPECT_EQ(traces[0].substr(traces[0].find('\n') + 1), way);
    EXPECT_EQ(traces[0].find("port 1 hex:00bb0000000200aa00000001"), 0u) << traces[0];
}

TEST_F(CardCapture, TracingEndsWhenItIsTold)
{
    ASSERT_EQ(trace_next(5), "");
    receive(1, TestFrame(kHostB, kHostA));
    EXPECT_EQ(trace_next(0), "");
    receive(1, TestFrame(kHostB, kHostA));
    EXPECT_EQ(take_traces().size(), 1u);
    EXPECT_EQ(trace_next(1, 99), "no port 99");
}

} // namespace
} // namespace vexosim
