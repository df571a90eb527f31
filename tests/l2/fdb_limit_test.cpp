// Limits on learned addresses: the probe, the kinds, and what is said of a chip without them.
#include <gtest/gtest.h>

#include "tests/l2/driver.h"

namespace {

const std::string probe = "bcmx_l2_learn_limit_get({flags=0, limit=-1})\n";
const std::string warning = "Warnning: this kind of switch chip does not support mac limit\n";

struct Kind {
    int kind;
    Mp port;
    std::string record; // but for the limit
};

std::vector<Kind> kinds()
{
    return {
        {1, port(5), "{flags=4, port=5, limit="},
        {2, Mp(77, 5), "{flags=8, trunk=5, limit="},
        {3, Mp(77, 0x10005), "{flags=2, vlan=5, limit="},
        {4, Mp(77, 5), "{flags=1, limit="},
    };
}

std::vector<Kind> settable_kinds()
{
    std::vector<Kind> all = kinds();
    all.push_back({0, port(5), "{flags=0, limit="});
    return all;
}

template <class Act>
std::string printed_by(Act act)
{
    testing::internal::CaptureStdout();
    EXPECT_FALSE(act());
    return testing::internal::GetCapturedStdout();
}

} // namespace

TEST(FdbLimit, ALimitIsSetForItsKindAfterAProbe)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(0);
    for (const Kind& kind : settable_kinds()) {
        EXPECT_TRUE(sdk.set_port_mac_limit(kind.port, 100, kind.kind)) << kind.kind;
        EXPECT_EQ(calls_made(), probe + "bcmx_l2_learn_limit_set(" + kind.record + "100})\n");
    }
}

TEST(FdbLimit, ALimitIsReadForItsKindWithoutAProbe)
{
    VexoBcmSdk& sdk = driver_with_log();
    const EveryCallAnswers answer(0);
    for (const Kind& kind : kinds()) {
        int limit = 77;
        EXPECT_TRUE(sdk.get_port_mac_limit(kind.port, limit, kind.kind)) << kind.kind;
        EXPECT_EQ(limit, -1); // as the record was made
        EXPECT_EQ(calls_made(), "bcmx_l2_learn_limit_get(" + kind.record + "-1})\n");
    }
}

TEST(FdbLimit, ALimitReadsAsItWasSet)
{
    VexoBcmSdk& sdk = driver_with_log();
    int limit = 77;
    EXPECT_TRUE(sdk.set_port_mac_limit(port(5), 100, 1));
    EXPECT_TRUE(sdk.get_port_mac_limit(port(5), limit, 1));
    EXPECT_EQ(limit, 100);
    EXPECT_TRUE(sdk.get_port_mac_limit(port(6), limit, 1));
    EXPECT_EQ(limit, -1);
}

TEST(FdbLimit, AnotherKindIsRefusedAfterTheProbeOnSetAndWithoutACallOnGet)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int kind : {-1, 5, 6}) {
        EXPECT_FALSE(sdk.set_port_mac_limit(port(5), 100, kind)) << kind;
        EXPECT_EQ(calls_made(), probe);
    }
    int limit = 77;
    for (const int kind : {-1, 0, 5, 6})
        EXPECT_FALSE(sdk.get_port_mac_limit(port(5), limit, kind)) << kind;
    EXPECT_EQ(calls_made(), "");
    EXPECT_EQ(limit, 77);
}

TEST(FdbLimit, APortThatDoesNotExistIsForTheChipToRefuseOnSetAndRefusedWithoutACallOnGet)
{
    VexoBcmSdk& sdk = driver_with_log();
    const Mp nowhere(1, 5);
    EXPECT_FALSE(sdk.set_port_mac_limit(nowhere, 100, 1));
    EXPECT_EQ(calls_made(),
              probe + "bcmx_l2_learn_limit_set({flags=4, port=lport:-1, limit=100})\n");
    int limit = 77;
    EXPECT_FALSE(sdk.get_port_mac_limit(nowhere, limit, 1));
    EXPECT_EQ(limit, 77);
    EXPECT_EQ(calls_made(), "");
}

TEST(FdbLimit, AFailedProbeIsFalseAndReportedWhenItSaysThatThereAreNoLimits)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const bool trace : {false, true}) {
        sdk.set_trace("trace_level_all", trace);
        for (const int code : codes_except({})) {
            const bool absent = code == -7 || code == -16;
            const EveryCallAnswers answer(code);
            for (const int kind : {1, 5}) {
                const auto set = [&] { return sdk.set_port_mac_limit(port(5), 100, kind); };
                EXPECT_EQ(printed_by(set), trace && absent ? warning : "") << code;
                EXPECT_EQ(calls_made(), probe);
            }
        }
    }
}

TEST(FdbLimit, AFailedReadIsFalseReportedInTheSameWayAndLeavesTheOutputAlone)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const bool trace : {false, true}) {
        sdk.set_trace("trace_level_all", trace);
        for (const int code : codes_except({})) {
            const bool absent = code == -7 || code == -16;
            const EveryCallAnswers answer(code);
            int limit = 77;
            const auto get = [&] { return sdk.get_port_mac_limit(port(5), limit, 1); };
            EXPECT_EQ(printed_by(get), trace && absent ? warning : "") << code;
            EXPECT_EQ(limit, 77);
        }
    }
}

TEST(FdbLimit, AKindThatTheChipLacksIsAcceptedSilently)
{
    VexoBcmSdk& sdk = driver_with_log();
    sdk.set_trace("trace_level_all", true);
    testing::internal::CaptureStdout();
    fail_next("bcmx_l2_learn_limit_set", -16);
    EXPECT_TRUE(sdk.set_port_mac_limit(port(5), 100, 1));
    for (const int code : codes_except({-16})) {
        fail_next("bcmx_l2_learn_limit_set", code);
        EXPECT_FALSE(sdk.set_port_mac_limit(port(5), 100, 1)) << code;
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}
