#include <bcmx/rate.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

using namespace vexosim;

namespace {

template <class... A>
int set_rate(const char* name, StormClass storm, int limit, int flags, bcmx_lport_t port,
             const Arguments<A...>& arguments)
{
    return port_call(name, port, arguments, [&](Chip& chip, int chip_port) {
        return chip.rates.set(chip_port, storm, limit, flags);
    });
}

template <class... A>
int get_rate(const char* name, StormClass storm, int* limit, int* flags, bcmx_lport_t port,
             const Arguments<A...>& arguments)
{
    return port_call(name, port, arguments, [&](Chip& chip, int chip_port) -> int {
        if (limit == nullptr || flags == nullptr)
            return BCM_E_PARAM;
        *limit = chip.rates.limit(chip_port, storm);
        *flags = chip.rates.limited(chip_port);
        return BCM_E_NONE;
    });
}

} // namespace

extern "C" int bcmx_rate_dlfbc_set(int limit, int flags, bcmx_lport_t port)
{
    return set_rate("bcmx_rate_dlfbc_set", StormClass::kDlf, limit, flags, port,
                    args(limit, flags, Lport{port}));
}

extern "C" int bcmx_rate_mcast_set(int limit, int flags, bcmx_lport_t port)
{
    return set_rate("bcmx_rate_mcast_set", StormClass::kMcast, limit, flags, port,
                    args(limit, flags, Lport{port}));
}

extern "C" int bcmx_rate_bcast_set(int limit, int flags, bcmx_lport_t port)
{
    return set_rate("bcmx_rate_bcast_set", StormClass::kBcast, limit, flags, port,
                    args(limit, flags, Lport{port}));
}

extern "C" int bcmx_rate_dlfbc_get(int* limit, int* flags, bcmx_lport_t port)
{
    return get_rate("bcmx_rate_dlfbc_get", StormClass::kDlf, limit, flags, port,
                    args(Out{limit}, Out{flags}, Lport{port}));
}

extern "C" int bcmx_rate_mcast_get(int* limit, int* flags, bcmx_lport_t port)
{
    return get_rate("bcmx_rate_mcast_get", StormClass::kMcast, limit, flags, port,
                    args(Out{limit}, Out{flags}, Lport{port}));
}

extern "C" int bcmx_rate_bcast_get(int* limit, int* flags, bcmx_lport_t port)
{
    return get_rate("bcmx_rate_bcast_get", StormClass::kBcast, limit, flags, port,
                    args(Out{limit}, Out{flags}, Lport{port}));
}
