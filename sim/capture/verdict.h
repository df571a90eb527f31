/// @file
/// What a capture says about a frame, in the options of its packets.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "sim/capture/pcapng.h"
#include "sim/chip/port_names.h"
#include "sim/pipeline/packet.h"

namespace vexosim {

/// Options of packets, made once for all frames of which the same is to be said.
class Verdicts {
public:
    explicit Verdicts(const PortNames& names);

    /// Where a frame goes, or why it goes nowhere. Valid until the next call.
    std::string_view of_received(const Packet& p);
    /// Where a copy came from.
    std::string_view of_sent(const Packet& p);
    /// Why a port does not send a copy.
    std::string_view of_lost(const Packet& p, DropReason why);

private:
    /// All that is said depends on.
    struct Case {
        enum class Kind : std::uint8_t { kNone, kReceived, kSent, kLost };
        Kind kind = Kind::kNone;
        DropReason drop = DropReason::kNone;
        std::uint8_t in_port = 0;
        bool to_cpu = false;
        int vid = 0;
        int cpu_reason = 0;
        std::uint64_t out = 0;

        bool operator==(const Case&) const = default;
        std::size_t slot() const;
    };
    struct Known {
        Case what;
        std::string options;
    };

    std::string_view options_of(const Case& what);
    std::string make(const Case& what) const;

    static constexpr std::size_t kSlots = 4096;

    PortNames names_;
    std::vector<Known> known_;
};

} // namespace vexosim
