/*
 * Field processor: groups, entries, qualifiers, actions, counters, user-defined fields.
 */
#ifndef BCMX_FIELD_H
#define BCMX_FIELD_H

#include <bcm/field.h>
#include <bcmx/lplist.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Empties the field processor. */
int bcmx_field_init(void);

/* Sets a control of the field processor. PARAM: control outside 0 to 31. */
int bcmx_field_control_set(bcm_field_control_t control, uint32_t state);

/*
 * Groups. `priority` orders the groups; a larger one wins. create chooses the id and stores it in
 * `group`; create_id takes any id, -1 too. FULL: no group left; EXISTS; NOT_FOUND: a user-defined
 * field of the set; PARAM. destroy: NOT_FOUND; BUSY: the group has entries.
 */
int bcmx_field_group_create(bcm_field_qset_t qset, int priority, bcm_field_group_t* group);
int bcmx_field_group_create_id(bcm_field_qset_t qset, int priority, bcm_field_group_t group);
int bcmx_field_group_destroy(bcm_field_group_t group);

/*
 * Entries. What is not installed does not act; remove takes an entry out of the chip and keeps it.
 * destroy
 * takes its counter along. FULL; NOT_FOUND: no such group, no such entry.
 */
int bcmx_field_entry_create(bcm_field_group_t group, bcm_field_entry_t* entry);
int bcmx_field_entry_destroy(bcm_field_entry_t entry);
int bcmx_field_entry_install(bcm_field_entry_t entry);
int bcmx_field_entry_reinstall(bcm_field_entry_t entry);
int bcmx_field_entry_remove(bcm_field_entry_t entry);

/* Among the entries of a group, a larger priority wins; then the older entry. NOT_FOUND. */
int bcmx_field_entry_prio_set(bcm_field_entry_t entry, int prio);
int bcmx_field_entry_prio_get(bcm_field_entry_t entry, int* prio);

/*
 * Qualifiers. NOT_FOUND: entry; PARAM: the field is not in the group's set, or a bad value; PORT.
 * IpType takes BCM_FIELD_IP_TYPE_*.
 */
int bcmx_field_qualify_InPort(bcm_field_entry_t entry, bcmx_lport_t port);
int bcmx_field_qualify_SrcMac(bcm_field_entry_t entry, bcm_mac_t data, bcm_mac_t mask);
int bcmx_field_qualify_DstMac(bcm_field_entry_t entry, bcm_mac_t data, bcm_mac_t mask);
int bcmx_field_qualify_EtherType(bcm_field_entry_t entry, uint16_t data, uint16_t mask);
int bcmx_field_qualify_OuterVlanId(bcm_field_entry_t entry, bcm_vlan_t data, bcm_vlan_t mask);
int bcmx_field_qualify_OuterVlanPri(bcm_field_entry_t entry, uint8_t data, uint8_t mask);
int bcmx_field_qualify_SrcIp(bcm_field_entry_t entry, bcm_ip_t data, bcm_ip_t mask);
int bcmx_field_qualify_DstIp(bcm_field_entry_t entry, bcm_ip_t data, bcm_ip_t mask);
int bcmx_field_qualify_L4SrcPort(bcm_field_entry_t entry, bcm_l4_port_t data, bcm_l4_port_t mask);
int bcmx_field_qualify_L4DstPort(bcm_field_entry_t entry, bcm_l4_port_t data, bcm_l4_port_t mask);
int bcmx_field_qualify_IpProtocol(bcm_field_entry_t entry, uint8_t data, uint8_t mask);
int bcmx_field_qualify_Tos(bcm_field_entry_t entry, uint8_t data, uint8_t mask);
int bcmx_field_qualify_IpType(bcm_field_entry_t entry, int type);
int bcmx_field_qualify_UserDefined(bcm_field_entry_t entry, int udf_id, const uint8_t data[4],
                                   const uint8_t mask[4]);

/*
 * Actions. add: EXISTS when the entry has the action; delete and ports_get: NOT_FOUND when it has
 * not. ports_get makes its list anew. A change acts once the entry is reinstalled. PARAM: unknown
 * action.
 */
int bcmx_field_action_add(bcm_field_entry_t entry, bcm_field_action_t action, uint32_t param0,
                          uint32_t param1);
int bcmx_field_action_delete(bcm_field_entry_t entry, bcm_field_action_t action, uint32_t param0,
                             uint32_t param1);
int bcmx_field_action_remove_all(bcm_field_entry_t entry);
int bcmx_field_action_mac_add(bcm_field_entry_t entry, bcm_field_action_t action, bcm_mac_t mac);
int bcmx_field_action_ports_add(bcm_field_entry_t entry, bcm_field_action_t action,
                                bcmx_lplist_t ports);
int bcmx_field_action_ports_get(bcm_field_entry_t entry, bcm_field_action_t action,
                                bcmx_lplist_t* ports);

/* Counters in packets. EXISTS; NOT_FOUND; PARAM: an index other than 0. */
int bcmx_field_counter_create(bcm_field_entry_t entry);
int bcmx_field_counter_destroy(bcm_field_entry_t entry);
int bcmx_field_counter_get(bcm_field_entry_t entry, int counter, uint64_t* value);
int bcmx_field_counter_get32(bcm_field_entry_t entry, int counter, uint32_t* value);

/* User-defined fields. create_id: EXISTS, PARAM: id outside 0 to 92; destroy: NOT_FOUND, BUSY. */
int bcmx_field_udf_spec_set(bcm_field_udf_spec_t* udf_spec, uint32_t flags, uint32_t offset);
int bcmx_field_udf_create_id(bcm_field_udf_spec_t* udf_spec, int udf_id);
int bcmx_field_udf_destroy(int udf_id);

/* Adds a user-defined field to a qualifier set. NOT_FOUND; PARAM. */
int bcmx_field_qset_add_udf(bcm_field_qset_t* qset, int udf_id);

#ifdef __cplusplus
}
#endif
#endif
