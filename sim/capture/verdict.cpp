#include "sim/capture/verdict.h"

#include "sim/pipeline/trace.h"

namespace vexosim {

namespace {

std::string in_vlan(int vid)
{
    return vid == 0 ? std::string{} : " in VLAN " + std::to_string(vid);
}

std::string ports_text(const PortNames& names, PortSet ports)
{
    return (ports.count() == 1 ? "port " : "ports ") + names.names(ports);
}

} // namespace

Verdicts::Verdicts(const PortNames& names) : names_(names), known_(kSlots) {}

std::string_view Verdicts::of_received(const Packet& p)
{
    Case what{Case::Kind::kReceived, p.drop};
    what.to_cpu = p.cpu != 0 && !p.cpu_full;
    what.cpu_reason = what.to_cpu ? p.cpu_reason : 0;
    what.vid = p.vid;
    what.out = p.out.bits();
    return options_of(what);
}

std::string_view Verdicts::of_sent(const Packet& p)
{
    Case what{Case::Kind::kSent};
    what.in_port = static_cast<std::uint8_t>(p.in_port);
    what.vid = p.vid;
    return options_of(what);
}

std::string_view Verdicts::of_lost(const Packet& p, DropReason why)
{
    Case what{Case::Kind::kLost, why};
    what.in_port = static_cast<std::uint8_t>(p.in_port);
    what.vid = p.vid;
    return options_of(what);
}

std::size_t Verdicts::Case::slot() const
{
    std::uint64_t hash = out + (static_cast<std::uint64_t>(vid) << 20) +
                         (static_cast<std::uint64_t>(in_port) << 40) +
                         (static_cast<std::uint64_t>(drop) << 48) +
                         (static_cast<std::uint64_t>(kind) << 56) +
                         static_cast<std::uint64_t>(cpu_reason) + (to_cpu ? 1U << 12 : 0U);
    hash *= 0x9e3779b97f4a7c15;
    return static_cast<std::size_t>(hash >> 40) % kSlots;
}

std::string_view Verdicts::options_of(const Case& what)
{
    Known& known = known_[what.slot()];
    if (known.what != what) [[unlikely]]
        known = {what, make(what)};
    return known.options;
}

std::string Verdicts::make(const Case& what) const
{
    const std::string vlan = in_vlan(what.vid);
    if (what.kind == Case::Kind::kSent)
        return pcapng::options_of("", "from " + ports_text(names_, {what.in_port}) + vlan);
    if (what.kind == Case::Kind::kLost)
        return pcapng::options_of(drop_name(what.drop),
                                  "from " + ports_text(names_, {what.in_port}) + vlan +
                                      ", not sent: " + drop_text(what.drop));
    const std::string cpu =
        what.to_cpu ? std::string("to the CPU (") + rx_reason_name(what.cpu_reason) + ")"
                    : std::string{};
    if (what.drop != DropReason::kNone)
        return pcapng::options_of(drop_name(what.drop), std::string("dropped: ") +
                                                            drop_text(what.drop) +
                                                            (cpu.empty() ? "" : "; copied " + cpu));
    const PortSet out = PortSet::from_bits(what.out);
    std::string where = out.any() ? "to " + ports_text(names_, out) : "";
    where += (out.any() && what.to_cpu ? " and " : "") + cpu;
    return pcapng::options_of("forwarded", where + vlan);
}

} // namespace vexosim
