/*
 * Spanning-tree states.
 */
#ifndef BCM_STG_H
#define BCM_STG_H

#ifdef __cplusplus
extern "C" {
#endif

#define BCM_STG_DEFAULT 1

typedef enum bcm_stg_stp_e {
    BCM_STG_STP_DISABLE = 0, /* no frame in or out */
    BCM_STG_STP_BLOCK = 1,   /* BPDUs only */
    BCM_STG_STP_LISTEN = 2,  /* BPDUs only */
    BCM_STG_STP_LEARN = 3,   /* BPDUs only, addresses are learned */
    BCM_STG_STP_FORWARD = 4,
    BCM_STG_STP_COUNT = 5
} bcm_stg_stp_t;

#ifdef __cplusplus
}
#endif
#endif
