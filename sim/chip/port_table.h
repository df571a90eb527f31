/// @file
/// Properties of the ports, and their links.
#pragma once

#include <array>
#include <cstdint>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"

namespace vexosim {

/// BCM_PORT_DISCARD_*: frames that a port refuses.
enum class DiscardMode : std::uint8_t { kNone, kAll, kUntagged, kTagged };

/// The words of bcm_port_ability_t.
struct PortAbility {
    std::uint32_t speed_half = 0;
    std::uint32_t speed_full = 0;
    std::uint32_t pause = 0;
    std::uint32_t medium = 0;
    std::uint32_t flags = 0;

    bool operator==(const PortAbility&) const = default;
    void digest(Digest& d) const;
};

/// What became of a link.
struct LinkState {
    bool up = false;
    int speed = 0; ///< this and what follows mean something while up
    bool full_duplex = true;
    bool pause_tx = false;
    bool pause_rx = false;
    PortAbility remote; ///< what the port knows of its partner
};

struct PortConfig {
    bool enable = true;
    bool autoneg = false;
    bool duplex_full = true;
    bool pause_tx = false;
    bool pause_rx = false;
    bool pause_by_hand = false; ///< pause_tx and pause_rx are not negotiated
    bool jam = false;
    bool bpdu_enable = true; ///< frames to reserved bridge group addresses go to the CPU
    int speed = 1000;        ///< Mb/s; with auto-negotiation that of the last link, as for duplex
    int frame_max = 1518;    ///< bytes with the FCS, one tag not counted
    int pvid = 1;            ///< VLAN of untagged frames
    int priority = 0;        ///< of untagged frames
    DiscardMode discard = DiscardMode::kNone;
    std::uint8_t vlan_member = 0; ///< BCM_PORT_VLAN_MEMBER_*
    std::uint8_t learn = 5;       ///< BCM_PORT_LEARN_*
    std::array<std::uint8_t, 6> pause_addr{};
    std::array<std::uint8_t, 8> cos{}; ///< queue of each priority
    PortAbility advert;
    PortAbility remote; ///< what the link partner advertises; empty without a link

    bool operator==(const PortConfig&) const = default;
    void digest(Digest& d) const;
};

/// Setters answer PORT for a port that is none and PARAM for a value out of range, and then change
/// nothing. To read, check is_chip_port() and use operator[].
class PortTable {
public:
    static constexpr int kMinFrameMax = 64;
    static constexpr int kMaxFrameMax = 16384;
    static constexpr int kQueues = 8;
    /// 10 Gb/s ports of the card.
    static constexpr PortSet kCardXePorts{26, 27, 28, 29};

    explicit PortTable(PortSet xe = kCardXePorts);

    const PortConfig& operator[](int port) const { return ports_[static_cast<std::size_t>(port)]; }
    /// 10 Gb/s ports; the other front ports run at up to 1 Gb/s.
    PortSet xe() const { return xe_; }
    /// Administratively enabled ports.
    PortSet enabled() const { return enabled_; }
    /// Ports whose link was up when link scan last looked; always with the CPU port.
    PortSet link() const { return link_; }
    /// Ports through which frames come and go.
    PortSet up() const { return enabled_ & link_; }
    /// Ports that filter by VLAN membership on ingress, and on egress.
    PortSet ingress_filter() const { return ingress_filter_; }
    PortSet egress_filter() const { return egress_filter_; }
    /// The smallest frame_max of all ports.
    int smallest_frame_max() const { return smallest_frame_max_; }

    int set_enable(int port, int enable);
    /// Turned on, it also negotiates PAUSE again.
    int set_autoneg(int port, int autoneg);
    /// These two turn auto-negotiation off.
    int set_speed(int port, int speed);
    int set_duplex(int port, int duplex);
    int set_pause(int port, int pause_tx, int pause_rx);
    int set_jam(int port, int enable);
    int set_pause_addr(int port, const std::array<std::uint8_t, 6>& mac);
    int set_frame_max(int port, int size);
    int set_untagged_vlan(int port, int vid);
    int set_untagged_priority(int port, int priority);
    int set_discard(int port, int mode);
    int set_vlan_member(int port, std::uint32_t flags);
    int set_learn(int port, std::uint32_t flags);
    int set_bpdu_enable(int port, int enable);
    /// What the port can do.
    PortAbility local_ability(int port) const;
    /// PARAM: a speed, duplex or medium that the port does not have.
    int set_advert(int port, const PortAbility& ability);
    /// Queue of a priority at one port; -1 means every port.
    int set_cos(int port, int priority, int queue);
    /// Sets the number of queues, 1 to 8, and spreads the priorities over them.
    int set_queue_count(int queues);
    int queue_count() const { return queues_; }

    /// Link scan's view of a port's link. Ignored for the CPU port.
    void set_link(int port, bool up);
    /// The same with what was negotiated. A link that is down leaves speed, duplex and PAUSE.
    void set_link(int port, const LinkState& state);

    bool operator==(const PortTable&) const = default;
    void digest(Digest& d) const;

private:
    PortConfig& at(int port) { return ports_[static_cast<std::size_t>(port)]; }
    int set_flag(int port, int value, bool PortConfig::*flag);
    bool has_speed(int port, int speed) const;

    std::array<PortConfig, kPortCount> ports_;
    PortSet xe_;
    PortSet enabled_ = PortSet::all();
    PortSet link_{kCpuPort};
    PortSet ingress_filter_, egress_filter_;
    int smallest_frame_max_ = 1518;
    int queues_ = 4;
};

} // namespace vexosim
