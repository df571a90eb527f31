#include "tools/vexosh/call_names.h"

#include <typeindex>
#include <unordered_map>

#include "core/sdk_base.h"

namespace vexosh {
namespace {

constexpr NamedValue kSpeeds[] = {{"10", 1}, {"100", 2}, {"1000", 3}, {"10000", 4}};
constexpr NamedValue kDuplexes[] = {{"half", 1}, {"full", 2}};
constexpr NamedValue kDiscards[] = {{"none", 0}, {"tagged", 1}, {"untagged", 2}, {"all", 3}};
constexpr NamedValue kFrames[] = {{"ethernet", 0}, {"802.3", 1}, {"snap", 3}};
constexpr NamedValue kPhyStates[] = {{"down", 0}, {"up", 1}};
constexpr NamedValue kStpStates[] = {
    {"blocking", 0}, {"listening", 1}, {"learning", 2}, {"forwarding", 3}, {"disabled", 4}};
constexpr NamedValue kMstpStates[] = {
    {"discarding", 0}, {"learning", 1}, {"forwarding", 2}, {"disabled", 3}};
constexpr NamedValue kMirrors[] = {{"off", 0}, {"ingress", 1}, {"egress", 2}, {"both", 3}};
constexpr NamedValue kCriteria[] = {{"src-mac", 1}, {"dst-mac", 2}, {"src-dst-mac", 3},
                                    {"src-ip", 4},  {"dst-ip", 5},  {"src-dst-ip", 6}};
constexpr NamedValue kEvents[] = {{"mac", 0}, {"link", 1}, {"rx", 2}};
constexpr NamedValue kActions[] = {
    {"output", 0}, {"reinstall", 1}, {"drop", 2}, {"modify", 3}, {"bypass-stp", 4}};
constexpr NamedValue kBriefStats[] = {
    {"in-packets", 1}, {"in-bytes", 2}, {"out-packets", 3}, {"out-bytes", 4}};

} // namespace

std::span<const NamedValue> enum_names(const std::type_info& type)
{
    static const std::unordered_map<std::type_index, std::span<const NamedValue>> names = {
        {typeid(speed_type_t), kSpeeds},
        {typeid(duplex_type_t), kDuplexes},
        {typeid(ingress_discard_type_t), kDiscards},
        {typeid(frame_type_t), kFrames},
        {typeid(phy_state_t), kPhyStates},
        {typeid(stp_state_t), kStpStates},
        {typeid(mstp_state_t), kMstpStates},
        {typeid(mirror_type_t), kMirrors},
        {typeid(lag_psc_t), kCriteria},
        {typeid(lcmgr_report_event_t), kEvents},
        {typeid(of_action_t), kActions},
        {typeid(brief_stat_type_t), kBriefStats},
    };
    const auto found = names.find(type);
    return found == names.end() ? std::span<const NamedValue>{} : found->second;
}

} // namespace vexosh
