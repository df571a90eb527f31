// All counters of all ports, read through the driver.
#include <benchmark/benchmark.h>

#include <array>
#include <vector>

#include "core/factory.h"
#include "vexosim/clock.h"

namespace {

std::vector<Mp> all_ports()
{
    std::vector<Mp> ports;
    for (unsigned port = 0; port < 54; ++port)
        ports.emplace_back(port == 53 ? 3 : port <= 48 ? 0 : 2, port);
    return ports;
}

/// Items are ports, of 76 counters each.
void ReadAllCounters(benchmark::State& state)
{
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    const std::vector<Mp> ports = all_ports();
    std::array<StatCounter64, 76> counters;
    for (auto _ : state) {
        for (const Mp& port : ports) {
            unsigned count = counters.size();
            if (!bcm_sdk->get_port_stat_counter_all64_ext(port, counters.data(), count) ||
                count != counters.size())
                state.SkipWithError("a port's counters were not read");
            benchmark::DoNotOptimize(counters);
        }
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(ports.size()));
}
BENCHMARK(ReadAllCounters)->Unit(benchmark::kMicrosecond);

} // namespace
