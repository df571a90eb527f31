#pragma once

/// The kinds of event that callbacks are registered for.
enum lcmgr_report_event_t : int {
    LCMGR_REPORT_MAC_UPDATE = 0,
    LCMGR_REPORT_LINK_CHANGE = 1,
    LCMGR_REPORT_RX_PACKET = 2,
};

/// The records that callbacks are handed: as classes, and as plain structures for C-style clients.
class Packet;
class RxPacket;
class LinkStatus;
class L2Addr;
struct ctype_rx_packet_s;
struct ctype_link_status_s;
struct ctype_l2_addr_s;
