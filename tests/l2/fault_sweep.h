#pragma once

#include <functional>
#include <sstream>

#include "tests/l2/lag_fixture.h"

/// Operations with each of their SDK calls failing in turn, local ones included, until a run meets
/// no failure: outputs are left alone, no port list is lost, and it ends.

using Sdk = VexoBcmSdk;

inline const unsigned char host[6] = {0x00, 0x11, 0x22, 0x33, 0x44, 0x55};
inline const Mp p3(0, 3);
inline const Mp p5(0, 5);

/// Outputs that no chip gives, so that a write shows.
struct Outputs {
    bool flag = true;
    unsigned number = 0x5a5a5a5a;
    int integer = 0x5a5a5a5a;
    unsigned long long wide = 0x5a5a5a5a5a;

    bool operator==(const Outputs& o) const
    {
        return flag == o.flag && number == o.number && integer == o.integer && wide == o.wide;
    }
};

struct Operation {
    const char* name;
    std::function<bool(Sdk&, Outputs&)> act;
    bool writes_early = false; // an output that is deliberately written before a failure
};

/// An operation that reads a `T` of port 5 into one of the outputs.
template <class T, class Out>
std::function<bool(Sdk&, Outputs&)> reading(bool (VexoSdkBase::*get)(const Mp&, T&),
                                            Out Outputs::*out)
{
    return [get, out](Sdk& sdk, Outputs& outputs) {
        T value = static_cast<T>(outputs.*out);
        const bool done = (sdk.*get)(p5, value);
        outputs.*out = static_cast<Out>(value);
        return done;
    };
}

/// An operation that sets something of port 5.
template <class T>
std::function<bool(Sdk&, Outputs&)> setting(bool (VexoSdkBase::*set)(const Mp&, T), T value)
{
    return [set, value](Sdk& sdk, Outputs&) { return (sdk.*set)(p5, value); };
}

/// Whether the SDK was made to fail to free a list, which is then its own.
inline bool kept_a_list(const std::string& calls)
{
    std::istringstream lines(calls);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("bcmx_lplist_free", 0) == 0 && line.find(" = 0") == std::string::npos)
            return true;
    }
    return false;
}

/// Whether the run met a failure.
inline bool run_with_failure(Sdk& sdk, const Operation& operation, const vexosim::Fault& fault)
{
    const std::size_t lists = vexosim::live_lplists();
    Outputs outputs;
    vexosim::clear_faults();
    vexosim::inject(fault);
    vexosim::clear_calls();
    const bool done = operation.act(sdk, outputs);
    const bool hit = vexosim::faults_hit() > 0;
    const std::string made = vexosim::all_calls_with_results();
    vexosim::clear_faults();
    if (!done && !operation.writes_early) {
        EXPECT_TRUE(outputs == Outputs{}) << operation.name << " wrote after\n" << made;
    }
    if (!kept_a_list(made)) {
        EXPECT_EQ(vexosim::live_lplists(), lists) << operation.name << " lost a list:\n" << made;
    }
    return hit;
}

struct Sweep : Lag {
    void sweep(const std::vector<Operation>& operations)
    {
        for (const Operation& operation : operations) {
            unsigned most = 0;
            for (const int code : {-1, -7, -8, -16, -18, 1}) {
                for (const bool sticky : {false, true}) {
                    unsigned nth = 1;
                    while (run_with_failure(
                        sdk, operation, {.call = "", .nth = nth, .sticky = sticky, .code = code}))
                        ASSERT_LT(++nth, 500u) << operation.name;
                    most = std::max(most, nth - 1);
                    restore();
                }
            }
            EXPECT_GT(most, 0u) << operation.name << " makes no call";
        }
    }

    /// LAG 0 of ports 3 and 4, LAG 1 empty; a port that is enabled.
    void restore()
    {
        vexosim::clear_faults();
        for (unsigned id = 0; id < 40; ++id)
            sdk.delete_lag(id);
        lag_list.clear();
        make_lag({3, 4});
        make_lag({});
        sdk.set_port_enable(p5, true);
    }
};
