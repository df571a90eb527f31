#include "flow/udf_pool.h"

#include <bcm/error.h>

#include <algorithm>
#include <iterator>

uint8_t vexo_udf_usage[vexo_udf_count];
uint32_t vexo_udf_available = 0;

uint32_t vexo_udf_get_available()
{
    return vexo_udf_available;
}

int alloc_udf_ids(unsigned count, std::vector<unsigned>& ids)
{
    if (count > vexo_udf_available)
        return BCM_E_RESOURCE;
    if (count == 0)
        return BCM_E_PARAM;
    unsigned missing = count;
    const auto before = static_cast<std::ptrdiff_t>(ids.size());
    for (unsigned id = 1; id < vexo_udf_count && missing != 0; ++id) {
        if (vexo_udf_usage[id] == 0) {
            vexo_udf_usage[id] = 1;
            ids.push_back(id);
            --missing;
        }
    }
    if (missing != 0)
        std::for_each(ids.begin() + before, ids.end(), [](unsigned id) { vexo_udf_usage[id] = 0; });
    return BCM_E_NONE;
}

void vexolc::reset_udf_pool()
{
    std::fill(std::begin(vexo_udf_usage), std::end(vexo_udf_usage), uint8_t{0});
    vexo_udf_usage[0] = 1;
    vexo_udf_available = vexo_udf_count - 1;
}
