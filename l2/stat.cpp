// Port counters: the full set and the short summary, one at a time, as a list, or into an array.
// Two surprises: a counter of the full set that cannot be read is 0, and reading a single summary
// counter succeeds on no real chip.
#include <bcmx/port.h>
#include <bcmx/stat.h>

#include "core/bcm_sdk.h"
#include "core/enum_table.h"
#include "core/result.h"
#include "l2/stat_tables.h"

using namespace vexolc;

namespace {

constexpr int first_stat = 1;
constexpr int last_stat = 76;
constexpr int last_brief_stat = 4;

constexpr EnumTable<brief_stat_type_t, 4> brief_stats = {{
    {BRIEF_STAT_IN_PACKETS, bcmPortStatIngressPackets},
    {BRIEF_STAT_IN_BYTES, bcmPortStatIngressBytes},
    {BRIEF_STAT_OUT_PACKETS, bcmPortStatEgressPackets},
    {BRIEF_STAT_OUT_BYTES, bcmPortStatEgressBytes},
}};
static_assert(brief_stats.two_way());

/// The SDK's calls by the width of the value.
int read_stat(int lport, int stat, uint64_t& value)
{
    return bcmx_stat_get(lport, static_cast<bcm_stat_val_t>(stat), &value);
}

int read_stat(int lport, int stat, uint32_t& value)
{
    return bcmx_stat_get32(lport, static_cast<bcm_stat_val_t>(stat), &value);
}

int read_brief(int lport, int stat, uint64_t& value)
{
    return bcmx_port_stat_get(lport, static_cast<bcm_port_stat_t>(stat), &value);
}

int read_brief(int lport, int stat, uint32_t& value)
{
    return bcmx_port_stat_get32(lport, static_cast<bcm_port_stat_t>(stat), &value);
}

template <class Value, class Out>
bool read_one(const Mp& port, stat_type_t type, Out& out)
{
    int lport = -1;
    int32_t stat = 0;
    Value value = 0;
    if (!map_mp_to_lport(port, lport) || !find_stat_val(type, &stat))
        return false;
    const bool done = ok(read_stat(lport, stat, value));
    return store(out, done ? value : 0); // deliberately true when the chip does not tell
}

/// Calls `give` with each type and its value; those that the chip fails to read are 0.
template <class Value, class Give>
void read_all(int lport, Give give)
{
    for (int type = first_stat; type <= last_stat; ++type) {
        int32_t stat = 0;
        Value value = 0;
        const bool failed =
            !find_stat_val(type, &stat) || BCM_FAILURE(read_stat(lport, stat, value));
        give(static_cast<stat_type_t>(type), failed ? Value{0} : value);
    }
}

template <class Value, class Counter>
bool append_all(const Mp& port, std::list<Counter>& counters)
{
    int lport = -1;
    if (!map_mp_to_lport(port, lport))
        return false;
    read_all<Value>(lport, [&](stat_type_t type, Value value) {
        counters.push_back({type, value});
    });
    return true;
}

template <class Value, class Counter>
bool write_all(const Mp& port, Counter* counters, unsigned& count)
{
    int lport = -1;
    if (!map_mp_to_lport(port, lport) || count < last_stat)
        return false;
    read_all<Value>(lport, [&](stat_type_t type, Value value) {
        counters[type - first_stat] = {type, value};
    });
    return store(count, last_stat);
}

template <class Value, class Out>
bool read_one_brief(const Mp& port, brief_stat_type_t type, Out& out)
{
    int lport = -1;
    int stat = 0;
    Value value = 0;
    // Deliberately 1, which is no result of success: expect false from a chip.
    return map_mp_to_lport(port, lport) && brief_stats.to_sdk(type, stat) &&
           read_brief(lport, stat, value) == 1 && store(out, value);
}

template <class Value, class Counter>
bool append_brief(const Mp& port, std::list<Counter>& counters)
{
    int lport = -1;
    if (!map_mp_to_lport(port, lport))
        return false;
    for (int type = first_stat; type <= last_brief_stat; ++type) {
        int32_t stat = 0;
        Value value = 0;
        if (!find_port_stat(type, &stat) || !ok(read_brief(lport, stat, value)))
            return false;
        counters.push_back({static_cast<brief_stat_type_t>(type), value});
    }
    return true;
}

} // namespace

bool VexoBcmSdk::set_port_stat_enable(const Mp& port, bool enable)
{
    int lport = -1;
    return map_mp_to_lport(port, lport) && ok(bcmx_port_stat_enable_set(lport, enable));
}

bool VexoBcmSdk::get_port_stat_enabled(const Mp&, bool&)
{
    return false; // deliberately: the chip does not tell
}

bool VexoBcmSdk::get_port_stat_counter(const Mp& port, stat_type_t type, unsigned long long& value)
{
    return read_one<uint64_t>(port, type, value);
}

bool VexoBcmSdk::get_port_stat_counter32(const Mp& port, stat_type_t type, unsigned& value)
{
    return read_one<uint32_t>(port, type, value);
}

bool VexoBcmSdk::get_port_stat_counter_all64(const Mp& port, std::list<StatCounter64>& counters)
{
    return append_all<uint64_t>(port, counters);
}

bool VexoBcmSdk::get_port_stat_counter_all32(const Mp& port, std::list<StatCounter32>& counters)
{
    return append_all<uint32_t>(port, counters);
}

bool VexoBcmSdk::get_port_stat_counter_all64_ext(const Mp& port, StatCounter64* counters,
                                                 unsigned& count)
{
    return write_all<uint64_t>(port, counters, count);
}

bool VexoBcmSdk::get_port_stat_counter_all32_ext(const Mp& port, StatCounter32* counters,
                                                 unsigned& count)
{
    return write_all<uint32_t>(port, counters, count);
}

bool VexoBcmSdk::get_port_brief_stat_counter(const Mp& port, brief_stat_type_t type,
                                             unsigned long long& value)
{
    return read_one_brief<uint64_t>(port, type, value);
}

bool VexoBcmSdk::get_port_brief_stat_counter32(const Mp& port, brief_stat_type_t type,
                                               unsigned& value)
{
    return read_one_brief<uint32_t>(port, type, value);
}

bool VexoBcmSdk::get_port_brief_stat_counter_all64(const Mp& port,
                                                   std::list<BriefStatCounter64>& counters)
{
    return append_brief<uint64_t>(port, counters);
}

bool VexoBcmSdk::get_port_brief_stat_counter_all32(const Mp& port,
                                                   std::list<BriefStatCounter32>& counters)
{
    return append_brief<uint32_t>(port, counters);
}

bool VexoBcmSdk::clear_port_stat_counter(const Mp& port)
{
    int lport = -1;
    return map_mp_to_lport(port, lport) && ok(bcmx_stat_clear(lport));
}
