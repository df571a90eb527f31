/*
 * Ports of one unit, and the records and constants that bcmx/port.h shares.
 */
#ifndef BCM_PORT_H
#define BCM_PORT_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Ports of a unit by kind. */
typedef struct bcm_port_config_s {
    bcm_pbmp_t fe;   /* 10/100 Mb/s ports */
    bcm_pbmp_t ge;   /* 1 Gb/s ports */
    bcm_pbmp_t xe;   /* 10 Gb/s ports */
    bcm_pbmp_t e;    /* all Ethernet ports: fe, ge and xe */
    bcm_pbmp_t port; /* all front ports */
    bcm_pbmp_t cpu;  /* the CPU port */
    bcm_pbmp_t all;  /* front ports and the CPU port */
} bcm_port_config_t;

/* What link scan reports of a port. */
typedef struct bcm_port_info_s {
    int enable;     /* administrative state, 0 or 1 */
    int linkstatus; /* BCM_PORT_LINK_STATUS_* */
    int autoneg;    /* 0 or 1 */
    int speed;      /* Mb/s */
    int duplex;     /* BCM_PORT_DUPLEX_* */
    int pause_tx;   /* 0 or 1 */
    int pause_rx;   /* 0 or 1 */
    int frame_max;  /* bytes */
} bcm_port_info_t;

#define BCM_PORT_LINK_STATUS_DOWN 0
#define BCM_PORT_LINK_STATUS_UP 1

#define BCM_PORT_DUPLEX_HALF 0
#define BCM_PORT_DUPLEX_FULL 1

/* Which frames a port refuses on ingress. */
#define BCM_PORT_DISCARD_NONE 0
#define BCM_PORT_DISCARD_ALL 1
#define BCM_PORT_DISCARD_UNTAG 2
#define BCM_PORT_DISCARD_TAG 3

/* What a port does with a frame of unknown source address (bit set). */
#define BCM_PORT_LEARN_ARL 0x1 /* learn the address */
#define BCM_PORT_LEARN_CPU 0x2 /* copy the frame to the CPU */
#define BCM_PORT_LEARN_FWD 0x4 /* forward the frame */

/* Traffic kept from flooding out of an egress port (bit set). */
#define BCM_PORT_FLOOD_BLOCK_BCAST 0x1
#define BCM_PORT_FLOOD_BLOCK_UNKNOWN_UCAST 0x2
#define BCM_PORT_FLOOD_BLOCK_KNOWN_MCAST 0x4
#define BCM_PORT_FLOOD_BLOCK_UNKNOWN_MCAST 0x8

/* VLAN membership filters of a port (bit set): frames of a VLAN that the port is not in. */
#define BCM_PORT_VLAN_MEMBER_INGRESS 0x1 /* are dropped on ingress */
#define BCM_PORT_VLAN_MEMBER_EGRESS 0x2  /* do not leave through the port */

/* Frame types of protocol VLANs. */
typedef int bcm_port_frametype_t;
#define BCM_PORT_FRAMETYPE_ETHER2 0x1
#define BCM_PORT_FRAMETYPE_8023 0x2
#define BCM_PORT_FRAMETYPE_SNAP 0x4
typedef uint16_t bcm_port_ethertype_t;

/* Abilities in one word (the older form). */
typedef uint32_t bcm_port_abil_t;
#define BCM_PORT_ABIL_10MB_HD 0x00000001u
#define BCM_PORT_ABIL_10MB_FD 0x00000002u
#define BCM_PORT_ABIL_100MB_HD 0x00000004u
#define BCM_PORT_ABIL_100MB_FD 0x00000008u
#define BCM_PORT_ABIL_1000MB_HD 0x00000010u
#define BCM_PORT_ABIL_1000MB_FD 0x00000020u
#define BCM_PORT_ABIL_10GB_HD 0x00000100u
#define BCM_PORT_ABIL_10GB_FD 0x00000200u
#define BCM_PORT_ABIL_PAUSE_TX 0x00000400u
#define BCM_PORT_ABIL_PAUSE_RX 0x00000800u
#define BCM_PORT_ABIL_PAUSE_ASYMM 0x00001000u
#define BCM_PORT_ABIL_AN 0x00200000u
#define BCM_PORT_ABIL_COMBO 0x80000000u

/* Abilities as a record; each word is a bit set. */
typedef struct bcm_port_ability_s {
    uint32_t speed_half_duplex; /* BCM_PORT_ABILITY_* */
    uint32_t speed_full_duplex; /* BCM_PORT_ABILITY_* */
    uint32_t pause;             /* BCM_PORT_ABILITY_PAUSE_* */
    uint32_t medium;            /* BCM_PORT_ABILITY_MEDIUM_* */
    uint32_t flags;             /* BCM_PORT_ABILITY_AUTONEG, BCM_PORT_ABILITY_COMBO */
} bcm_port_ability_t;
#define BCM_PORT_ABILITY_10MB 0x01u
#define BCM_PORT_ABILITY_100MB 0x02u
#define BCM_PORT_ABILITY_1000MB 0x04u
#define BCM_PORT_ABILITY_10GB 0x80u
#define BCM_PORT_ABILITY_PAUSE_TX 0x1u
#define BCM_PORT_ABILITY_PAUSE_RX 0x2u
#define BCM_PORT_ABILITY_PAUSE_ASYMM 0x4u
#define BCM_PORT_ABILITY_MEDIUM_COPPER 0x1u
#define BCM_PORT_ABILITY_MEDIUM_FIBER 0x2u
#define BCM_PORT_ABILITY_AUTONEG 0x1u
#define BCM_PORT_ABILITY_COMBO 0x2u

/* Fills `config` with the unit's ports by kind. UNIT; PARAM: null; INIT. */
int bcm_port_config_get(int unit, bcm_port_config_t* config);

/*
 * Keeps traffic that enters at `ingress` from flooding out of `egress`: `flags` is the whole set of
 * BCM_PORT_FLOOD_BLOCK_* bits for the pair. PORT: no such port; PARAM: other bits; UNIT; INIT.
 */
int bcm_port_flood_block_set(int unit, bcm_port_t ingress, bcm_port_t egress, uint32_t flags);

#ifdef __cplusplus
}
#endif
#endif
