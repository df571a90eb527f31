// What is made of the mirrors that a chip may report. The SDK's call is this file's own.
#include <bcmx/mirror.h>
#include <gtest/gtest.h>

#include "platform/port_map.h"
#include "tests/l2/driver.h"

namespace {

int chip_result = 0;
bcmx_lport_t chip_destination = 0;
uint32_t chip_flags = 0;

struct Reading {
    bool done;
    int type;
    Mp destination;

    bool operator==(const Reading& other) const
    {
        return done == other.done && type == other.type && destination == other.destination;
    }
};

Reading read(VexoBcmSdk& sdk)
{
    Mp destination(9, 9);
    auto type = static_cast<mirror_type_t>(77);
    const bool done = sdk.get_mirror_port(destination, port(6), type);
    return {done, type, destination};
}

const Reading refused = {false, 77, Mp(9, 9)};

} // namespace

extern "C" int bcmx_mirror_port_get(bcmx_lport_t, bcmx_lport_t* dest, uint32_t* flags)
{
    EXPECT_EQ(*dest, 0);
    EXPECT_EQ(*flags, 0u);
    *dest = chip_destination;
    *flags = chip_flags;
    return chip_result;
}

TEST(MirrorValues, TheDirectionsDecideTheType)
{
    VexoBcmSdk& sdk = driver_with_log();
    chip_destination = vexo_user_port_to_lport[10];
    const int refused_type = -1;
    const int types[16] = {
        0, refused_type, 1, 1, 2, 2, 3, 3, refused_type, refused_type, 1, 1, 2, 2, 3, 3};
    for (chip_flags = 0; chip_flags < 16; ++chip_flags) {
        const int type = types[chip_flags];
        const Reading expected = type == refused_type ? refused
                                 : type == 0          ? Reading{true, 0, Mp(9, 9)}
                                                      : Reading{true, type, port(10)};
        EXPECT_TRUE(read(sdk) == expected) << chip_flags;
    }
    chip_flags = 0x10;
    EXPECT_TRUE(read(sdk) == refused);
}

TEST(MirrorValues, OnlyABadPortWithFlagsIsAFailure)
{
    VexoBcmSdk& sdk = driver_with_log();
    chip_destination = vexo_user_port_to_lport[10];
    for (const int code : codes_except({})) {
        chip_result = code;
        chip_flags = 0x3;
        EXPECT_TRUE(read(sdk) == (code == -18 ? refused : Reading{true, 1, port(10)})) << code;
        chip_flags = 0;
        EXPECT_TRUE(read(sdk) == (Reading{true, 0, Mp(9, 9)})) << code;
    }
}

TEST(MirrorValues, ADestinationThatDoesNotConvertIsAFailureThatLeavesTheTypeAlone)
{
    VexoBcmSdk& sdk = driver_with_log();
    chip_result = 0;
    chip_flags = 0xf;
    for (const bcmx_lport_t lport : {0, 255, 310, -2}) {
        chip_destination = lport;
        EXPECT_TRUE(read(sdk) == refused) << lport;
    }
}
