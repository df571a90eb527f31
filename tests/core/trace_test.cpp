#include "core/trace.h"

#include <gtest/gtest.h>

#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "tests/core/instance.h"

namespace {

const unsigned char bytes[17] = {0x00, 0x01, 0x7f, 0x80, 0xff, 5,  6,  7, 8,
                                 9,    10,   11,   12,   13,   14, 15, 16};
const char* const first_16 = "00 01 7f 80 ff 05 06 07 08 09 0a 0b 0c 0d 0e 0f \n";

std::string dump(const VexoBcmSdk& sdk, unsigned length)
{
    testing::internal::CaptureStdout();
    sdk.dump_bytes(bytes, length);
    return testing::internal::GetCapturedStdout();
}

// The switch is the library's own; a dump shows it.
bool is_on(const VexoBcmSdk& sdk)
{
    return !dump(sdk, 0).empty();
}

} // namespace

TEST(Trace, IsOffAtLoad)
{
    EXPECT_FALSE(is_on(new_instance()));
}

TEST(Trace, BothAcceptedKeywordsAreOneSwitch)
{
    VexoBcmSdk& sdk = new_instance();
    EXPECT_TRUE(sdk.set_trace("trace_level_all", true));
    EXPECT_TRUE(is_on(sdk));
    EXPECT_TRUE(sdk.set_trace("trace_level_sdk", false));
    EXPECT_FALSE(is_on(sdk));
    EXPECT_TRUE(sdk.set_trace("trace_level_sdk", true));
    EXPECT_TRUE(is_on(sdk));
    EXPECT_TRUE(sdk.set_trace("trace_level_all", false));
    EXPECT_FALSE(is_on(sdk));
}

TEST(Trace, EveryOtherKeywordIsRefusedAndChangesNothing)
{
    VexoBcmSdk& sdk = new_instance();
    std::vector<std::string> refused = {
        "",    "TRACE_LEVEL_ALL",  "TRACE_LEVEL_SDK",  "trace_level",
        "FDB", "trace_level_all ", " trace_level_sdk", "nothing"};
    for (const std::string keyword : vexolc::trace_keyword::all) {
        if (keyword != "trace_level_all" && keyword != "trace_level_sdk")
            refused.push_back(keyword);
    }
    for (const bool on : {false, true}) {
        sdk.set_trace("trace_level_all", on);
        for (const std::string& keyword : refused) {
            EXPECT_FALSE(sdk.set_trace(keyword, !on)) << keyword;
            EXPECT_EQ(is_on(sdk), on) << keyword;
        }
    }
}

TEST(Trace, HasTheseKeywordsInThisOrder)
{
    const std::vector<std::string> keywords(std::begin(vexolc::trace_keyword::all),
                                            std::end(vexolc::trace_keyword::all));
    EXPECT_EQ(keywords,
              (std::vector<std::string>{"trace_level_xrl", "trace_level_api", "trace_level_sdk",
                                        "trace_level_all", "finder", "card_manager", "lcmgr", "fdb",
                                        "vlan", "sif", "switch_mirror", "policy", "stat", "lldp",
                                        "rstp", "snmp", "lacp", "tuntap"}));
}

TEST(Trace, OutlivesTheInstance)
{
    new_instance().set_trace("trace_level_sdk", true);
    vexosdk_delete_sdk_instance(nullptr);
    testing::internal::CaptureStdout();
    VexoBcmSdk& sdk = new_instance();
    testing::internal::GetCapturedStdout(); // how the bring-up ended
    EXPECT_TRUE(is_on(sdk));
}

TEST(Trace, NeverTouchesTheDebugFlag)
{
    VexoBcmSdk& sdk = new_instance();
    sdk.set_trace("trace_level_all", true);
    EXPECT_EQ(hw_util_dbg, 0);
    hw_util_dbg = 2;
    sdk.set_trace("trace_level_all", false);
    EXPECT_EQ(hw_util_dbg, 2);
}

TEST(Trace, ADumpPrintsNothingWhileTracingIsOff)
{
    VexoBcmSdk& sdk = new_instance();
    EXPECT_EQ(dump(sdk, 16), "");
}

TEST(Trace, ADumpPrints16BytesALineAndAnEmptyLineAtTheEnd)
{
    VexoBcmSdk& sdk = new_instance();
    sdk.set_trace("trace_level_all", true);
    EXPECT_EQ(dump(sdk, 0), "\n");
    EXPECT_EQ(dump(sdk, 1), "00 \n\n");
    EXPECT_EQ(dump(sdk, 16), std::string(first_16) + "\n");
    EXPECT_EQ(dump(sdk, 17), std::string(first_16) + "10 \n\n");
}
