// Field processor: what entries match.
#include <bcmx/field.h>

#include <limits>

#include "sim/chip/chip.h"
#include "sim/sdk/gate.h"

using namespace vexosim;

namespace {

constexpr std::uint64_t kExactly = 0xff; ///< for fields of one byte

/// The bytes as a number, the first one highest.
std::uint64_t number(const std::uint8_t* bytes, int count)
{
    std::uint64_t value = 0;
    for (int i = 0; i < count; ++i)
        value = value << 8 | bytes[i];
    return value;
}

int qualify_bytes(Chip& chip, int entry, int field, const std::uint8_t* data,
                  const std::uint8_t* mask, int count)
{
    if (data == nullptr || mask == nullptr)
        return BCM_E_PARAM;
    return chip.field.qualify(entry, {field, number(data, count), number(mask, count)});
}

/// PARAM for an id that no set can hold.
int qualify_udf(Chip& chip, int entry, int udf, const std::uint8_t* data, const std::uint8_t* mask)
{
    if (udf < 0 || udf >= BCM_FIELD_USER_NUM_UDFS)
        return chip.field.find(entry) != nullptr ? BCM_E_PARAM : BCM_E_NOT_FOUND;
    return qualify_bytes(chip, entry, FieldMatch::kUdf + udf, data, mask, 4);
}

template <class Value, class... A>
int qualify(const char* name, int entry, int field, Value data, Value mask,
            const Arguments<A...>& arguments)
{
    return sdk_call(name, arguments, [&](Chip& chip) {
        return chip.field.qualify(entry, {field, data, mask});
    });
}

} // namespace

extern "C" int bcmx_field_qualify_InPort(bcm_field_entry_t entry, bcmx_lport_t port)
{
    return port_call("bcmx_field_qualify_InPort", port, args(entry, Lport{port}),
                     [&](Chip& chip, int chip_port) {
                         return chip.field.qualify(entry, {bcmFieldQualifyInPort,
                                                           static_cast<std::uint64_t>(chip_port),
                                                           kExactly});
                     });
}

extern "C" int bcmx_field_qualify_SrcMac(bcm_field_entry_t entry, bcm_mac_t data, bcm_mac_t mask)
{
    return sdk_call("bcmx_field_qualify_SrcMac", args(entry, Mac{data}, Mac{mask}),
                    [&](Chip& chip) {
                        return qualify_bytes(chip, entry, bcmFieldQualifySrcMac, data, mask, 6);
                    });
}

extern "C" int bcmx_field_qualify_DstMac(bcm_field_entry_t entry, bcm_mac_t data, bcm_mac_t mask)
{
    return sdk_call("bcmx_field_qualify_DstMac", args(entry, Mac{data}, Mac{mask}),
                    [&](Chip& chip) {
                        return qualify_bytes(chip, entry, bcmFieldQualifyDstMac, data, mask, 6);
                    });
}

extern "C" int bcmx_field_qualify_EtherType(bcm_field_entry_t entry, uint16_t data, uint16_t mask)
{
    return qualify("bcmx_field_qualify_EtherType", entry, bcmFieldQualifyEtherType, data, mask,
                   args(entry, Flags{data}, Flags{mask}));
}

extern "C" int bcmx_field_qualify_OuterVlanId(bcm_field_entry_t entry, bcm_vlan_t data,
                                              bcm_vlan_t mask)
{
    return qualify("bcmx_field_qualify_OuterVlanId", entry, bcmFieldQualifyOuterVlanId, data, mask,
                   args(entry, data, Flags{mask}));
}

extern "C" int bcmx_field_qualify_OuterVlanPri(bcm_field_entry_t entry, uint8_t data, uint8_t mask)
{
    return qualify("bcmx_field_qualify_OuterVlanPri", entry, bcmFieldQualifyOuterVlanPri, data,
                   mask, args(entry, data, Flags{mask}));
}

extern "C" int bcmx_field_qualify_SrcIp(bcm_field_entry_t entry, bcm_ip_t data, bcm_ip_t mask)
{
    return qualify("bcmx_field_qualify_SrcIp", entry, bcmFieldQualifySrcIp, data, mask,
                   args(entry, Ip4{data}, Ip4{mask}));
}

extern "C" int bcmx_field_qualify_DstIp(bcm_field_entry_t entry, bcm_ip_t data, bcm_ip_t mask)
{
    return qualify("bcmx_field_qualify_DstIp", entry, bcmFieldQualifyDstIp, data, mask,
                   args(entry, Ip4{data}, Ip4{mask}));
}

extern "C" int bcmx_field_qualify_L4SrcPort(bcm_field_entry_t entry, bcm_l4_port_t data,
                                            bcm_l4_port_t mask)
{
    return qualify("bcmx_field_qualify_L4SrcPort", entry, bcmFieldQualifyL4SrcPort, data, mask,
                   args(entry, data, Flags{mask}));
}

extern "C" int bcmx_field_qualify_L4DstPort(bcm_field_entry_t entry, bcm_l4_port_t data,
                                            bcm_l4_port_t mask)
{
    return qualify("bcmx_field_qualify_L4DstPort", entry, bcmFieldQualifyL4DstPort, data, mask,
                   args(entry, data, Flags{mask}));
}

extern "C" int bcmx_field_qualify_IpProtocol(bcm_field_entry_t entry, uint8_t data, uint8_t mask)
{
    return qualify("bcmx_field_qualify_IpProtocol", entry, bcmFieldQualifyIpProtocol, data, mask,
                   args(entry, data, Flags{mask}));
}

extern "C" int bcmx_field_qualify_Tos(bcm_field_entry_t entry, uint8_t data, uint8_t mask)
{
    return qualify("bcmx_field_qualify_Tos", entry, bcmFieldQualifyTos, data, mask,
                   args(entry, Flags{data}, Flags{mask}));
}

extern "C" int bcmx_field_qualify_IpType(bcm_field_entry_t entry, int type)
{
    return qualify("bcmx_field_qualify_IpType", entry, bcmFieldQualifyIpType,
                   static_cast<std::uint64_t>(type), kExactly, args(entry, type));
}

extern "C" int bcmx_field_qualify_UserDefined(bcm_field_entry_t entry, int udf_id,
                                              const uint8_t data[4], const uint8_t mask[4])
{
    return sdk_call("bcmx_field_qualify_UserDefined",
                    args(entry, udf_id, Bytes{data, 4}, Bytes{mask, 4}),
                    [&](Chip& chip) { return qualify_udf(chip, entry, udf_id, data, mask); });
}
