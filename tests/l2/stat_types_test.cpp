// Which of the SDK's counters each of the driver's names means.
#include <bcm/port.h>
#include <bcm/stat.h>
#include <gtest/gtest.h>

#include "l2/stat_tables.h"
#include "l2/stat_types.h"

namespace {

struct Name {
    stat_type_t type;
    bcm_stat_val_t counter;
};

constexpr Name names[] = {
    {STAT_IF_IN_OCTETS, snmpIfInOctets},
    {STAT_IF_IN_UCAST_PKTS, snmpIfInUcastPkts},
    {STAT_IF_IN_NUCAST_PKTS, snmpIfInNUcastPkts},
    {STAT_IF_IN_DISCARDS, snmpIfInDiscards},
    {STAT_IF_IN_ERRORS, snmpIfInErrors},
    {STAT_IF_IN_UNKNOWN_PROTOS, snmpIfInUnknownProtos},
    {STAT_IF_OUT_OCTETS, snmpIfOutOctets},
    {STAT_IF_OUT_UCAST_PKTS, snmpIfOutUcastPkts},
    {STAT_IF_OUT_NUCAST_PKTS, snmpIfOutNUcastPkts},
    {STAT_IF_OUT_DISCARDS, snmpIfOutDiscards},
    {STAT_IF_OUT_ERRORS, snmpIfOutErrors},
    {STAT_IF_OUT_QLEN, snmpIfOutQLen},
    {STAT_IP_IN_RECEIVES, snmpIpInReceives},
    {STAT_IP_IN_HDR_ERRORS, snmpIpInHdrErrors},
    {STAT_IP_FORW_DATAGRAMS, snmpIpForwDatagrams},
    {STAT_IP_IN_DISCARDS, snmpIpInDiscards},
    {STAT_DOT1D_DELAY_EXCEEDED_DISCARDS, snmpDot1dBasePortDelayExceededDiscards},
    {STAT_DOT1D_MTU_EXCEEDED_DISCARDS, snmpDot1dBasePortMtuExceededDiscards},
    {STAT_DOT1D_IN_FRAMES, snmpDot1dTpPortInFrames},
    {STAT_DOT1D_OUT_FRAMES, snmpDot1dTpPortOutFrames},
    {STAT_DOT1D_IN_DISCARDS, snmpDot1dPortInDiscards},
    {STAT_ETHER_DROP_EVENTS, snmpEtherStatsDropEvents},
    {STAT_ETHER_MULTICAST_PKTS, snmpEtherStatsMulticastPkts},
    {STAT_ETHER_BROADCAST_PKTS, snmpEtherStatsBroadcastPkts},
    {STAT_ETHER_UNDERSIZE_PKTS, snmpEtherStatsUndersizePkts},
    {STAT_ETHER_FRAGMENTS, snmpEtherStatsFragments},
    {STAT_ETHER_PKTS_64, snmpEtherStatsPkts64Octets},
    {STAT_ETHER_PKTS_65_TO_127, snmpEtherStatsPkts65to127Octets},
    {STAT_ETHER_PKTS_128_TO_255, snmpEtherStatsPkts128to255Octets},
    {STAT_ETHER_PKTS_256_TO_511, snmpEtherStatsPkts256to511Octets},
    {STAT_ETHER_PKTS_512_TO_1023, snmpEtherStatsPkts512to1023Octets},
    {STAT_ETHER_PKTS_1024_TO_1518, snmpEtherStatsPkts1024to1518Octets},
    {STAT_ETHER_OVERSIZE_PKTS, snmpEtherStatsOversizePkts},
    {STAT_ETHER_PKTS_2048_TO_4095, snmpEtherStatsPkts2048to4095Octets},
    {STAT_ETHER_PKTS_4096_TO_9216, snmpEtherStatsPkts4096to9216Octets},
    {STAT_ETHER_JABBERS, snmpEtherStatsJabbers},
    {STAT_ETHER_OCTETS, snmpEtherStatsOctets},
    {STAT_ETHER_PKTS, snmpEtherStatsPkts},
    {STAT_ETHER_COLLISIONS, snmpEtherStatsCollisions},
    {STAT_ETHER_CRC_ALIGN_ERRORS, snmpEtherStatsCRCAlignErrors},
    {STAT_ETHER_TX_NO_ERRORS, snmpEtherStatsTXNoErrors},
    {STAT_ETHER_RX_NO_ERRORS, snmpEtherStatsRXNoErrors},
    {STAT_DOT3_ALIGNMENT_ERRORS, snmpDot3StatsAlignmentErrors},
    {STAT_DOT3_FCS_ERRORS, snmpDot3StatsFCSErrors},
    {STAT_DOT3_SINGLE_COLLISION_FRAMES, snmpDot3StatsSingleCollisionFrames},
    {STAT_DOT3_MULTIPLE_COLLISION_FRAMES, snmpDot3StatsMultipleCollisionFrames},
    {STAT_DOT3_SQE_TEST_ERRORS, snmpDot3StatsSQETTestErrors},
    {STAT_DOT3_DEFERRED_TRANSMISSIONS, snmpDot3StatsDeferredTransmissions},
    {STAT_DOT3_LATE_COLLISIONS, snmpDot3StatsLateCollisions},
    {STAT_DOT3_EXCESSIVE_COLLISIONS, snmpDot3StatsExcessiveCollisions},
    {STAT_DOT3_INTERNAL_MAC_TX_ERRORS, snmpDot3StatsInternalMacTransmitErrors},
    {STAT_DOT3_CARRIER_SENSE_ERRORS, snmpDot3StatsCarrierSenseErrors},
    {STAT_DOT3_FRAME_TOO_LONGS, snmpDot3StatsFrameTooLongs},
    {STAT_DOT3_INTERNAL_MAC_RX_ERRORS, snmpDot3StatsInternalMacReceiveErrors},
    {STAT_DOT3_SYMBOL_ERRORS, snmpDot3StatsSymbolErrors},
    {STAT_DOT3_IN_UNKNOWN_OPCODES, snmpDot3ControlInUnknownOpcodes},
    {STAT_DOT3_IN_PAUSE_FRAMES, snmpDot3InPauseFrames},
    {STAT_DOT3_OUT_PAUSE_FRAMES, snmpDot3OutPauseFrames},
    {STAT_IF_HC_IN_OCTETS, snmpIfHCInOctets},
    {STAT_IF_HC_IN_UCAST_PKTS, snmpIfHCInUcastPkts},
    {STAT_IF_HC_IN_MULTICAST_PKTS, snmpIfHCInMulticastPkts},
    {STAT_IF_HC_IN_BROADCAST_PKTS, snmpIfHCInBroadcastPkts},
    {STAT_IF_HC_OUT_OCTETS, snmpIfHCOutOctets},
    {STAT_IF_HC_OUT_UCAST_PKTS, snmpIfHCOutUcastPkts},
    {STAT_IF_HC_OUT_MULTICAST_PKTS, snmpIfHCOutMulticastPkts},
    {STAT_IF_HC_OUT_BROADCAST_PKTS, snmpIfHCOutBroadcastPkts},
    {STAT_IPV6_IN_RECEIVES, ipv6IfStatsInReceives},
    {STAT_IPV6_IN_HDR_ERRORS, ipv6IfStatsInHdrErrors},
    {STAT_IPV6_IN_ADDR_ERRORS, ipv6IfStatsInAddrErrors},
    {STAT_IPV6_IN_DISCARDS, ipv6IfStatsInDiscards},
    {STAT_IPV6_OUT_FORW_DATAGRAMS, ipv6IfStatsOutForwDatagrams},
    {STAT_IPV6_OUT_DISCARDS, ipv6IfStatsOutDiscards},
    {STAT_IPV6_IN_MCAST_PKTS, ipv6IfStatsInMcastPkts},
    {STAT_IPV6_OUT_MCAST_PKTS, ipv6IfStatsOutMcastPkts},
    {STAT_IF_IN_MULTICAST_PKTS, snmpIfInMulticastPkts},
    {STAT_IF_IN_BROADCAST_PKTS, snmpIfInBroadcastPkts},
};

} // namespace

TEST(StatTypes, EachNameIsThatOfItsCounter)
{
    vexolc::fill_stat_to_stat_val();
    EXPECT_EQ(std::size(names), 76u);
    for (const Name& name : names)
        EXPECT_EQ(stat_to_stat_val[name.type], name.counter) << name.type;
}

TEST(StatTypes, EachNameOfTheSummaryIsThatOfItsCounter)
{
    vexolc::fill_brief_to_port_stat();
    EXPECT_EQ(brief_to_port_stat[BRIEF_STAT_IN_PACKETS], bcmPortStatIngressPackets);
    EXPECT_EQ(brief_to_port_stat[BRIEF_STAT_IN_BYTES], bcmPortStatIngressBytes);
    EXPECT_EQ(brief_to_port_stat[BRIEF_STAT_OUT_PACKETS], bcmPortStatEgressPackets);
    EXPECT_EQ(brief_to_port_stat[BRIEF_STAT_OUT_BYTES], bcmPortStatEgressBytes);
}
