#pragma once

/// Per-port settings as the driver's callers give them. The underlying types are fixed so that a
/// caller may pass any value; each operation says what it does with values that are not listed.

enum speed_type_t : int {
    SPEED_10M = 1,
    SPEED_100M = 2,
    SPEED_1G = 3,
    SPEED_10G = 4,
};

enum duplex_type_t : int {
    DUPLEX_HALF = 1,
    DUPLEX_FULL = 2,
};

enum ingress_discard_type_t : int {
    INGRESS_DISCARD_NONE = 0,
    INGRESS_DISCARD_TAGGED = 1,
    INGRESS_DISCARD_UNTAGGED = 2,
    INGRESS_DISCARD_ALL = 3,
};

enum frame_type_t : int {
    FRAME_ETHERNET_II = 0,
    FRAME_802_3 = 1,
    FRAME_802_3_LLC = 2, ///< deliberately the same chip frame type as `FRAME_802_3`
    FRAME_SNAP = 3,
};

/// Bit set: which floods from one port are kept from another.
enum flood_block_type_t : unsigned {
    FLOOD_BLOCK_NONE = 0,
    FLOOD_BLOCK_BROADCAST = 0x1,
    FLOOD_BLOCK_UNKNOWN_UNICAST = 0x2,
    FLOOD_BLOCK_KNOWN_MULTICAST = 0x4,
    FLOOD_BLOCK_UNKNOWN_MULTICAST = 0x8,
};

enum phy_state_t : int {
    PHY_LINK_DOWN = 0,
    PHY_LINK_UP = 1,
};

/// Bit set: speeds, media, pause and auto-negotiation that a port is able to run.
enum port_ability_type_t : unsigned {
    PORT_ABILITY_NONE = 0,
    PORT_ABILITY_10M_HALF = 0x1,
    PORT_ABILITY_10M_FULL = 0x2,
    PORT_ABILITY_100M_HALF = 0x4,
    PORT_ABILITY_100M_FULL = 0x8,
    PORT_ABILITY_1G_HALF = 0x10,
    PORT_ABILITY_1G_FULL = 0x20,
    PORT_ABILITY_10G_HALF = 0x40,
    PORT_ABILITY_10G_FULL = 0x80,
    PORT_ABILITY_COPPER = 0x100,
    PORT_ABILITY_FIBRE = 0x200,
    PORT_ABILITY_AUTONEG = 0x400,
    PORT_ABILITY_PAUSE_TX = 0x800,
    PORT_ABILITY_PAUSE_RX = 0x1000,
    PORT_ABILITY_PAUSE_ASYMMETRIC = 0x2000,
};
