#include "sim/chip/field_text.h"

#include <bcm/field.h>

#include <algorithm>
#include <bit>
#include <map>

#include "sim/chip/field_rules.h"
#include "sim/chip/text.h"

namespace vexosim {

namespace {

struct Name {
    int number;
    const char* name;
};

constexpr Name kFields[] = {
    {bcmFieldQualifyInPort, "in-port"},   {bcmFieldQualifySrcMac, "src-mac"},
    {bcmFieldQualifyDstMac, "dst-mac"},   {bcmFieldQualifyEtherType, "ether-type"},
    {bcmFieldQualifyOuterVlanId, "vlan"}, {bcmFieldQualifyOuterVlanPri, "vlan-priority"},
    {bcmFieldQualifyIpType, "ip-type"},   {bcmFieldQualifySrcIp, "src-ip"},
    {bcmFieldQualifyDstIp, "dst-ip"},     {bcmFieldQualifyIpProtocol, "ip-proto"},
    {bcmFieldQualifyTos, "tos"},          {bcmFieldQualifyL4SrcPort, "l4-src"},
    {bcmFieldQualifyL4DstPort, "l4-dst"},
};

constexpr Name kProtocols[] = {{1, "icmp"}, {2, "igmp"}, {6, "tcp"},    {17, "udp"},
                               {47, "gre"}, {50, "esp"}, {58, "icmp6"}, {89, "ospf"}};

std::string protocol_text(std::uint64_t protocol)
{
    for (const auto& [number, name] : kProtocols) {
        if (protocol == static_cast<std::uint64_t>(number))
            return name;
    }
    return std::to_string(protocol);
}

std::string ip_text(std::uint64_t ip)
{
    std::uint8_t bytes[4];
    for (int i = 0; i < 4; ++i)
        bytes[i] = static_cast<std::uint8_t>(ip >> (24 - 8 * i));
    return ip4_text(bytes);
}

std::string ip_mask_text(std::uint64_t mask)
{
    const auto bits = static_cast<std::uint32_t>(mask);
    const int ones = std::countl_one(bits);
    return std::popcount(bits) == ones ? std::to_string(ones) : ip_text(mask);
}

std::string data_text(const FieldMatch& match, const PortNames& names)
{
    switch (match.field) {
    case bcmFieldQualifySrcMac:
    case bcmFieldQualifyDstMac:
        return mac_text(match.data);
    case bcmFieldQualifySrcIp:
    case bcmFieldQualifyDstIp:
        return ip_text(match.data);
    case bcmFieldQualifyInPort:
        return names.name(static_cast<int>(match.data));
    case bcmFieldQualifyEtherType:
        return "0x" + hex_text(match.data, 4);
    case bcmFieldQualifyTos:
        return "0x" + hex_text(match.data, 2);
    case bcmFieldQualifyIpProtocol:
        return protocol_text(match.data);
    case bcmFieldQualifyIpType:
        return match.data == BCM_FIELD_IP_TYPE_ARP ? "arp" : "ip";
    default:
        return std::to_string(match.data);
    }
}

std::string mask_text(const FieldMatch& match)
{
    const int width = width_of(match.field);
    if (match.mask == (std::uint64_t{1} << width) - 1)
        return "";
    const bool ip = match.field == bcmFieldQualifySrcIp || match.field == bcmFieldQualifyDstIp;
    return "/" + (ip ? ip_mask_text(match.mask) : "0x" + hex_text(match.mask, (width + 3) / 4));
}

int first_byte(const FieldUdf& udf)
{
    return 4 * static_cast<int>(udf.word) - 2;
}

struct ByteMatch {
    std::uint8_t data, mask;
};

/// By offset in the frame, the bytes that a rule looks at.
std::map<int, ByteMatch> bytes_of(const FieldTable& table, const FieldRule& rule)
{
    std::map<int, ByteMatch> bytes;
    for (const FieldMatch& match : rule.matches) {
        const FieldUdf* udf = table.find_udf(match.field - FieldMatch::kUdf);
        for (int i = 0; udf != nullptr && i < 4; ++i) {
            const int shift = 24 - 8 * i;
            const ByteMatch byte{static_cast<std::uint8_t>(match.data >> shift),
                                 static_cast<std::uint8_t>(match.mask >> shift)};
            if (byte.mask != 0)
                bytes[first_byte(*udf) + i] = byte;
        }
    }
    return bytes;
}

/// Bytes that follow each other are one match.
std::string bytes_text(std::map<int, ByteMatch> bytes)
{
    std::string text;
    while (!bytes.empty()) {
        const int first = bytes.begin()->first;
        std::string data;
        std::string mask;
        bool exact = true;
        for (int at = first; !bytes.empty() && bytes.begin()->first == at; ++at) {
            const ByteMatch byte = bytes.begin()->second;
            data += hex_text(byte.data, 2);
            mask += hex_text(byte.mask, 2);
            exact &= byte.mask == 0xff;
            bytes.erase(bytes.begin());
        }
        text += " udf " + std::to_string(first) + ":" + data + (exact ? "" : "/" + mask);
    }
    return text;
}

/// Which frames have a user-defined field.
std::string formats_text(std::uint32_t flags)
{
    switch (flags) {
    case 0:
        return "";
    case BCM_FIELD_USER_L3_ALL:
        return " of untagged frames";
    case BCM_FIELD_USER_L3_ALL | BCM_FIELD_USER_VLAN_ONE_TAG:
        return " of frames with one tag";
    default:
        return " of formats 0x" + hex_text(flags, 3);
    }
}

} // namespace

std::string action_text(const FieldAction& action, const PortNames& names)
{
    const std::string number = std::to_string(action.param0);
    switch (action.action) {
    case bcmFieldActionOuterVlanPrioNew:
        return "priority " + number;
    case bcmFieldActionTosNew:
        return "TOS 0x" + hex_text(action.param0, 2);
    case bcmFieldActionTrapToCpu:
        return "trap to the CPU";
    case bcmFieldActionEgressMask:
        return "not out of " + names.names(action.ports);
    case bcmFieldActionRedirectPbmp:
        return "redirect to " + names.names(action.ports);
    case bcmFieldActionDrop:
        return "drop";
    case bcmFieldActionUpdateCounter:
        return "count";
    case bcmFieldActionInnerVlanDelete:
        return "delete the inner tag";
    case bcmFieldActionOuterVlanNew:
        return "VLAN " + number;
    case bcmFieldActionLoopback:
        return "loop back";
    case bcmFieldActionBypassStp:
        return "bypass spanning tree";
    case bcmFieldActionSrcMacNew:
        return "source " + mac_text(action.mac);
    case bcmFieldActionDstMacNew:
        return "destination " + mac_text(action.mac);
    default:
        return "action " + std::to_string(action.action);
    }
}

std::string actions_text(const FieldRule& rule, const PortNames& names)
{
    std::string text;
    for (const FieldAction& action : rule.actions)
        text += (text.empty() ? "" : "; ") + action_text(action, names);
    return text.empty() ? "none" : text;
}

std::string matches_text(const FieldTable& table, const FieldRule& rule, const PortNames& names)
{
    std::string text;
    for (const auto& [field, name] : kFields) {
        const auto match = std::ranges::find(rule.matches, field, &FieldMatch::field);
        if (match != rule.matches.end())
            text += std::string(" ") + name + " " + data_text(*match, names) + mask_text(*match);
    }
    text += bytes_text(bytes_of(table, rule));
    return text.empty() ? "any" : text.substr(1);
}

std::string fields_text(const FieldTable& table, const FieldSet& set)
{
    std::string text;
    for (const auto& [field, name] : kFields) {
        if (set.fields[static_cast<std::size_t>(field)])
            text += std::string(text.empty() ? "" : ", ") + name;
    }
    for (std::size_t id = 0; id < set.udfs.size(); ++id) {
        const FieldUdf* udf = table.find_udf(static_cast<int>(id));
        if (!set.udfs[id] || udf == nullptr)
            continue;
        const int first = first_byte(*udf);
        text += (text.empty() ? "bytes " : ", bytes ") + std::to_string(first) + "-" +
                std::to_string(first + 3) + formats_text(udf->flags) + " (udf " +
                std::to_string(id) + ")";
    }
    return text.empty() ? "none" : text;
}

} // namespace vexosim
