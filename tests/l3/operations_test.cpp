// Every operation: its calls in order, and what each of their answers makes of it.
#include "tests/l3/operations.h"

namespace {

struct L3Operations : QuietCardTest {
    /// From now on `call` does nothing and answers `code`.
    static void answer(const std::string& call, int code)
    {
        inject({.call = call, .sticky = true, .code = code, .do_nothing = code >= 0});
    }

    /// Every call of the operation does nothing and answers what the operation wants.
    static void answer_well(const L3Operation& operation)
    {
        clear_faults();
        if (!operation.init.empty() && operation.init_must_answer != 0)
            answer(operation.init, operation.init_must_answer);
        for (const L3Call& call : operation.calls)
            answer(call.name(), 0);
    }

    /// Runs it with one call answering `code`; the calls before it answer well.
    bool run_with(const L3Operation& operation, const std::string& call, int code)
    {
        clear_faults();
        answer(call, code);
        for (const L3Call& other : operation.calls)
            answer(other.name(), 0);
        if (!operation.init.empty() && operation.init_must_answer != 0)
            answer(operation.init, operation.init_must_answer);
        outputs = {};
        clear_calls();
        return operation.act(sdk(), outputs);
    }

    static std::string lines(const L3Operation& operation, std::size_t count)
    {
        std::string text;
        for (std::size_t i = 0; i < count; ++i)
            text += operation.calls[i].line;
        return text;
    }

    L3Outputs outputs;
};

TEST_F(L3Operations, EachMakesItsCallsInOrder)
{
    for (const L3Egress& egress : {port_3, trunk_77}) {
        for (const L3Operation& operation : l3_operations(egress)) {
            answer_well(operation);
            clear_calls();
            EXPECT_TRUE(operation.act(sdk(), outputs)) << operation.name;
            const std::string init = operation.init.empty() ? "" : operation.init + "(out)\n";
            EXPECT_EQ(all_calls(), init + lines(operation, operation.calls.size()))
                << operation.name;
        }
    }
}

TEST_F(L3Operations, APortThatDoesNotMapIsFalseWithoutAnyCall)
{
    unsigned seen = 0;
    for (const L3Operation& operation : l3_operations(nowhere)) {
        if (!operation.has_egress)
            continue;
        ++seen;
        answer_well(operation);
        clear_calls();
        EXPECT_FALSE(operation.act(sdk(), outputs)) << operation.name;
        EXPECT_EQ(all_calls(), "") << operation.name;
        EXPECT_EQ(outputs, L3Outputs{}) << operation.name;
    }
    EXPECT_EQ(seen, 12u);
}

TEST_F(L3Operations, EachAnswerButSuccessAndTheToleratedOneEndsItAndIsFalse)
{
    for (const L3Operation& operation : l3_operations(port_3)) {
        for (std::size_t i = 0; i < operation.calls.size(); ++i) {
            for (int code = -20; code <= 1; ++code) {
                if (operation.name == "delete_l3_interface" && i == 0 && code == -7)
                    continue; // has a test of its own
                const L3Call& call = operation.calls[i];
                const bool goes_on = code == 0 || code == call.tolerated;
                EXPECT_EQ(run_with(operation, call.name(), code), goes_on)
                    << operation.name << code;
                EXPECT_EQ(calls(), lines(operation, goes_on ? operation.calls.size() : i + 1))
                    << operation.name << code;
            }
        }
    }
}

TEST_F(L3Operations, OutputsAreLeftAloneOnFailure)
{
    for (const L3Operation& operation : l3_operations(port_3)) {
        for (const L3Call& call : operation.calls) {
            for (const int code : {-1, -4, -7, -8, 1}) {
                if (!run_with(operation, call.name(), code)) {
                    EXPECT_EQ(outputs, L3Outputs{}) << operation.name << code;
                }
            }
        }
    }
}

TEST_F(L3Operations, ARecordThatTheSdkDoesNotPrepareMakesNoCall)
{
    for (const L3Operation& operation : l3_operations(port_3)) {
        for (int code = -20; code <= 2; ++code) {
            if (operation.init.empty() || code == operation.init_must_answer)
                continue;
            EXPECT_EQ(run_with(operation, operation.init, code), operation.if_init_fails)
                << operation.name << code;
            EXPECT_EQ(calls(), "") << operation.name << code;
            EXPECT_EQ(outputs, L3Outputs{}) << operation.name << code;
        }
    }
}

TEST_F(L3Operations, NoneSaysAnything)
{
    sdk().set_trace("trace_level_all", true);
    for (const L3Operation& operation : l3_operations(port_3)) {
        for (const L3Call& call : operation.calls) {
            for (const int code : {0, -1, -7, -8})
                EXPECT_EQ(printed([&] { run_with(operation, call.name(), code); }), "")
                    << operation.name << code;
        }
        const std::string init = operation.init;
        EXPECT_EQ(printed([&] { run_with(operation, init.empty() ? "none" : init, -1); }), "")
            << operation.name;
    }
}

} // namespace
