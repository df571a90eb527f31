#include "tools/vexosh/port_reads.h"

namespace vexosh {
namespace {

using Sdk = VexoSdkBase;

/// The driver reads the number of a LAG or a VLAN from an `Mp`'s port.
Mp mp_of_number(unsigned number)
{
    return Mp(0, number);
}

unsigned next_lag(Words& words)
{
    return words.number("LAG", 0, INT32_MAX);
}

bool is_list(const std::string& vids)
{
    return vids.find_first_of(",-") != std::string::npos;
}

void add(Shell& shell, Words& words)
{
    const Mac mac = parse_mac(words.next("MAC"));
    const unsigned vid = next_vid(words);
    const bool lag = words.take("lag");
    const Mp place = lag ? mp_of_number(next_lag(words)) : parse_port(words.next("PORT or lag"));
    words.end();
    require(shell.session().driver()->add_mac_to_port(place, mac.data(), vid, lag),
            "fdb add " + text(mac));
}

void add_system(Shell& shell, Words& words)
{
    const Mac mac = parse_mac(words.next("MAC"));
    const std::string vids = words.next("VIDS");
    words.end();
    auto driver = shell.session().driver();
    const bool added =
        is_list(vids) ? driver->add_system_mac_vlan_bitmap(mac.data(), vlan_bitmap(vids).data())
                      : driver->add_system_mac(mac.data(), parse_vid(vids));
    require(added, "fdb system " + text(mac));
}

/// A VLAN bitmap of which the driver's delete looks at every bit.
Bytes deletable_vlans(const std::string& vids)
{
    constexpr std::ptrdiff_t kBytes = 512 / 8;
    Bytes bitmap = vlan_bitmap(vids);
    if (std::any_of(bitmap.begin() + kBytes, bitmap.end(), [](auto byte) { return byte != 0; })) {
        throw BadInput("bad VLANs '" + vids +
                       "': the driver deletes by list in VLANs 0 to 511; name a higher one alone");
    }
    return bitmap;
}

void remove(Shell& shell, Words& words)
{
    const Mac mac = parse_mac(words.next("MAC"));
    const std::string vids = words.empty() ? "" : words.next("VIDS");
    words.end();
    auto driver = shell.session().driver();
    const bool deleted =
        vids.empty()    ? driver->delete_mac_by_mac(mac.data())
        : is_list(vids) ? driver->delete_mac_vlan_bitmap(mac.data(), deletable_vlans(vids).data())
                        : driver->delete_mac(mac.data(), parse_vid(vids));
    require(deleted, "fdb delete " + text(mac));
}

bool next_static(Words& words)
{
    const bool with_static = words.take("static");
    words.end();
    return with_static;
}

void flush_all(Shell& shell, Words& words)
{
    const bool with_static = next_static(words);
    require(shell.session().driver()->clear_fdb_table(with_static), words.command());
}

void flush_vlan(Shell& shell, Words& words)
{
    const unsigned vid = next_vid(words);
    const bool with_static = next_static(words);
    require(shell.session().driver()->clear_mac_by_vlan(vid, with_static), words.command());
}

void flush_port(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const bool with_static = next_static(words);
    each_port(shell, words, ports, [with_static](Sdk& sdk, const Mp& port) {
        return sdk.clear_mac_by_port(port, false, with_static);
    });
}

void flush_lag(Shell& shell, Words& words)
{
    const Mp lag = mp_of_number(next_lag(words));
    const bool with_static = next_static(words);
    require(shell.session().driver()->clear_mac_by_port(lag, true, with_static), words.command());
}

void ageing(Shell& shell, Words& words)
{
    const auto seconds = static_cast<int>(words.number("SECONDS", 0, INT32_MAX));
    words.end();
    require(shell.session().driver()->set_fdb_aging_time(seconds), words.command());
}

int next_limit(Words& words)
{
    const int limit =
        words.take("none") ? -1 : static_cast<int>(words.number("COUNT", 0, INT32_MAX));
    words.end();
    return limit;
}

void limit_system(Shell& shell, Words& words)
{
    const int limit = next_limit(words);
    require(shell.session().driver()->set_port_mac_limit(Mp(), limit, kSystemLimit),
            words.command());
}

void limit_vlan(Shell& shell, Words& words)
{
    const Mp vlan = mp_of_number(next_vid(words));
    const int limit = next_limit(words);
    require(shell.session().driver()->set_port_mac_limit(vlan, limit, kVlanLimit), words.command());
}

void limit_lag(Shell& shell, Words& words)
{
    const Mp lag = mp_of_number(next_lag(words));
    const int limit = next_limit(words);
    require(shell.session().driver()->set_port_mac_limit(lag, limit, kLagLimit), words.command());
}

void limit_port(Shell& shell, Words& words)
{
    const std::list<Mp> ports = parse_ports(words.next("PORTS"));
    const int limit = next_limit(words);
    each_port(shell, words, ports, [limit](Sdk& sdk, const Mp& port) {
        return sdk.set_port_mac_limit(port, limit, kPortLimit);
    });
}

void walk(Shell& shell, Words& words)
{
    words.end();
    shell.session().walk_mac_table();
}

constexpr Command kCommands[] = {
    {"fdb add", "MAC VID PORT|lag [LAG]",
     "a static MAC entry, in place of a learned one; group addresses too", add},
    {"fdb system", "MAC VIDS", "an address of the CPU's in VLANs 1,4-6; no group address",
     add_system},
    {"fdb delete", "MAC [VIDS]", "delete an address in VLANs, or everywhere", remove},
    {"fdb flush all", "[static]", "forget what was learned; with static: everything", flush_all},
    {"fdb flush vlan", "VID [static]", "the same in a VLAN", flush_vlan},
    {"fdb flush port", "PORTS [static]", "the same at ports", flush_port},
    {"fdb flush lag", "LAG [static]", "the same at a LAG", flush_lag},
    {"fdb ageing", "SECONDS", "how long an address lives that is not heard; 0: for ever", ageing},
    {"fdb limit system", "COUNT|none", "how many addresses may be learned in all", limit_system},
    {"fdb limit vlan", "VID COUNT|none", "how many in a VLAN", limit_vlan},
    {"fdb limit port", "PORTS COUNT|none", "how many at each of some ports", limit_port},
    {"fdb limit lag", "LAG COUNT|none", "how many at a LAG", limit_lag},
    {"fdb walk", "",
     "the MAC table as the driver lists it to a subscriber: without group addresses and the CPU's",
     walk},
};

} // namespace

std::span<const Command> fdb_commands()
{
    return kCommands;
}

} // namespace vexosh
