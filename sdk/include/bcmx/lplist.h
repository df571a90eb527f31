/*
 * Lists of logical ports. A list owns its storage until it is freed.
 */
#ifndef BCMX_LPLIST_H
#define BCMX_LPLIST_H

#include <bcmx/types.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef struct bcmx_lplist_s {
    bcmx_lport_t* lp_ports; /* storage; null while nothing was added */
    int lp_last;            /* index of the last port; -1 when the list is empty */
    int lp_alloc;           /* ports that the storage holds */
} bcmx_lplist_t;

/* Visits the ports of `list` in order; `index` is an int variable. */
#define BCMX_LPLIST_ITER(list, lport, index)                                                       \
    for ((index) = 0; (index) <= (list).lp_last && ((lport) = (list).lp_ports[(index)], 1);        \
         ++(index))

/*
 * Makes an empty list with room for `port_alloc` ports (it grows when more are added); `flags` is
 * 0. The list's earlier content is not looked at. MEMORY; PARAM: null, negative room.
 */
int bcmx_lplist_init(bcmx_lplist_t* list, int port_alloc, uint32_t flags);

/* Makes an empty list without storage. */
void bcmx_lplist_t_init(bcmx_lplist_t* list);

/* Frees the storage and empties the list; an empty list may be freed again. PARAM: null. */
int bcmx_lplist_free(bcmx_lplist_t* list);

/* Appends `port`, also when the list holds it already. MEMORY; PARAM: null. */
int bcmx_lplist_add(bcmx_lplist_t* list, bcmx_lport_t port);

/* Removes the first `port`; the ports behind it move up. NOT_FOUND; PARAM: null. */
int bcmx_lplist_remove(bcmx_lplist_t* list, bcmx_lport_t port);

/* Removes the first `port`, or every one when `all` is not 0. NOT_FOUND; PARAM: null. */
int bcmx_lplist_port_remove(bcmx_lplist_t* list, bcmx_lport_t port, int all);

/* Number of ports in the list; 0 for null. */
int bcmx_lplist_count(bcmx_lplist_t* list);

#ifdef __cplusplus
}
#endif
#endif
