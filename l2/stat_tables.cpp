// Counter numbers of the driver and of the SDK. The SDK's counters 33 and 34 deliberately have no
// number in the driver.
#include "l2/stat_tables.h"

#include <iterator>

int32_t stat_to_stat_val[77];
int32_t brief_to_port_stat[5];

namespace {

constexpr int32_t no_counter = -1;
constexpr int last_before_gap = 33;

template <int Size>
bool find(const int32_t (&table)[Size], int type, int32_t* out)
{
    if (type < 1 || type >= Size || out == nullptr)
        return false;
    *out = table[type];
    return true;
}

} // namespace

void vexolc::fill_stat_to_stat_val()
{
    stat_to_stat_val[0] = no_counter;
    for (int type = 1; type < static_cast<int>(std::size(stat_to_stat_val)); ++type)
        stat_to_stat_val[type] = type <= last_before_gap ? type - 1 : type + 1;
}

void vexolc::fill_brief_to_port_stat()
{
    for (int type = 1; type < static_cast<int>(std::size(brief_to_port_stat)); ++type)
        brief_to_port_stat[type] = type - 1;
}

bool vexolc::find_stat_val(int type, int32_t* stat_val)
{
    return find(stat_to_stat_val, type, stat_val);
}

bool vexolc::find_port_stat(int type, int32_t* port_stat)
{
    return find(brief_to_port_stat, type, port_stat);
}
