#pragma once

/// MAC addresses are arrays of 6 bytes, first byte on the wire first.

/// True when all 6 bytes are equal.
bool mac_t_same(const unsigned char* a, const unsigned char* b);

/// True for ff:ff:ff:ff:ff:ff.
bool is_mac_t_broadcast(const unsigned char* mac);

/// True when the group bit (0x01 of the first byte) is set; the broadcast address counts.
bool is_mac_t_multicast(const unsigned char* mac);
