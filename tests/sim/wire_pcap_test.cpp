#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

#include "sim/wire/capture_clock.h"
#include "tests/sim/wire_captures.h"

using namespace vexosim;

namespace {

struct WirePcap : testing::Test {
    // The error of replaying these bytes, without the directory's name.
    std::string error_of(const Bytes& bytes)
    {
        const std::string in = dir.write("in.pcap", bytes);
        std::string text = open_wire("pcap:" + in + ",").error;
        for (auto at = text.find(in); at != std::string::npos; at = text.find(in)) {
            text.replace(at, in.size(), "in.pcap");
        }
        return text;
    }

    // What replaying these bytes plays, and the notice at the end without the directory's name.
    std::string played(const Bytes& bytes)
    {
        const std::string in = dir.write("in.pcap", bytes);
        auto wire = open_wire("pcap:" + in + ",").wire;
        FrameBatch batch;
        while (wire->receive(batch)) {
        }
        const std::string notice = wire->notice();
        counters = wire->counters();
        return marks(batch.frames()) +
               (notice.empty() ? "" : "; in.pcap" + notice.substr(in.size()));
    }

    TempDir dir;
    WireCounters counters;
};

} // namespace

TEST_F(WirePcap, ReplaysEitherByteOrderAndEitherClock)
{
    for (const bool big_endian : {false, true}) {
        for (const std::uint32_t magic : {0xa1b2c3d4U, 0xa1b23c4dU}) {
            Capture capture(magic, big_endian);
            capture.record(1, 0, frame(1)).record(1, 5, frame(2, 1514));
            EXPECT_EQ(played(capture.bytes()), "1 2") << magic << big_endian;
        }
    }
}

TEST_F(WirePcap, TellsTheTimeOfTheNextFrame)
{
    const auto time_of = [&](std::uint32_t magic) {
        const auto in = dir.write("in.pcap", Capture(magic).record(3, 250, frame(1)).bytes());
        return open_wire("pcap:" + in + ",").wire->next_time()->count();
    };
    EXPECT_EQ(time_of(0xa1b2c3d4), 3'000'250'000);
    EXPECT_EQ(time_of(0xa1b23c4d), 3'000'000'250);
}

TEST_F(WirePcap, LeavesOutAnFcsThatTheCaptureContains)
{
    Bytes with_fcs = frame(5);
    with_fcs.insert(with_fcs.end(), {0xaa, 0xbb, 0xcc, 0xdd});
    EXPECT_EQ(played(Capture(0xa1b2c3d4, false, 0x24000001).record(1, 0, with_fcs).bytes()), "5");
}

TEST_F(WirePcap, RefusesWhatIsNotACapture)
{
    EXPECT_EQ(error_of({}), "pcap:in.pcap,: in.pcap is empty, not a capture");
    EXPECT_EQ(error_of(Bytes(100, 'x')), "pcap:in.pcap,: in.pcap is not a capture file");
    EXPECT_EQ(error_of({1, 2, 3}), "pcap:in.pcap,: in.pcap is not a capture, or cut short: it has "
                                   "3 of the 24 bytes of a header");
    EXPECT_EQ(error_of(Capture().cut_by(4)),
              "pcap:in.pcap,: in.pcap is not a capture, or cut short: it has 20 of the 24 bytes of "
              "a header");
    EXPECT_EQ(error_of(Capture(0x0a0d0d0a).bytes()),
              "pcap:in.pcap,: in.pcap is not a capture file: no byte order in front of record 1; 0 "
              "records before it were read");
    EXPECT_EQ(error_of(Capture(0xa1b2c3d4, true, 113).bytes()),
              "pcap:in.pcap,: in.pcap is a capture of link type 113; only Ethernet, type 1, can be "
              "replayed");
}

TEST_F(WirePcap, ACaptureWithoutRecordsPlaysNothingAndIsInOrder)
{
    EXPECT_EQ(played(Capture().bytes()), "");
}

TEST_F(WirePcap, PlaysWhatComesBeforeACutAndSaysWhereItWas)
{
    Capture capture;
    capture.record(1, 0, frame(1)).record(2, 0, frame(2)).record(3, 0, frame(3));
    EXPECT_EQ(played(capture.cut_by(1)),
              "1 2; in.pcap is cut short in record 3; 2 records before it were read");
    EXPECT_EQ(played(capture.cut_by(60 + 1)), "1 2; in.pcap is cut short in the header of record "
                                              "3; 2 records before it were read");
    EXPECT_EQ(played(capture.cut_by(60 + 16)), "1 2");
}

TEST_F(WirePcap, DoesNotBelieveAbsurdLengths)
{
    for (const std::uint32_t length : {262145U, 0x80000000U, 0xffffffffU}) {
        Capture capture;
        capture.record(1, 0, frame(1)).header(2, 0, length, length).append(Bytes(500, 0));
        EXPECT_EQ(played(capture.bytes()), "1; in.pcap claims " + std::to_string(length) +
                                               " bytes for record 2; 1 records before it were "
                                               "read");
    }
}

TEST_F(WirePcap, CountsAndSkipsFramesCapturedInPartOrTooLong)
{
    Capture capture;
    capture.record(1, 0, frame(1)).header(2, 0, 60, 1514).append(frame(2));
    capture.record(3, 0, frame(3, FrameBatch::kMaxFrameBytes + 1)).record(4, 0, frame(4));
    EXPECT_EQ(played(capture.bytes()), "1 4; in.pcap: 2 frames that were captured in part or are "
                                       "too long were not played");
    EXPECT_EQ(counters.receive_cut, 1U);
    EXPECT_EQ(counters.receive_too_long, 1U);
    EXPECT_EQ(counters.received, 2U);
}

TEST_F(WirePcap, PlaysAnEmptyFrameAsItIs)
{
    EXPECT_EQ(played(Capture().record(1, 0, {}).record(2, 0, frame(2)).bytes()), "0 2");
    EXPECT_EQ(counters.received, 2U);
}

TEST_F(WirePcap, RefusesFilesThatCannotBeReadOrWritten)
{
    const std::string missing = dir.path("missing"), nowhere = dir.path("no/such");
    EXPECT_EQ(open_wire("pcap:" + missing + ",").error,
              "pcap:" + missing + ",: cannot read " + missing + ": No such file or directory");
    EXPECT_EQ(open_wire("pcap:," + nowhere).error,
              "pcap:," + nowhere + ": cannot write " + nowhere + ": No such file or directory");
    EXPECT_EQ(open_wire("pcap:/dev/null,").error,
              "pcap:/dev/null,: /dev/null is not a regular file");
    EXPECT_EQ(open_wire("pcap:,/dev/null").error,
              "pcap:,/dev/null: /dev/null is not a regular file");
}

TEST_F(WirePcap, NeedsAtLeastOneFile)
{
    for (const std::string files : {"", ",", "x.pcap"}) {
        EXPECT_EQ(open_wire("pcap:" + files).error,
                  "pcap:" + files + ": expected pcap:IN,OUT, of which one may be empty");
    }
}

TEST_F(WirePcap, ABadInputLeavesAnExistingOutputAlone)
{
    const auto in = dir.write("in.pcap", {1, 2, 3});
    const auto out = dir.write("out.pcap", {4, 5, 6});
    EXPECT_FALSE(open_wire("pcap:" + in + "," + out).wire);
    EXPECT_EQ(dir.read("out.pcap"), (Bytes{4, 5, 6}));
}

TEST_F(WirePcap, NeverWritesAFileThatAPortReadsOrWrites)
{
    const auto in = dir.write("in.pcap", Capture().bytes());
    const auto out = dir.path("out.pcap");
    EXPECT_EQ(open_wire("pcap:" + in + "," + in).error,
              "pcap:" + in + "," + in + ": " + in +
                  " is in use by a port; name another file to write");
    EXPECT_EQ(dir.read("in.pcap"), Capture().bytes());
    const auto first = open_wire("pcap:," + out);
    EXPECT_TRUE(first.wire);
    EXPECT_FALSE(open_wire("pcap:," + out).wire);
    EXPECT_EQ(open_wire("pcap:" + out + ",").error,
              "pcap:" + out + ",: " + out + " is being written by a port; name another file");
}

TEST_F(WirePcap, WritesTheSameBytesOnEveryMachine)
{
    const auto wire = open_wire("pcap:," + dir.path("out.pcap")).wire;
    hold_capture_time(std::chrono::nanoseconds(7'000'009'999));
    send(*wire, {1, 2});
    Capture expected;
    expected.record(7, 9, frame(1)).record(7, 9, frame(2));
    Bytes bytes = expected.bytes();
    bytes[16] = 0, bytes[17] = 0, bytes[18] = 4; // the snap length
    EXPECT_EQ(dir.read("out.pcap"), bytes);
    EXPECT_EQ(wire->counters().sent, 2U);
}

TEST_F(WirePcap, ReadsBackWhatItWrote)
{
    auto wire = open_wire("pcap:," + dir.path("out.pcap")).wire;
    send(*wire, {1, 2, 3});
    wire.reset();
    EXPECT_EQ(played(dir.read("out.pcap")), "1 2 3");
}

TEST_F(WirePcap, AFullDiskCostsWholeFramesAndIsCounted)
{
    const auto wire = open_wire("pcap:," + dir.path("out.pcap")).wire;
    ::signal(SIGXFSZ, SIG_IGN);
    const rlimit two_and_a_half{24 + 2 * 76 + 40, RLIM_INFINITY};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &two_and_a_half), 0);
    send(*wire, {1, 2, 3, 4});
    EXPECT_EQ(dir.read("out.pcap").size(), 24U + 2 * 76);
    EXPECT_EQ(wire->counters().sent, 2U);
    EXPECT_EQ(wire->counters().send_drops, 2U);
}

TEST_F(WirePcap, WithoutAnOutputSentFramesAreCounted)
{
    const auto wire = open_wire("pcap:" + dir.write("in.pcap", Capture().bytes()) + ",").wire;
    send(*wire, {1, 2});
    EXPECT_EQ(wire->counters().sent, 2U);
}
