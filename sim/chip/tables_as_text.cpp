#include "sim/chip/tables_as_text.h"

#include <algorithm>

#include "sim/chip/text.h"

namespace vexosim {

namespace {

using Row = std::vector<std::string>;

std::string number(std::uint64_t value)
{
    return std::to_string(value);
}

const char* discard_name(DiscardMode mode)
{
    static constexpr std::array<const char*, 4> kNames = {"none", "all", "untagged", "tagged"};
    return kNames[static_cast<std::size_t>(mode)];
}

std::string learn_name(std::uint8_t flags)
{
    static constexpr std::array<const char*, 8> kNames = {
        "off", "learn", "cpu", "learn+cpu", "forward", "on", "forward+cpu", "on+cpu"};
    return kNames[flags & 7u];
}

std::string entry_kind(const MacEntry& entry)
{
    return entry.is_static() ? "static" : "learned";
}

std::string entry_place(const MacEntry& entry, const PortNames& names)
{
    return entry.on_trunk() ? "lag " + std::to_string(entry.trunk) : names.name(entry.port);
}

} // namespace

TextTable ports_table(const Chip& chip, const PortNames& names)
{
    TextTable table{
        {"port", "admin", "link", "speed", "auto", "pvid", "mtu", "learn", "discard", "stp"}, {}};
    for (int port : names.in_order()) {
        const PortConfig& c = chip.ports[port];
        table.rows.push_back(
            {names.name(port), c.enable ? "up" : "down",
             chip.ports.link().test(port) ? "up" : "down",
             number(static_cast<std::uint64_t>(c.speed)) + (c.duplex_full ? "/full" : "/half"),
             c.autoneg ? "on" : "off", std::to_string(c.pvid), std::to_string(c.frame_max),
             learn_name(c.learn), discard_name(c.discard),
             stp_state_name(chip.stgs.state(StgTable::kDefaultGroup, port))});
    }
    return table;
}

TextTable vlans_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"vlan", "tagged", "untagged"}, {}};
    for (int vid = 1; vid < kVlanIds; ++vid) {
        const Vlan& vlan = chip.vlans[vid];
        if (vlan.exists)
            table.rows.push_back({std::to_string(vid), names.names(vlan.members - vlan.untagged),
                                  names.names(vlan.untagged)});
    }
    return table;
}

TextTable fdb_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"vlan", "mac", "port", "kind"}, {}};
    for (const MacEntry& entry : chip.macs.snapshot())
        table.rows.push_back({std::to_string(entry.vid()), mac_text(entry.mac()),
                              entry_place(entry, names), entry_kind(entry)});
    return table;
}

TextTable counters_table(const Chip& chip, const PortNames& names)
{
    TextTable table{{"port", "in_frames", "in_octets", "in_drop", "in_err", "out_frames",
                     "out_octets", "out_drop"},
                    {}};
    for (int port : names.in_order()) {
        const PortCounters& c = chip.counters[port];
        Row values = {number(c.in.frames()),  number(c.in.octets),
                      number(c.in_discards),  number(c.in_undersize + c.in_oversize),
                      number(c.out.frames()), number(c.out.octets),
                      number(c.out_discards)};
        if (std::ranges::all_of(values, [](const std::string& v) { return v == "0"; }))
            continue;
        values.insert(values.begin(), names.name(port));
        table.rows.push_back(values);
    }
    return table;
}

TextTable port_counters_table(const Chip& chip, int chip_port, bool all)
{
    TextTable table{{"counter", "value"}, {}};
    for (int counter = 0; is_chip_port(chip_port) && counter < kStatCount; ++counter) {
        std::uint64_t value = chip.counters[chip_port].stat(counter);
        if (all || value != 0)
            table.rows.push_back({stat_name(counter), number(value)});
    }
    for (std::size_t queue = 0; is_chip_port(chip_port) && queue < 8; ++queue) {
        std::uint64_t value = chip.counters[chip_port].out_queue[queue];
        if (value != 0)
            table.rows.push_back({"egress queue " + std::to_string(queue), number(value)});
    }
    return table;
}

TextTable drops_table(const Chip& chip)
{
    const DropCounters& d = chip.drops;
    TextTable table{{"what", "frames", "copies", "mirror", "why"}, {}};
    table.rows.push_back(
        {"in", number(d.frames_in), number(d.copies_meant), number(d.mirrors_meant), ""});
    table.rows.push_back({"delivered", number(d.frames_delivered),
                          number(d.copies_sent + d.copies_to_cpu), number(d.mirrors_sent), ""});
    for (std::size_t i = 1; i < kDropReasons; ++i) {
        auto reason = static_cast<DropReason>(i);
        if (d.frames[i] != 0 || d.copies[i] != 0 || d.mirrors[i] != 0)
            table.rows.push_back({drop_name(reason), number(d.frames[i]), number(d.copies[i]),
                                  number(d.mirrors[i]), drop_text(reason)});
    }
    return table;
}

} // namespace vexosim
