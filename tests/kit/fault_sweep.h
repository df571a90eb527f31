#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace vexokit {

/// Runs an operation again and again, each time with one more of its SDK calls failing: the first
/// call with every code, once and from then on, then the second, until a run meets no fault. Stops
/// at the first run that is not sound. Expects of each run in which a call failed that
/// - the operation returns false, unless all that failed was declared harmless;
/// - outputs are as they were when it returns false;
/// - no port list is left over.
///
///     FaultSweep([&] { return sdk().get_vlan_info(10, tagged, untagged); })
///         .output(tagged)
///         .output(untagged)
///         .harmless("bcmx_lplist_free")
///         .run();
class FaultSweep {
public:
    explicit FaultSweep(std::function<bool()> operation) : operation_(std::move(operation)) {}

    /// Done before each run, with no faults set.
    FaultSweep& before_each(std::function<void()> prepare);
    /// An output. It is put back to what it is now before each run.
    template <class T>
    FaultSweep& output(T& variable);
    /// The operation returns true even when `call` fails, with any code or with this one.
    FaultSweep& harmless(const std::string& call);
    FaultSweep& harmless(const std::string& call, int code);
    /// Of runs that fail, outputs and port lists are not looked at.
    FaultSweep& writes_outputs_anyway();
    FaultSweep& leaves_lists();
    /// The chip keeps what runs did to it. Otherwise it is put back to what it is now before each.
    FaultSweep& keep_chip();
    /// Calls that are not made to fail, and do not count.
    FaultSweep& spare(const std::string& call);
    /// Codes other than -1 to -18.
    FaultSweep& codes(std::vector<int> codes);

    void run();

private:
    struct Trial {
        unsigned nth;
        bool sticky;
        int code;
    };
    struct Output {
        std::function<void()> restore;
        std::function<bool()> untouched;
    };

    bool run_trial(const Trial& trial);
    std::string complaint(bool result, std::size_t lists_before) const;
    bool is_harmless(int code) const;
    std::string describe(const Trial& trial) const;

    std::function<bool()> operation_;
    std::function<void()> prepare_ = [] {};
    std::vector<Output> outputs_;
    std::map<std::string, std::set<int>> harmless_; // no codes: every code
    std::set<std::string> spared_;
    std::vector<int> codes_;
    bool check_outputs_ = true, check_lists_ = true, keep_chip_ = false, sound_ = true;
};

template <class T>
FaultSweep& FaultSweep::output(T& variable)
{
    const T start = variable;
    outputs_.push_back({[&variable, start] { variable = start; },
                        [&variable, start] { return variable == start; }});
    return *this;
}

/// The same for operations without anything to declare.
inline void fault_sweep(std::function<bool()> operation)
{
    FaultSweep(std::move(operation)).run();
}

} // namespace vexokit
