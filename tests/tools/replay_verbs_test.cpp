// Captures played into ports, as a user asks for it.
#include <chrono>
#include <filesystem>
#include <thread>

#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/capture_file.h"
#include "vexosim/wire.h"

using namespace vexosh;

namespace {

struct ReplayVerbs : ShellTest {
    ReplayVerbs() { run("attach 1-3=mem; wait 1s"); }

    /// What the wires of ports 1 to 3 have been sent: those of 1 and 3 see what port 2 is played.
    std::string sent()
    {
        std::string text;
        std::istringstream lines(run("show wires"));
        std::string head;
        std::getline(lines, head);
        for (std::string port, carrier, in, out, lost, wire;
             lines >> port >> carrier >> in >> out >> lost >> wire;) {
            text += (text.empty() ? "" : " ") + out;
        }
        return text;
    }

    static std::string demo(const std::string& name) { return VEXO_DEMO_DIR "/" + name; }

    /// The beginning of a capture.
    static std::string cut(std::size_t size)
    {
        std::ifstream whole(demo("h1.pcap"), std::ios::binary);
        std::string bytes(size, '\0');
        whole.read(bytes.data(), static_cast<std::streamsize>(size));
        std::string path = script("");
        std::ofstream(path, std::ios::binary) << bytes;
        return path;
    }
};

} // namespace

TEST_F(ReplayVerbs, ACaptureTakesTheTimeThatItTook)
{
    EXPECT_EQ(run("replay " + demo("h1.pcap") + " 1"),
              "16 frames replayed in 7.812 s, 2 a second\n");
    EXPECT_EQ(sent(), "0 15 15"); // one is LLDP, for the CPU
}

TEST_F(ReplayVerbs, SeveralArePlayedTogether)
{
    EXPECT_EQ(run("replay " + demo("h1.pcap") + " 1 " + demo("h2.pcap") + " 2 full"),
              "31 frames replayed\n");
    EXPECT_EQ(run("replay " + demo("h1.pcap") + " 1 " + demo("h1.pcap") + " 2 original"),
              "32 frames replayed in 7.812 s, 4 a second\n");
}

TEST_F(ReplayVerbs, AnyFrameOfACaptureIsTraced)
{
    const std::string file = demo("h1.pcap");
    const auto by_bytes = [this, frames = read_capture(file).frames](std::size_t number) {
        const Bytes& frame = frames.at(number - 1);
        return run("trace 1 hex:" + hex(frame.data(), frame.size()));
    };
    EXPECT_EQ(run("trace capture 1 " + file), by_bytes(1));
    EXPECT_EQ(run("trace capture 1 " + file + " 3"), by_bytes(3));
    EXPECT_NE(by_bytes(1), by_bytes(3));
    EXPECT_EQ(error_of("trace capture 1 " + file + " 17"),
              "no frame 17 in '" + file + "': there are 16");
}

TEST_F(ReplayVerbs, WhatIsReplayedIsCapturedWithTheTimesThatItHad)
{
    const std::string path = script("");
    run("capture start " + path + " 1 received; replay " + demo("h1.pcap") + " 1; capture stop");
    EXPECT_EQ(run("replay " + path + " 1"), "16 frames replayed in 7.812 s, 2 a second\n");
}

TEST_F(ReplayVerbs, ASpeedIsSoManyFramesASecond)
{
    EXPECT_EQ(run("replay " + demo("h1.pcap") + " 1 100"),
              "16 frames replayed in 0.150 s, 107 a second\n");
}

TEST_F(ReplayVerbs, WhatWasCapturedIsReplayedWithoutItsCopies)
{
    const std::string path = script("");
    run("capture start " + path + "; replay " + demo("h1.pcap") + " 1 full");
    const std::string packets = run("capture stop");
    EXPECT_GT(std::stoi(packets), 16) << packets;
    EXPECT_EQ(run("replay " + path + " 1 full"), "16 frames replayed\n");
}

TEST_F(ReplayVerbs, BadInputIsOneLine)
{
    const std::string file = demo("h1.pcap");
    const BadCommand bad[] = {
        {"replay FILE", "missing PORT; usage: replay [FILE PORT ...] [original|full|RATE]"},
        {"replay FILE 54", "bad port '54': 0 to 52 or cpu is wanted"},
        {"replay FILE cpu", "port 53: frames arrive at ports 0 to 52"},
        {"replay FILE 1 0",
         "bad speed (original, full, or frames a second) '0': a number from 1 to "
         "1000000000 is wanted"},
        {"replay FILE 1 slow", "bad speed (original, full, or frames a second) 'slow': a number "
                               "from 1 to 1000000000 is wanted"},
        {"replay /none 1", "cannot read /none: No such file or directory"},
    };
    for (const auto& [line, error] : bad) {
        std::string with_file = line;
        if (const auto at = with_file.find("FILE"); at != std::string::npos) {
            with_file.replace(at, 4, file);
        }
        EXPECT_EQ(error_of(with_file), error);
    }
    EXPECT_EQ(sent(), "0 0 0");
}

TEST_F(ReplayVerbs, ACutCaptureIsPlayedUpToTheCutAndFails)
{
    const std::string path = cut(700);
    EXPECT_EQ(error_of("replay " + path + " 1 full"),
              path + " is cut short in record 7; 6 records before it were read");
    EXPECT_EQ(out_.str(), "6 frames replayed\n");
    EXPECT_EQ(sent(), "0 5 5"); // one is LLDP, for the CPU
}

/// Takes its time over what it is given, as a long replay does.
class SlowWire : public vexosim::MemoryWire {
public:
    void send(std::span<const vexosim::FrameView> frames) override
    {
        std::this_thread::sleep_for(std::chrono::milliseconds(120));
        MemoryWire::send(frames);
    }
};

TEST_F(ReplayVerbs, AWatcherSeesHowFarALongReplayHasCome)
{
    ASSERT_EQ(vexosim::attach(4, std::make_unique<SlowWire>()), "");
    run("wait 1s");
    shell_->use_terminal(true);
    const std::string said = run("replay " + demo("h1.pcap") + " 1 full");
    EXPECT_NE(said.find("100%, 16 frames; Ctrl-C ends it"), std::string::npos) << said;
    EXPECT_TRUE(said.ends_with("\r\033[K16 frames replayed\n")) << said;
}
