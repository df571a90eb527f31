/// @file
/// The MAC table: where addresses are, by VLAN.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <bcm/l2.h>

#include "sim/chip/digest.h"
#include "sim/chip/port_set.h"
#include "sim/chip/vlan_table.h"

namespace vexosim {

/// 48 bits, the first byte on the wire is the highest.
using MacAddress = std::uint64_t;

constexpr MacAddress load_mac(const std::uint8_t* b)
{
    std::uint32_t high = std::uint32_t{b[0]} << 24 | std::uint32_t{b[1]} << 16 |
                         std::uint32_t{b[2]} << 8 | std::uint32_t{b[3]};
    return MacAddress{high} << 16 | MacAddress{b[4]} << 8 | b[5];
}

constexpr void store_mac(MacAddress mac, std::uint8_t* bytes)
{
    for (int i = 5; i >= 0; --i, mac >>= 8)
        bytes[i] = static_cast<std::uint8_t>(mac);
}

constexpr bool is_multicast(MacAddress mac)
{
    return (mac >> 40 & 1) != 0;
}
inline constexpr MacAddress kBroadcastMac = 0xffffffffffff;

/// What an entry is found by. `vid` is 0 to 4095.
constexpr std::uint64_t mac_key(MacAddress mac, int vid)
{
    return static_cast<std::uint64_t>(vid) << 48 | mac;
}

inline constexpr int kTrunkCount = 128;

struct MacEntry {
    static constexpr std::uint64_t kNoKey = ~std::uint64_t{0};

    std::uint64_t key = kNoKey;
    PortSet block;              ///< ports through which frames to the address do not leave
    std::uint32_t heard_ms = 0; ///< when the address was last a source
    std::uint16_t flags = 0;    ///< BCM_L2_PENDING, _STATIC, _TRUNK_MEMBER, _MCAST
    std::uint16_t l2mc_index = 0;
    std::uint16_t auth = 0;
    std::uint8_t port = 0;  ///< destination, unless it is a trunk
    std::uint8_t trunk = 0; ///< destination, with BCM_L2_TRUNK_MEMBER
    std::uint8_t rtag = 0;
    std::uint8_t cos_dst = 0;
    std::uint8_t cos_src = 0;

    MacAddress mac() const { return key & kBroadcastMac; }
    int vid() const { return static_cast<int>(key >> 48); }
    bool is_static() const { return (flags & BCM_L2_STATIC) != 0; }
    bool on_trunk() const { return (flags & BCM_L2_TRUNK_MEMBER) != 0; }
    /// Same kind of destination, and same port or trunk.
    bool same_place(const MacEntry& other) const;

    bool operator==(const MacEntry&) const = default;
    void digest(Digest& d) const;
};

/// Entries in all, by VLAN, and by the port or trunk that is their destination.
struct MacTally {
    std::size_t all = 0;
    std::array<std::uint16_t, kVlanIds> vlan{};
    std::array<std::uint16_t, kPortCount> port{};
    std::array<std::uint16_t, kTrunkCount> trunk{};

    void count(const MacEntry& entry, int change);
};

struct MacEvent {
    MacEntry entry;
    bool inserted = false;
};

/// At most `capacity` entries. Replacing an entry, and a station's move, are a removal and an
/// insertion. Times are the chip's, in microseconds.
class MacTable {
public:
    static constexpr std::size_t kCapacity = 32768;

    explicit MacTable(std::size_t capacity = kCapacity);

    std::size_t size() const { return tally_.all; }
    std::size_t capacity() const { return capacity_; }
    /// Null when absent; valid until the table changes.
    const MacEntry* find(std::uint64_t key) const
    {
        for (std::size_t i = home(key);; i = next(i)) {
            if (slots_[i].key == key)
                return &slots_[i];
            if (slots_[i].key == MacEntry::kNoKey)
                return nullptr;
        }
    }
    /// Starts to fetch what find(key) will read.
    void prefetch(std::uint64_t key) const { __builtin_prefetch(&slots_[home(key)]); }

    /// Adds an entry as heard now. EXISTS, unless the present entry is not static and
    /// `replace_dynamic`; FULL; PARAM: VLAN above 4095, port or trunk that is none.
    int add(const MacEntry& entry, bool replace_dynamic, std::uint64_t now_us);
    /// Removes an entry, static or not. NOT_FOUND.
    int erase(std::uint64_t key);
    /// The number of entries removed; static ones stay unless `with_static`.
    std::size_t erase_by_mac(MacAddress mac, bool with_static);
    std::size_t erase_by_vlan(int vid, bool with_static);
    std::size_t erase_by_port(int port, bool with_static);
    std::size_t erase_by_trunk(int trunk, bool with_static);

    /// Puts the address of a frame's source where `place` says (its key, port, trunk and trunk
    /// flag count), or notes that it was heard again. Static entries stay as they are.
    /// @return false when the table is full.
    bool learn(const MacEntry& place, std::uint64_t now_us);

    /// Notes that the address of an entry of this table was heard again.
    void touch(const MacEntry& entry, std::uint64_t now_us)
    {
        slots_[static_cast<std::size_t>(&entry - slots_.data())].heard_ms =
            static_cast<std::uint32_t>(now_us / 1000);
    }

    /// Seconds without being heard after which an entry goes; 0: never. PARAM: negative.
    int set_age_seconds(int seconds);
    int age_seconds() const { return age_seconds_; }
    /// Removes the entries that have not been heard for long enough.
    std::size_t age(std::uint64_t now_us);

    /// All entries, by VLAN and address.
    std::vector<MacEntry> snapshot() const;
    /// Entries in a VLAN, and entries whose destination is a port or trunk.
    std::size_t count_vlan(int vid) const { return tally_.vlan[static_cast<std::size_t>(vid)]; }
    std::size_t count_port(int port) const { return tally_.port[static_cast<std::size_t>(port)]; }
    std::size_t count_trunk(int id) const { return tally_.trunk[static_cast<std::size_t>(id)]; }
    /// The same of entries that are not static.
    const MacTally& learned() const { return learned_; }

    /// From now on insertions and removals are noted, in order. Not part of the table's value.
    void start_events() { noting_ = true; }
    bool has_events() const { return !events_.empty(); }
    /// Hands over the events noted since the last time; `events` gives its memory in exchange.
    void take_events(std::vector<MacEvent>& events);

    bool operator==(const MacTable& other) const;
    void digest(Digest& d) const;

private:
    std::size_t home(std::uint64_t key) const
    {
        return static_cast<std::size_t>(key * 0x9e3779b97f4a7c15u >> shift_);
    }
    std::size_t next(std::size_t slot) const { return (slot + 1) & (slots_.size() - 1); }
    MacEntry* find_slot(std::uint64_t key) { return const_cast<MacEntry*>(find(key)); }
    void insert(const MacEntry& entry);
    void remove(std::size_t slot);
    void close_gap(std::size_t gap);
    void count(const MacEntry& entry, int change);
    void note(const MacEntry& entry, bool inserted);
    template <class Pred>
    std::size_t erase_if(std::size_t at_most, Pred pred);

    std::vector<MacEntry> slots_;
    std::size_t capacity_;
    int shift_;
    int age_seconds_ = 300;
    std::uint64_t next_age_us_ = 0; ///< nothing can be too old before
    MacTally tally_, learned_;
    std::vector<MacEvent> events_;
    bool noting_ = false;
};

} // namespace vexosim
