#include "flow/udf_pool.h"

#include <algorithm>
#include <iterator>

uint8_t vexo_udf_usage[vexo_udf_count];
uint32_t vexo_udf_available = 0;

uint32_t vexo_udf_get_available()
{
    return vexo_udf_available;
}

void vexolc::reset_udf_pool()
{
    std::fill(std::begin(vexo_udf_usage), std::end(vexo_udf_usage), uint8_t{0});
    vexo_udf_usage[0] = 1;
    vexo_udf_available = vexo_udf_count - 1;
}
