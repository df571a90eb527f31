// Frames that meet field entries, in process, on one core: 60 bytes without the FCS, each matches
// one entry that counts it. All leave through one port.
#include <benchmark/benchmark.h>

#include <bcm/field.h>

#include <vector>

#include "sim/pipeline/forward.h"

namespace {

using namespace vexosim;

constexpr unsigned kFlows = 16384, kGroups = 8, kMixedFlows = 1024;
constexpr std::size_t kBatch = 64;
constexpr int kFrom = 1, kTo = 2;
constexpr MacAddress kSource = 0x020000000001, kDestination = 0x020000000002;

struct FieldBench {
    Chip chip;
    CpuReceive cpu;
    Outputs outputs;
    std::vector<Frame> frames;

    FieldBench()
    {
        for (int port : {kFrom, kTo}) {
            chip.ports.set_link(port, true);
            chip.ports.set_vlan_member(port, 3);
        }
        for (int port : {kFrom, kTo}) {
            MacEntry place;
            place.key = mac_key(port == kFrom ? kSource : kDestination, 1);
            place.port = static_cast<std::uint8_t>(port);
            chip.macs.learn(place, 0);
        }
    }
    int group(std::initializer_list<int> fields)
    {
        FieldSet set;
        for (int field : fields)
            set.fields.set(static_cast<std::size_t>(field));
        int id = 0;
        chip.field.create_group(set, 0, &id);
        return id;
    }
    void entry(int group, std::initializer_list<FieldMatch> matches, int priority)
    {
        int id = 0;
        chip.field.create_entry(group, &id);
        for (const FieldMatch& match : matches)
            chip.field.qualify(id, match);
        FieldAction count;
        count.action = bcmFieldActionUpdateCounter;
        chip.field.add_action(id, count);
        chip.field.create_counter(id);
        chip.field.set_priority(id, priority);
        chip.field.install(id);
    }
    /// A UDP frame.
    void frame(std::uint32_t src_ip, std::uint32_t dst_ip, unsigned src_port, unsigned dst_port)
    {
        Frame bytes(60);
        store_mac(kDestination, bytes.data());
        store_mac(kSource, bytes.data() + 6);
        bytes[12] = 0x08;
        bytes[14] = 0x45;
        bytes[23] = 17;
        for (std::size_t i = 0; i < 4; ++i) {
            bytes[26 + i] = static_cast<std::uint8_t>(src_ip >> (24 - 8 * i));
            bytes[30 + i] = static_cast<std::uint8_t>(dst_ip >> (24 - 8 * i));
        }
        for (std::size_t i = 0; i < 2; ++i) {
            bytes[34 + i] = static_cast<std::uint8_t>(src_port >> (8 - 8 * i));
            bytes[36 + i] = static_cast<std::uint8_t>(dst_port >> (8 - 8 * i));
        }
        frames.push_back(bytes);
    }
    std::uint64_t counted() const
    {
        std::uint64_t all = 0;
        for (const auto& [id, entry] : chip.field.entries())
            all += entry.packets.value_or(0);
        return all;
    }
    /// Forwards all frames again and again, neighbours apart.
    void run(benchmark::State& state)
    {
        std::vector<FrameView> views;
        for (std::size_t n = 0; n < frames.size(); ++n)
            views.push_back(frames[n * 7919 % frames.size()]);
        std::size_t at = 0;
        for (auto _ : state) {
            forward_batch(chip, cpu, kFrom, {&views[at], kBatch}, outputs);
            benchmark::DoNotOptimize(outputs.used());
            outputs.clear();
            at = (at + kBatch) % views.size();
        }
        if (chip.drops.copies_sent != chip.drops.frames_in || counted() != chip.drops.frames_in)
            state.SkipWithError("not every frame met its entry and left");
        state.SetItemsProcessed(static_cast<std::int64_t>(chip.drops.copies_sent));
    }
};

constexpr std::uint64_t kExact32 = 0xffffffff, kExact16 = 0xffff;

/// The groups' entries are for other ports each, so that a frame matches in one group only.
void ExactMatches(benchmark::State& state)
{
    FieldBench bench;
    for (unsigned g = 0; g < kGroups; ++g) {
        const int group = bench.group({bcmFieldQualifySrcIp, bcmFieldQualifyDstIp,
                                       bcmFieldQualifyL4SrcPort, bcmFieldQualifyL4DstPort});
        for (unsigned n = 0; n < kFlows / kGroups; ++n) {
            const std::uint32_t src = 0x0a000000 + n, dst = 0x0b000000 + n * 31;
            const unsigned src_port = 1000 + n % 100, dst_port = 2000 + g;
            bench.entry(group,
                        {{bcmFieldQualifySrcIp, src, kExact32},
                         {bcmFieldQualifyDstIp, dst, kExact32},
                         {bcmFieldQualifyL4SrcPort, src_port, kExact16},
                         {bcmFieldQualifyL4DstPort, dst_port, kExact16}},
                        0);
            bench.frame(src, dst, src_port, dst_port);
        }
    }
    bench.run(state);
}
BENCHMARK(ExactMatches);

/// Prefixes of all lengths, by source and by destination: every entry has masks of its own.
void MixedMasks(benchmark::State& state)
{
    FieldBench bench;
    const int group = bench.group({bcmFieldQualifySrcIp, bcmFieldQualifyDstIp});
    for (unsigned n = 0; n < kMixedFlows; ++n) {
        const std::uint32_t src = 0x9e3779b9u * (n + 1), dst = 0x85ebca6bu * (n + 1);
        bench.entry(group,
                    {{bcmFieldQualifySrcIp, src, kExact32 << n % 32 & kExact32},
                     {bcmFieldQualifyDstIp, dst, kExact32 << n / 32 & kExact32}},
                    static_cast<int>(n % 16));
        bench.frame(src, dst, 1000, 2000);
    }
    bench.run(state);
}
BENCHMARK(MixedMasks);

} // namespace
