// Trap filters for IP protocols and L4 destination ports. One surprise: a filter that was deleted
// is remembered, so adding it again does nothing until all are deleted.
#include "flow/trap_filter.h"

#include <bcmx/field.h>

#include "core/bcm_sdk.h"
#include "core/result.h"

using namespace vexolc;

using Filters = std::map<uint32_t, int32_t>;

Filters ip_proto_fps;
Filters l4_dport_fps;

namespace {

/// Makes a filter for IP frames that `qualify` narrows down. What was made before a failure stays.
template <class Qualify>
bool add_filter(Filters& filters, unsigned key, Qualify qualify)
{
    int entry = -1;
    if (filters.count(key) != 0)
        return true;
    if (!ok(bcmx_field_entry_create(filter_group_no_udf, &entry)) ||
        !ok(bcmx_field_qualify_IpType(entry, BCM_FIELD_IP_TYPE_IP_PROTOCOL)) ||
        !ok(qualify(entry)) || !trap_to_cpu(entry))
        return false;
    filters[key] = entry;
    return true;
}

bool destroy(int entry)
{
    return ok(bcmx_field_entry_destroy(entry), BCM_E_NOT_FOUND);
}

bool delete_filter(const Filters& filters, unsigned key)
{
    const auto filter = filters.find(key);
    return filter == filters.end() || destroy(filter->second); // deliberately remembered
}

bool delete_filters(Filters& filters)
{
    for (const auto& [key, entry] : filters) {
        if (!destroy(entry))
            return false;
    }
    filters.clear();
    return true;
}

} // namespace

bool VexoBcmSdk::add_ip_protocol_filter(unsigned protocol)
{
    return add_filter(ip_proto_fps, protocol, [protocol](int entry) {
        return bcmx_field_qualify_IpProtocol(entry, static_cast<uint8_t>(protocol), 0xff);
    });
}

bool VexoBcmSdk::delete_ip_protocol_filter(unsigned protocol)
{
    return delete_filter(ip_proto_fps, protocol);
}

bool VexoBcmSdk::delete_ip_protocol_filter_all()
{
    return delete_filters(ip_proto_fps);
}

bool VexoBcmSdk::add_l4_destination_port_filter(unsigned port)
{
    return add_filter(l4_dport_fps, port, [port](int entry) {
        return bcmx_field_qualify_L4DstPort(entry, static_cast<bcm_l4_port_t>(port), 0xffff);
    });
}

bool VexoBcmSdk::delete_l4_destination_port_filter(unsigned port)
{
    return delete_filter(l4_dport_fps, port);
}

bool VexoBcmSdk::delete_l4_destination_port_filter_all()
{
    return delete_filters(l4_dport_fps);
}
