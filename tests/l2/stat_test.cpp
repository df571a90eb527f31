// Port counters: which of the SDK's are read, and what is made of the answers. The SDK's calls are
// this file's own.
#include <bcmx/port.h>
#include <bcmx/stat.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "l2/stat_tables.h"
#include "platform/port_map.h"
#include "tests/l2/driver.h"

namespace {

std::vector<int> asked;     // the SDK's counters, in order
bcmx_lport_t asked_port;    // of the last
int answer = 0;             // to every call but those for `exception`
int exception = -1;         // this counter answers
int exceptional_answer = 0; // this

template <class Value>
int give(bcmx_lport_t lport, int stat, Value* value)
{
    asked.push_back(stat);
    asked_port = lport;
    const int rc = stat == exception ? exceptional_answer : answer;
    *value = static_cast<Value>(1000 + stat) << (sizeof(Value) == 8 ? 32 : 0);
    return rc;
}

std::vector<int> asked_so_far()
{
    std::vector<int> all;
    std::swap(all, asked);
    return all;
}

unsigned long long value64(int stat)
{
    return (1000ull + static_cast<unsigned>(stat)) << 32;
}

unsigned value32(int stat)
{
    return 1000 + static_cast<unsigned>(stat);
}

// The SDK's counter of a type.
int sdk_stat(int type)
{
    return type <= 33 ? type - 1 : type + 1;
}

std::vector<int> all_stats()
{
    std::vector<int> stats;
    for (int type = 1; type <= 76; ++type)
        stats.push_back(sdk_stat(type));
    return stats;
}

const Mp nowhere(1, 5);

} // namespace

extern "C" {

int bcmx_stat_get(bcmx_lport_t lport, bcm_stat_val_t type, uint64_t* value)
{
    return give(lport, type, value);
}
int bcmx_stat_get32(bcmx_lport_t lport, bcm_stat_val_t type, uint32_t* value)
{
    return give(lport, type, value);
}
int bcmx_port_stat_get(bcmx_lport_t lport, bcm_port_stat_t stat, uint64_t* value)
{
    return give(lport, stat, value);
}
int bcmx_port_stat_get32(bcmx_lport_t lport, bcm_port_stat_t stat, uint32_t* value)
{
    return give(lport, stat, value);
}

} // extern "C"

TEST(Stat, EachTypeReadsItsCounterOfTheGivenPort)
{
    VexoBcmSdk& sdk = driver_with_log();
    int lport = -1;
    ASSERT_TRUE(map_mp_to_lport(port(5), lport));
    for (int type = 1; type <= 76; ++type) {
        unsigned long long wide = 0;
        unsigned narrow = 0;
        EXPECT_TRUE(sdk.get_port_stat_counter(port(5), stat_type_t{type}, wide));
        EXPECT_TRUE(sdk.get_port_stat_counter32(port(5), stat_type_t{type}, narrow));
        EXPECT_EQ(wide, value64(sdk_stat(type))) << type;
        EXPECT_EQ(narrow, value32(sdk_stat(type))) << type;
        EXPECT_EQ(asked_so_far(), std::vector<int>(2, sdk_stat(type)));
        EXPECT_EQ(asked_port, lport);
    }
}

TEST(Stat, TypesAroundTheGapReadCounters32And35)
{
    VexoBcmSdk& sdk = driver_with_log();
    unsigned value = 0;
    EXPECT_TRUE(sdk.get_port_stat_counter32(port(5), stat_type_t{33}, value));
    EXPECT_TRUE(sdk.get_port_stat_counter32(port(5), stat_type_t{34}, value));
    EXPECT_EQ(asked_so_far(), (std::vector<int>{32, 35}));
}

TEST(Stat, AnotherTypeIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int type : {-1, 0, 77, 78}) {
        unsigned long long wide = 5;
        unsigned narrow = 5;
        EXPECT_FALSE(sdk.get_port_stat_counter(port(5), stat_type_t{type}, wide)) << type;
        EXPECT_FALSE(sdk.get_port_stat_counter32(port(5), stat_type_t{type}, narrow)) << type;
        EXPECT_EQ(wide, 5u);
        EXPECT_EQ(narrow, 5u);
    }
    EXPECT_EQ(asked_so_far(), std::vector<int>());
}

TEST(Stat, ACounterThatCannotBeReadIsZeroAndTrue)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int code : codes_except({})) {
        answer = code;
        unsigned long long wide = 5;
        unsigned narrow = 5;
        EXPECT_TRUE(sdk.get_port_stat_counter(port(5), STAT_IF_IN_OCTETS, wide)) << code;
        EXPECT_TRUE(sdk.get_port_stat_counter32(port(5), STAT_IF_IN_OCTETS, narrow)) << code;
        EXPECT_EQ(wide, 0u) << code;
        EXPECT_EQ(narrow, 0u) << code;
    }
}

TEST(Stat, AllCountersAreAppendedInOrderOnesThatCannotBeReadAsZero)
{
    VexoBcmSdk& sdk = driver_with_log();
    exception = sdk_stat(40);
    for (const int code : {-1, -17, -99}) {
        exceptional_answer = code;
        std::list<StatCounter64> wide = {{stat_type_t{99}, 98}};
        std::list<StatCounter32> narrow = {{stat_type_t{99}, 98}};
        EXPECT_TRUE(sdk.get_port_stat_counter_all64(port(5), wide));
        EXPECT_EQ(asked_so_far(), all_stats());
        EXPECT_TRUE(sdk.get_port_stat_counter_all32(port(5), narrow));
        EXPECT_EQ(asked_so_far(), all_stats());
        ASSERT_EQ(wide.size(), 77u);
        ASSERT_EQ(narrow.size(), 77u);
        EXPECT_EQ(wide.front().value, 98u);
        EXPECT_EQ(narrow.front().value, 98u);
        wide.pop_front();
        narrow.pop_front();
        int type = 0;
        for (const StatCounter64& counter : wide) {
            EXPECT_EQ(counter.type, ++type);
            EXPECT_EQ(counter.value, type == 40 ? 0 : value64(sdk_stat(type))) << type;
        }
        type = 0;
        for (const StatCounter32& counter : narrow) {
            EXPECT_EQ(counter.type, ++type);
            EXPECT_EQ(counter.value, type == 40 ? 0 : value32(sdk_stat(type))) << type;
        }
    }
}

TEST(Stat, InTheListsOnlyAnAnswerBelowZeroIsAFailure)
{
    VexoBcmSdk& sdk = driver_with_log();
    answer = 1;
    std::list<StatCounter64> wide;
    std::list<StatCounter32> narrow;
    EXPECT_TRUE(sdk.get_port_stat_counter_all64(port(5), wide));
    EXPECT_TRUE(sdk.get_port_stat_counter_all32(port(5), narrow));
    EXPECT_EQ(wide.front().value, value64(0));
    EXPECT_EQ(narrow.front().value, value32(0));
}

TEST(Stat, AnArrayNeedsRoomFor76Records)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const unsigned room : {0u, 1u, 75u}) {
        StatCounter64 wide[76] = {{stat_type_t{99}, 98}};
        StatCounter32 narrow[76] = {{stat_type_t{99}, 98}};
        unsigned count = room;
        EXPECT_FALSE(sdk.get_port_stat_counter_all64_ext(port(5), wide, count)) << room;
        EXPECT_FALSE(sdk.get_port_stat_counter_all32_ext(port(5), narrow, count)) << room;
        EXPECT_EQ(count, room);
        EXPECT_EQ(wide[0].value, 98u);
        EXPECT_EQ(narrow[0].value, 98u);
    }
    EXPECT_EQ(asked_so_far(), std::vector<int>());
}

TEST(Stat, AnArrayGetsTypeIAtPositionIMinus1OnesThatCannotBeReadAsZero)
{
    VexoBcmSdk& sdk = driver_with_log();
    exception = sdk_stat(76);
    exceptional_answer = -1;
    for (const unsigned room : {76u, 77u, 100u}) {
        std::vector<StatCounter64> wide(room, {stat_type_t{99}, 98});
        std::vector<StatCounter32> narrow(room, {stat_type_t{99}, 98});
        unsigned count = room;
        EXPECT_TRUE(sdk.get_port_stat_counter_all64_ext(port(5), wide.data(), count));
        EXPECT_EQ(count, 76u);
        EXPECT_EQ(asked_so_far(), all_stats());
        count = room;
        EXPECT_TRUE(sdk.get_port_stat_counter_all32_ext(port(5), narrow.data(), count));
        EXPECT_EQ(count, 76u);
        EXPECT_EQ(asked_so_far(), all_stats());
        for (unsigned i = 0; i < room; ++i) {
            const int type = static_cast<int>(i) + 1;
            EXPECT_EQ(wide[i].type, i < 76 ? type : 99);
            EXPECT_EQ(wide[i].value, i >= 76 ? 98 : type == 76 ? 0 : value64(sdk_stat(type)));
            EXPECT_EQ(narrow[i].type, i < 76 ? type : 99);
            EXPECT_EQ(narrow[i].value, i >= 76 ? 98 : type == 76 ? 0 : value32(sdk_stat(type)));
        }
    }
}

TEST(Stat, ASingleSummaryCounterIsReadOnlyWhenTheAnswerIsOne)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (int code = -19; code <= 2; ++code) {
        answer = code;
        for (int type = 1; type <= 4; ++type) {
            unsigned long long wide = 5;
            unsigned narrow = 5;
            EXPECT_EQ(sdk.get_port_brief_stat_counter(port(5), brief_stat_type_t{type}, wide),
                      code == 1);
            EXPECT_EQ(sdk.get_port_brief_stat_counter32(port(5), brief_stat_type_t{type}, narrow),
                      code == 1);
            EXPECT_EQ(wide, code == 1 ? value64(type - 1) : 5) << code;
            EXPECT_EQ(narrow, code == 1 ? value32(type - 1) : 5) << code;
            EXPECT_EQ(asked_so_far(), std::vector<int>(2, type - 1));
        }
    }
}

TEST(Stat, AnotherSummaryTypeIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    answer = 1;
    for (const int type : {-1, 0, 5}) {
        unsigned long long wide = 5;
        unsigned narrow = 5;
        EXPECT_FALSE(sdk.get_port_brief_stat_counter(port(5), brief_stat_type_t{type}, wide));
        EXPECT_FALSE(sdk.get_port_brief_stat_counter32(port(5), brief_stat_type_t{type}, narrow));
        EXPECT_EQ(wide, 5u);
        EXPECT_EQ(narrow, 5u);
    }
    EXPECT_EQ(asked_so_far(), std::vector<int>());
}

TEST(Stat, TheSummaryIsAppendedInOrderUpToTheFirstThatCannotBeRead)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int failing : {0, 2, 3, 99}) {
        exception = failing;
        for (const int code : codes_except({})) {
            exceptional_answer = code;
            const std::size_t read = failing == 99 ? 4 : static_cast<std::size_t>(failing);
            std::list<BriefStatCounter64> wide = {{brief_stat_type_t{99}, 98}};
            std::list<BriefStatCounter32> narrow = {{brief_stat_type_t{99}, 98}};
            EXPECT_EQ(sdk.get_port_brief_stat_counter_all64(port(5), wide), failing == 99);
            EXPECT_EQ(sdk.get_port_brief_stat_counter_all32(port(5), narrow), failing == 99);
            EXPECT_EQ(wide.size(), 1 + read) << failing;
            EXPECT_EQ(narrow.size(), 1 + read) << failing;
            int type = 98;
            for (const BriefStatCounter64& counter : wide) {
                EXPECT_EQ(counter.type, ++type);
                EXPECT_EQ(counter.value, type == 99 ? 98 : value64(type - 1));
                type = type == 99 ? 0 : type;
            }
            type = 98;
            for (const BriefStatCounter32& counter : narrow) {
                EXPECT_EQ(counter.type, ++type);
                EXPECT_EQ(counter.value, type == 99 ? 98 : value32(type - 1));
                type = type == 99 ? 0 : type;
            }
        }
    }
}

TEST(Stat, TheSummaryListsFollowTheTableThatBringUpFills)
{
    VexoBcmSdk& sdk = driver_with_log();
    std::list<BriefStatCounter64> counters;
    brief_to_port_stat[2] = 3;
    EXPECT_TRUE(sdk.get_port_brief_stat_counter_all64(port(5), counters));
    EXPECT_EQ(asked_so_far(), (std::vector<int>{0, 3, 2, 3}));
}

TEST(Stat, APortThatDoesNotExistIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    answer = 1;
    unsigned long long wide = 5;
    unsigned narrow = 5;
    unsigned count = 100;
    std::list<StatCounter64> all64;
    std::list<StatCounter32> all32;
    std::list<BriefStatCounter64> brief64;
    std::list<BriefStatCounter32> brief32;
    StatCounter64 array64[100] = {};
    StatCounter32 array32[100] = {};
    EXPECT_FALSE(sdk.get_port_stat_counter(nowhere, STAT_IF_IN_OCTETS, wide));
    EXPECT_FALSE(sdk.get_port_stat_counter32(nowhere, STAT_IF_IN_OCTETS, narrow));
    EXPECT_FALSE(sdk.get_port_stat_counter_all64(nowhere, all64));
    EXPECT_FALSE(sdk.get_port_stat_counter_all32(nowhere, all32));
    EXPECT_FALSE(sdk.get_port_stat_counter_all64_ext(nowhere, array64, count));
    EXPECT_FALSE(sdk.get_port_stat_counter_all32_ext(nowhere, array32, count));
    EXPECT_FALSE(sdk.get_port_brief_stat_counter(nowhere, BRIEF_STAT_IN_BYTES, wide));
    EXPECT_FALSE(sdk.get_port_brief_stat_counter32(nowhere, BRIEF_STAT_IN_BYTES, narrow));
    EXPECT_FALSE(sdk.get_port_brief_stat_counter_all64(nowhere, brief64));
    EXPECT_FALSE(sdk.get_port_brief_stat_counter_all32(nowhere, brief32));
    EXPECT_EQ(wide, 5u);
    EXPECT_EQ(narrow, 5u);
    EXPECT_EQ(count, 100u);
    EXPECT_TRUE(all64.empty() && all32.empty() && brief64.empty() && brief32.empty());
    EXPECT_EQ(asked_so_far(), std::vector<int>());
}

TEST(Stat, WhetherAPortCountsIsNeverTold)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const bool before : {true, false}) {
        bool enabled = before;
        EXPECT_FALSE(sdk.get_port_stat_enabled(port(5), enabled));
        EXPECT_FALSE(sdk.get_port_stat_enabled(nowhere, enabled));
        EXPECT_EQ(enabled, before);
    }
    EXPECT_EQ(calls_made(), "");
}
