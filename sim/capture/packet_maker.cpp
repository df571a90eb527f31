#include "sim/capture/packet_maker.h"

namespace vexosim {

PacketMaker::PacketMaker(PortSet ports, const PortNames& names)
    : ports_(ports), names_(names), options_(names)
{
    std::uint32_t number = 0;
    for (const int port : names.in_order()) {
        if (ports.test(port))
            interfaces_[static_cast<std::size_t>(port)].number = number++;
    }
}

void PacketMaker::put_head(BlockBuffer& to,
                           const std::array<std::string, kPortCount>& descriptions) const
{
    pcapng::put_section(to, "vexosim");
    for (const int port : names_.in_order()) {
        if (!ports_.test(port))
            continue;
        const std::string name = names_.name(port);
        pcapng::put_interface(to, port == kCpuPort ? name : "port " + name,
                              descriptions[static_cast<std::size_t>(port)]);
    }
}

void PacketMaker::put_next(BlockBuffer& to, std::span<const std::uint8_t>& notes)
{
    const Note note = note_at(notes.data());
    notes = notes.subspan(sizeof note);
    const Verdict& verdict = note.verdict();
    if (verdict.kind() == Verdict::Kind::kNone) {
        time_ns_ = note.time_ns();
        return;
    }
    FrameView frame = received_;
    if (note.bytes() != Note::Bytes::kSame) {
        frame = notes.first(note.size());
        notes = notes.subspan(note.size());
    }
    if (note.bytes() != Note::Bytes::kFollow)
        received_ = frame;
    id_ += note.id() - static_cast<std::uint32_t>(id_);
    const bool received = verdict.kind() == Verdict::Kind::kReceived;
    put_packets(to, verdict, received ? PortSet{verdict.in_port()} : verdict.ports(), frame);
    if (note.bytes() == Note::Bytes::kSent)
        put_packets(to, verdict.of_copies(), verdict.ports(), frame);
}

void PacketMaker::put_packets(BlockBuffer& to, const Verdict& verdict, PortSet ports,
                              FrameView frame)
{
    const std::string_view options = options_.of(verdict);
    for (const int port : ports) {
        Interface& interface = interfaces_[static_cast<std::size_t>(port)];
        ++interface.packets;
        interface.dropped += verdict.drop() != DropReason::kNone ? 1 : 0;
        pcapng::put_packet(to, {interface.number, time_ns_, id_}, frame, options);
    }
}

void PacketMaker::put_statistics(BlockBuffer& to, std::uint64_t time_ns) const
{
    for (const int port : ports_) {
        const Interface& interface = interfaces_[static_cast<std::size_t>(port)];
        pcapng::put_statistics(to, interface.number, time_ns, interface.packets, interface.dropped);
    }
}

} // namespace vexosim
