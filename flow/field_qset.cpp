#include "flow/field_qset.h"

#include <bcmx/field.h>

#include <cstdio>

#include "core/result.h"
#include "flow/udf_pool.h"

using namespace vexolc;

namespace {

struct Qualifier {
    uint32_t flag;
    bcm_field_qualify_t field;
    bool ip_level;
};

constexpr Qualifier qualifiers[] = {
    {OF_QUALIFY_IN_PORT, bcmFieldQualifyInPort, false},
    {OF_QUALIFY_SRC_MAC, bcmFieldQualifySrcMac, false},
    {OF_QUALIFY_DST_MAC, bcmFieldQualifyDstMac, false},
    {OF_QUALIFY_ETHER_TYPE, bcmFieldQualifyEtherType, false},
    {OF_QUALIFY_VLAN_ID, bcmFieldQualifyOuterVlanId, false},
    {OF_QUALIFY_VLAN_PRI, bcmFieldQualifyOuterVlanPri, false},
    {OF_QUALIFY_SRC_IP, bcmFieldQualifySrcIp, true},
    {OF_QUALIFY_DST_IP, bcmFieldQualifyDstIp, true},
    {OF_QUALIFY_L4_SRC_PORT, bcmFieldQualifyL4SrcPort, true},
    {OF_QUALIFY_L4_DST_PORT, bcmFieldQualifyL4DstPort, true},
    {OF_QUALIFY_IP_PROTOCOL, bcmFieldQualifyIpProtocol, true},
    {OF_QUALIFY_TOS, bcmFieldQualifyTos, false}, // deliberately not, although it is an IP field
};

int create_udf(uint32_t flags, uint32_t word_index, int id)
{
    bcm_field_udf_spec_t spec;
    bcm_field_udf_spec_t_init(&spec);
    const int rc = bcmx_field_udf_spec_set(&spec, flags, word_index);
    return ok(rc) ? bcmx_field_udf_create_id(&spec, id) : rc;
}

int add_udf(bcm_field_qset_t* qset, uint32_t flags, int number, int id, bcm_udf_s& word)
{
    const uint32_t word_index = (word.offset + 2) / 4;
    int rc = create_udf(flags, word_index, id);
    if (!ok(rc))
        return rc;
    std::printf("bcmx_field_qset_add_udf: udf_ids[%d] = %d, offset = %d, bcm_offset = %d\n", number,
                id, static_cast<int>(word.offset), static_cast<int>(word_index));
    rc = bcmx_field_qset_add_udf(qset, id);
    if (ok(rc))
        word.udf_id = static_cast<uint32_t>(id);
    return rc;
}

} // namespace

int qset_add_udfs(bcm_field_qset_t* qset, std::vector<bcm_udf_s>& words, bool ip_level)
{
    if (qset == nullptr)
        return BCM_E_PARAM;
    if (words.empty())
        return BCM_E_NONE;
    std::vector<unsigned> ids;
    int rc = alloc_udf_ids(static_cast<unsigned>(words.size()), ids);
    if (ok(rc) && ids.size() < words.size())
        return BCM_E_RESOURCE;
    const uint32_t flags = ip_level ? 0 : BCM_FIELD_USER_L3_ALL;
    for (std::size_t i = 0; ok(rc) && i < words.size(); ++i)
        rc = add_udf(qset, flags, static_cast<int>(i), static_cast<int>(ids[i]), words[i]);
    return rc; // ids and UDFs deliberately stay taken after a failure
}

int flow_flags_to_qset(unsigned flags, bcm_field_qset_t* qset, std::vector<bcm_udf_s>& words)
{
    if (qset == nullptr)
        return BCM_E_PARAM;
    BCM_FIELD_QSET_INIT(*qset);
    bool ip_level = false;
    for (const Qualifier& qualifier : qualifiers) {
        if ((flags & qualifier.flag) != 0) {
            BCM_FIELD_QSET_ADD(*qset, qualifier.field);
            ip_level = ip_level || qualifier.ip_level;
        }
    }
    const bool has_udfs = (flags & OF_QUALIFY_UDF) != 0;
    return has_udfs ? qset_add_udfs(qset, words, ip_level) : int{BCM_E_NONE};
}
