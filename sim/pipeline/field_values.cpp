// What the field processor sees of a frame: up to two tags, then the type, then IP.
#include "sim/pipeline/field_values.h"

#include <bcm/field.h>

namespace vexosim {

namespace {

constexpr int kTcp = 6, kUdp = 17;
constexpr std::uint16_t kFirstType = 0x600; ///< smaller ones are lengths
constexpr std::size_t kIp4Bytes = 20, kIp6Bytes = 40;

std::uint32_t load16(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 8 | bytes[1];
}

std::uint32_t load32(const std::uint8_t* bytes)
{
    return load16(bytes) << 16 | load16(bytes + 2);
}

/// The ports of TCP and UDP, when the frame has them.
void read_ports(FieldValues& v, int protocol, FrameView l4)
{
    if ((protocol != kTcp && protocol != kUdp) || l4.size() < 4)
        return;
    v.set(bcmFieldQualifyL4SrcPort, load16(&l4[0]));
    v.set(bcmFieldQualifyL4DstPort, load16(&l4[2]));
}

void read_any_ip(FieldValues& v, std::size_t ip_at, std::uint32_t kind, int protocol,
                 std::uint32_t tos)
{
    v.ip_at = ip_at;
    v.kind = kind;
    v.set(bcmFieldQualifyIpType, BCM_FIELD_IP_TYPE_IP_PROTOCOL);
    v.set(bcmFieldQualifyIpProtocol, static_cast<std::uint64_t>(protocol));
    v.set(bcmFieldQualifyTos, tos);
}

/// Fragments but the first have no ports.
void read_ip4(FieldValues& v, std::size_t at)
{
    const FrameView ip = v.frame.subspan(at);
    if (ip.size() < kIp4Bytes || ip[0] >> 4 != 4)
        return;
    const std::size_t header = static_cast<std::size_t>(ip[0] & 15) * 4;
    if (header < kIp4Bytes || header > ip.size())
        return;
    read_any_ip(v, at, kFieldKindIp4, ip[9], ip[1]);
    v.set(bcmFieldQualifySrcIp, load32(&ip[12]));
    v.set(bcmFieldQualifyDstIp, load32(&ip[16]));
    if ((load16(&ip[6]) & 0x1fff) == 0)
        read_ports(v, ip[9], ip.subspan(header));
}

/// Extension headers are not followed: the protocol is the first next header.
void read_ip6(FieldValues& v, std::size_t at)
{
    const FrameView ip = v.frame.subspan(at);
    if (ip.size() < kIp6Bytes || ip[0] >> 4 != 6)
        return;
    read_any_ip(v, at, kFieldKindIp6, ip[6], load16(&ip[0]) >> 4 & 0xff);
    read_ports(v, ip[6], ip.subspan(kIp6Bytes));
}

/// The type behind the tags; the frame's `tags` are counted.
std::uint32_t read_tags(const Packet& p, FieldValues& v)
{
    v.tags = p.tagged ? 1 : 0;
    if (!p.has_inner_tag())
        return p.ethertype;
    v.tags = 2;
    return load16(&p.frame[kHeaderBytes + 2 * kTagBytes - 2]);
}

} // namespace

void read_fields(const Packet& p, FieldValues& v)
{
    v.frame = p.frame;
    const std::uint32_t type = read_tags(p, v);
    v.set(bcmFieldQualifyInPort, static_cast<std::uint64_t>(p.in_port));
    v.set(bcmFieldQualifySrcMac, p.src);
    v.set(bcmFieldQualifyDstMac, p.dst);
    v.set(bcmFieldQualifyOuterVlanId, static_cast<std::uint64_t>(p.vid));
    v.set(bcmFieldQualifyOuterVlanPri, static_cast<std::uint64_t>(p.priority));
    if (type >= kFirstType)
        v.set(bcmFieldQualifyEtherType, type);
    if (type == kArpType)
        v.set(bcmFieldQualifyIpType, BCM_FIELD_IP_TYPE_ARP);
    else if (type == kIp4Type)
        read_ip4(v, kHeaderBytes + v.tags * kTagBytes);
    else if (type == kIp6Type)
        read_ip6(v, kHeaderBytes + v.tags * kTagBytes);
}

} // namespace vexosim
