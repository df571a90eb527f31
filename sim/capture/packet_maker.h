#pragma once

#include <array>
#include <span>
#include <string>

#include "sim/capture/note.h"

namespace vexosim {

/// Makes the blocks of a capture file of notes.
class PacketMaker {
public:
    PacketMaker(PortSet ports, const PortNames& names);

    /// The head of the file.
    /// @param descriptions of the ports' wires, by chip port; empty: none.
    void put_head(BlockBuffer& to, const std::array<std::string, kPortCount>& descriptions) const;
    /// Takes the first note off and puts its packets.
    void put_next(BlockBuffer& to, std::span<const std::uint8_t>& notes);
    /// The end of the file: what each port has counted.
    void put_statistics(BlockBuffer& to, std::uint64_t time_ns) const;

private:
    void put_packets(BlockBuffer& to, const Verdict& verdict, PortSet ports, FrameView frame);

    struct Interface {
        std::uint32_t number = 0;
        std::uint64_t packets = 0, dropped = 0;
    };

    PortSet ports_;
    PortNames names_;
    std::array<Interface, kPortCount> interfaces_{}; // by chip port
    VerdictOptions options_;
    std::uint64_t time_ns_ = 0, id_ = 0; ///< of the last note
    FrameView received_;                 ///< in the notes
};

} // namespace vexosim
