// The field processor: entries that match a frame say where it goes and what becomes of it.
#include <bcm/rx.h>

#include <array>

#include "sim/pipeline/field_actions.h"
#include "sim/pipeline/field_values.h"
#include "sim/pipeline/recorder.h"
#include "sim/pipeline/stages.h"

namespace vexosim {

namespace {

void explain_search(const Packet& p, const FieldGroupSearch& group, const FieldHit* hit)
{
    explain(p, [&](const PortNames&) {
        return "group " + std::to_string(group.id()) + ", " + std::to_string(group.entries()) +
               " installed: " +
               (hit == nullptr ? "none matches"
                               : "entry " + std::to_string(hit->id) + " of priority " +
                                     std::to_string(hit->priority));
    });
}

/// The best entry of each group.
void search(const Chip& chip, const Packet& p, FieldVerdict& verdict)
{
    FieldValues values;
    read_fields(p, values);
    verdict.edits.ip_at = values.ip_at;
    // All groups first, so that their searches wait for memory together.
    std::array<std::uint64_t, FieldTable::kMaxGroups * FieldGroupSearch::kMaxTuples> hashes;
    std::uint64_t* end = hashes.data();
    for (const FieldGroupSearch& group : chip.field.search().groups())
        end = group.start(values, end);
    const std::uint64_t* next = hashes.data();
    for (const FieldGroupSearch& group : chip.field.search().groups()) {
        const FieldHit* hit = group.find(values, next);
        explain_search(p, group, hit);
        if (hit == nullptr)
            continue;
        verdict.hits[verdict.hit_count++] = hit;
        FieldTable::prefetch_counter(*hit);
    }
}

/// What the entries decide about the frame at once.
Step act(Packet& p)
{
    switch (p.field->place) {
    case FieldPlace::kDrop:
        return drop(DropReason::field_drop);
    case FieldPlace::kTrap:
        if (p.from_cpu())
            return next();
        p.copy_to_cpu(bcmRxReasonFilterMatch);
        return done();
    default:
        return next();
    }
}

[[gnu::noinline]] Step meet_entries(const Chip& chip, Packet& p)
{
    FieldVerdict& verdict = p.field.emplace();
    search(chip, p, verdict);
    settle_actions(p, verdict);
    const bool stopped = p.stp_refusal != DropReason::kNone && !verdict.bypass_stp;
    if (stopped || verdict.hit_count == 0)
        p.field.reset();
    return stopped ? drop(p.stp_refusal) : p.field ? act(p) : next();
}

/// Entries do not send a frame back where it came from, unless they loop it back.
PortSet place(const Chip& chip, const Packet& p)
{
    switch (p.field->place) {
    case FieldPlace::kRedirect:
        return p.field->redirect - chip.trunks.companions(p.in_port);
    case FieldPlace::kLoopback:
        return {p.in_port};
    default:
        return p.out;
    }
}

} // namespace

/// A frame that spanning tree stops meets entries only if one of them takes it past that.
Step stage::field_lookup(const Chip& chip, Packet& p)
{
    if (chip.field.search().empty()) [[likely]]
        return next();
    return meet_entries(chip, p);
}

/// From here on the frame is in its new VLAN, if it gets one.
Step stage::field_actions(const Chip& chip, Packet& p)
{
    if (!p.field) [[likely]]
        return next();
    p.out = place(chip, p) - p.field->mask;
    explain(p, [&](const PortNames& names) { return "to " + names.names(p.out); });
    if (p.out.empty())
        return drop(DropReason::field_no_port);
    if (p.field->edits.vid >= 0)
        p.vlan = &chip.vlans[p.field->edits.vid];
    return next();
}

} // namespace vexosim
