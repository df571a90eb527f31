#include <bcmx/trunk.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"
#include "sim/sdk/port_lists.h"

using namespace vexosim;

namespace {

/// Chip-local port of a designated port, which may be none.
std::optional<int> designated_port(bcmx_lport_t lport)
{
    if (lport == BCMX_LPORT_INVALID)
        return Trunk::kNoPort;
    const int port = card().ports.chip_port(lport);
    return port >= 0 ? std::optional(port) : std::nullopt;
}

int set_trunk(Chip& chip, int id, const bcmx_trunk_add_info_t* info)
{
    if (info == nullptr)
        return BCM_E_PARAM;
    const auto members = chip_ports(info->ports);
    const auto dlf = designated_port(info->dlf_port);
    const auto mc = designated_port(info->mc_port);
    const auto ipmc = designated_port(info->ipmc_port);
    if (const int rc = chip.trunks.check(id); rc != BCM_E_NONE)
        return rc;
    if (!members || !dlf || !mc || !ipmc)
        return BCM_E_PORT;
    return chip.trunks.set(id, Trunk{true, info->psc, *members, *dlf, *mc, *ipmc});
}

int get_trunk(const Chip& chip, int id, bcmx_trunk_add_info_t* info)
{
    if (info == nullptr)
        return BCM_E_PARAM;
    if (const int rc = chip.trunks.check(id); rc != BCM_E_NONE)
        return rc;
    const Trunk& trunk = chip.trunks.at(id);
    if (const int rc = make_list_of(&info->ports, trunk.members); rc != BCM_E_NONE)
        return rc;
    info->psc = trunk.criterion;
    info->dlf_port = card().ports.lport(trunk.dlf_port);
    info->mc_port = card().ports.lport(trunk.mc_port);
    info->ipmc_port = card().ports.lport(trunk.ipmc_port);
    return BCM_E_NONE;
}

int get_criterion(const Chip& chip, int id, int* psc)
{
    if (psc == nullptr)
        return BCM_E_PARAM;
    const int rc = chip.trunks.check(id);
    if (rc == BCM_E_NONE)
        *psc = chip.trunks.at(id).criterion;
    return rc;
}

} // namespace

extern "C" int bcmx_trunk_create(bcm_trunk_t* tid)
{
    return sdk_call("bcmx_trunk_create", args(Out{tid}),
                    [&](Chip& chip) { return chip.trunks.create(tid); });
}

extern "C" int bcmx_trunk_create_id(bcm_trunk_t tid)
{
    return sdk_call("bcmx_trunk_create_id", args(tid),
                    [&](Chip& chip) { return chip.trunks.create_id(tid); });
}

extern "C" int bcmx_trunk_destroy(bcm_trunk_t tid)
{
    return sdk_call("bcmx_trunk_destroy", args(tid),
                    [&](Chip& chip) { return chip.trunks.destroy(tid); });
}

extern "C" int bcmx_trunk_set(bcm_trunk_t tid, bcmx_trunk_add_info_t* info)
{
    return sdk_call("bcmx_trunk_set", args(tid, info),
                    [&](Chip& chip) { return set_trunk(chip, tid, info); });
}

extern "C" int bcmx_trunk_get(bcm_trunk_t tid, bcmx_trunk_add_info_t* info)
{
    return sdk_call("bcmx_trunk_get", args(tid, Out{info}),
                    [&](Chip& chip) { return get_trunk(chip, tid, info); });
}

extern "C" int bcmx_trunk_psc_set(bcm_trunk_t tid, int psc)
{
    return sdk_call("bcmx_trunk_psc_set", args(tid, psc),
                    [&](Chip& chip) { return chip.trunks.set_criterion(tid, psc); });
}

extern "C" int bcmx_trunk_psc_get(bcm_trunk_t tid, int* psc)
{
    return sdk_call("bcmx_trunk_psc_get", args(tid, Out{psc}),
                    [&](Chip& chip) { return get_criterion(chip, tid, psc); });
}
