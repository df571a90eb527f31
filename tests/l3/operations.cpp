#include "tests/l3/operations.h"

namespace {

using Sdk = VexoBcmSdk;
using Out = L3Outputs;

constexpr int none = 0;
const char* const intf_init = "bcmx_l3_intf_t_init";
const char* const host_init = "bcmx_l3_host_t_init";
const char* const route_init = "bcmx_l3_route_t_init";
const char* const no_init = "";

const std::string hop = "nexthop_mac=02:00:00:00:00:09";
const std::string no_hop = "nexthop_mac=00:00:00:00:00:00";
const std::string no_ip = "nexthop_ip=0.0.0.0";

std::vector<L3Operation> interface_operations()
{
    const std::string of_id = "id=5, mac=00:00:00:00:00:00, vid=0})\n";
    const std::string of_mac = "{flags=0, id=0, mac=02:00:00:00:00:01, vid=10})\n";
    return {
        {"create_l3_interface",
         intf_init,
         {{"bcmx_l3_intf_create({flags=0x20, id=0, mac=02:00:00:00:00:01, vid=10})\n", -8}},
         [](Sdk& sdk, Out& out) { return sdk.create_l3_interface(router.data(), 10, out.number); }},
        {"create_l3_interface, of the VLAN's low 16 bits",
         intf_init,
         {{"bcmx_l3_intf_create({flags=0x20, id=0, mac=02:00:00:00:00:01, vid=10})\n", -8}},
         [](Sdk& sdk, Out& out) {
             return sdk.create_l3_interface(router.data(), 0x1000a, out.number);
         }},
        {"create_l3_interface_with_id",
         intf_init,
         {{"bcmx_l3_intf_create({flags=0x60, id=5, mac=02:00:00:00:00:01, vid=10})\n", -8}},
         [](Sdk& sdk, Out&) {
             return sdk.create_l3_interface_with_id(router.data(), 0x1000a, 5, false);
         }},
        {"create_l3_interface_with_id, replacing",
         intf_init,
         {{"bcmx_l3_intf_create({flags=0x160, id=5, mac=02:00:00:00:00:01, vid=10})\n", -8}},
         [](Sdk& sdk, Out&) {
             return sdk.create_l3_interface_with_id(router.data(), 10, 5, true);
         }},
        {"get_l3_interface",
         intf_init,
         {{"bcmx_l3_intf_get({flags=0, " + of_id, none}},
         [](Sdk& sdk, Out& out) { return sdk.get_l3_interface(5, out.number, out.mac.data()); },
         0,
         true},
        {"delete_l3_interface",
         no_init,
         {{"bcmx_l3_intf_find(" + of_mac, none}, {"bcmx_l3_intf_delete(" + of_mac, none}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_interface(router.data(), 0x1000a); }},
        {"delete_l3_interface_by_id",
         no_init,
         {{"bcmx_l3_intf_delete({flags=0, " + of_id, -7}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_interface_by_id(5); }},
        {"delete_l3_interface_all",
         no_init,
         {{"bcmx_l3_intf_delete_all()\n", none}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_interface_all(); }},
    };
}

std::vector<L3Operation> egress_host_operations(const L3Egress& egress)
{
    const auto [port, trunk, flags4, flags6, text] = egress;
    const std::string ip = "({flags=" + flags4 + ", ip=10.0.0.7, ";
    const std::string ip6 = "({flags=" + flags6 + ", ip=20010db8000000000000000000000007, ";
    const std::string full = "intf=5, " + hop + ", " + text + "})\n";
    const std::string empty = "intf=0, " + no_hop + ", " + text + "})\n";
    constexpr unsigned host = ip4(10, 0, 0, 7);
    return {
        {"add_l3_host_ip4",
         host_init,
         {{"bcmx_l3_host_add" + ip + full, -8}},
         [port = port, trunk = trunk](Sdk& sdk, Out&) {
             return sdk.add_l3_host_ip4(port, trunk, host, next_hop.data(), 5);
         }},
        {"add_l3_host_ip6",
         host_init,
         {{"bcmx_l3_host_add" + ip6 + full, -8}},
         [port = port, trunk = trunk](Sdk& sdk, Out&) {
             return sdk.add_l3_host_ip6(port, trunk, host6.data(), next_hop.data(), 5);
         },
         1},
        {"get_l3_host_ip4",
         host_init,
         {{"bcmx_l3_host_find" + ip + empty, none}},
         [port = port, trunk = trunk](Sdk& sdk, Out& out) {
             return sdk.get_l3_host_ip4(host, port, out.mac.data(), out.number, trunk);
         }},
        {"get_l3_host_ip6",
         host_init,
         {{"bcmx_l3_host_find" + ip6 + empty, none}},
         [port = port, trunk = trunk](Sdk& sdk, Out& out) {
             return sdk.get_l3_host_ip6(host6.data(), port, out.mac.data(), out.number, trunk);
         }},
        {"delete_l3_host_by_addr_ip4",
         host_init,
         {{"bcmx_l3_host_delete" + ip + empty, none}},
         [port = port, trunk = trunk](Sdk& sdk, Out&) {
             return sdk.delete_l3_host_by_addr_ip4(host, port, trunk);
         }},
        {"delete_l3_host_by_addr_ip6",
         host_init,
         {{"bcmx_l3_host_delete" + ip6 + empty, none}},
         [port = port, trunk = trunk](Sdk& sdk, Out&) {
             return sdk.delete_l3_host_by_addr_ip6(host6.data(), port, trunk);
         }},
    };
}

std::vector<L3Operation> other_host_operations()
{
    const std::string rest = "intf=0, " + no_hop + ", " + no_ip + ", port=lport:0})\n";
    const std::string of_intf = "ip=0.0.0.0, intf=5, " + no_hop + ", port=lport:0})\n";
    return {
        {"delete_l3_host_by_network_ip4",
         route_init,
         {{"bcmx_l3_host_delete_by_network({flags=0, net=10.0.0.0, mask=0.0.0.0, " + rest, -8}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_host_by_network_ip4(ip4(10, 0, 0, 0)); }},
        {"delete_l3_host_by_network_ip6",
         route_init,
         {{"bcmx_l3_host_delete_by_network({flags=0x20000, net=20010db8000000000000000000000000, "
           "mask=00000000000000000000000000000000, " +
               rest,
           -8}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_host_by_network_ip6(net6.data()); }},
        {"delete_l3_host_by_interface",
         host_init,
         {{"bcmx_l3_host_delete_by_interface({flags=0, " + of_intf, -7}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_host_by_interface(5, true); }},
        {"delete_l3_host_by_interface, marked",
         host_init,
         {{"bcmx_l3_host_delete_by_interface({flags=0x80, " + of_intf, -7}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_host_by_interface(5, false); }},
        {"delete_l3_host_all",
         no_init,
         {{"bcmx_l3_host_delete_all()\n", none}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_host_all(); }},
        {"validate_l3_entry",
         no_init,
         {{"bcmx_l3_validate_entry(10.0.0.7)\n", -7}},
         [](Sdk& sdk, Out&) { return sdk.validate_l3_entry(ip4(10, 0, 0, 7)); }},
        {"invalidate_l3_entry",
         no_init,
         {{"bcmx_l3_invalidate_entry(10.0.0.7)\n", -7}},
         [](Sdk& sdk, Out&) { return sdk.invalidate_l3_entry(ip4(10, 0, 0, 7)); }},
    };
}

std::vector<L3Operation> egress_route_operations(const L3Egress& egress)
{
    const auto [port, trunk, flags4, flags6, text] = egress;
    const std::string ip = "({flags=" + flags4 + ", net=10.0.0.0, mask=255.0.0.0, ";
    const std::string ip6 = "({flags=" + flags6 +
                            ", net=20010db8000000000000000000000000, "
                            "mask=ffffffff000000000000000000000000, ";
    const std::string empty = "intf=0, " + no_hop + ", " + no_ip + ", " + text + "})\n";
    constexpr unsigned net = ip4(10, 0, 0, 0);
    constexpr unsigned mask = ip4(255, 0, 0, 0);
    return {
        {"add_l3_route_ip4",
         route_init,
         {{"bcmx_l3_route_add" + ip + "intf=5, " + hop + ", nexthop_ip=10.9.9.9, " + text + "})\n",
           -8}},
         [port = port, trunk = trunk](Sdk& sdk, Out&) {
             return sdk.add_l3_route_ip4(port, trunk, net, mask, next_hop.data(), 5,
                                         ip4(10, 9, 9, 9));
         }},
        {"add_l3_route_ip6",
         route_init,
         {{"bcmx_l3_route_add" + ip6 + "intf=5, " + hop + ", " + no_ip + ", " + text + "})\n", -8}},
         [port = port, trunk = trunk](Sdk& sdk, Out&) {
             return sdk.add_l3_route_ip6(port, trunk, net6.data(), mask6.data(), next_hop.data(),
                                         5);
         }},
        {"get_l3_route_by_subnet_ip4",
         route_init,
         {{"bcmx_l3_route_get" + ip + empty, none}},
         [port = port, trunk = trunk](Sdk& sdk, Out& out) {
             unsigned char mac[6] = {0x5a, 0x5a, 0x5a, 0x5a, 0x5a, 0x5a};
             const bool done = sdk.get_l3_route_by_subnet_ip4(net, mask, port, trunk, mac,
                                                              out.number, out.next_hop);
             std::copy_n(mac, 6, out.mac.begin());
             return done;
         }},
        {"get_l3_route_by_subnet_ip6",
         route_init,
         {{"bcmx_l3_route_get" + ip6 + empty, none}},
         [port = port, trunk = trunk](Sdk& sdk, Out& out) {
             return sdk.get_l3_route_by_subnet_ip6(net6.data(), mask6.data(), port, trunk,
                                                   out.number, out.mac.data());
         }},
        {"delete_l3_route_by_subnet_ip4",
         route_init,
         {{"bcmx_l3_route_get" + ip + empty, -7}, {"bcmx_l3_route_delete" + ip + empty, -7}},
         [port = port, trunk = trunk](Sdk& sdk, Out&) {
             return sdk.delete_l3_route_by_subnet_ip4(net, mask, port, trunk);
         }},
        {"delete_l3_route_by_subnet_ip6",
         route_init,
         {{"bcmx_l3_route_get" + ip6 + empty, -7}, {"bcmx_l3_route_delete" + ip6 + empty, -7}},
         [port = port, trunk = trunk](Sdk& sdk, Out&) {
             return sdk.delete_l3_route_by_subnet_ip6(net6.data(), mask6.data(), port, trunk);
         }},
    };
}

std::vector<L3Operation> other_route_operations()
{
    const std::string of_intf =
        "net=0.0.0.0, mask=0.0.0.0, intf=5, " + no_hop + ", " + no_ip + ", port=lport:0})\n";
    return {
        {"delete_l3_route_by_interface",
         route_init,
         {{"bcmx_l3_route_get({flags=0, " + of_intf, -7},
          {"bcmx_l3_route_delete_by_interface({flags=0, " + of_intf, -7}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_route_by_interface(5, true); }},
        {"delete_l3_route_by_interface, marked",
         route_init,
         {{"bcmx_l3_route_get({flags=0x80, " + of_intf, -7},
          {"bcmx_l3_route_delete_by_interface({flags=0x80, " + of_intf, -7}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_route_by_interface(5, false); }},
        {"delete_l3_route_all",
         no_init,
         {{"bcmx_l3_route_delete_all()\n", none}},
         [](Sdk& sdk, Out&) { return sdk.delete_l3_route_all(); }},
    };
}

} // namespace

std::vector<L3Operation> l3_operations(const L3Egress& egress)
{
    std::vector<L3Operation> all;
    const auto append = [&all](std::vector<L3Operation> some, bool has_egress) {
        for (L3Operation& operation : some) {
            operation.has_egress = has_egress;
            all.push_back(std::move(operation));
        }
    };
    append(interface_operations(), false);
    append(egress_host_operations(egress), true);
    append(other_host_operations(), false);
    append(egress_route_operations(egress), true);
    append(other_route_operations(), false);
    return all;
}
