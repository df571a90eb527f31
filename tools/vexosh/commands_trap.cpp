// Filters that hand control traffic to the CPU.
#include "flow/trap_filter.h"
#include "flow/udf_pool.h"
#include "tools/vexosh/field_reads.h"
#include "tools/vexosh/flow_words.h"
#include "tools/vexosh/verbs.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;
using Filters = std::map<std::uint32_t, std::int32_t>;

MaskedIp next_target(Words& words)
{
    return parse_masked_ip(words.next("ADDRESS"));
}

unsigned next_protocol(Words& words)
{
    return parse_ip_protocol(words.next("PROTOCOL"));
}

unsigned next_l4_port(Words& words)
{
    return words.number("L4PORT", 0, UINT16_MAX);
}

/// A flow may have the place in the chip that the first ARP trap needs.
void check_place()
{
    if (arp_group_one_vlan == -1 && vexo_udf_usage[1] != 0) {
        throw BadInput("trap add arp: a flow with udf has its place in the chip; add the first ARP "
                       "trap before any such flow");
    }
}

void add_arp(Shell& shell, Words& words)
{
    const MaskedIp target = next_target(words);
    words.end();
    check_place();
    require(shell.session().driver()->add_arp_filter(target.address, target.mask),
            words.command() + " " + text(target));
}

/// The driver would delete another entry for a filter that it does not know.
void delete_arp(Shell& shell, Words& words)
{
    auto driver = shell.session().driver();
    if (words.take("all")) {
        words.end();
        require(driver->delete_arp_filter_all(), words.command() + " all");
        return;
    }
    const MaskedIp target = next_target(words);
    words.end();
    if (!arp_fps.contains(target.address & target.mask)) {
        throw BadInput("there is no ARP trap for " + text(target));
    }
    require(driver->delete_arp_filter(target.address, target.mask), words.command());
}

/// Adds a filter. The driver remembers those that were deleted, and makes no second one.
template <auto Add, auto Next>
void add(Shell& shell, Words& words, const Filters& filters, const std::string& all)
{
    const unsigned key = Next(words);
    words.end();
    auto driver = shell.session().driver();
    const auto known = filters.find(key);
    if (known != filters.end() && !FieldEntries().contains(known->second)) {
        throw BadInput(words.command() + " " + std::to_string(key) +
                       ": the driver still remembers the trap that was deleted; `" + all +
                       "` makes it forget");
    }
    require(((*driver).*Add)(key), words.command() + " " + std::to_string(key));
}

template <auto Delete, auto DeleteAll, auto Next>
void remove(Shell& shell, Words& words, const Filters& filters)
{
    auto driver = shell.session().driver();
    if (words.take("all")) {
        words.end();
        require(((*driver).*DeleteAll)(), words.command() + " all");
        return;
    }
    const unsigned key = Next(words);
    words.end();
    const auto known = filters.find(key);
    if (known == filters.end() || !FieldEntries().contains(known->second)) {
        throw BadInput(words.command() + " " + std::to_string(key) + ": there is no such trap");
    }
    require(((*driver).*Delete)(key), words.command() + " " + std::to_string(key));
}

void add_protocol(Shell& shell, Words& words)
{
    add<&Sdk::add_ip_protocol_filter, next_protocol>(shell, words, ip_proto_fps,
                                                     "trap delete protocol all");
}

void add_l4_port(Shell& shell, Words& words)
{
    add<&Sdk::add_l4_destination_port_filter, next_l4_port>(shell, words, l4_dport_fps,
                                                            "trap delete l4-port all");
}

void delete_protocol(Shell& shell, Words& words)
{
    remove<&Sdk::delete_ip_protocol_filter, &Sdk::delete_ip_protocol_filter_all, next_protocol>(
        shell, words, ip_proto_fps);
}

void delete_l4_port(Shell& shell, Words& words)
{
    remove<&Sdk::delete_l4_destination_port_filter, &Sdk::delete_l4_destination_port_filter_all,
           next_l4_port>(shell, words, l4_dport_fps);
}

constexpr Command kCommands[] = {
    {"trap add arp", "ADDRESS[/BITS]",
     "ARP for target addresses goes to the CPU and nowhere else, untagged or with one tag",
     add_arp},
    {"trap add protocol", "PROTOCOL",
     "so do IP packets of a protocol: a number, or icmp, igmp, tcp, udp, gre, esp, icmp6, ospf",
     add_protocol},
    {"trap add l4-port", "L4PORT", "and IP packets to a TCP or UDP port", add_l4_port},
    {"trap delete arp", "ADDRESS[/BITS]|all", "delete one ARP trap, or all", delete_arp},
    {"trap delete protocol", "PROTOCOL|all",
     "delete traps; the driver remembers one deleted alone, and adds it anew only after all went",
     delete_protocol},
    {"trap delete l4-port", "L4PORT|all", "the same for ports", delete_l4_port},
};

} // namespace

std::span<const Command> trap_commands()
{
    return kCommands;
}

} // namespace vexosh
