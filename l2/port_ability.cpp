// What ports are able to run, offer and are offered. The chip tells it in one word or in a record;
// callers get one bit set. One surprise: a record's speeds are folded into the lowest.
#include <cstddef>

#include <bcmx/port.h>

#include "core/bcm_sdk.h"
#include "core/result.h"

using namespace vexolc;

namespace {

struct Bits {
    uint32_t ours;
    uint32_t sdk;
};

/// The one-word form.
constexpr Bits word_bits[] = {
    {PORT_ABILITY_10M_HALF, BCM_PORT_ABIL_10MB_HD},
    {PORT_ABILITY_10M_FULL, BCM_PORT_ABIL_10MB_FD},
    {PORT_ABILITY_100M_HALF, BCM_PORT_ABIL_100MB_HD},
    {PORT_ABILITY_100M_FULL, BCM_PORT_ABIL_100MB_FD},
    {PORT_ABILITY_1G_HALF, BCM_PORT_ABIL_1000MB_HD},
    {PORT_ABILITY_1G_FULL, BCM_PORT_ABIL_1000MB_FD},
    {PORT_ABILITY_10G_HALF, BCM_PORT_ABIL_10GB_HD},
    {PORT_ABILITY_10G_FULL, BCM_PORT_ABIL_10GB_FD},
    {PORT_ABILITY_COPPER | PORT_ABILITY_FIBRE, BCM_PORT_ABIL_COMBO},
    {PORT_ABILITY_AUTONEG, BCM_PORT_ABIL_AN},
    {PORT_ABILITY_PAUSE_TX, BCM_PORT_ABIL_PAUSE_TX},
    {PORT_ABILITY_PAUSE_RX, BCM_PORT_ABIL_PAUSE_RX},
    {PORT_ABILITY_PAUSE_ASYMMETRIC, BCM_PORT_ABIL_PAUSE_ASYMM},
};

/// The words of a record, but for the speeds.
constexpr Bits pause_bits[] = {
    {PORT_ABILITY_PAUSE_TX, BCM_PORT_ABILITY_PAUSE_TX},
    {PORT_ABILITY_PAUSE_RX, BCM_PORT_ABILITY_PAUSE_RX},
    {PORT_ABILITY_PAUSE_ASYMMETRIC, BCM_PORT_ABILITY_PAUSE_ASYMM},
};
constexpr Bits medium_bits[] = {
    {PORT_ABILITY_COPPER, BCM_PORT_ABILITY_MEDIUM_COPPER},
    {PORT_ABILITY_FIBRE, BCM_PORT_ABILITY_MEDIUM_FIBER},
};
constexpr Bits flag_bits[] = {
    {PORT_ABILITY_AUTONEG, BCM_PORT_ABILITY_AUTONEG},
};

/// Rising. The half duplex bit of a speed is the one of `half`, the full duplex bit the next.
constexpr Bits speeds[] = {
    {PORT_ABILITY_10M_HALF, BCM_PORT_ABILITY_10MB},
    {PORT_ABILITY_100M_HALF, BCM_PORT_ABILITY_100MB},
    {PORT_ABILITY_1G_HALF, BCM_PORT_ABILITY_1000MB},
    {PORT_ABILITY_10G_HALF, BCM_PORT_ABILITY_10GB},
};

constexpr uint32_t full_of(uint32_t half)
{
    return half << 1;
}
static_assert(full_of(PORT_ABILITY_10M_HALF) == PORT_ABILITY_10M_FULL &&
              full_of(PORT_ABILITY_100M_HALF) == PORT_ABILITY_100M_FULL &&
              full_of(PORT_ABILITY_1G_HALF) == PORT_ABILITY_1G_FULL &&
              full_of(PORT_ABILITY_10G_HALF) == PORT_ABILITY_10G_FULL);

template <std::size_t N>
constexpr uint32_t from_sdk(const Bits (&table)[N], uint32_t word)
{
    uint32_t bits = 0;
    for (const Bits& row : table) {
        if ((word & row.sdk) != 0)
            bits |= row.ours;
    }
    return bits;
}

template <std::size_t N>
constexpr uint32_t to_sdk(const Bits (&table)[N], uint32_t bits)
{
    uint32_t word = 0;
    for (const Bits& row : table) {
        if ((bits & row.ours) != 0)
            word |= row.sdk;
    }
    return word;
}

/// Deliberately the lowest speed only, full duplex before half.
constexpr uint32_t lowest_speed(const bcm_port_ability_t& record)
{
    for (const Bits& speed : speeds) {
        if ((record.speed_full_duplex & speed.sdk) != 0)
            return full_of(speed.ours);
        if ((record.speed_half_duplex & speed.sdk) != 0)
            return speed.ours;
    }
    return 0;
}

/// Deliberately the lowest bit only: half duplex before full, the other way round than reading.
constexpr void set_lowest_speed(bcm_port_ability_t& record, uint32_t bits)
{
    for (const Bits& speed : speeds) {
        if ((bits & speed.ours) != 0) {
            record.speed_half_duplex = speed.sdk;
            return;
        }
        if ((bits & full_of(speed.ours)) != 0) {
            record.speed_full_duplex = speed.sdk;
            return;
        }
    }
}

constexpr bcm_port_ability_t record_of(uint32_t bits)
{
    constexpr uint32_t both_media = PORT_ABILITY_COPPER | PORT_ABILITY_FIBRE;
    bcm_port_ability_t record = {};
    set_lowest_speed(record, bits);
    record.pause = to_sdk(pause_bits, bits);
    record.medium = to_sdk(medium_bits, bits);
    record.flags = to_sdk(flag_bits, bits);
    if ((bits & both_media) == both_media)
        record.flags |= BCM_PORT_ABILITY_COMBO;
    return record;
}

bool read_record(const Mp& port, int (*get)(bcmx_lport_t, bcm_port_ability_t*),
                 port_ability_type_t& ability)
{
    int lport = -1;
    bcm_port_ability_t record = {};
    if (!map_mp_to_lport(port, lport) || !ok(get(lport, &record)))
        return false;
    return store(ability, lowest_speed(record) | from_sdk(pause_bits, record.pause) |
                              from_sdk(medium_bits, record.medium) |
                              from_sdk(flag_bits, record.flags));
}

} // namespace

bool VexoBcmSdk::get_port_ability(const Mp& port, port_ability_type_t& ability)
{
    int lport = -1;
    bcm_port_abil_t word = 0;
    return map_mp_to_lport(port, lport) && ok(bcmx_port_ability_get(lport, &word)) &&
           store(ability, from_sdk(word_bits, word));
}

bool VexoBcmSdk::set_port_advertising_ability(const Mp& port, port_ability_type_t ability)
{
    int lport = -1;
    bcm_port_ability_t record = record_of(ability);
    return map_mp_to_lport(port, lport) && ok(bcmx_port_ability_advert_set(lport, &record));
}

bool VexoBcmSdk::get_port_advertising_ability(const Mp& port, port_ability_type_t& ability)
{
    return read_record(port, bcmx_port_ability_advert_get, ability);
}

bool VexoBcmSdk::get_port_current_ability(const Mp& port, port_ability_type_t& ability)
{
    return read_record(port, bcmx_port_ability_local_get, ability);
}

bool VexoBcmSdk::get_port_peer_ability(Mp port, port_ability_type_t& ability)
{
    return read_record(port, bcmx_port_ability_remote_get, ability);
}
