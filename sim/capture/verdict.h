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

/// What became of a frame, or of copies of it. Two words that are made and compared as words.
class Verdict {
public:
    enum class Kind : std::uint8_t {
        kNone,     ///< there is no frame
        kReceived, ///< where a frame goes, or why it goes nowhere
        kSent,     ///< where copies came from
        kLost      ///< why ports do not send copies
    };

    Verdict() = default;
    static Verdict of_received(const Packet& p)
    {
        const bool to_cpu = p.cpu != 0 && !p.cpu_full;
        return {Kind::kReceived, p, p.out, p.drop,
                to_cpu ? kToCpu | static_cast<std::uint64_t>(p.cpu_reason) << kReasonAt : 0};
    }
    static Verdict of_sent(const Packet& p, PortSet ports)
    {
        return {Kind::kSent, p, ports, DropReason::kNone, 0};
    }
    static Verdict of_lost(const Packet& p, PortSet ports, DropReason why)
    {
        return {Kind::kLost, p, ports, why, 0};
    }

    Kind kind() const { return static_cast<Kind>(byte(kKindAt)); }
    /// Those that a received frame goes to; those of the copies.
    PortSet ports() const { return PortSet::from_bits(ports_); }
    /// 0: none is known.
    int vid() const { return static_cast<int>(rest_ & 0xffff); }
    int in_port() const { return byte(kInPortAt); }
    DropReason drop() const { return static_cast<DropReason>(byte(kDropAt)); }
    bool to_cpu() const { return (rest_ & kToCpu) != 0; }
    int cpu_reason() const { return byte(kReasonAt); }

    /// Of the copies of a frame that all its ports send.
    Verdict of_copies() const
    {
        Verdict v;
        v.ports_ = ports_;
        v.rest_ = (rest_ & (0xffff | std::uint64_t{0xff} << kInPortAt)) |
                  static_cast<std::uint64_t>(Kind::kSent) << kKindAt;
        return v;
    }

    /// All that its text depends on: not who received it, nor which copy it is of.
    Verdict said() const
    {
        Verdict v = *this;
        if (kind() == Kind::kReceived)
            v.rest_ &= ~(std::uint64_t{0xff} << kInPortAt);
        else
            v.ports_ = 0;
        return v;
    }
    std::uint64_t hash() const
    {
        return (ports_ + rest_ * 0xd6e8feb86659fd93) * 0x9e3779b97f4a7c15;
    }
    bool operator==(const Verdict&) const = default;

private:
    static constexpr int kKindAt = 16, kDropAt = 24, kInPortAt = 32, kReasonAt = 40;
    static constexpr std::uint64_t kToCpu = std::uint64_t{1} << 48;

    Verdict(Kind kind, const Packet& p, PortSet ports, DropReason drop, std::uint64_t cpu)
        : ports_(ports.bits()),
          rest_(static_cast<std::uint64_t>(p.vid) | static_cast<std::uint64_t>(kind) << kKindAt |
                static_cast<std::uint64_t>(drop) << kDropAt |
                static_cast<std::uint64_t>(p.in_port) << kInPortAt | cpu)
    {
    }
    int byte(int at) const { return static_cast<int>(rest_ >> at & 0xff); }

    std::uint64_t ports_ = 0, rest_ = 0;
};

/// Options of packets, made once for all packets of which the same is to be said.
class VerdictOptions {
public:
    explicit VerdictOptions(const PortNames& names);

    /// As pcapng::put_packet() wants them. Valid until the next call.
    std::string_view of(const Verdict& verdict)
    {
        const Verdict said = verdict.said();
        Known& known = known_[(said.hash() >> 40) % kSlots];
        if (known.verdict != said) [[unlikely]]
            known = {said, make(said)};
        return known.options;
    }

private:
    struct Known {
        Verdict verdict;
        std::string options;
    };

    std::string make(const Verdict& verdict) const;

    static constexpr std::size_t kSlots = 4096;

    PortNames names_;
    std::vector<Known> known_;
};

} // namespace vexosim
