#pragma once

#include <cstdint>

/// From the driver's counter numbers to the SDK's. Filled while the card is brought up; zero
/// before.

/// By `stat_type_t`: the SDK's counter. Entry 0 is -1.
extern int32_t stat_to_stat_val[77];

/// By `brief_stat_type_t`: the SDK's port counter. Entry 0 is not used.
extern int32_t brief_to_port_stat[5];

namespace vexolc {

void fill_stat_to_stat_val();
void fill_brief_to_port_stat();

/// Writes the SDK's counter for `type`. False outside 1 to 76, or for a null output.
bool find_stat_val(int type, int32_t* stat_val);

/// Writes the SDK's port counter for `type`. False outside 1 to 4, or for a null output.
bool find_port_stat(int type, int32_t* port_stat);

} // namespace vexolc
