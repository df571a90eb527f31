// Port mirroring call by call, and how floods are kept from the destination.
#include <gtest/gtest.h>

#include "tests/l2/driver.h"
#include "tests/l2/sweep.h"

namespace {

const std::string get_block = "bcmx_port_flood_block_get";
const std::string set_block = "bcmx_port_flood_block_set";
const Mp nowhere(1, 5);

std::string mirror_set(const std::string& flags)
{
    return "bcmx_mirror_port_set(6, 5, " + flags + ")\n";
}

/// Reading and writing what is kept from port 5, for every swept port but itself.
std::string isolation(const std::string& flags)
{
    std::string lines;
    for (const unsigned user_port : swept_ports()) {
        const std::string pair = "(" + std::to_string(user_port) + ", 5, ";
        if (user_port != 5)
            lines += get_block + pair + "out)\n" + set_block + pair + flags + ")\n";
    }
    return lines;
}

unsigned blocked(VexoBcmSdk& sdk, unsigned ingress, unsigned egress)
{
    flood_block_type_t flags = FLOOD_BLOCK_NONE;
    EXPECT_TRUE(sdk.get_port_flood_blocking(port(ingress), port(egress), flags));
    calls_made();
    return flags;
}

} // namespace

TEST(Mirror, EnablingStartsTheBlockAndKeepsTheReceivedFormatWhateverTheArgument)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const unsigned argument : {0u, 1u}) {
        EXPECT_TRUE(sdk.enable_mirror(argument));
        EXPECT_EQ(calls_made(), "bcmx_mirror_init()\nbcmx_mirror_pfmt_set(1)\n");
    }
}

TEST(Mirror, EnablingStopsAtAFailedStart)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int code : codes_except({})) {
        fail_next("bcmx_mirror_init", code);
        EXPECT_FALSE(sdk.enable_mirror(1)) << code;
        EXPECT_EQ(calls_made(), "bcmx_mirror_init()\n");
    }
}

TEST(Mirror, EnablingFailsWithTheFormat)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int code : codes_except({})) {
        fail_next("bcmx_mirror_pfmt_set", code);
        EXPECT_FALSE(sdk.enable_mirror(1)) << code;
    }
}

TEST(Mirror, EachTypeHasItsFlagsAndKeepsFloodsFromTheDestination)
{
    struct Row {
        mirror_type_t type;
        std::string flags;
    };
    VexoBcmSdk& sdk = driver_with_log();
    for (const Row& row :
         {Row{MIRROR_INGRESS, "3"}, Row{MIRROR_EGRESS, "0xd"}, Row{MIRROR_BOTH, "0xf"}}) {
        EXPECT_TRUE(sdk.set_mirror_port(port(5), port(6), row.type));
        EXPECT_EQ(calls_made(), mirror_set(row.flags) + isolation("7"));
    }
    EXPECT_TRUE(sdk.set_mirror_port(port(5), port(6), MIRROR_OFF));
    EXPECT_EQ(calls_made(), mirror_set("0") + isolation("0"));
}

TEST(Mirror, AnotherTypeIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int type : {-1, 4, 5})
        EXPECT_FALSE(sdk.set_mirror_port(port(5), port(6), mirror_type_t{type})) << type;
    EXPECT_EQ(calls_made(), "");
}

TEST(Mirror, APortThatDoesNotExistIsRefusedWithoutACall)
{
    VexoBcmSdk& sdk = driver_with_log();
    Mp destination(9, 9);
    mirror_type_t type = MIRROR_EGRESS;
    EXPECT_FALSE(sdk.set_mirror_port(nowhere, port(6), MIRROR_BOTH));
    EXPECT_FALSE(sdk.set_mirror_port(port(5), nowhere, MIRROR_BOTH));
    EXPECT_FALSE(sdk.get_mirror_port(destination, nowhere, type));
    EXPECT_EQ(destination, Mp(9, 9));
    EXPECT_EQ(type, MIRROR_EGRESS);
    EXPECT_EQ(calls_made(), "");
}

TEST(Mirror, OtherFloodBlocksAreKept)
{
    VexoBcmSdk& sdk = driver_with_log();
    const auto own = flood_block_type_t{FLOOD_BLOCK_UNKNOWN_MULTICAST};
    EXPECT_TRUE(sdk.set_port_flood_blocking(port(8), port(5), own));
    EXPECT_TRUE(sdk.set_mirror_port(port(5), port(6), MIRROR_INGRESS));
    EXPECT_EQ(blocked(sdk, 8, 5), 0xfu);
    EXPECT_EQ(blocked(sdk, 9, 5), 0x7u);
    EXPECT_TRUE(sdk.set_mirror_port(port(5), port(6), MIRROR_OFF));
    EXPECT_EQ(blocked(sdk, 8, 5), 0x8u);
    EXPECT_EQ(blocked(sdk, 9, 5), 0x0u);
}

TEST(Mirror, ARefusedMirrorIsolatesNothing)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int code : codes_except({})) {
        fail_next("bcmx_mirror_port_set", code);
        EXPECT_FALSE(sdk.set_mirror_port(port(5), port(6), MIRROR_INGRESS)) << code;
        EXPECT_EQ(calls_made(), mirror_set("3"));
    }
}

TEST(Mirror, IsolationStopsAtTheCallThatFails)
{
    VexoBcmSdk& sdk = driver_with_log();
    const std::string all = mirror_set("3") + isolation("7");
    for (const int code : codes_except({})) {
        fail_next(get_block, code, 2);
        EXPECT_FALSE(sdk.set_mirror_port(port(5), port(6), MIRROR_INGRESS)) << code;
        EXPECT_EQ(calls_made(), first_lines(all, 4));
        fail_next(set_block, code, 2);
        EXPECT_FALSE(sdk.set_mirror_port(port(5), port(6), MIRROR_INGRESS)) << code;
        EXPECT_EQ(calls_made(), first_lines(all, 5));
    }
}

TEST(Mirror, AMirrorReadsAsItWasSet)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const mirror_type_t wanted : {MIRROR_INGRESS, MIRROR_EGRESS, MIRROR_BOTH}) {
        Mp destination(9, 9);
        mirror_type_t type = MIRROR_OFF;
        EXPECT_TRUE(sdk.set_mirror_port(port(5), port(6), wanted));
        calls_made();
        EXPECT_TRUE(sdk.get_mirror_port(destination, port(6), type));
        EXPECT_EQ(type, wanted);
        EXPECT_EQ(destination, port(5));
        EXPECT_EQ(calls_made(), "bcmx_mirror_port_get(6, out, out)\n");
    }
}

TEST(Mirror, APortWithoutAMirrorReadsAsOffAndLeavesTheDestinationAlone)
{
    VexoBcmSdk& sdk = driver_with_log();
    Mp destination(9, 9);
    mirror_type_t type = MIRROR_BOTH;
    EXPECT_TRUE(sdk.get_mirror_port(destination, port(6), type));
    EXPECT_EQ(type, MIRROR_OFF);
    EXPECT_EQ(destination, Mp(9, 9));
}

TEST(Mirror, AReadThatFailsWithNothingReadIsOffWhateverTheCode)
{
    VexoBcmSdk& sdk = driver_with_log();
    for (const int code : codes_except({})) {
        const EveryCallAnswers answer(code);
        Mp destination(9, 9);
        mirror_type_t type = MIRROR_BOTH;
        EXPECT_TRUE(sdk.get_mirror_port(destination, port(6), type)) << code;
        EXPECT_EQ(type, MIRROR_OFF) << code;
        EXPECT_EQ(destination, Mp(9, 9)) << code;
    }
}

TEST(Mirror, AMirrorToItselfIsForTheChipToRefuse)
{
    VexoBcmSdk& sdk = driver_with_log();
    EXPECT_FALSE(sdk.set_mirror_port(port(5), port(5), MIRROR_INGRESS));
    EXPECT_EQ(calls_made(), "bcmx_mirror_port_set(5, 5, 3)\n");
}
