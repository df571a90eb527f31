// Port lists. They live in the caller's memory and in storage from the heap, never in the chip.
#include <bcmx/lplist.h>

#include <algorithm>
#include <cstdlib>

#include "sim/sdk/gate.h"

namespace {

using namespace vexosim;

int reserve(bcmx_lplist_t& list, int ports)
{
    if (ports <= list.lp_alloc)
        return BCM_E_NONE;
    const std::size_t bytes = static_cast<std::size_t>(ports) * sizeof(bcmx_lport_t);
    void* const storage = std::realloc(list.lp_ports, bytes);
    if (storage == nullptr)
        return BCM_E_MEMORY;
    if (list.lp_ports == nullptr)
        ++card().lplists;
    list.lp_ports = static_cast<bcmx_lport_t*>(storage);
    list.lp_alloc = ports;
    return BCM_E_NONE;
}

int init(bcmx_lplist_t* list, int ports)
{
    if (list == nullptr || ports < 0)
        return BCM_E_PARAM;
    bcmx_lplist_t fresh{nullptr, -1, 0};
    const int rc = reserve(fresh, ports);
    if (rc == BCM_E_NONE)
        *list = fresh;
    return rc;
}

int free_storage(bcmx_lplist_t* list)
{
    if (list == nullptr)
        return BCM_E_PARAM;
    if (list->lp_ports != nullptr)
        --card().lplists;
    std::free(list->lp_ports);
    *list = {nullptr, -1, 0};
    return BCM_E_NONE;
}

int add(bcmx_lplist_t* list, bcmx_lport_t port)
{
    if (list == nullptr)
        return BCM_E_PARAM;
    const int count = list->lp_last + 1;
    const int rc = count < list->lp_alloc ? 0 : reserve(*list, std::max(8, 2 * list->lp_alloc));
    if (rc == BCM_E_NONE)
        list->lp_ports[++list->lp_last] = port;
    return rc;
}

int remove(bcmx_lplist_t* list, bcmx_lport_t port, bool all)
{
    if (list == nullptr)
        return BCM_E_PARAM;
    bcmx_lport_t* const end = list->lp_ports + list->lp_last + 1;
    bcmx_lport_t* const first = std::find(list->lp_ports, end, port);
    if (first == end)
        return BCM_E_NOT_FOUND;
    if (all)
        list->lp_last = static_cast<int>(std::remove(first, end, port) - list->lp_ports) - 1;
    else
        list->lp_last = static_cast<int>(std::copy(first + 1, end, first) - list->lp_ports) - 1;
    return BCM_E_NONE;
}

} // namespace

extern "C" int bcmx_lplist_init(bcmx_lplist_t* list, int port_alloc, uint32_t flags)
{
    return local_call("bcmx_lplist_init", args(Out{list}, port_alloc, Flags{flags}),
                      [&] { return init(list, port_alloc); });
}

extern "C" void bcmx_lplist_t_init(bcmx_lplist_t* list)
{
    sure_call("bcmx_lplist_t_init", CallClass::local, args(Out{list}), [&] {
        if (list != nullptr)
            *list = {nullptr, -1, 0};
    });
}

extern "C" int bcmx_lplist_free(bcmx_lplist_t* list)
{
    return local_call("bcmx_lplist_free", args(Ports{list}), [&] { return free_storage(list); });
}

extern "C" int bcmx_lplist_add(bcmx_lplist_t* list, bcmx_lport_t port)
{
    return local_call("bcmx_lplist_add", args(Ports{list}, Lport{port}),
                      [&] { return add(list, port); });
}

extern "C" int bcmx_lplist_remove(bcmx_lplist_t* list, bcmx_lport_t port)
{
    return local_call("bcmx_lplist_remove", args(Ports{list}, Lport{port}),
                      [&] { return remove(list, port, false); });
}

extern "C" int bcmx_lplist_port_remove(bcmx_lplist_t* list, bcmx_lport_t port, int all)
{
    return local_call("bcmx_lplist_port_remove", args(Ports{list}, Lport{port}, all),
                      [&] { return remove(list, port, all != 0); });
}

extern "C" int bcmx_lplist_count(bcmx_lplist_t* list)
{
    return sure_call("bcmx_lplist_count", CallClass::local, args(Ports{list}),
                     [&] { return list == nullptr ? 0 : list->lp_last + 1; });
}
