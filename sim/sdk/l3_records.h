#pragma once

#include <bcmx/l3.h>

#include "sim/chip/chip.h"

/// What the SDK's records say, in the chip's terms.
namespace vexosim {

/// Family and address; IPv6 with BCM_L3_IP6.
IpAddress address_of(std::uint32_t flags, bcm_ip_t ip, const std::uint8_t* ip6);

/// The flags of an entry: its family, whether its egress is a trunk, whether frames have found it.
std::uint32_t flags_of(const IpAddress& address, const NextHop& hop, bool hit);

/// Completes a next hop by its egress, a port or with BCM_L3_TGID a trunk, and checks it.
/// NOT_FOUND: interface, trunk; PORT; PARAM: multicast MAC address, unknown flags.
int check_next_hop(const Chip& chip, std::uint32_t flags, bcmx_lport_t lport, bcm_trunk_t trunk,
                   NextHop& hop);
/// The other way round: the egress' port or trunk, the other one none.
void store_egress(const NextHop& hop, bcmx_lport_t& lport, bcm_trunk_t& trunk);

/// Whether an entry through `interface` is meant by a delete for the record's interface.
bool is_meant(std::uint32_t flags, unsigned record_interface, unsigned interface);

} // namespace vexosim
