/*
 * Port counters: their numbers, and clearing them on one unit.
 */
#ifndef BCM_STAT_H
#define BCM_STAT_H

#include <bcm/error.h>
#include <bcm/types.h>

#ifdef __cplusplus
extern "C" {
#endif

/* Counters of a port. Octets count the frame check sequence. */
typedef enum bcm_stat_val_e {
    snmpIfInOctets = 0,
    snmpIfInUcastPkts = 1,
    snmpIfInNUcastPkts = 2,
    snmpIfInDiscards = 3,
    snmpIfInErrors = 4,
    snmpIfInUnknownProtos = 5,
    snmpIfOutOctets = 6,
    snmpIfOutUcastPkts = 7,
    snmpIfOutNUcastPkts = 8,
    snmpIfOutDiscards = 9,
    snmpIfOutErrors = 10,
    snmpIfOutQLen = 11,
    snmpIpInReceives = 12,
    snmpIpInHdrErrors = 13,
    snmpIpForwDatagrams = 14,
    snmpIpInDiscards = 15,
    snmpDot1dBasePortDelayExceededDiscards = 16,
    snmpDot1dBasePortMtuExceededDiscards = 17,
    snmpDot1dTpPortInFrames = 18,
    snmpDot1dTpPortOutFrames = 19,
    snmpDot1dPortInDiscards = 20,
    snmpEtherStatsDropEvents = 21,
    snmpEtherStatsMulticastPkts = 22,
    snmpEtherStatsBroadcastPkts = 23,
    snmpEtherStatsUndersizePkts = 24,
    snmpEtherStatsFragments = 25,
    snmpEtherStatsPkts64Octets = 26,
    snmpEtherStatsPkts65to127Octets = 27,
    snmpEtherStatsPkts128to255Octets = 28,
    snmpEtherStatsPkts256to511Octets = 29,
    snmpEtherStatsPkts512to1023Octets = 30,
    snmpEtherStatsPkts1024to1518Octets = 31,
    snmpEtherStatsOversizePkts = 32,
    snmpEtherStatsPkts1519to1522Octets = 33,
    snmpEtherStatsPkts1523to2047Octets = 34,
    snmpEtherStatsPkts2048to4095Octets = 35,
    snmpEtherStatsPkts4096to9216Octets = 36,
    snmpEtherStatsJabbers = 37,
    snmpEtherStatsOctets = 38,
    snmpEtherStatsPkts = 39,
    snmpEtherStatsCollisions = 40,
    snmpEtherStatsCRCAlignErrors = 41,
    snmpEtherStatsTXNoErrors = 42,
    snmpEtherStatsRXNoErrors = 43,
    snmpDot3StatsAlignmentErrors = 44,
    snmpDot3StatsFCSErrors = 45,
    snmpDot3StatsSingleCollisionFrames = 46,
    snmpDot3StatsMultipleCollisionFrames = 47,
    snmpDot3StatsSQETTestErrors = 48,
    snmpDot3StatsDeferredTransmissions = 49,
    snmpDot3StatsLateCollisions = 50,
    snmpDot3StatsExcessiveCollisions = 51,
    snmpDot3StatsInternalMacTransmitErrors = 52,
    snmpDot3StatsCarrierSenseErrors = 53,
    snmpDot3StatsFrameTooLongs = 54,
    snmpDot3StatsInternalMacReceiveErrors = 55,
    snmpDot3StatsSymbolErrors = 56,
    snmpDot3ControlInUnknownOpcodes = 57,
    snmpDot3InPauseFrames = 58,
    snmpDot3OutPauseFrames = 59,
    snmpIfHCInOctets = 60,
    snmpIfHCInUcastPkts = 61,
    snmpIfHCInMulticastPkts = 62,
    snmpIfHCInBroadcastPkts = 63,
    snmpIfHCOutOctets = 64,
    snmpIfHCOutUcastPkts = 65,
    snmpIfHCOutMulticastPkts = 66,
    snmpIfHCOutBroadcastPkts = 67,
    ipv6IfStatsInReceives = 68,
    ipv6IfStatsInHdrErrors = 69,
    ipv6IfStatsInAddrErrors = 70,
    ipv6IfStatsInDiscards = 71,
    ipv6IfStatsOutForwDatagrams = 72,
    ipv6IfStatsOutDiscards = 73,
    ipv6IfStatsInMcastPkts = 74,
    ipv6IfStatsOutMcastPkts = 75,
    snmpIfInMulticastPkts = 76,
    snmpIfInBroadcastPkts = 77,
    snmpValCount = 78
} bcm_stat_val_t;

/* The short set of counters of a port. */
typedef enum bcm_port_stat_e {
    bcmPortStatIngressPackets = 0,
    bcmPortStatIngressBytes = 1,
    bcmPortStatEgressPackets = 2,
    bcmPortStatEgressBytes = 3,
    bcmPortStatCount = 4
} bcm_port_stat_t;

/* Sets every counter of `port` to 0. PORT; UNIT; INIT. */
int bcm_stat_clear(int unit, bcm_port_t port);

#ifdef __cplusplus
}
#endif
#endif
