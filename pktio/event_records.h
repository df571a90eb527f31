#pragma once

#include <algorithm>
#include <cstdint>

#include "pktio/event_types.h"
#include "pktio/packet.h"
#include "platform/usp.h"
#include "platform/usp_s.h"

/// The records of chip events, in the class form and as plain structures with the suffix `_s` for
/// C-style clients. A callback's record is valid during the callback only.

/// A change of a port's link. Speed codes: 0 unknown or other, 1 10 Mb/s, 2 100 Mb/s, 3 1000 Mb/s,
/// 4 10000 Mb/s. Duplex codes: 0 unknown, 1 half, 2 full.
class LinkStatus {
public:
    Usp port() { return port_; }
    const Usp& port() const { return port_; }
    void set_port(const Usp& port) { port_ = port; }

    /// 1 = up, 0 = down, as the chip reports it.
    int status() { return status_; }
    int status() const { return status_; }
    void set_status(int status) { status_ = status; }

    unsigned speed() { return speed_; }
    unsigned speed() const { return speed_; }
    void set_speed(unsigned speed) { speed_ = speed; }

    unsigned duplex() { return duplex_; }
    unsigned duplex() const { return duplex_; }
    void set_duplex(unsigned duplex) { duplex_ = duplex; }

private:
    Usp port_;
    int32_t status_ = 0;
    uint32_t speed_ = 0;
    uint32_t duplex_ = 0;
};

struct ctype_link_status_s {
    usp_s port;
    int32_t status;
    uint32_t speed;
    uint32_t duplex;
};

/// An entry of the chip's MAC table that came, went, or is being listed.
class L2Addr {
public:
    L2Addr() {} // the trunk deliberately stays unset

    /// The SDK's flags of the entry (`BCM_L2_*`).
    unsigned flags() { return flags_; }
    unsigned flags() const { return flags_; }
    void set_flags(unsigned flags) { flags_ = flags; }

    /// 6 bytes.
    const unsigned char* mac() const { return mac_; }
    void set_mac(const unsigned char* mac) { std::copy_n(mac, 6, mac_); }

    unsigned vlan() { return vlan_; }
    unsigned vlan() const { return vlan_; }
    void set_vlan(unsigned vlan) { vlan_ = vlan; }

    /// (0, 0, 0) when `is_trunk`.
    Usp port() { return port_; }
    const Usp& port() const { return port_; }
    void set_port(const Usp& port) { port_ = port; }

    /// The trunk id. Unset until `set_trunk`: read it only when `is_trunk`.
    int trunk() { return trunk_; }
    int trunk() const { return trunk_; }
    void set_trunk(int trunk) { trunk_ = trunk; }

    /// The SDK's trunk selection value, when `is_trunk`.
    int trunk_sel() { return trunk_sel_; }
    int trunk_sel() const { return trunk_sel_; }
    void set_trunk_sel(int trunk_sel) { trunk_sel_ = trunk_sel; }

    /// The SDK's authentication value.
    int auth() { return auth_; }
    int auth() const { return auth_; }
    void set_auth(int auth) { auth_ = auth; }

    /// 0 = removed, 1 = added, 2 = listed by a table walk.
    int type() { return type_; }
    int type() const { return type_; }
    void set_type(int type) { type_ = type; }

    /// True = learned, false = static.
    bool learn_type() { return learn_type_; }
    bool learn_type() const { return learn_type_; }
    void set_learn_type(bool learn_type) { learn_type_ = learn_type; }

    /// The entry is on a trunk, not on a port.
    bool is_trunk() { return is_trunk_; }
    bool is_trunk() const { return is_trunk_; }
    void set_is_trunk(bool is_trunk) { is_trunk_ = is_trunk; }

private:
    uint32_t flags_ = 0;
    uint8_t mac_[6] = {};
    uint32_t vlan_ = 0;
    Usp port_;
    int32_t trunk_;
    int32_t trunk_sel_ = 0;
    int32_t auth_ = 0;
    int32_t type_ = 0;
    bool learn_type_ = true;
    bool is_trunk_ = false;
};

/// The driver fills the trunk fields of trunk entries and the port fields of port entries; the
/// others are 0.
struct ctype_l2_addr_s {
    uint32_t flags;
    uint8_t mac[6];
    uint32_t vlan;
    uint32_t unit; ///< the port, as in `usp_s`
    uint32_t slot;
    uint32_t port;
    int32_t trunk;
    int32_t trunk_sel;
    int32_t auth;
    int32_t type;
    int32_t learn_type; ///< 1 = learned, 0 = static
    int32_t is_trunk;   ///< 1 = on a trunk
};
