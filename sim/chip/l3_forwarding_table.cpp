#include "sim/chip/l3_forwarding_table.h"

#include <bcm/error.h>

namespace vexosim {

int L3HostTable::erase_if(const std::function<bool(const IpAddress&, const L3Host&)>& which)
{
    for (const IpAddress& address : keys_if(which))
        erase(address);
    return BCM_E_NONE;
}

int L3HostTable::set_usable(const IpAddress& address, bool usable)
{
    L3Host* host = find(address);
    if (host == nullptr)
        return BCM_E_NOT_FOUND;
    host->usable = usable;
    return BCM_E_NONE;
}

int L3RouteTable::add(const IpPrefix& prefix, const L3Route& route, bool replace)
{
    const bool present = table_.number_of(prefix) != 0;
    const int rc = table_.add(prefix, route, replace);
    if (rc == BCM_E_NONE && !present)
        tries_[prefix.net.ip6].add(IpBits(prefix.net), prefix.length, table_.number_of(prefix));
    return rc;
}

int L3RouteTable::erase(const IpPrefix& prefix)
{
    const Number gone = table_.number_of(prefix);
    if (gone == 0)
        return BCM_E_NOT_FOUND;
    Number next = 0;
    for (int length = prefix.length - 1; next == 0 && length > LpmTrie::home_depth(prefix.length);
         --length)
        next = table_.number_of({prefix.net.masked(length), length});
    tries_[prefix.net.ip6].erase(gone, next);
    return table_.erase(prefix);
}

int L3RouteTable::erase_if(const std::function<bool(const IpPrefix&, const L3Route&)>& which)
{
    for (const IpPrefix& prefix : table_.keys_if(which))
        erase(prefix);
    return BCM_E_NONE;
}

} // namespace vexosim
