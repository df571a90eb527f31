// Port lists live in the caller's memory and in storage from the heap, never in the chip.
#include "sim/sdk/port_lists.h"

#include <algorithm>
#include <cstdlib>

#include "sim/card/card.h"

namespace vexosim {

namespace {

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

} // namespace

bcmx_lplist_t empty_list()
{
    bcmx_lplist_t list = {};
    list.lp_last = -1;
    return list;
}

int make_list(bcmx_lplist_t* list, int room)
{
    if (list == nullptr || room < 0)
        return BCM_E_PARAM;
    bcmx_lplist_t fresh = empty_list();
    const int rc = reserve(fresh, room);
    if (rc == BCM_E_NONE)
        *list = fresh;
    return rc;
}

int free_list(bcmx_lplist_t* list)
{
    if (list == nullptr)
        return BCM_E_PARAM;
    if (list->lp_ports != nullptr)
        --card().lplists;
    std::free(list->lp_ports);
    *list = empty_list();
    return BCM_E_NONE;
}

int add_to_list(bcmx_lplist_t* list, bcmx_lport_t lport)
{
    if (list == nullptr)
        return BCM_E_PARAM;
    const int count = list->lp_last + 1;
    const int rc = count < list->lp_alloc ? 0 : reserve(*list, std::max(8, 2 * list->lp_alloc));
    if (rc == BCM_E_NONE)
        list->lp_ports[++list->lp_last] = lport;
    return rc;
}

int remove_from_list(bcmx_lplist_t* list, bcmx_lport_t lport, bool all)
{
    if (list == nullptr)
        return BCM_E_PARAM;
    bcmx_lport_t* const end = list->lp_ports + list->lp_last + 1;
    bcmx_lport_t* const first = std::find(list->lp_ports, end, lport);
    if (first == end)
        return BCM_E_NOT_FOUND;
    bcmx_lport_t* const last =
        all ? std::remove(first, end, lport) : std::copy(first + 1, end, first);
    list->lp_last = static_cast<int>(last - list->lp_ports) - 1;
    return BCM_E_NONE;
}

std::optional<std::vector<int>> chip_ports(const bcmx_lplist_t& list)
{
    std::vector<int> ports;
    for (int i = 0; i <= list.lp_last; ++i) {
        ports.push_back(card().ports.chip_port(list.lp_ports[i]));
        if (ports.back() < 0)
            return std::nullopt;
    }
    return ports;
}

std::optional<PortSet> port_set(const bcmx_lplist_t& list)
{
    const auto ports = chip_ports(list);
    if (!ports)
        return std::nullopt;
    PortSet set;
    for (int port : *ports)
        set.set(port);
    return set;
}

int make_list_of(bcmx_lplist_t* list, const std::vector<int>& ports)
{
    bcmx_lplist_t fresh = empty_list();
    int rc = list == nullptr ? BCM_E_PARAM : make_list(&fresh, static_cast<int>(ports.size()));
    for (auto port = ports.begin(); rc == BCM_E_NONE && port != ports.end(); ++port)
        rc = add_to_list(&fresh, card().ports.lport(*port));
    if (rc == BCM_E_NONE)
        *list = fresh;
    else
        free_list(&fresh);
    return rc;
}

int make_list_of(bcmx_lplist_t* list, PortSet ports)
{
    std::vector<int> rising;
    for (int port : ports)
        rising.push_back(port);
    return make_list_of(list, rising);
}

} // namespace vexosim
