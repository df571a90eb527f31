/// @file
/// The stages of a frame's way through the chip. A stage reads the chip and writes the packet; what
/// it decides takes effect when the frame's way has ended. So tracing a frame is running the same
/// stages and leaving out the effects.
#pragma once

#include "sim/pipeline/packet.h"

namespace vexosim {

struct PipelineStage {
    const char* name;
    Step (*run)(const Chip&, Packet&);
};

namespace stage {

// What the port does before it looks at addresses.
Step port(const Chip& chip, Packet& p);
Step parse(const Chip& chip, Packet& p);
Step frame_size(const Chip& chip, Packet& p);
Step control(const Chip& chip, Packet& p);
Step discard(const Chip& chip, Packet& p);

// VLANs and spanning tree.
Step assign_vlan(const Chip& chip, Packet& p);
Step bpdu(const Chip& chip, Packet& p);
Step check_vlan(const Chip& chip, Packet& p);
Step membership(const Chip& chip, Packet& p);
Step spanning_tree(const Chip& chip, Packet& p);

// Addresses.
Step source(const Chip& chip, Packet& p);
Step learn(const Chip& chip, Packet& p);
Step field_lookup(const Chip& chip, Packet& p);
Step route(const Chip& chip, Packet& p);
Step look_up(const Chip& chip, Packet& p);
Step storm_control(const Chip& chip, Packet& p);
Step flood(const Chip& chip, Packet& p);
Step field_actions(const Chip& chip, Packet& p);
Step cpu_copy(const Chip& chip, Packet& p);

// Where the copies may leave, and how.
Step egress_membership(const Chip& chip, Packet& p);
Step egress_spanning_tree(const Chip& chip, Packet& p);
Step egress_port(const Chip& chip, Packet& p);
Step egress_queue(const Chip& chip, Packet& p);
Step tagging(const Chip& chip, Packet& p);
Step own_tag(const Chip& chip, Packet& p);
Step egress_size(const Chip& chip, Packet& p);

} // namespace stage

/// Takes a packet (its frame and in_port are set) through all stages, in order. Changes nothing but
/// the packet.
void run_forwarding_stages(const Chip& chip, Packet& p);
/// Through what a frame meets that the CPU sends through ports of its choice: `out` and `untagged`
/// of the packet are set.
void run_direct_stages(const Chip& chip, Packet& p);

} // namespace vexosim
