#include "tools/vexosh/call_operation.h"

namespace vexosh {

void add_l3_operations(std::vector<Operation>& operations)
{
    const auto add = [&](Operation operation) { operations.push_back(std::move(operation)); };
    add(operation("create_l3_interface", &VexoSdkBase::create_l3_interface, "mac vid id"));
    add(operation("create_l3_interface_with_id", &VexoSdkBase::create_l3_interface_with_id,
                  "mac vid id replace"));
    add(operation("get_l3_interface", &VexoSdkBase::get_l3_interface, "id vid mac"));
    add(operation("delete_l3_interface", &VexoSdkBase::delete_l3_interface, "mac vid"));
    add(operation("delete_l3_interface_by_id", &VexoSdkBase::delete_l3_interface_by_id, "id"));
    add(operation("delete_l3_interface_all", &VexoSdkBase::delete_l3_interface_all));
    add(operation("add_l3_host_ip4", &VexoSdkBase::add_l3_host_ip4,
                  "port is_trunk ip mac interface_id"));
    add(operation("add_l3_host_ip6", &VexoSdkBase::add_l3_host_ip6,
                  "port is_trunk ip6 mac interface_id"));
    add(operation("get_l3_host_ip4", &VexoSdkBase::get_l3_host_ip4,
                  "ip port mac interface_id is_trunk"));
    add(operation("get_l3_host_ip6", &VexoSdkBase::get_l3_host_ip6,
                  "ip6 port mac interface_id is_trunk"));
    add(operation_as<unsigned, unsigned, const Mp&, bool, unsigned char(&)[6], unsigned&, Ip4Out>(
        "get_l3_route_by_subnet_ip4", &VexoSdkBase::get_l3_route_by_subnet_ip4,
        "subnet mask port is_trunk mac interface_id nexthop_ip"));
    add(operation("get_l3_route_by_subnet_ip6", &VexoSdkBase::get_l3_route_by_subnet_ip6,
                  "net6 mask6 port is_trunk interface_id mac"));
    add(operation("delete_l3_host_by_interface", &VexoSdkBase::delete_l3_host_by_interface,
                  "interface_id unmarked"));
    add(operation("delete_l3_host_by_network_ip4", &VexoSdkBase::delete_l3_host_by_network_ip4,
                  "net"));
    add(operation("delete_l3_host_by_network_ip6", &VexoSdkBase::delete_l3_host_by_network_ip6,
                  "net6"));
    add(operation("delete_l3_host_by_addr_ip4", &VexoSdkBase::delete_l3_host_by_addr_ip4,
                  "ip port is_trunk"));
    add(operation("delete_l3_host_by_addr_ip6", &VexoSdkBase::delete_l3_host_by_addr_ip6,
                  "ip6 port is_trunk"));
    add(operation("delete_l3_host_all", &VexoSdkBase::delete_l3_host_all));
    add(operation("invalidate_l3_entry", &VexoSdkBase::invalidate_l3_entry, "ip"));
    add(operation("validate_l3_entry", &VexoSdkBase::validate_l3_entry, "ip"));
    add(operation("add_l3_route_ip4", &VexoSdkBase::add_l3_route_ip4,
                  "port is_trunk subnet mask mac interface_id nexthop_ip"));
    add(operation("add_l3_route_ip6", &VexoSdkBase::add_l3_route_ip6,
                  "port is_trunk net6 mask6 mac interface_id"));
    add(operation("delete_l3_route_by_interface", &VexoSdkBase::delete_l3_route_by_interface,
                  "interface_id unmarked"));
    add(operation("delete_l3_route_by_subnet_ip4", &VexoSdkBase::delete_l3_route_by_subnet_ip4,
                  "subnet mask port is_trunk"));
    add(operation("delete_l3_route_by_subnet_ip6", &VexoSdkBase::delete_l3_route_by_subnet_ip6,
                  "net6 mask6 port is_trunk"));
    add(operation("delete_l3_route_all", &VexoSdkBase::delete_l3_route_all));
    add(operation("set_trace", &VexoSdkBase::set_trace, "keyword on"));
}

} // namespace vexosh
