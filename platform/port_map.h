#pragma once

#include <cstdint>
#include <list>

#include "platform/mp.h"
#include "platform/usp.h"

/// Port identifiers and the tables that translate between them.
///
/// Below `Mp` and `Usp` lie three numberings of the chip side: the user port (0 to 53, 53 is the
/// CPU port), the chip-local port of the SDK, and the SDK's system-wide logical port (lport). A
/// "uport" is an index into `vexo_uport_to_user_port`. The tables are filled once while the card is
/// brought up and only read afterwards; convert nothing before that.
///
/// Every conversion returns true when done; outputs are written only then unless said otherwise.

/// Rows in each port table: 53 front-panel ports and the CPU port.
constexpr int vexo_port_rows = 54;

/// The user port of the CPU.
constexpr int vexo_cpu_user_port = 53;

extern int32_t vexo_uport_to_bcmport[vexo_port_rows];     ///< fixed
extern int32_t vexo_bcmport_to_user_port[vexo_port_rows]; ///< fixed
extern int32_t vexo_uport_to_user_port[vexo_port_rows];
extern int32_t vexo_user_port_to_lport[vexo_port_rows]; ///< -1 = not attached
extern Mp vexo_user_port_to_module_port[vexo_port_rows];

extern int vexo_bcm_unit;   ///< the SDK unit number of the chip
extern int self_slot_id;    ///< slot of this card; 0 until `vexo_init_line_card` sets 1
extern int number_lc_chips; ///< switch chips on the card; set by `vexo_init_line_card`
extern int number_lc_ports; ///< ports of the card; set by `vexo_init_line_card`
extern int number_lc_ppm;   ///< ports per chip; set by `vexo_init_line_card`
extern int vexo_max_physical_port_per_slot; ///< highest physical user port, set with the instance

/// What kind of port a `Usp` names. Only the slot is looked at.
bool is_port_physical(const Usp& usp);
bool is_port_logical_lag(const Usp& usp);
bool is_port_logical_vlan(const Usp& usp);

/// False when no row of the module/port table equals `mp`.
bool map_mp_to_user_port(const Mp& mp, int& user_port);

/// False outside 0 to 53. A row that was never filled is handed out as it is.
bool map_user_port_to_mp(int user_port, Mp& mp);

/// False when `mp` names no user port. An unattached port succeeds with lport -1.
bool map_mp_to_lport(const Mp& mp, int& lport);

/// False when no row holds `lport`; -1 finds the first unattached row.
bool map_lport_to_mp(int lport, Mp& mp);

/// False outside 0 to 53. An unattached port succeeds with lport -1.
bool map_uport_to_lport(int uport, int& lport);

/// False while the CPU port is not attached.
bool vexo_bcm_sdk_get_cpu_lport(int& lport);

/// Unit 1, this card's slot, user port + 1. The CPU port converts like any other.
bool vexo_mp_to_usp(const Mp& mp, Usp& usp);

/// False unless `usp` is physical with a port of 1 to 54. The unit is not looked at.
bool vexo_usp_to_mp(const Usp& usp, Mp& mp);

/// Appends the conversion of each entry in order. At the first that does not convert, returns
/// false; what was appended stays.
bool vexo_mp_list_to_usp_list(const std::list<Mp>& mps, std::list<Usp>& usps);

/// Appends the ports that `usp` stands for: itself, or the members of a LAG or VLAN. False for a
/// unit other than 1, a slot that names nothing, or an unknown LAG or VLAN. Deliberately, a
/// physical port out of range appends (0, 0) and succeeds.
bool vexo_usp_to_mp_list(const Usp& usp, std::list<Mp>& mps);

/// Appends the ports of every entry, skipping silently what does not convert, then sorts the whole
/// output and removes duplicates, entries from before the call included. Always true.
bool vexo_usp_list_to_mp_list(const std::list<Usp>& usps, std::list<Mp>& mps);

/// Fills `vexo_uport_to_user_port` from the two fixed tables. Always true. Bring-up only.
bool map_build_uport_to_user_port();

/// Fills `vexo_user_port_to_module_port`. Stops at the first uport from 1 on whose user port is
/// above 52, without writing that row or the CPU's. Bring-up only, after the device is attached.
void map_build_user_port_to_module_port();

/// Told by the SDK of each port it creates: stores the lport under its user port, which it returns.
/// Returns -1 to refuse the port: another unit, a port that is not the chip's own, or a kind that
/// is not a front-panel port or the CPU port. `port` is the chip-local port.
extern "C" int vexo_uport_create_cb(int lport, int unit, int port, uint32_t flags);
