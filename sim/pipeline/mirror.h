/// @file
/// Copies of frames for the destinations of mirrors. They are made once a frame's way has ended,
/// from what its port received and from what ports send, and are not mirrored again.
#pragma once

#include <vector>

#include "sim/pipeline/outputs.h"
#include "sim/pipeline/packet.h"

namespace vexosim {

enum class MirrorForm : std::uint8_t { kReceived, kTagged, kUntagged };

struct MirrorCopy {
    int source = 0;      ///< the mirrored port
    int destination = 0; ///< a front port
    bool egress = false; ///< of what the source sends, not of what it received
    bool edited = false; ///< with the changes that routing and field entries make
    MirrorForm form = MirrorForm::kReceived;
    DropReason lost = DropReason::kNone; ///< why the destination does not send it
};

/// "as received", ...
const char* mirror_form_name(MirrorForm form);

/// The copies of a frame that has been through the stages.
std::vector<MirrorCopy> mirror_copies(const Chip& chip, const Packet& p);
/// A mirror to the CPU port adds a reason-less copy for the CPU. Before the CPU's queue is chosen.
void mirror_to_cpu(const Chip& chip, Packet& p);
/// Sends and counts mirror_copies().
void send_mirror_copies(Chip& chip, const Packet& p, Outputs& outputs);

} // namespace vexosim
