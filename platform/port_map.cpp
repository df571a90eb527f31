// The port tables and the conversions between user ports, lports and module/port pairs. One
// surprise: the SDK's chip-local port is used as the index of the uport table.
#include "platform/port_map.h"

#include <algorithm>
#include <iterator>

int32_t vexo_uport_to_bcmport[vexo_port_rows] = {
    53, 48, 8,  9,  10, 11, 12, 13, 14, 15, 20, 21, 22, 23, 24, 25, 26, 27,
    32, 33, 34, 35, 36, 37, 38, 39, 49, 50, 51, 52, 0,  1,  2,  3,  4,  5,
    6,  7,  16, 17, 18, 19, 28, 29, 30, 31, 40, 41, 42, 43, 44, 45, 46, 47,
};

// The pairs 49/50 and 51/52 are crossed deliberately: the connectors are.
int32_t vexo_bcmport_to_user_port[vexo_port_rows] = {
    0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17,
    18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35,
    36, 37, 38, 39, 40, 41, 42, 43, 44, 45, 46, 47, 48, 50, 49, 52, 51, 53,
};

int32_t vexo_uport_to_user_port[vexo_port_rows];
int32_t vexo_user_port_to_lport[vexo_port_rows];
Mp vexo_user_port_to_module_port[vexo_port_rows];

int vexo_bcm_unit = 0;
int self_slot_id = 0;
int number_lc_chips = 0;
int number_lc_ports = 0;
int number_lc_ppm = 0;
int vexo_max_physical_port_per_slot = 0;

namespace {

constexpr unsigned module_ge = 0;
constexpr unsigned module_xe = 2;
constexpr unsigned module_cpu = 3;
constexpr int last_ge_user_port = 48;

// The SDK's port flags.
constexpr uint32_t flag_own = 0x1;
constexpr uint32_t flag_cpu = 0x8;
constexpr uint32_t flags_front = 0x10 | 0x20 | 0x40 | 0x80;

uint32_t vexo_attached_port_count = 0;

bool is_row(int row)
{
    return row >= 0 && row < vexo_port_rows;
}

void store_lport(int32_t user_port, int lport)
{
    vexo_user_port_to_lport[user_port] = lport;
    ++vexo_attached_port_count;
}

int attach_front_port(int lport, int port)
{
    if (port <= 0 || port >= vexo_port_rows)
        return -1;
    const int32_t user_port = vexo_uport_to_user_port[port];
    store_lport(user_port, lport);
    return user_port;
}

int attach_cpu_port(int lport, int port)
{
    if (port != 0)
        return -1;
    store_lport(vexo_uport_to_user_port[0], lport);
    return vexo_cpu_user_port;
}

} // namespace

bool map_mp_to_user_port(const Mp& mp, int& user_port)
{
    const Mp* row = std::find(std::begin(vexo_user_port_to_module_port),
                              std::end(vexo_user_port_to_module_port), mp);
    if (row == std::end(vexo_user_port_to_module_port))
        return false;
    user_port = static_cast<int>(row - std::begin(vexo_user_port_to_module_port));
    return true;
}

bool map_user_port_to_mp(int user_port, Mp& mp)
{
    if (!is_row(user_port))
        return false;
    mp = vexo_user_port_to_module_port[user_port];
    return true;
}

bool map_mp_to_lport(const Mp& mp, int& lport)
{
    int user_port = -1;
    if (!map_mp_to_user_port(mp, user_port))
        return false;
    lport = vexo_user_port_to_lport[user_port];
    return true;
}

bool map_lport_to_mp(int lport, Mp& mp)
{
    const int32_t* row =
        std::find(std::begin(vexo_user_port_to_lport), std::end(vexo_user_port_to_lport), lport);
    return map_user_port_to_mp(static_cast<int>(row - std::begin(vexo_user_port_to_lport)), mp);
}

bool map_uport_to_lport(int uport, int& lport)
{
    if (!is_row(uport))
        return false;
    lport = vexo_user_port_to_lport[vexo_uport_to_user_port[uport]];
    return true;
}

bool vexo_bcm_sdk_get_cpu_lport(int& lport)
{
    const int32_t cpu = vexo_user_port_to_lport[vexo_cpu_user_port];
    if (cpu == -1)
        return false;
    lport = cpu;
    return true;
}

bool map_build_uport_to_user_port()
{
    for (int u = 0; u < vexo_port_rows; ++u)
        vexo_uport_to_user_port[u] = vexo_bcmport_to_user_port[vexo_uport_to_bcmport[u]];
    return true;
}

void map_build_user_port_to_module_port()
{
    for (int u = 1; u < vexo_port_rows; ++u) {
        const int32_t user_port = vexo_uport_to_user_port[u];
        if (user_port > vexo_cpu_user_port - 1)
            return;
        vexo_user_port_to_module_port[user_port] =
            Mp(user_port <= last_ge_user_port ? module_ge : module_xe,
               static_cast<unsigned>(user_port));
    }
    const int32_t cpu = vexo_uport_to_user_port[0];
    vexo_user_port_to_module_port[cpu] = Mp(module_cpu, static_cast<unsigned>(cpu));
}

int vexo_uport_create_cb(int lport, int unit, int port, uint32_t flags)
{
    if (unit != 0 || (flags & flag_own) == 0)
        return -1;
    if ((flags & flags_front) != 0)
        return attach_front_port(lport, port);
    if ((flags & flag_cpu) != 0)
        return attach_cpu_port(lport, port);
    return -1;
}
