// A capture file replayed into the card at full speed.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>

#include "core/factory.h"
#include "sim/wire/pcap_writer.h"
#include "vexosim/clock.h"
#include "vexosim/replay.h"
#include "vexosim/wire.h"

namespace {

constexpr std::size_t kFrames = 1'000'000, kStations = 10'000, kBatch = 64;
constexpr int kIn = 1, kOut = 2;
using Frame = std::vector<std::uint8_t>;

/// 60 bytes without the FCS, between two stations.
Frame frame_between(std::size_t to, std::size_t from)
{
    Frame frame(60);
    frame[0] = frame[6] = 0x02;
    frame[4] = static_cast<std::uint8_t>(to >> 8);
    frame[5] = static_cast<std::uint8_t>(to);
    frame[9] = 1; // other stations than those the frames go to
    frame[10] = static_cast<std::uint8_t>(from >> 8);
    frame[11] = static_cast<std::uint8_t>(from);
    frame[12] = 0x88;
    frame[13] = 0xb5;
    return frame;
}

/// The capture of a million frames to known stations, in memory if the system has files there.
class CaptureFile {
public:
    CaptureFile()
    {
        const auto shared = std::filesystem::path("/dev/shm");
        const auto folder =
            std::filesystem::is_directory(shared) ? shared : std::filesystem::temp_directory_path();
        path_ = folder / ("replay_bench_" + std::to_string(::getpid()) + ".pcap");
        vexosim::PcapWriter writer;
        ready_ = writer.open(path_).empty();
        std::vector<Frame> frames(kBatch);
        for (std::size_t n = 0; n < kFrames; n += kBatch) {
            for (std::size_t i = 0; i < kBatch; ++i)
                frames[i] = frame_between((n + i) * 7919 % kStations, (n + i) % kStations);
            const std::vector<vexosim::FrameView> views(frames.begin(), frames.end());
            ready_ = ready_ && writer.write(views, {}) == kBatch;
        }
    }
    CaptureFile(const CaptureFile&) = delete;
    CaptureFile& operator=(const CaptureFile&) = delete;
    ~CaptureFile() { std::filesystem::remove(path_); }

    const std::string& path() const { return path_; }
    bool ready() const { return ready_; }

private:
    std::string path_;
    bool ready_ = false;
};

vexosim::MemoryWire* plug(int port)
{
    auto wire = std::make_unique<vexosim::MemoryWire>();
    vexosim::MemoryWire* const plugged = wire.get();
    plugged->count_only();
    vexosim::attach(port, std::move(wire));
    return plugged;
}

/// Brings the card up, with all stations at the port of the wire that is returned.
const vexosim::MemoryWire* set_up()
{
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    plug(kIn);
    const vexosim::MemoryWire* const out = plug(kOut);
    vexosim::advance(std::chrono::seconds(1));
    vexosim::drain();
    for (const int port : {kIn, kOut})
        bcm_sdk->set_port_stp_state(Mp(0, static_cast<unsigned>(port)), STP_FORWARDING);
    for (std::size_t n = 0; n < kStations; ++n)
        bcm_sdk->add_mac_to_port(Mp(0, kOut), frame_between(n, 0).data(), 1, false);
    return out;
}

void ReplayAtFullSpeed(benchmark::State& state)
{
    static const CaptureFile capture;
    static const vexosim::MemoryWire* const out = set_up();
    const std::uint64_t before = out->counters().sent;
    for (auto _ : state) {
        const auto done =
            vexosim::replay_files({{capture.path(), kIn}}, {vexosim::ReplaySpeed::full});
        if (!capture.ready() || done.frames != kFrames || !done.error.empty())
            state.SkipWithError("the file was not replayed");
    }
    const auto frames = static_cast<std::uint64_t>(state.iterations()) * kFrames;
    if (out->counters().sent != before + frames)
        state.SkipWithError("not every frame was forwarded");
    state.SetItemsProcessed(static_cast<std::int64_t>(frames));
}
BENCHMARK(ReplayAtFullSpeed)->Unit(benchmark::kMillisecond)->UseRealTime()->MinTime(2);

} // namespace
