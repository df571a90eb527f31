// From a flow's match to the qualifiers of its entry. Fields that the chip keeps in 8 bits are
// shown as the chip gets them.
#include <bcmx/field.h>

#include <algorithm>
#include <cstdio>

#include "core/result.h"
#include "flow/flow_entry.h"

using namespace vexolc;

namespace {

struct Mac {
    explicit Mac(const uint8_t (&from)[6]) { std::copy(from, from + 6, bytes); }
    bcm_mac_t bytes;
};

void print_mac(const char* field, const uint8_t (&mac)[6])
{
    std::printf("add qualify %s = %02x:%02x:%02x:%02x:%02x:%02x\n", field, mac[0], mac[1], mac[2],
                mac[3], mac[4], mac[5]);
}

int in_port(const of_flow_mp_s& flow, int entry)
{
    int lport = -1;
    if (!map_mp_to_lport(flow.port, lport))
        return BCM_E_PARAM;
    std::printf("add qualify InPort = (%d, %d)\n", static_cast<int>(flow.port.module()),
                static_cast<int>(flow.port.port()));
    return bcmx_field_qualify_InPort(entry, lport);
}

constexpr uint8_t whole_mac[6] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff};

int src_mac(const of_flow_mp_s& flow, int entry)
{
    print_mac("SrcMac", flow.src_mac);
    return bcmx_field_qualify_SrcMac(entry, Mac(flow.src_mac).bytes, Mac(whole_mac).bytes);
}

int dst_mac(const of_flow_mp_s& flow, int entry)
{
    print_mac("DstMac", flow.dst_mac);
    return bcmx_field_qualify_DstMac(entry, Mac(flow.dst_mac).bytes, Mac(whole_mac).bytes);
}

int ether_type(const of_flow_mp_s& flow, int entry)
{
    std::printf("add qualify EtherType = 0x%04x\n", flow.ether_type);
    return bcmx_field_qualify_EtherType(entry, flow.ether_type, 0xffff);
}

int vlan_id(const of_flow_mp_s& flow, int entry)
{
    std::printf("add qualify OuterVlanId = %d\n", flow.vlan_id);
    return bcmx_field_qualify_OuterVlanId(entry, flow.vlan_id, 0x0fff);
}

int vlan_pri(const of_flow_mp_s& flow, int entry)
{
    const auto priority = static_cast<uint8_t>(flow.vlan_pri);
    std::printf("add qualify OuterVlanPri = %d\n", priority);
    return bcmx_field_qualify_OuterVlanPri(entry, priority, 7);
}

int src_ip(const of_flow_mp_s& flow, int entry)
{
    std::printf("add qualify SrcIp = 0x%08x\n", static_cast<unsigned>(flow.src_ip));
    return bcmx_field_qualify_SrcIp(entry, flow.src_ip, flow.src_ip_mask);
}

int dst_ip(const of_flow_mp_s& flow, int entry)
{
    std::printf("add qualify DstIp = 0x%08x\n", static_cast<unsigned>(flow.dst_ip));
    return bcmx_field_qualify_DstIp(entry, flow.dst_ip, flow.dst_ip_mask);
}

int l4_src_port(const of_flow_mp_s& flow, int entry)
{
    std::printf("add qualify L4SrcPort = %d\n", flow.l4_src_port);
    return bcmx_field_qualify_L4SrcPort(entry, flow.l4_src_port, 0xffff);
}

int l4_dst_port(const of_flow_mp_s& flow, int entry)
{
    std::printf("add qualify L4DstPort = %d\n", flow.l4_dst_port);
    return bcmx_field_qualify_L4DstPort(entry, flow.l4_dst_port, 0xffff);
}

int ip_protocol(const of_flow_mp_s& flow, int entry)
{
    const auto protocol = static_cast<uint8_t>(flow.ip_protocol);
    std::printf("add qualify IpProtocol = 0x%02x\n", protocol);
    return bcmx_field_qualify_IpProtocol(entry, protocol, 0xff);
}

int tos(const of_flow_mp_s& flow, int entry)
{
    const auto byte = static_cast<uint8_t>(flow.tos);
    std::printf("add qualify Tos = 0x%02x\n", byte);
    return bcmx_field_qualify_Tos(entry, byte, 0xff);
}

int user_defined(const bcm_udf_s& word, int entry)
{
    const uint8_t* d = word.data;
    const uint8_t* m = word.mask;
    const int udf_id = static_cast<int>(word.udf_id);
    std::printf("bcmx_field_qualify_UserDefined: entry = 0x%x, udf_id = %d, data = %02x %02x %02x "
                "%02x, mask = %02x %02x %02x %02x\n",
                static_cast<unsigned>(entry), udf_id, d[0], d[1], d[2], d[3], m[0], m[1], m[2],
                m[3]);
    return bcmx_field_qualify_UserDefined(entry, udf_id, d, m);
}

struct Step {
    uint32_t flag;
    int (*qualify)(const of_flow_mp_s& flow, int entry);
};

constexpr Step steps[] = {
    {OF_QUALIFY_IN_PORT, in_port},         {OF_QUALIFY_SRC_MAC, src_mac},
    {OF_QUALIFY_DST_MAC, dst_mac},         {OF_QUALIFY_ETHER_TYPE, ether_type},
    {OF_QUALIFY_VLAN_ID, vlan_id},         {OF_QUALIFY_VLAN_PRI, vlan_pri},
    {OF_QUALIFY_SRC_IP, src_ip},           {OF_QUALIFY_DST_IP, dst_ip},
    {OF_QUALIFY_L4_SRC_PORT, l4_src_port}, {OF_QUALIFY_L4_DST_PORT, l4_dst_port},
    {OF_QUALIFY_IP_PROTOCOL, ip_protocol}, {OF_QUALIFY_TOS, tos},
};

} // namespace

int qualify_flow_entry(const of_flow_mp_s& flow, int entry, const std::vector<bcm_udf_s>& words)
{
    int rc = BCM_E_NONE;
    for (const Step& step : steps) {
        if (ok(rc) && (flow.flags & step.flag) != 0)
            rc = step.qualify(flow, entry);
    }
    for (std::size_t i = 0; ok(rc) && (flow.flags & OF_QUALIFY_UDF) != 0 && i < words.size(); ++i)
        rc = user_defined(words[i], entry);
    return rc;
}
