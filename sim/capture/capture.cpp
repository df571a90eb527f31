#include "sim/capture/capture.h"

#include "sim/wire/capture_clock.h"

namespace vexosim {

Capture::Capture(const Plan& plan) : ports_(plan.ports), what_(plan.what), verdicts_(plan.names)
{
    pcapng::put_section(blocks_, "vexosim");
    std::uint32_t number = 0;
    for (const int port : plan.names.in_order()) {
        if (!ports_.test(port))
            continue;
        const std::string name = plan.names.name(port);
        pcapng::put_interface(blocks_, port == kCpuPort ? name : "port " + name,
                              plan.descriptions[static_cast<std::size_t>(port)]);
        interfaces_[static_cast<std::size_t>(port)].number = number++;
    }
}

Capture::~Capture() = default;

std::string Capture::open(const std::string& path)
{
    std::string why = writer_.open(path);
    if (why.empty())
        writer_.take(blocks_);
    return why;
}

std::string Capture::close()
{
    put_statistics();
    return writer_.close(blocks_);
}

void Capture::put_statistics()
{
    for (const int port : ports_) {
        const Interface& interface = interfaces_[static_cast<std::size_t>(port)];
        pcapng::put_statistics(blocks_, interface.number, time_ns(), interface.packets,
                               interface.dropped);
    }
}

/// One reading of the clock serves for frames that came in together.
std::uint64_t Capture::time_ns()
{
    if (time_ns_ == 0)
        time_ns_ = static_cast<std::uint64_t>(capture_now().count());
    return time_ns_;
}

void Capture::put(int port, pcapng::Direction direction, FrameView frame, std::string_view options)
{
    Interface& interface = interfaces_[static_cast<std::size_t>(port)];
    ++interface.packets;
    ++packets_;
    pcapng::put_packet(blocks_, {interface.number, time_ns(), direction, frame_id_}, frame,
                       options);
}

void Capture::decided(const Packet& p)
{
    ++frame_id_;
    const bool dropped = p.drop != DropReason::kNone;
    if (!ports_.test(p.in_port) ||
        !(wants(Captured::received) || (dropped && wants(Captured::dropped))))
        return;
    put(p.in_port, pcapng::Direction::received, p.frame, verdicts_.of_received(p));
    interfaces_[static_cast<std::size_t>(p.in_port)].dropped += dropped ? 1 : 0;
}

void Capture::leaves(const Packet& p, PortSet ports, FrameView form)
{
    ports &= ports_;
    if (ports.empty() || !wants(Captured::sent))
        return;
    const std::string_view options = verdicts_.of_sent(p);
    for (const int port : ports)
        put(port, pcapng::Direction::sent, form, options);
}

void Capture::is_lost(const Packet& p, PortSet ports, FrameView form, DropReason why)
{
    if (!wants(Captured::dropped))
        return;
    for (const int port : ports& ports_) {
        put(port, pcapng::Direction::sent, form, verdicts_.of_lost(p, why));
        ++interfaces_[static_cast<std::size_t>(port)].dropped;
    }
}

void Capture::batch_ends()
{
    time_ns_ = 0;
    writer_.take(blocks_);
}

} // namespace vexosim
