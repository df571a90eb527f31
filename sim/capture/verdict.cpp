#include "sim/capture/verdict.h"

#include "sim/pipeline/trace.h"

namespace vexosim {

namespace {

using pcapng::Direction;

std::string in_vlan(int vid)
{
    return vid == 0 ? std::string{} : " in VLAN " + std::to_string(vid);
}

std::string ports_text(const PortNames& names, PortSet ports)
{
    return (ports.count() == 1 ? "port " : "ports ") + names.names(ports);
}

} // namespace

VerdictOptions::VerdictOptions(const PortNames& names) : names_(names), known_(kSlots) {}

std::string VerdictOptions::make(const Verdict& verdict) const
{
    const std::string vlan = in_vlan(verdict.vid());
    if (verdict.kind() != Verdict::Kind::kReceived) {
        const std::string from = "from " + ports_text(names_, {verdict.in_port()}) + vlan;
        if (verdict.kind() == Verdict::Kind::kSent)
            return pcapng::options_of(Direction::sent, "", from);
        return pcapng::options_of(Direction::sent, drop_name(verdict.drop()),
                                  from + ", not sent: " + drop_text(verdict.drop()));
    }
    const std::string cpu =
        verdict.to_cpu() ? std::string("to the CPU (") + rx_reason_name(verdict.cpu_reason()) + ")"
                         : std::string{};
    if (verdict.drop() != DropReason::kNone)
        return pcapng::options_of(Direction::received, drop_name(verdict.drop()),
                                  std::string("dropped: ") + drop_text(verdict.drop()) +
                                      (cpu.empty() ? "" : "; copied " + cpu));
    const PortSet out = verdict.ports();
    std::string where = out.any() ? "to " + ports_text(names_, out) : "";
    where += (out.any() && verdict.to_cpu() ? " and " : "") + cpu;
    return pcapng::options_of(Direction::received, "forwarded", where + vlan);
}

} // namespace vexosim
