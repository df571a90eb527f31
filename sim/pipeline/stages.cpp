#include "sim/pipeline/stages.h"

#include <iterator>
#include <utility>

#include "sim/pipeline/recorder.h"

namespace vexosim {

namespace {

/// The frame's way, from top to bottom.
constexpr PipelineStage kForwarding[] = {
    {"port", stage::port},
    {"parse", stage::parse},
    {"frame size", stage::frame_size},
    {"control frames", stage::control},
    {"discard mode", stage::discard},
    {"VLAN", stage::assign_vlan},
    {"BPDU", stage::bpdu},
    {"VLAN table", stage::check_vlan},
    {"membership filter", stage::membership},
    {"spanning tree", stage::spanning_tree},
    {"source", stage::source},
    {"learning", stage::learn},
    {"field lookup", stage::field_lookup},
    {"routing", stage::route},
    {"destination", stage::look_up},
    {"storm control", stage::storm_control},
    {"flooding", stage::flood},
    {"field actions", stage::field_actions},
    {"CPU copy", stage::cpu_copy},
    {"egress membership", stage::egress_membership},
    {"egress spanning tree", stage::egress_spanning_tree},
    {"egress port", stage::egress_port},
    {"egress queue", stage::egress_queue},
    {"tagging", stage::tagging},
    {"egress frame size", stage::egress_size},
};

constexpr PipelineStage kDirect[] = {
    {"parse", stage::parse},
    {"egress port", stage::egress_port},
    {"tagging", stage::own_tag},
    {"egress queue", stage::egress_queue},
    {"egress frame size", stage::egress_size},
};

[[gnu::noinline]] void end_way(Step step, Packet& p)
{
    if (step.kind != Step::Kind::kDrop)
        return;
    p.out = {};
    p.drop = step.reason;
    explain(p, [&](const PortNames&) { return std::string("dropped: ") + drop_text(step.reason); });
}

/// @return whether there is a way on.
[[gnu::always_inline]] inline bool pass(const PipelineStage& stage, const Chip& chip, Packet& p)
{
    if (p.recorder != nullptr) [[unlikely]]
        p.recorder->enter(stage.name);
    Step step = stage.run(chip, p);
    if (step.kind == Step::Kind::kNext) [[likely]]
        return true;
    end_way(step, p);
    return false;
}

/// The loop over a table of stages, unrolled: each stage is then called directly.
template <const auto& kStages, std::size_t... kIndex>
void pass_all(const Chip& chip, Packet& p, std::index_sequence<kIndex...>)
{
    (void)(pass(kStages[kIndex], chip, p) && ...);
}

} // namespace

void run_forwarding_stages(const Chip& chip, Packet& p)
{
    pass_all<kForwarding>(chip, p, std::make_index_sequence<std::size(kForwarding)>());
}

void run_direct_stages(const Chip& chip, Packet& p)
{
    pass_all<kDirect>(chip, p, std::make_index_sequence<std::size(kDirect)>());
}

} // namespace vexosim
