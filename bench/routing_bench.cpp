// Routing, in process, on one core: 64-byte frames (60 without the FCS) by full tables, and routes
// added and deleted through the driver.
#include <benchmark/benchmark.h>

#include <malloc.h>

#include <random>
#include <vector>

#include "bench/process.h"
#include "core/factory.h"
#include "sim/pipeline/forward.h"
#include "vexosim/clock.h"

namespace {

using namespace vexosim;

constexpr unsigned kIp4Routes = 16384, kIp6Routes = 4096, kHosts = 8192, kFrames = 16384;
constexpr std::size_t kBatch = 64;
constexpr int kFrom = 1, kTo = 2;
constexpr MacAddress kSource = 0x020000000001, kRouter = 0x02000000000a, kNextHop = 0x020000000002;

std::mt19937& dice()
{
    static std::mt19937 numbers(1);
    return numbers;
}

/// Of a station somewhere in the network, whose address is neither martian nor of a link.
IpAddress somewhere_in(const IpPrefix& net)
{
    const IpAddress front = net.net;
    IpAddress address = front;
    for (std::size_t i = 0; i < (front.ip6 ? 16u : 4u); ++i)
        address.bytes[i] = static_cast<std::uint8_t>(dice()());
    const IpAddress rest = address.masked(net.length);
    for (std::size_t i = 0; i < address.bytes.size(); ++i)
        address.bytes[i] =
            static_cast<std::uint8_t>((address.bytes[i] ^ rest.bytes[i]) | front.bytes[i]);
    return address;
}

/// Random networks of 8 to 32 bits in 16.0.0.0/5, or of 20 to 64 in 2000::/3.
IpPrefix network(bool ip6)
{
    IpPrefix all;
    all.net.ip6 = ip6;
    all.net.bytes[0] = ip6 ? 0x20 : 0x10;
    all.length = ip6 ? 3 : 5;
    const int length =
        ip6 ? 20 + static_cast<int>(dice()() % 45) : 8 + static_cast<int>(dice()() % 25);
    return {somewhere_in(all).masked(length), length};
}

struct RoutingBench {
    Chip chip;
    CpuReceive cpu;
    Outputs outputs;
    std::vector<IpAddress> destinations;
    std::vector<Frame> frames;

    RoutingBench()
    {
        for (int port : {kFrom, kTo}) {
            chip.ports.set_link(port, true);
            chip.ports.set_vlan_member(port, 3);
        }
        MacEntry place;
        place.key = mac_key(kSource, 1);
        place.port = kFrom;
        chip.macs.learn(place, 0);
        unsigned id = 0;
        chip.l3_interfaces.create({kRouter, 1, 0}, id);
    }
    static NextHop hop(std::uint64_t n) { return {0, kNextHop + n % 1024, false, kTo, 0}; }
    void add_routes(bool ip6, unsigned count)
    {
        while (chip.l3_routes.size() < count) {
            const IpPrefix net = network(ip6);
            if (chip.l3_routes.add(net, {hop(dice()()), false}, false) == 0)
                destinations.push_back(somewhere_in(net));
        }
    }
    void add_hosts(unsigned count)
    {
        while (chip.l3_hosts.size() < count) {
            const IpAddress host = somewhere_in(network(false));
            chip.l3_hosts.add(host, {hop(dice()()), true, false}, true);
            destinations.push_back(host);
        }
    }
    /// UDP.
    void frame_to(const IpAddress& dst)
    {
        Frame bytes(60);
        store_mac(kRouter, bytes.data());
        store_mac(kSource, bytes.data() + 6);
        dst.ip6 ? ip6(bytes, dst) : ip4(bytes, dst);
        frames.push_back(bytes);
    }
    static void ip4(Frame& f, const IpAddress& dst)
    {
        const std::uint8_t header[] = {0x08, 0,  0x45, 0, 0, 46, 0, 0, 0,
                                       0,    64, 17,   0, 0, 10, 0, 0, 1};
        std::copy(std::begin(header), std::end(header), f.begin() + 12);
        std::copy_n(dst.bytes.begin(), 4, f.begin() + 30);
        unsigned sum = 0;
        for (std::size_t i = 14; i < 34; i += 2)
            sum += static_cast<unsigned>(f[i]) << 8 | f[i + 1];
        sum = ~((sum & 0xffff) + (sum >> 16));
        f[24] = static_cast<std::uint8_t>(sum >> 8);
        f[25] = static_cast<std::uint8_t>(sum);
    }
    static void ip6(Frame& f, const IpAddress& dst)
    {
        const std::uint8_t header[] = {0x86, 0xdd, 0x60, 0, 0, 0, 0, 6, 17, 64, 0x20, 1};
        std::copy(std::begin(header), std::end(header), f.begin() + 12);
        std::copy(dst.bytes.begin(), dst.bytes.end(), f.begin() + 38);
    }
    /// Routes frames to all destinations again and again.
    void run(benchmark::State& state)
    {
        for (unsigned n = 0; n < kFrames; ++n)
            frame_to(destinations[n * 7919 % destinations.size()]);
        const std::vector<FrameView> views(frames.begin(), frames.end());
        std::size_t at = 0;
        for (auto _ : state) {
            forward_batch(chip, cpu, kFrom, {&views[at], kBatch}, outputs);
            benchmark::DoNotOptimize(outputs.used());
            outputs.clear();
            at = (at + kBatch) % views.size();
        }
        if (chip.drops.copies_sent != chip.drops.frames_in)
            state.SkipWithError("not every frame was routed");
        state.SetItemsProcessed(static_cast<std::int64_t>(chip.drops.copies_sent));
    }
};

void RouteIp4(benchmark::State& state)
{
    RoutingBench bench;
    bench.add_routes(false, kIp4Routes);
    bench.add_hosts(kHosts);
    bench.run(state);
}
BENCHMARK(RouteIp4);

void RouteIp6(benchmark::State& state)
{
    RoutingBench bench;
    bench.add_routes(true, kIp6Routes);
    bench.run(state);
}
BENCHMARK(RouteIp6);

/// What full tables take beyond those of an empty chip.
void FillTables(benchmark::State& state)
{
    std::size_t bytes = 0;
    for (auto _ : state) {
        RoutingBench bench;
        const struct mallinfo2 empty = mallinfo2();
        bench.add_routes(true, kIp4Routes);
        bench.add_hosts(kHosts);
        const struct mallinfo2 full = mallinfo2();
        bytes = full.uordblks + full.hblkhd - empty.uordblks - empty.hblkhd;
    }
    state.counters["MiB"] = static_cast<double>(bytes) / (1 << 20);
}
BENCHMARK(FillTables)->Iterations(1);

/// A card with one interface.
VexoBcmSdk& driver()
{
    if (bcm_sdk == nullptr) {
        keep_freed_memory();
        use_manual_clock();
        vexosdk_create_sdk_instance();
        const unsigned char mac[6] = {2, 0, 0, 0, 0, 1};
        bcm_sdk->create_l3_interface_with_id(mac, 1, 0, false);
    }
    return *bcm_sdk;
}

/// Different networks in no order.
std::vector<IpPrefix> networks()
{
    std::vector<IpPrefix> all;
    L3RouteTable seen;
    while (all.size() < kIp4Routes) {
        const IpPrefix net = network(false);
        if (seen.add(net, {}, false) == 0)
            all.push_back(net);
    }
    return all;
}

unsigned mask_of(const IpPrefix& net)
{
    IpAddress ones;
    ones.bytes.fill(0xff);
    return ones.masked(net.length).ip4();
}

bool add(const IpPrefix& net)
{
    const unsigned char mac[6] = {2, 0, 0, 0, 0, 2};
    return driver().add_l3_route_ip4(Mp(0, 2), false, net.net.ip4(), mask_of(net), mac, 0, 0);
}

bool remove(const IpPrefix& net)
{
    return driver().delete_l3_route_by_subnet_ip4(net.net.ip4(), mask_of(net), Mp(0, 2), false);
}

/// Times a step on all networks, the first thousand and the last.
struct Edges {
    static constexpr std::size_t kEdge = 1000;
    double first = 0, last = 0;
    bool done = true;

    template <class Step>
    void run(const std::vector<IpPrefix>& nets, Step step)
    {
        const double start = seconds();
        for (std::size_t i = 0; i < kEdge; ++i)
            done &= step(nets[i]);
        first += seconds() - start;
        for (std::size_t i = kEdge; i < nets.size() - kEdge; ++i)
            done &= step(nets[i]);
        const double end = seconds();
        for (std::size_t i = nets.size() - kEdge; i < nets.size(); ++i)
            done &= step(nets[i]);
        last += seconds() - end;
    }
    void report(benchmark::State& state) const
    {
        if (!done)
            state.SkipWithError("a route was refused");
        state.counters["last/first"] = last / first;
        state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kIp4Routes);
    }
};

void AddRoutes(benchmark::State& state)
{
    driver();
    const std::vector<IpPrefix> nets = networks();
    Edges edges;
    for (auto _ : state) {
        edges.run(nets, add);
        state.PauseTiming();
        edges.done &= driver().delete_l3_route_all();
        state.ResumeTiming();
    }
    edges.report(state);
}
BENCHMARK(AddRoutes);

void DeleteRoutes(benchmark::State& state)
{
    driver();
    const std::vector<IpPrefix> nets = networks();
    Edges edges;
    for (auto _ : state) {
        state.PauseTiming();
        for (const IpPrefix& net : nets)
            edges.done &= add(net);
        state.ResumeTiming();
        edges.run(nets, remove);
    }
    edges.report(state);
}
BENCHMARK(DeleteRoutes);

} // namespace
