#pragma once

#include <cstdint>
#include <cstring>

#include "platform/port_map.h"

/// Fills the port tables as a bring-up does, without a chip. Chip port p gets lport 256 + p.
inline void build_port_tables()
{
    constexpr uint32_t cpu_flags = 0x1 | 0x8;
    constexpr uint32_t ge_flags = 0x1 | 0x20;
    map_build_uport_to_user_port();
    std::memset(vexo_user_port_to_lport, 0xff, sizeof vexo_user_port_to_lport);
    for (int port = 0; port < vexo_port_rows; ++port)
        vexo_uport_create_cb(256 + port, 0, port, port == 0 ? cpu_flags : ge_flags);
    map_build_user_port_to_module_port();
    self_slot_id = 1;
}
