#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "tests/l2/driver.h"

/// One-call operations as tables: what each asks of the chip about user port 5, and what it makes
/// of the answers. A row is `checked` when a port that does not exist is refused without a call;
/// otherwise the chip is asked about lport -1.

/// Sets something on the port.
struct Setter {
    std::string calls;
    bool checked;
    std::function<bool(VexoBcmSdk&, const Mp&)> act;
};

/// Reads something of the port into `value`, which holds what was there before.
struct Getter {
    std::string calls;
    bool checked;
    std::function<bool(VexoBcmSdk&, const Mp&, long& value)> act;
};

/// An operation whose only output is a `T`.
template <class T>
auto into(bool (VexoSdkBase::*get)(const Mp&, T&))
{
    return [get](VexoBcmSdk& sdk, const Mp& mp, long& value) {
        T out = static_cast<T>(value);
        const bool result = (sdk.*get)(mp, out);
        value = static_cast<long>(out);
        return result;
    };
}

inline bool run(const Setter& setter, VexoBcmSdk& sdk, const Mp& mp, long&)
{
    return setter.act(sdk, mp);
}

inline bool run(const Getter& getter, VexoBcmSdk& sdk, const Mp& mp, long& value)
{
    return getter.act(sdk, mp, value);
}

/// Each makes its calls and succeeds.
template <class Row>
void expect_calls(VexoBcmSdk& sdk, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        long value = 0;
        EXPECT_TRUE(run(row, sdk, port(5), value)) << row.calls;
        EXPECT_EQ(calls_made(), row.calls);
    }
}

/// Each is false for every answer of the chip's but success, and leaves its output alone.
template <class Row>
void expect_failures(VexoBcmSdk& sdk, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        for (const int code : codes_except({})) {
            const EveryCallAnswers answer(code);
            for (const long before : {0L, 1L}) {
                long value = before;
                EXPECT_FALSE(run(row, sdk, port(5), value)) << row.calls << code;
                EXPECT_EQ(value, before) << row.calls << code;
            }
        }
    }
}

/// Each is false for a port that does not exist.
template <class Row>
void expect_refusals(VexoBcmSdk& sdk, const std::vector<Row>& rows)
{
    for (const Row& row : rows) {
        long value = 1;
        EXPECT_FALSE(run(row, sdk, Mp(1, 5), value)) << row.calls;
        EXPECT_EQ(value, 1) << row.calls;
        const std::string made = calls_made();
        EXPECT_EQ(made.empty(), row.checked) << row.calls;
        EXPECT_EQ(made.find("lport:-1") == std::string::npos, row.checked) << made;
    }
}
