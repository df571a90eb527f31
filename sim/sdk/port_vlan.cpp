// Port properties that decide about a frame's VLAN, learning, flooding and spanning tree.
#include <bcmx/port.h>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"
#include "sim/sdk/port_get.h"

namespace {

using namespace vexosim;

/// A call on an ingress and an egress port.
template <class... A, class Body>
int pair_call(const char* name, bcmx_lport_t ingress, bcmx_lport_t egress,
              const Arguments<A...>& arguments, Body&& body)
{
    return port_call(name, ingress, arguments, [&](Chip& chip, int in) -> int {
        const int out = card().ports.chip_port(egress);
        return out < 0 ? int{BCM_E_PORT} : body(chip.flood_block, in, out);
    });
}

} // namespace

extern "C" int bcmx_port_untagged_vlan_set(bcmx_lport_t port, bcm_vlan_t vid)
{
    return port_call("bcmx_port_untagged_vlan_set", port, args(Lport{port}, vid),
                     [&](Chip& chip, int p) { return chip.ports.set_untagged_vlan(p, vid); });
}

extern "C" int bcmx_port_untagged_vlan_get(bcmx_lport_t port, bcm_vlan_t* vid)
{
    return port_get("bcmx_port_untagged_vlan_get", port, vid,
                    [](const PortConfig& p) { return p.pvid; });
}

extern "C" int bcmx_port_untagged_priority_set(bcmx_lport_t port, int priority)
{
    return port_call(
        "bcmx_port_untagged_priority_set", port, args(Lport{port}, priority),
        [&](Chip& chip, int p) { return chip.ports.set_untagged_priority(p, priority); });
}

extern "C" int bcmx_port_untagged_priority_get(bcmx_lport_t port, int* priority)
{
    return port_get("bcmx_port_untagged_priority_get", port, priority,
                    [](const PortConfig& p) { return p.priority; });
}

extern "C" int bcmx_port_discard_set(bcmx_lport_t port, int mode)
{
    return port_call("bcmx_port_discard_set", port, args(Lport{port}, mode),
                     [&](Chip& chip, int p) { return chip.ports.set_discard(p, mode); });
}

extern "C" int bcmx_port_discard_get(bcmx_lport_t port, int* mode)
{
    return port_get("bcmx_port_discard_get", port, mode,
                    [](const PortConfig& p) { return static_cast<int>(p.discard); });
}

extern "C" int bcmx_port_vlan_member_set(bcmx_lport_t port, uint32_t flags)
{
    return port_call("bcmx_port_vlan_member_set", port, args(Lport{port}, Flags{flags}),
                     [&](Chip& chip, int p) { return chip.ports.set_vlan_member(p, flags); });
}

extern "C" int bcmx_port_learn_set(bcmx_lport_t port, uint32_t flags)
{
    return port_call("bcmx_port_learn_set", port, args(Lport{port}, Flags{flags}),
                     [&](Chip& chip, int p) { return chip.ports.set_learn(p, flags); });
}

extern "C" int bcmx_port_learn_get(bcmx_lport_t port, uint32_t* flags)
{
    return port_get("bcmx_port_learn_get", port, flags,
                    [](const PortConfig& p) { return p.learn; });
}

extern "C" int bcmx_port_protocol_vlan_add(bcmx_lport_t port, bcm_port_frametype_t frame,
                                           bcm_port_ethertype_t ether, bcm_vlan_t vid)
{
    return port_call("bcmx_port_protocol_vlan_add", port,
                     args(Lport{port}, frame, Flags{ether}, vid), [&](Chip& chip, int p) {
                         return chip.vlan_rules.add_protocol(p, {frame, ether, vid});
                     });
}

extern "C" int bcmx_port_protocol_vlan_delete(bcmx_lport_t port, bcm_port_frametype_t frame,
                                              bcm_port_ethertype_t ether)
{
    return port_call(
        "bcmx_port_protocol_vlan_delete", port, args(Lport{port}, frame, Flags{ether}),
        [&](Chip& chip, int p) { return chip.vlan_rules.delete_protocol(p, frame, ether); });
}

extern "C" int bcmx_port_protocol_vlan_delete_all(bcmx_lport_t port)
{
    return port_call("bcmx_port_protocol_vlan_delete_all", port, args(Lport{port}),
                     [](Chip& chip, int p) { return chip.vlan_rules.delete_all_protocols(p); });
}

extern "C" int bcmx_port_flood_block_set(bcmx_lport_t ingress, bcmx_lport_t egress, uint32_t flags)
{
    return pair_call(
        "bcmx_port_flood_block_set", ingress, egress,
        args(Lport{ingress}, Lport{egress}, Flags{flags}),
        [&](FloodBlock& blocks, int in, int out) { return blocks.set(in, out, flags); });
}

extern "C" int bcmx_port_flood_block_get(bcmx_lport_t ingress, bcmx_lport_t egress, uint32_t* flags)
{
    return pair_call("bcmx_port_flood_block_get", ingress, egress,
                     args(Lport{ingress}, Lport{egress}, Out{flags}),
                     [&](FloodBlock& blocks, int in, int out) -> int {
                         return flags == nullptr ? BCM_E_PARAM : blocks.get(in, out, *flags);
                     });
}

extern "C" int bcmx_port_bpdu_enable_set(bcmx_lport_t port, int enable)
{
    return port_call("bcmx_port_bpdu_enable_set", port, args(Lport{port}, enable),
                     [&](Chip& chip, int p) { return chip.ports.set_bpdu_enable(p, enable); });
}

extern "C" int bcmx_port_bpdu_enable_get(bcmx_lport_t port, int* enable)
{
    return port_get("bcmx_port_bpdu_enable_get", port, enable,
                    [](const PortConfig& p) { return p.bpdu_enable ? 1 : 0; });
}

extern "C" int bcmx_port_stp_set(bcmx_lport_t port, int state)
{
    return port_call("bcmx_port_stp_set", port, args(Lport{port}, state),
                     [&](Chip& chip, int p) { return chip.stgs.set_all(p, state); });
}

extern "C" int bcmx_port_stp_get(bcmx_lport_t port, int* state)
{
    return port_call(
        "bcmx_port_stp_get", port, args(Lport{port}, Out{state}), [&](Chip& chip, int p) -> int {
            return state == nullptr ? BCM_E_PARAM
                                    : chip.stgs.get(StgTable::kDefaultGroup, p, *state);
        });
}
