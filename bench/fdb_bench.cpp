// The MAC table: filled and walked through the driver, and filled by traffic. A run is 32,768
// addresses; the table is emptied, and its notifications are delivered, between runs.
#include <benchmark/benchmark.h>

#include <array>
#include <chrono>
#include <vector>

#include "core/factory.h"
#include "pktio/event_records.h"
#include "sim/pipeline/forward.h"
#include "vexosim/clock.h"

namespace {

using namespace vexosim;
using Clock = std::chrono::steady_clock;
using Mac = std::array<unsigned char, 6>;

constexpr unsigned kAddresses = 32768, kEdge = 1000;
constexpr std::size_t kBatch = 64;
constexpr unsigned kVlan = 1;

/// Neighbours in time are none in the table.
MacAddress station(unsigned n)
{
    return 0x020000000000 + n * 7919u % kAddresses;
}

std::vector<Mac> stations()
{
    std::vector<Mac> all(kAddresses);
    for (unsigned n = 0; n < kAddresses; ++n)
        store_mac(station(n), all[n].data());
    return all;
}

VexoBcmSdk& driver()
{
    if (bcm_sdk == nullptr) {
        use_manual_clock();
        vexosdk_create_sdk_instance();
    }
    return *bcm_sdk;
}

Mp port_of(unsigned n)
{
    return Mp(0, 1 + n % 48);
}

void empty_table()
{
    driver().clear_mac_by_vlan(kVlan, true);
    drain();
}

/// @return whether all could be added.
bool add(const std::vector<Mac>& macs, unsigned from, unsigned to)
{
    bool added = true;
    for (unsigned n = from; n < to; ++n)
        added &= driver().add_mac_to_port(port_of(n), macs[n].data(), kVlan, false);
    return added;
}

void FillThroughDriver(benchmark::State& state)
{
    const std::vector<Mac> macs = stations();
    Clock::duration first{}, last{};
    for (auto _ : state) {
        state.PauseTiming();
        empty_table();
        state.ResumeTiming();
        const auto start = Clock::now();
        bool added = add(macs, 0, kEdge);
        first += Clock::now() - start;
        added &= add(macs, kEdge, kAddresses - kEdge);
        const auto end = Clock::now();
        added &= add(macs, kAddresses - kEdge, kAddresses);
        last += Clock::now() - end;
        if (!added)
            state.SkipWithError("an address was not added");
    }
    state.SetItemsProcessed(state.iterations() * kAddresses);
    state.counters["last_to_first_1000"] =
        static_cast<double>(last.count()) / static_cast<double>(first.count());
    empty_table();
}
BENCHMARK(FillThroughDriver);

unsigned long heard = 0;

void on_mac(L2Addr* addr, int, void*)
{
    heard += addr->vlan();
}

void WalkToSubscriber(benchmark::State& state)
{
    empty_table();
    add(stations(), 0, kAddresses);
    drain();
    static const bool registered = driver().register_mac_update_callback(on_mac, nullptr);
    heard = 0;
    for (auto _ : state)
        driver().traverse_mac_table(nullptr);
    if (!registered || heard != static_cast<unsigned long>(state.iterations()) * kAddresses)
        state.SkipWithError("the subscriber missed entries");
    state.SetItemsProcessed(state.iterations() * kAddresses);
    empty_table();
}
BENCHMARK(WalkToSubscriber);

/// Frames of 60 bytes from every station to one that is known.
std::vector<Frame> frames_to(MacAddress known)
{
    std::vector<Frame> frames(kAddresses, Frame(60));
    for (unsigned n = 0; n < kAddresses; ++n) {
        store_mac(known, frames[n].data());
        store_mac(station(n), frames[n].data() + 6);
        frames[n][12] = 0x08;
    }
    return frames;
}

void LearnFromTraffic(benchmark::State& state)
{
    const MacAddress known = 0x040000000001;
    const std::vector<Frame> frames = frames_to(known);
    const std::vector<FrameView> views(frames.begin(), frames.end());
    MacEntry place;
    place.key = mac_key(known, kVlan);
    place.port = 2;
    Chip chip;
    chip.macs = MacTable(kAddresses + 1);
    chip.macs.start_events();
    for (int port : {1, 2})
        chip.ports.set_link(port, true);
    CpuReceive cpu;
    Outputs outputs;
    std::vector<MacEvent> events;
    for (auto _ : state) {
        state.PauseTiming();
        chip.macs.erase_by_vlan(kVlan, true);
        chip.macs.add(place, false, 0);
        chip.macs.take_events(events);
        state.ResumeTiming();
        for (std::size_t i = 0; i < views.size(); i += kBatch) {
            forward_batch(chip, cpu, 1, std::span(views).subspan(i, kBatch), outputs);
            outputs.clear();
        }
    }
    if (chip.macs.size() != kAddresses + 1 || chip.drops.frame_drops() != 0)
        state.SkipWithError("an address was not learned, or a frame was dropped");
    state.SetItemsProcessed(state.iterations() * kAddresses);
}
BENCHMARK(LearnFromTraffic);

} // namespace
