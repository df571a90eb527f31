#pragma once

/// The trace keywords of the line-card software. The driver acts on two of the level keywords,
/// `level_all` and `level_sdk`, and refuses the others.
namespace vexolc::trace_keyword {

constexpr char level_xrl[] = "trace_level_xrl";
constexpr char level_api[] = "trace_level_api";
constexpr char level_sdk[] = "trace_level_sdk";
constexpr char level_all[] = "trace_level_all";
constexpr char finder[] = "finder";
constexpr char card_manager[] = "card_manager";
constexpr char lcmgr[] = "lcmgr";
constexpr char fdb[] = "fdb";
constexpr char vlan[] = "vlan";
constexpr char sif[] = "sif";
constexpr char switch_mirror[] = "switch_mirror";
constexpr char policy[] = "policy";
constexpr char stat[] = "stat";
constexpr char lldp[] = "lldp";
constexpr char rstp[] = "rstp";
constexpr char snmp[] = "snmp";
constexpr char lacp[] = "lacp";
constexpr char tuntap[] = "tuntap";

/// All of them, in this order.
constexpr const char* all[] = {
    level_xrl, level_api,     level_sdk, level_all, finder, card_manager, lcmgr, fdb,  vlan,
    sif,       switch_mirror, policy,    stat,      lldp,   rstp,         snmp,  lacp, tuntap};

} // namespace vexolc::trace_keyword
