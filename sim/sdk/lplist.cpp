// Port lists, as entry points.
#include <bcmx/lplist.h>

#include "sim/sdk/gate.h"
#include "sim/sdk/port_lists.h"

using namespace vexosim;

extern "C" int bcmx_lplist_init(bcmx_lplist_t* list, int port_alloc, uint32_t flags)
{
    return local_call("bcmx_lplist_init", args(Out{list}, port_alloc, Flags{flags}),
                      [&] { return make_list(list, port_alloc); });
}

extern "C" void bcmx_lplist_t_init(bcmx_lplist_t* list)
{
    sure_call("bcmx_lplist_t_init", CallClass::local, args(Out{list}), [&] {
        if (list != nullptr)
            *list = empty_list();
    });
}

extern "C" int bcmx_lplist_free(bcmx_lplist_t* list)
{
    return local_call("bcmx_lplist_free", args(Ports{list}), [&] { return free_list(list); });
}

extern "C" int bcmx_lplist_add(bcmx_lplist_t* list, bcmx_lport_t port)
{
    return local_call("bcmx_lplist_add", args(Ports{list}, Lport{port}),
                      [&] { return add_to_list(list, port); });
}

extern "C" int bcmx_lplist_remove(bcmx_lplist_t* list, bcmx_lport_t port)
{
    return local_call("bcmx_lplist_remove", args(Ports{list}, Lport{port}),
                      [&] { return remove_from_list(list, port, false); });
}

extern "C" int bcmx_lplist_port_remove(bcmx_lplist_t* list, bcmx_lport_t port, int all)
{
    return local_call("bcmx_lplist_port_remove", args(Ports{list}, Lport{port}, all),
                      [&] { return remove_from_list(list, port, all != 0); });
}

extern "C" int bcmx_lplist_count(bcmx_lplist_t* list)
{
    return sure_call("bcmx_lplist_count", CallClass::local, args(Ports{list}),
                     [&] { return list == nullptr ? 0 : list->lp_last + 1; });
}
