#include "sim/chip/mac_table.h"

#include <algorithm>
#include <bit>
#include <limits>

#include <bcm/error.h>

namespace vexosim {

namespace {

constexpr std::uint16_t kKeptFlags =
    BCM_L2_PENDING | BCM_L2_STATIC | BCM_L2_TRUNK_MEMBER | BCM_L2_MCAST;

/// Wraps after 49 days; ages are differences and do not mind.
std::uint32_t to_ms(std::uint64_t us)
{
    return static_cast<std::uint32_t>(us / 1000);
}

} // namespace

bool MacEntry::same_place(const MacEntry& other) const
{
    return on_trunk() == other.on_trunk() &&
           (on_trunk() ? trunk == other.trunk : port == other.port);
}

void MacEntry::digest(Digest& d) const
{
    d.add(key);
    d.add(block);
    for (std::uint32_t value :
         {is_static() ? 0 : heard_ms, std::uint32_t{flags}, std::uint32_t{l2mc_index},
          std::uint32_t{auth}, std::uint32_t{port}, std::uint32_t{trunk}, std::uint32_t{rtag},
          std::uint32_t{cos_dst}, std::uint32_t{cos_src}})
        d.add(value);
}

void MacTally::count(const MacEntry& entry, int change)
{
    auto add = [&](std::uint16_t& n) { n = static_cast<std::uint16_t>(n + change); };
    all += static_cast<std::size_t>(change);
    add(vlan[static_cast<std::size_t>(entry.vid())]);
    add(entry.on_trunk() ? trunk[entry.trunk] : port[entry.port]);
}

/// Half of the slots stay free, so that runs of taken ones are short.
MacTable::MacTable(std::size_t capacity)
    : slots_(std::bit_ceil(2 * std::max<std::size_t>(capacity, 1))), capacity_(capacity),
      shift_(64 - std::countr_zero(slots_.size()))
{
}

int MacTable::add(const MacEntry& entry, bool replace_dynamic, std::uint64_t now_us)
{
    if (entry.vid() >= kVlanIds ||
        (entry.on_trunk() ? entry.trunk >= kTrunkCount : entry.port >= kPortCount))
        return BCM_E_PARAM;
    MacEntry added = entry;
    added.flags &= kKeptFlags;
    added.heard_ms = to_ms(now_us);
    if (MacEntry* present = find_slot(entry.key)) {
        if (present->is_static() || !replace_dynamic)
            return BCM_E_EXISTS;
        remove(static_cast<std::size_t>(present - slots_.data()));
    } else if (size() == capacity_) {
        return BCM_E_FULL;
    }
    insert(added);
    return BCM_E_NONE;
}

int MacTable::erase(std::uint64_t key)
{
    MacEntry* entry = find_slot(key);
    if (entry == nullptr)
        return BCM_E_NOT_FOUND;
    remove(static_cast<std::size_t>(entry - slots_.data()));
    return BCM_E_NONE;
}

/// Visits each entry once although removing one moves others: from just behind a free slot,
/// backwards, what moves into a gap comes from behind it and was visited already.
template <class Pred>
std::size_t MacTable::erase_if(std::size_t at_most, Pred pred)
{
    if (at_most == 0)
        return 0;
    std::size_t start = 0;
    while (slots_[start].key != MacEntry::kNoKey)
        ++start;
    std::size_t erased = 0;
    for (std::size_t n = 1; n < slots_.size() && erased < at_most; ++n) {
        std::size_t i = (start - n) & (slots_.size() - 1);
        if (slots_[i].key != MacEntry::kNoKey && pred(slots_[i])) {
            remove(i);
            ++erased;
        }
    }
    return erased;
}

std::size_t MacTable::erase_by_mac(MacAddress mac, bool with_static)
{
    std::size_t erased = 0;
    for (int vid = 0; vid < kVlanIds; ++vid) {
        const MacEntry* entry = count_vlan(vid) == 0 ? nullptr : find(mac_key(mac, vid));
        if (entry != nullptr && (with_static || !entry->is_static()))
            erased += erase(entry->key) == BCM_E_NONE ? 1 : 0;
    }
    return erased;
}

std::size_t MacTable::erase_by_vlan(int vid, bool with_static)
{
    return erase_if(count_vlan(vid), [&](const MacEntry& e) {
        return e.vid() == vid && (with_static || !e.is_static());
    });
}

std::size_t MacTable::erase_by_port(int port, bool with_static)
{
    return erase_if(count_port(port), [&](const MacEntry& e) {
        return !e.on_trunk() && e.port == port && (with_static || !e.is_static());
    });
}

std::size_t MacTable::erase_by_trunk(int trunk, bool with_static)
{
    return erase_if(count_trunk(trunk), [&](const MacEntry& e) {
        return e.on_trunk() && e.trunk == trunk && (with_static || !e.is_static());
    });
}

bool MacTable::learn(const MacEntry& place, std::uint64_t now_us)
{
    MacEntry* present = find_slot(place.key);
    if (present != nullptr && (present->is_static() || present->same_place(place))) {
        touch(*present, now_us);
        return true;
    }
    if (present != nullptr)
        remove(static_cast<std::size_t>(present - slots_.data()));
    if (size() == capacity_)
        return false;
    MacEntry learned;
    learned.key = place.key;
    learned.port = place.port;
    learned.trunk = place.trunk;
    learned.flags = place.flags & BCM_L2_TRUNK_MEMBER;
    learned.heard_ms = to_ms(now_us);
    insert(learned);
    return true;
}

int MacTable::set_age_seconds(int seconds)
{
    if (seconds < 0)
        return BCM_E_PARAM;
    age_seconds_ = seconds;
    next_age_us_ = 0;
    return BCM_E_NONE;
}

std::size_t MacTable::age(std::uint64_t now_us)
{
    if (age_seconds_ == 0 || now_us < next_age_us_)
        return 0;
    std::uint64_t limit_ms = static_cast<std::uint64_t>(age_seconds_) * 1000;
    std::uint32_t now_ms = to_ms(now_us), oldest = 0;
    std::size_t erased = erase_if(size(), [&](const MacEntry& e) {
        if (e.is_static())
            return false;
        std::uint32_t idle = now_ms - e.heard_ms;
        if (idle < limit_ms)
            oldest = std::max(oldest, idle);
        return idle >= limit_ms;
    });
    next_age_us_ = (now_us / 1000 + limit_ms - oldest) * 1000;
    return erased;
}

std::vector<MacEntry> MacTable::snapshot() const
{
    std::vector<MacEntry> entries;
    entries.reserve(size());
    std::ranges::copy_if(slots_, std::back_inserter(entries),
                         [](const MacEntry& e) { return e.key != MacEntry::kNoKey; });
    std::ranges::sort(entries, {}, &MacEntry::key);
    return entries;
}

void MacTable::take_events(std::vector<MacEvent>& events)
{
    events.clear();
    events.swap(events_);
}

bool MacTable::operator==(const MacTable& other) const
{
    return capacity_ == other.capacity_ && age_seconds_ == other.age_seconds_ &&
           size() == other.size() && std::ranges::all_of(slots_, [&](const MacEntry& e) {
               if (e.key == MacEntry::kNoKey)
                   return true;
               const MacEntry* same = other.find(e.key);
               return same != nullptr && *same == e;
           });
}

void MacTable::digest(Digest& d) const
{
    std::uint64_t sum = 0; // where entries lie depends on history
    for (const MacEntry& entry : slots_) {
        if (entry.key == MacEntry::kNoKey)
            continue;
        Digest one;
        one.add(entry);
        sum += one.value();
    }
    d.add(capacity_);
    d.add(age_seconds_);
    d.add(size());
    d.add(sum);
}

void MacTable::insert(const MacEntry& entry)
{
    std::size_t i = home(entry.key);
    while (slots_[i].key != MacEntry::kNoKey)
        i = next(i);
    slots_[i] = entry;
    count(entry, 1);
    note(entry, true);
}

void MacTable::remove(std::size_t slot)
{
    MacEntry gone = slots_[slot];
    count(gone, -1);
    note(gone, false);
    close_gap(slot);
}

/// Moves up what was put behind the gap only because the gap was taken.
void MacTable::close_gap(std::size_t gap)
{
    std::size_t mask = slots_.size() - 1;
    for (std::size_t i = next(gap); slots_[i].key != MacEntry::kNoKey; i = next(i)) {
        std::size_t reach = (i - home(slots_[i].key)) & mask;
        if (reach >= ((i - gap) & mask)) {
            slots_[gap] = slots_[i];
            gap = i;
        }
    }
    slots_[gap] = MacEntry{};
}

void MacTable::count(const MacEntry& entry, int change)
{
    tally_.count(entry, change);
    if (!entry.is_static())
        learned_.count(entry, change);
}

void MacTable::note(const MacEntry& entry, bool inserted)
{
    if (noting_)
        events_.push_back({entry, inserted});
}

} // namespace vexosim
