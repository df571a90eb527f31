#pragma once

#include <string>
#include <vector>

#include "tools/vexosh/input.h"

/// Frames in words, in bytes, and told back in words.
namespace vexosh {

/// What frame_from_words() understands, for help texts.
extern const char* const kFrameUsage;

/// A frame from words NAME=VALUE, in any order, or from one word hex:BYTES.
/// - src=MAC dst=MAC (default 02:00:00:00:00:01 and broadcast), vlan=VID and prio=N for a tag,
///   inner=VID for a second one;
/// - arp=A>B asks who has B; ip=A>B makes an IPv4 or IPv6 packet, with udp=S>D, tcp=S>D or icmp;
///   type=N is the EtherType of anything else, data=BYTES its payload;
/// - len=N pads to N bytes or cuts; without it a frame is padded to 60, the shortest on a wire.
Bytes frame_from_words(const std::vector<std::string>& words);

/// One line: tags, then what the frame carries, e.g. "vlan 10 ARP who has 192.0.2.2? tell
/// 192.0.2.1".
std::string describe_frame(const Bytes& frame);

} // namespace vexosh
