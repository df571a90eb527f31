#include "tests/kit/fault_sweep.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "sim/card/card.h"
#include "vexosim/card.h"
#include "vexosim/faults.h"

namespace vexokit {

namespace {

constexpr int kLowestCode = -18;
constexpr unsigned kMostCalls = 100000; // an operation that never ends is a failure

/// Puts the chip back to what it was.
class SavedChip {
public:
    SavedChip() : saved_(std::make_unique<vexosim::Chip>(*vexosim::ChipLock())) {}
    void restore() const
    {
        const vexosim::ChipLock chip;
        if (!(*chip == *saved_))
            *chip = *saved_;
    }

private:
    std::unique_ptr<vexosim::Chip> saved_;
};

} // namespace

FaultSweep& FaultSweep::before_each(std::function<void()> prepare)
{
    prepare_ = std::move(prepare);
    return *this;
}

FaultSweep& FaultSweep::harmless(const std::string& call)
{
    harmless_[call].clear();
    return *this;
}

FaultSweep& FaultSweep::harmless(const std::string& call, int code)
{
    harmless_[call].insert(code);
    return *this;
}

FaultSweep& FaultSweep::writes_outputs_anyway()
{
    check_outputs_ = false;
    return *this;
}

FaultSweep& FaultSweep::leaves_lists()
{
    check_lists_ = false;
    return *this;
}

FaultSweep& FaultSweep::keep_chip()
{
    keep_chip_ = true;
    return *this;
}

FaultSweep& FaultSweep::spare(const std::string& call)
{
    spared_.insert(call);
    return *this;
}

FaultSweep& FaultSweep::codes(std::vector<int> codes)
{
    codes_ = std::move(codes);
    return *this;
}

bool FaultSweep::is_harmless(int code) const
{
    const auto allowed = [&](const std::string& call) {
        const auto found = harmless_.find(call);
        return found != harmless_.end() && (found->second.empty() || found->second.contains(code));
    };
    const std::vector<std::string> failed = vexosim::faulted_calls();
    return std::all_of(failed.begin(), failed.end(), allowed);
}

std::string FaultSweep::describe(const Trial& trial) const
{
    std::string text = "with call " + std::to_string(trial.nth) +
                       (trial.sticky ? " and all later ones" : "") + " answering " +
                       std::to_string(trial.code) + ":";
    for (const std::string& call : vexosim::faulted_calls())
        text += " " + call;
    return text;
}

/// What is wrong with a run that has ended; empty when nothing is.
std::string FaultSweep::complaint(bool result, std::size_t lists_before) const
{
    const auto untouched = [](const Output& output) { return output.untouched(); };
    if (!result && check_outputs_ && !std::all_of(outputs_.begin(), outputs_.end(), untouched))
        return "returned false and wrote an output";
    if (check_lists_ && vexosim::live_lplists() != lists_before)
        return "left a port list";
    return {};
}

bool FaultSweep::run_trial(const Trial& trial)
{
    prepare_();
    for (const Output& output : outputs_)
        output.restore();
    const std::size_t lists = vexosim::live_lplists();
    vexosim::clear_faults();
    vexosim::inject({"", trial.nth, trial.sticky, trial.code, false, spared_});
    const bool result = operation_();
    const bool harmed = vexosim::faults_hit() != 0;
    const std::string wrong = result != is_harmless(trial.code)
                                  ? std::string("returned ") + (result ? "true" : "false")
                                  : complaint(result, lists);
    sound_ = wrong.empty();
    EXPECT_TRUE(sound_) << "The operation " << wrong << " " << describe(trial);
    vexosim::clear_faults();
    return harmed;
}

void FaultSweep::run()
{
    std::vector<int> codes = codes_;
    for (int code = -1; codes_.empty() && code >= kLowestCode; --code)
        codes.push_back(code);
    const SavedChip chip;
    const auto harms = [&](unsigned nth) {
        bool harmed = false;
        for (std::size_t i = 0; sound_ && i < 2 * codes.size(); ++i) {
            if (!keep_chip_)
                chip.restore();
            harmed = run_trial({nth, i % 2 == 1, codes[i / 2]});
        }
        return harmed;
    };
    unsigned nth = 1;
    while (sound_ && nth < kMostCalls && harms(nth))
        ++nth;
    EXPECT_LT(nth, kMostCalls) << "no run was unharmed";
}

} // namespace vexokit
