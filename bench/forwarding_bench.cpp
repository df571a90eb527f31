// Frames through the chip, in process, on one core, with trace and call log off.
#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <vector>

#include "sim/capture/capture.h"
#include "sim/pipeline/forward.h"

namespace {

using namespace vexosim;

constexpr int kAddresses = 10000;
constexpr std::size_t kBatch = 64;

MacAddress station(int n)
{
    return 0x020000000000 + static_cast<MacAddress>(n);
}

/// 60 bytes without the FCS: the shortest frame on a wire.
Frame frame_between(MacAddress dst, MacAddress src)
{
    Frame frame(60);
    store_mac(dst, frame.data());
    store_mac(src, frame.data() + 6);
    frame[12] = 0x08;
    return frame;
}

int port_of(int n)
{
    return 1 + n % 53;
}

void bring_up_ports(Chip& chip)
{
    for (int port = 1; port < kPortCount; ++port) {
        chip.ports.set_link(port, true);
        chip.ports.set_vlan_member(port, 3);
    }
}

void set_up(Chip& chip)
{
    bring_up_ports(chip);
    for (int n = 0; n < kAddresses; ++n) {
        MacEntry place;
        place.key = mac_key(station(n), 1);
        place.port = static_cast<std::uint8_t>(port_of(n));
        chip.macs.learn(place, 0);
    }
}

struct Batch {
    int port;
    std::vector<FrameView> frames;
};

std::vector<Batch> batches_of(const std::vector<std::vector<FrameView>>& by_port)
{
    std::vector<Batch> batches;
    for (int port = 1; port < kPortCount; ++port) {
        const auto& all = by_port[static_cast<std::size_t>(port)];
        for (std::size_t i = 0; i + kBatch <= all.size(); i += kBatch)
            batches.push_back({port,
                               {all.begin() + static_cast<long>(i),
                                all.begin() + static_cast<long>(i + kBatch)}});
    }
    return batches;
}

/// Every address is a source and a destination once; destinations come in an order of their own.
std::vector<Batch> unicast_batches(std::vector<Frame>& frames)
{
    std::vector<std::vector<FrameView>> by_port(kPortCount);
    frames.reserve(kAddresses);
    for (int n = 0; n < kAddresses; ++n) {
        int other = static_cast<int>((static_cast<long long>(n) * 7919 + 1) % kAddresses);
        if (port_of(other) == port_of(n))
            continue;
        frames.push_back(frame_between(station(other), station(n)));
        by_port[static_cast<std::size_t>(port_of(n))].push_back(frames.back());
    }
    return batches_of(by_port);
}

/// Forwards the batches again and again.
void run(benchmark::State& state, Chip& chip, CpuReceive& cpu, Outputs& outputs,
         const std::vector<Batch>& batches)
{
    std::size_t n = 0;
    for (auto _ : state) {
        const Batch& batch = batches[n++ % batches.size()];
        forward_batch(chip, cpu, batch.port, batch.frames, outputs);
        benchmark::DoNotOptimize(outputs.used());
        outputs.clear();
        for (FrameObserver* observer : outputs.observers)
            observer->batch_ends();
    }
    if (chip.drops.frame_drops() != 0 || !chip.drops.balanced())
        state.SkipWithError("frames were dropped");
    state.SetItemsProcessed(static_cast<std::int64_t>(chip.drops.copies_sent));
}

void KnownUnicast(benchmark::State& state)
{
    Chip chip;
    CpuReceive cpu;
    Outputs outputs;
    set_up(chip);
    std::vector<Frame> frames;
    run(state, chip, cpu, outputs, unicast_batches(frames));
}
BENCHMARK(KnownUnicast);

/// The same with every port captured, received and sent, into a file.
void KnownUnicastCaptured(benchmark::State& state)
{
    Chip chip;
    CpuReceive cpu;
    Outputs outputs;
    set_up(chip);
    std::vector<Frame> frames;
    const std::vector<Batch> batches = unicast_batches(frames);
    Capture::Plan plan;
    plan.ports = PortSet::all();
    Capture capture(plan);
    const std::string path = std::filesystem::temp_directory_path() /
                             ("vexolc_bench_" + std::to_string(getpid()) + ".pcapng");
    if (const std::string why = capture.open(path); !why.empty())
        return state.SkipWithError(why.c_str());
    outputs.observers = {&capture};
    run(state, chip, cpu, outputs, batches);
    if (const std::string why = capture.close(); !why.empty())
        state.SkipWithError(why.c_str());
    std::filesystem::remove(path);
}
// Of 64 frames each, for which a file gets 300 bytes: a million frames, which may wait in memory,
// and more than that.
BENCHMARK(KnownUnicastCaptured)->Iterations(20000);
BENCHMARK(KnownUnicastCaptured)->Iterations(200000);

/// The frame in a VLAN, by tag.
Frame in_vlan(const Frame& frame, int vid)
{
    Frame tagged = frame;
    const std::uint8_t tag[] = {0x81, 0, static_cast<std::uint8_t>(vid >> 8),
                                static_cast<std::uint8_t>(vid)};
    tagged.insert(tagged.begin() + 12, std::begin(tag), std::end(tag));
    return tagged;
}

/// Two addresses talk to each other; the pairs are spread over the VLANs.
constexpr int kPairs = kAddresses / 2;
int vlan_of(int n, int vlans)
{
    return 1 + n % kPairs % vlans;
}

/// Every VLAN has all front ports, tagged.
void spread_over_vlans(Chip& chip, int vlans)
{
    for (int vid = 1; vid <= vlans; ++vid) {
        chip.vlans.create(vid);
        chip.vlans.remove_ports(vid, PortSet::front());
        chip.vlans.add_ports(vid, PortSet::front(), {});
    }
    for (int n = 0; n < kAddresses; ++n) {
        MacEntry place;
        place.key = mac_key(station(n), vlan_of(n, vlans));
        place.port = static_cast<std::uint8_t>(port_of(n));
        chip.macs.learn(place, 0);
    }
}

/// Every frame is of another VLAN than the one before it, if there are several.
std::vector<Batch> tagged_batches(std::vector<Frame>& frames, int vlans)
{
    std::vector<std::vector<FrameView>> by_port(kPortCount);
    frames.reserve(kAddresses);
    for (int n = 0; n < kAddresses; ++n) {
        const int other = (n + kPairs) % kAddresses;
        frames.push_back(in_vlan(frame_between(station(other), station(n)), vlan_of(n, vlans)));
        by_port[static_cast<std::size_t>(port_of(n))].push_back(frames.back());
    }
    return batches_of(by_port);
}

/// The argument is the number of VLANs.
void TaggedUnicast(benchmark::State& state)
{
    const auto vlans = static_cast<int>(state.range(0));
    Chip chip;
    CpuReceive cpu;
    Outputs outputs;
    bring_up_ports(chip);
    spread_over_vlans(chip, vlans);
    std::vector<Frame> frames;
    run(state, chip, cpu, outputs, tagged_batches(frames, vlans));
}
BENCHMARK(TaggedUnicast)->Arg(1)->Arg(4094);

void FloodTo52(benchmark::State& state)
{
    Chip chip;
    CpuReceive cpu;
    Outputs outputs;
    set_up(chip);
    for (int port = 1; port < kPortCount; ++port)
        chip.flood_block.set(port, kCpuPort, 7);
    Frame frame = frame_between(kBroadcastMac, station(0));
    std::vector<FrameView> batch(kBatch, frame);
    for (auto _ : state) {
        forward_batch(chip, cpu, port_of(0), batch, outputs);
        benchmark::DoNotOptimize(outputs.used());
        outputs.clear();
        for (FrameObserver* observer : outputs.observers)
            observer->batch_ends();
    }
    if (chip.drops.copies_sent != chip.drops.frames_in * 52)
        state.SkipWithError("not every member got its copy");
    state.SetItemsProcessed(static_cast<std::int64_t>(chip.drops.copies_sent));
}
BENCHMARK(FloodTo52);

} // namespace
