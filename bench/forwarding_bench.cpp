// Frames through the chip, in process, on one core, with trace and call log off.
#include <benchmark/benchmark.h>

#include <vector>

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

void set_up(Chip& chip)
{
    for (int port = 1; port < kPortCount; ++port) {
        chip.ports.set_link(port, true);
        chip.ports.set_vlan_member(port, 3);
    }
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

void KnownUnicast(benchmark::State& state)
{
    Chip chip;
    CpuReceive cpu;
    Outputs outputs;
    set_up(chip);
    std::vector<Frame> frames;
    std::vector<Batch> batches = unicast_batches(frames);
    std::size_t n = 0;
    for (auto _ : state) {
        const Batch& batch = batches[n++ % batches.size()];
        forward_batch(chip, cpu, batch.port, batch.frames, outputs);
        benchmark::DoNotOptimize(outputs.used());
        outputs.clear();
    }
    if (chip.drops.frame_drops() != 0 || !chip.drops.balanced())
        state.SkipWithError("frames were dropped");
    state.SetItemsProcessed(static_cast<std::int64_t>(chip.drops.copies_sent));
}
BENCHMARK(KnownUnicast);

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
    }
    if (chip.drops.copies_sent != chip.drops.frames_in * 52)
        state.SkipWithError("not every member got its copy");
    state.SetItemsProcessed(static_cast<std::int64_t>(chip.drops.copies_sent));
}
BENCHMARK(FloodTo52);

} // namespace
