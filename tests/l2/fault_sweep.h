#pragma once

#include <functional>

#include "tests/kit/fault_sweep.h"
#include "tests/l2/lag_fixture.h"

/// Operations with each of their SDK calls failing in turn, local ones included, until a run meets
/// no failure.

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

/// A call whose failure does not make the operation fail: with one code, or (0) with every code.
struct Harmless {
    std::string call;
    int code = 0;
};

struct Operation {
    std::string name;
    std::function<bool(Sdk&, Outputs&)> act;
    std::vector<Harmless> harmless = {};
    std::function<void(Sdk&)> prepare = [](Sdk&) {};
    bool writes_early = false; ///< an output is deliberately written before a failure
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

struct Sweep : Lag {
    void sweep(const std::vector<Operation>& operations)
    {
        for (const Operation& operation : operations) {
            SCOPED_TRACE(operation.name);
            sweep(operation);
        }
    }

    void sweep(const Operation& operation)
    {
        Outputs outputs;
        operation.prepare(sdk);
        vexokit::FaultSweep sweep([&] { return operation.act(sdk, outputs); });
        sweep.output(outputs);
        sweep.spare("bcmx_lplist_free"); // so that lost lists show; tested call by call
        for (const Harmless& harmless : operation.harmless) {
            if (harmless.code == 0)
                sweep.harmless(harmless.call);
            else
                sweep.harmless(harmless.call, harmless.code);
        }
        if (operation.writes_early)
            sweep.writes_outputs_anyway();
        sweep.run();
    }
};
