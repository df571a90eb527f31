/*
 * Field processor: the records and numbers that bcmx/field.h shares. Entries live in groups; a
 * group's qualifier set says which fields its entries may match.
 */
#ifndef BCM_FIELD_H
#define BCM_FIELD_H

#include <bcm/error.h>
#include <bcm/types.h>
#include <string.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int bcm_field_group_t;
typedef int bcm_field_entry_t;

/* Fields that an entry can match; the number is the bit in a qualifier set. */
typedef enum bcm_field_qualify_e {
    bcmFieldQualifySrcMac = 6,
    bcmFieldQualifyDstMac = 7,
    bcmFieldQualifySrcIp = 9,
    bcmFieldQualifyDstIp = 10,
    bcmFieldQualifyInPort = 12,
    bcmFieldQualifyOuterVlanId = 18,
    bcmFieldQualifyOuterVlanPri = 19,
    bcmFieldQualifyL4SrcPort = 27,
    bcmFieldQualifyL4DstPort = 28,
    bcmFieldQualifyEtherType = 29,
    bcmFieldQualifyIpProtocol = 30,
    bcmFieldQualifyTos = 31,
    bcmFieldQualifyIpType = 60,
    bcmFieldQualifyCount = 96
} bcm_field_qualify_t;

/* What an entry does to the frames it matches. */
typedef enum bcm_field_action_e {
    bcmFieldActionOuterVlanPrioNew = 8, /* p0: new priority of the outer tag */
    bcmFieldActionTosNew = 15,          /* p0: new type-of-service byte */
    bcmFieldActionTrapToCpu = 21,       /* to the CPU */
    bcmFieldActionEgressMask = 29,      /* port list: never out of these ports */
    bcmFieldActionRedirectPbmp = 30,    /* port list: out of these ports and no other */
    bcmFieldActionDrop = 35,
    bcmFieldActionUpdateCounter = 108,   /* p0, p1: counter selection */
    bcmFieldActionInnerVlanDelete = 116, /* removes the inner tag */
    bcmFieldActionOuterVlanNew = 119,    /* p0: new VLAN id of the outer tag */
    bcmFieldActionLoopback = 166,        /* back out of the port it came in at */
    bcmFieldActionBypassStp = 168,       /* ignores spanning-tree states */
    bcmFieldActionSrcMacNew = 187,       /* MAC: new source address */
    bcmFieldActionDstMacNew = 188        /* MAC: new destination address */
} bcm_field_action_t;

/* Kinds of frame for the IpType qualifier. */
#define BCM_FIELD_IP_TYPE_IP_PROTOCOL 8 /* IPv4 and IPv6 packets that carry a protocol */
#define BCM_FIELD_IP_TYPE_ARP 9

/* A qualifier set: a bit for each field, and the user-defined fields. */
#define BCM_FIELD_QSET_WORDS (bcmFieldQualifyCount / 32)
#define BCM_FIELD_USER_NUM_UDFS 96
typedef struct bcm_field_qset_s {
    uint32_t w[BCM_FIELD_QSET_WORDS];
    uint32_t udf_map[BCM_FIELD_USER_NUM_UDFS / 32];
} bcm_field_qset_t;
#define BCM_FIELD_QSET_INIT(qset) ((void)memset(&(qset), 0, sizeof(qset)))
#define BCM_FIELD_QSET_ADD(qset, q) ((qset).w[(q) / 32] |= 1u << ((q) % 32))
#define BCM_FIELD_QSET_TEST(qset, q) (((qset).w[(q) / 32] >> ((q) % 32) & 1u) != 0)

/*
 * A user-defined field: four bytes of the frame. Word n covers frame bytes 4n-2 to 4n+1; the flags
 * say which packet formats have the field.
 */
typedef struct bcm_field_udf_spec_s {
    uint32_t flags;      /* BCM_FIELD_USER_* */
    uint32_t udf_offset; /* word */
} bcm_field_udf_spec_t;
#define BCM_FIELD_USER_VLAN_ONE_TAG 0x008u /* exactly one tag; without it: untagged frames */
#define BCM_FIELD_USER_L3_ALL 0x380u       /* every layer-3 kind */

/* Clears a UDF record. */
void bcm_field_udf_spec_t_init(bcm_field_udf_spec_t* udf_spec);

typedef int bcm_field_control_t;
#define BCM_FIELD_CONTROL_COUNT 32

#ifdef __cplusplus
}
#endif
#endif
