// Flows through the driver: adding 16,384 of them, reading their counters, deleting them one by
// one. The driver's own lines on standard output are discarded.
#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <vector>

#include "bench/process.h"
#include "core/factory.h"
#include "flow/flow_types.h"
#include "vexosim/clock.h"

namespace {

using namespace vexosim;

constexpr unsigned kFlows = 16384, kEdge = 1000;

/// Standard output goes nowhere while it lives.
class Silence {
public:
    Silence() : kept_(dup(STDOUT_FILENO))
    {
        std::fflush(stdout);
        const int null = open("/dev/null", O_WRONLY | O_CLOEXEC);
        dup2(null, STDOUT_FILENO);
        close(null);
    }
    ~Silence()
    {
        std::fflush(stdout);
        dup2(kept_, STDOUT_FILENO);
        close(kept_);
    }
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;

private:
    int kept_;
};

VexoBcmSdk& driver()
{
    if (bcm_sdk == nullptr) {
        keep_freed_memory();
        use_manual_clock();
        vexosdk_create_sdk_instance();
    }
    return *bcm_sdk;
}

bool add(std::vector<unsigned>& ids, unsigned from, unsigned to)
{
    bool added = true;
    for (unsigned n = from; n < to; ++n) {
        of_flow_mp_s flow = {};
        flow.src_ip = 0x0a000000 + n;
        flow.src_ip_mask = 0xffffffff;
        flow.l4_dst_port = 80;
        flow.flags = OF_QUALIFY_SRC_IP | OF_QUALIFY_L4_DST_PORT;
        added &= driver().add_of_flow(flow, ids[n], {});
    }
    return added;
}

bool remove(const std::vector<unsigned>& ids, unsigned from, unsigned to)
{
    bool removed = true;
    for (unsigned n = from; n < to; ++n)
        removed &= driver().delete_of_flow(ids[n]);
    return removed;
}

/// Times `step(from, to)` over all flows; "last/second" compares the last thousand flows with the
/// second thousand.
template <class Step>
bool in_edges(double& second, double& last, Step step)
{
    bool done = step(0, kEdge);
    const auto start = seconds();
    done &= step(kEdge, 2 * kEdge);
    second += seconds() - start;
    done &= step(2 * kEdge, kFlows - kEdge);
    const auto end = seconds();
    done &= step(kFlows - kEdge, kFlows);
    last += seconds() - end;
    return done;
}

void report(benchmark::State& state, bool done, double second, double last)
{
    if (!done)
        state.SkipWithError("a flow was refused");
    state.counters["last/second"] = last / second;
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFlows);
}

void AddFlows(benchmark::State& state)
{
    const Silence silence;
    driver();
    std::vector<unsigned> ids(kFlows);
    double second = 0, last = 0;
    bool done = true;
    for (auto _ : state) {
        done &= in_edges(second, last, [&](unsigned a, unsigned b) { return add(ids, a, b); });
        state.PauseTiming();
        done &= remove(ids, 0, kFlows);
        state.ResumeTiming();
    }
    report(state, done, second, last);
}
BENCHMARK(AddFlows);

void DeleteFlows(benchmark::State& state)
{
    const Silence silence;
    driver();
    std::vector<unsigned> ids(kFlows);
    double second = 0, last = 0;
    bool done = true;
    for (auto _ : state) {
        state.PauseTiming();
        done &= add(ids, 0, kFlows);
        state.ResumeTiming();
        done &= in_edges(second, last, [&](unsigned a, unsigned b) { return remove(ids, a, b); });
    }
    report(state, done, second, last);
}
BENCHMARK(DeleteFlows);

void ReadCounters(benchmark::State& state)
{
    const Silence silence;
    driver();
    std::vector<unsigned> ids(kFlows);
    bool done = add(ids, 0, kFlows);
    for (auto _ : state) {
        for (unsigned id : ids) {
            unsigned long long frames = 1;
            done &= driver().get_of_flow_stat_counter64(id, frames) && frames == 0;
        }
    }
    done &= remove(ids, 0, kFlows);
    if (!done)
        state.SkipWithError("a flow or a counter was refused");
    state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations()) * kFlows);
}
BENCHMARK(ReadCounters);

} // namespace
