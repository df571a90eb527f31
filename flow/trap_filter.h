#pragma once

#include <cstdint>
#include <map>

/// CPU trap filters: field entries that hand frames to the CPU. They are no flows, and nothing
/// about them is in the flows' bookkeeping.

/// The field group of the IP-protocol and L4-port trap filters. The id -1 is the group's own, not
/// a sign that it is missing.
extern const int32_t filter_group_no_udf;

/// Filter to field entry. ARP filters are kept under `ip` AND `mask`, the others as they were
/// given.
extern std::map<uint32_t, int32_t> arp_fps;          ///< ARP in untagged frames
extern std::map<uint32_t, int32_t> arp_fps_one_vlan; ///< ARP in frames with one tag
extern std::map<uint32_t, int32_t> ip_proto_fps;
extern std::map<uint32_t, int32_t> l4_dport_fps;

/// What ARP filters share, made for the first of them and never freed: -1 until then. Mind that the
/// UDF ids are the chip's, and that id 1 is not marked in the flows' pool (flow/udf_pool.h): a flow
/// that has it keeps the filters from it, and the other way round.
extern int32_t arp_group;
extern int32_t arp_group_one_vlan;
extern int32_t arp_udf_id;
extern int32_t arp_udf_id_one_vlan;

namespace vexolc {

/// Has a field entry hand its frames to the CPU, and installs it.
bool trap_to_cpu(int entry);

} // namespace vexolc
