// Port mirroring. Setting and reading a port's mirror is not built yet: both return false and leave
// their outputs alone.
#include <bcmx/mirror.h>

#include "core/bcm_sdk.h"
#include "core/result.h"

using namespace vexolc;

bool VexoBcmSdk::enable_mirror(unsigned)
{
    constexpr int as_received = 1;
    return ok(bcmx_mirror_init()) && ok(bcmx_mirror_pfmt_set(as_received));
}

bool VexoBcmSdk::set_mirror_port(const Mp&, const Mp&, mirror_type_t)
{
    return false;
}

bool VexoBcmSdk::get_mirror_port(Mp&, const Mp&, mirror_type_t&)
{
    return false;
}
