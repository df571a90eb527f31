// All VLANs with 52 members each, made through the driver.
#include <benchmark/benchmark.h>

#include <list>

#include "core/factory.h"
#include "vexosim/clock.h"
#include "vexosim/state.h"

namespace {

constexpr unsigned kVlans = 4094, kMembers = 52;

VexoBcmSdk& driver()
{
    vexosim::use_manual_clock();
    vexosdk_create_sdk_instance();
    return *bcm_sdk;
}

std::list<Mp> members(unsigned first, unsigned count)
{
    std::list<Mp> ports;
    for (unsigned port = first; port < first + count; ++port)
        ports.emplace_back(port <= 48 ? 0 : 2, port);
    return ports;
}

bool make_vlans(VexoBcmSdk& sdk, const std::list<Mp>& tagged, const std::list<Mp>& untagged)
{
    bool done = true;
    for (unsigned vid = 1; vid <= kVlans; ++vid)
        done = sdk.create_vlan(vid) && sdk.add_ports_to_vlan(vid, tagged, untagged) && done;
    return done;
}

bool delete_vlans(VexoBcmSdk& sdk)
{
    bool done = true;
    for (unsigned vid = 2; vid <= kVlans; ++vid)
        done = sdk.delete_vlan(vid) && done;
    return done;
}

void MakeAllVlans(benchmark::State& state)
{
    VexoBcmSdk& sdk = driver();
    const std::list<Mp> tagged = members(0, kMembers / 2),
                        untagged = members(kMembers / 2, kMembers / 2);
    for (auto _ : state) {
        if (!make_vlans(sdk, tagged, untagged))
            state.SkipWithError("an operation failed");
        state.PauseTiming();
        std::list<Mp> all, plain;
        if (!sdk.get_vlan_info(kVlans, all, plain) || all.size() + plain.size() != kMembers + 1)
            state.SkipWithError("the last VLAN does not have its members and the CPU port");
        if (!delete_vlans(sdk))
            state.SkipWithError("a VLAN could not be deleted");
        state.ResumeTiming();
    }
}
BENCHMARK(MakeAllVlans)->Unit(benchmark::kMillisecond);

} // namespace
