/*
 * Port properties. Every call answers PORT for a port that is none, PARAM for a null output.
 */
#ifndef BCMX_PORT_H
#define BCMX_PORT_H

#include <bcm/port.h>
#include <bcm/stat.h>
#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Administrative state, 0 or 1. A disabled port has no link. */
int bcmx_port_enable_set(bcmx_lport_t port, int enable);
int bcmx_port_enable_get(bcmx_lport_t port, int* enable);

/*
 * Auto-negotiation, 0 or 1. While it is on, speed, duplex and pause read as the link has them;
 * turning it on negotiates pause again.
 */
int bcmx_port_autoneg_set(bcmx_lport_t port, int autoneg);
int bcmx_port_autoneg_get(bcmx_lport_t port, int* autoneg);

/* Speed in Mb/s; setting it turns auto-negotiation off. PARAM: a speed that the port lacks. */
int bcmx_port_speed_set(bcmx_lport_t port, int speed);
int bcmx_port_speed_get(bcmx_lport_t port, int* speed);

/*
 * BCM_PORT_DUPLEX_*; setting it turns auto-negotiation off. PARAM: other values; half duplex above
 * 1000 Mb/s.
 */
int bcmx_port_duplex_set(bcmx_lport_t port, int duplex);
int bcmx_port_duplex_get(bcmx_lport_t port, int* duplex);

/* Pause frames sent and obeyed, each 0 or 1; what is set is not negotiated. */
int bcmx_port_pause_set(bcmx_lport_t port, int pause_tx, int pause_rx);
int bcmx_port_pause_get(bcmx_lport_t port, int* pause_tx, int* pause_rx);

/* Back-pressure by jamming (half duplex), 0 or 1. */
int bcmx_port_jam_set(bcmx_lport_t port, int enable);
int bcmx_port_jam_get(bcmx_lport_t port, int* enable);

/* Address of the port's MAC: source of its pause frames, and where it takes such frames. */
int bcmx_port_pause_addr_set(bcmx_lport_t port, bcm_mac_t mac);
int bcmx_port_pause_addr_get(bcmx_lport_t port, bcm_mac_t mac);

/*
 * Longest frame in bytes, 64 to 16384, with the frame check sequence; one tag is not counted.
 * PARAM: other sizes.
 */
int bcmx_port_frame_max_set(bcmx_lport_t port, int size);
int bcmx_port_frame_max_get(bcmx_lport_t port, int* size);

/* BCM_PORT_LINK_STATUS_* as link scan last saw it. */
int bcmx_port_link_status_get(bcmx_lport_t port, int* status);

/* VLAN and priority (0 to 7) of untagged frames. PARAM. */
int bcmx_port_untagged_vlan_set(bcmx_lport_t port, bcm_vlan_t vid);
int bcmx_port_untagged_vlan_get(bcmx_lport_t port, bcm_vlan_t* vid);
int bcmx_port_untagged_priority_set(bcmx_lport_t port, int priority);
int bcmx_port_untagged_priority_get(bcmx_lport_t port, int* priority);

/* BCM_PORT_DISCARD_*. PARAM: other values. */
int bcmx_port_discard_set(bcmx_lport_t port, int mode);
int bcmx_port_discard_get(bcmx_lport_t port, int* mode);

/* BCM_PORT_VLAN_MEMBER_* bit set. PARAM: other bits. */
int bcmx_port_vlan_member_set(bcmx_lport_t port, uint32_t flags);

/* BCM_PORT_LEARN_* bit set. PARAM: other bits. */
int bcmx_port_learn_set(bcmx_lport_t port, uint32_t flags);
int bcmx_port_learn_get(bcmx_lport_t port, uint32_t* flags);

/* Untagged frames of a frame type and EtherType belong to `vid`. PARAM; FULL; NOT_FOUND on delete.
 */
int bcmx_port_protocol_vlan_add(bcmx_lport_t port, bcm_port_frametype_t frame,
                                bcm_port_ethertype_t ether, bcm_vlan_t vid);
int bcmx_port_protocol_vlan_delete(bcmx_lport_t port, bcm_port_frametype_t frame,
                                   bcm_port_ethertype_t ether);
int bcmx_port_protocol_vlan_delete_all(bcmx_lport_t port);

/* Abilities: of the port in one word; as records of the port, advertised, and of the partner. */
int bcmx_port_ability_get(bcmx_lport_t port, bcm_port_abil_t* ability_mask);
int bcmx_port_ability_local_get(bcmx_lport_t port, bcm_port_ability_t* ability);
int bcmx_port_ability_advert_set(bcmx_lport_t port, bcm_port_ability_t* ability);
int bcmx_port_ability_advert_get(bcmx_lport_t port, bcm_port_ability_t* ability);
int bcmx_port_ability_remote_get(bcmx_lport_t port, bcm_port_ability_t* ability);

/* BCM_PORT_FLOOD_BLOCK_* of the pair, the whole set at once. PARAM: other bits. */
int bcmx_port_flood_block_set(bcmx_lport_t ingress, bcmx_lport_t egress, uint32_t flags);
int bcmx_port_flood_block_get(bcmx_lport_t ingress, bcmx_lport_t egress, uint32_t* flags);

/* Reserved bridge group addresses go to the CPU, 0 or 1. */
int bcmx_port_bpdu_enable_set(bcmx_lport_t port, int enable);
int bcmx_port_bpdu_enable_get(bcmx_lport_t port, int* enable);

/* Spanning-tree state (BCM_STG_STP_*): set in every group, read from the default group. PARAM. */
int bcmx_port_stp_set(bcmx_lport_t port, int state);
int bcmx_port_stp_get(bcmx_lport_t port, int* state);

/* Counting of the short counter set, 0 or 1. */
int bcmx_port_stat_enable_set(bcmx_lport_t port, int enable);

/* One counter of the short set. PARAM: no such counter. */
int bcmx_port_stat_get(bcmx_lport_t port, bcm_port_stat_t stat, uint64_t* value);
int bcmx_port_stat_get32(bcmx_lport_t port, bcm_port_stat_t stat, uint32_t* value);

#ifdef __cplusplus
}
#endif
#endif
