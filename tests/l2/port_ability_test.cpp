// Abilities as bit sets. The SDK's calls are this file's own, so that the chip can be made to say
// anything and what it is told can be looked at.
#include <bcmx/port.h>
#include <gtest/gtest.h>

#include <vector>

#include "tests/core/instance.h"

namespace {

uint32_t chip_word = 0;
bcm_port_ability_t chip_record = {};
bcm_port_ability_t told = {};

// Checked port mapping needs a port: before a bring-up, (0, 0) is user port 0.
const Mp port(0, 0);

constexpr unsigned refused = 0xffffffff;

using Get = bool (*)(VexoBcmSdk&, port_ability_type_t&);

unsigned read(VexoBcmSdk& sdk, Get get)
{
    auto ability = static_cast<port_ability_type_t>(0x12345678);
    return get(sdk, ability) ? static_cast<unsigned>(ability) : refused;
}

const std::vector<Get> record_getters = {
    [](VexoBcmSdk& sdk, port_ability_type_t& out) {
        return sdk.get_port_advertising_ability(port, out);
    },
    [](VexoBcmSdk& sdk, port_ability_type_t& out) {
        return sdk.get_port_current_ability(port, out);
    },
    [](VexoBcmSdk& sdk, port_ability_type_t& out) { return sdk.get_port_peer_ability(port, out); },
};

struct Row {
    const char* what;
    bcm_port_ability_t record; // half, full, pause, medium, flags
    unsigned bits;
};

void expect_record(const Row& row)
{
    EXPECT_EQ(told.speed_half_duplex, row.record.speed_half_duplex) << row.what;
    EXPECT_EQ(told.speed_full_duplex, row.record.speed_full_duplex) << row.what;
    EXPECT_EQ(told.pause, row.record.pause) << row.what;
    EXPECT_EQ(told.medium, row.record.medium) << row.what;
    EXPECT_EQ(told.flags, row.record.flags) << row.what;
}

int give(bcm_port_ability_t* ability)
{
    *ability = chip_record;
    return BCM_E_NONE;
}

} // namespace

extern "C" {

int bcmx_port_ability_get(bcmx_lport_t, bcm_port_abil_t* mask)
{
    *mask = chip_word;
    return BCM_E_NONE;
}
int bcmx_port_ability_advert_get(bcmx_lport_t, bcm_port_ability_t* ability)
{
    return give(ability);
}
int bcmx_port_ability_local_get(bcmx_lport_t, bcm_port_ability_t* ability)
{
    return give(ability);
}
int bcmx_port_ability_remote_get(bcmx_lport_t, bcm_port_ability_t* ability)
{
    return give(ability);
}
int bcmx_port_ability_advert_set(bcmx_lport_t, bcm_port_ability_t* ability)
{
    told = *ability;
    return BCM_E_NONE;
}

} // extern "C"

TEST(PortAbility, EachBitOfTheWordIsTranslatedOnItsOwn)
{
    VexoBcmSdk& sdk = new_instance();
    const auto get = [](VexoBcmSdk& s, port_ability_type_t& out) {
        return s.get_port_ability(port, out);
    };
    for (unsigned bit = 0; bit < 32; ++bit) {
        chip_word = 1u << bit;
        const unsigned expected = bit < 6     ? chip_word
                                  : bit == 8  ? 0x40u
                                  : bit == 9  ? 0x80u
                                  : bit == 10 ? 0x800u
                                  : bit == 11 ? 0x1000u
                                  : bit == 12 ? 0x2000u
                                  : bit == 21 ? 0x400u
                                  : bit == 31 ? 0x300u
                                              : 0u;
        EXPECT_EQ(read(sdk, get), expected) << bit;
    }
    chip_word = 0xffffffff;
    EXPECT_EQ(read(sdk, get), 0x3fffu);
    chip_word = 0;
    EXPECT_EQ(read(sdk, get), 0u);
}

TEST(PortAbility, ARecordReadsAsItsLowestSpeedFullDuplexFirstAndAllOtherBits)
{
    VexoBcmSdk& sdk = new_instance();
    const Row rows[] = {
        {"nothing", {0, 0, 0, 0, 0}, 0},
        {"10 half", {0x01, 0, 0, 0, 0}, 0x1},
        {"10 full", {0, 0x01, 0, 0, 0}, 0x2},
        {"100 half", {0x02, 0, 0, 0, 0}, 0x4},
        {"100 full", {0, 0x02, 0, 0, 0}, 0x8},
        {"1000 half", {0x04, 0, 0, 0, 0}, 0x10},
        {"1000 full", {0, 0x04, 0, 0, 0}, 0x20},
        {"10000 half", {0x80, 0, 0, 0, 0}, 0x40},
        {"10000 full", {0, 0x80, 0, 0, 0}, 0x80},
        {"10 both ways", {0x01, 0x01, 0, 0, 0}, 0x2},
        {"10 half, 100 full", {0x01, 0x02, 0, 0, 0}, 0x1},
        {"100 both ways", {0x02, 0x02, 0, 0, 0}, 0x8},
        {"100 half, 1000 full", {0x02, 0x04, 0, 0, 0}, 0x4},
        {"1000 both ways", {0x04, 0x04, 0, 0, 0}, 0x20},
        {"1000 half, 10000 full", {0x04, 0x80, 0, 0, 0}, 0x10},
        {"10000 both ways", {0x80, 0x80, 0, 0, 0}, 0x80},
        {"100 and 1000 full", {0, 0x06, 0, 0, 0}, 0x8},
        {"10, 100 and 1000", {0x07, 0x07, 0, 0, 0}, 0x2},
        {"speeds without a bit here", {0x78, 0xffffff78, 0, 0, 0}, 0},
        {"pause sent", {0, 0, 1, 0, 0}, 0x800},
        {"pause obeyed", {0, 0, 2, 0, 0}, 0x1000},
        {"asymmetric pause", {0, 0, 4, 0, 0}, 0x2000},
        {"copper", {0, 0, 0, 1, 0}, 0x100},
        {"fibre", {0, 0, 0, 2, 0}, 0x200},
        {"auto-negotiation", {0, 0, 0, 0, 1}, 0x400},
        {"other bits", {0, 0, ~7u, ~3u, ~1u}, 0},
        {"all", {~0u, ~0u, ~0u, ~0u, ~0u}, 0x3f02},
    };
    for (const Row& row : rows) {
        chip_record = row.record;
        for (const Get get : record_getters)
            EXPECT_EQ(read(sdk, get), row.bits) << row.what;
    }
}

TEST(PortAbility, ABitSetIsOfferedAsItsLowestSpeedBitAndAllOtherBits)
{
    VexoBcmSdk& sdk = new_instance();
    const Row rows[] = {
        {"nothing", {0, 0, 0, 0, 0}, 0},
        {"10 half", {0x01, 0, 0, 0, 0}, 0x1},
        {"10 full", {0, 0x01, 0, 0, 0}, 0x2},
        {"100 half", {0x02, 0, 0, 0, 0}, 0x4},
        {"100 full", {0, 0x02, 0, 0, 0}, 0x8},
        {"1000 half", {0x04, 0, 0, 0, 0}, 0x10},
        {"1000 full", {0, 0x04, 0, 0, 0}, 0x20},
        {"10000 half", {0x80, 0, 0, 0, 0}, 0x40},
        {"10000 full", {0, 0x80, 0, 0, 0}, 0x80},
        {"every speed", {0x01, 0, 0, 0, 0}, 0xff},
        {"all but 10 half", {0, 0x01, 0, 0, 0}, 0xfe},
        {"from 100 half on", {0x02, 0, 0, 0, 0}, 0xfc},
        {"from 100 full on", {0, 0x02, 0, 0, 0}, 0xf8},
        {"from 1000 half on", {0x04, 0, 0, 0, 0}, 0xf0},
        {"from 1000 full on", {0, 0x04, 0, 0, 0}, 0xe0},
        {"10000 both ways", {0x80, 0, 0, 0, 0}, 0xc0},
        {"copper", {0, 0, 0, 1, 0}, 0x100},
        {"fibre", {0, 0, 0, 2, 0}, 0x200},
        {"both media", {0, 0, 0, 3, 2}, 0x300},
        {"auto-negotiation", {0, 0, 0, 0, 1}, 0x400},
        {"pause sent", {0, 0, 1, 0, 0}, 0x800},
        {"pause obeyed", {0, 0, 2, 0, 0}, 0x1000},
        {"asymmetric pause", {0, 0, 4, 0, 0}, 0x2000},
        {"other bits", {0, 0, 0, 0, 0}, 0xffffc000},
        {"all", {0x01, 0, 7, 3, 3}, 0xffffffff},
    };
    for (const Row& row : rows) {
        told = {};
        EXPECT_TRUE(
            sdk.set_port_advertising_ability(port, static_cast<port_ability_type_t>(row.bits)));
        expect_record(row);
    }
}
