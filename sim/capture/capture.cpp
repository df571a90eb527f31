#include "sim/capture/capture.h"

#include "sim/wire/capture_clock.h"

namespace vexosim {

namespace {

std::uint64_t now_ns()
{
    return static_cast<std::uint64_t>(capture_now().count());
}

bool is_as_received(const Packet& p, FrameView form)
{
    return form.data() == p.frame.data() && form.size() == p.frame.size();
}

} // namespace

Capture::Capture(const Plan& plan)
    : ports_(plan.ports), what_(plan.what),
      writer_(plan.ports, plan.names, plan.descriptions, plan.memory)
{
}

Capture::~Capture() = default;

std::string Capture::close()
{
    return writer_.close(now_ns());
}

/// @return where the note stands until the next one.
std::uint8_t* Capture::note(const Verdict& verdict, PortSet ports, const Packet& p, FrameView form)
{
    packets_ += static_cast<std::uint64_t>(ports.count());
    arrival_ = nullptr;
    // One reading of the clock serves for frames that came in together.
    if (notes_ == nullptr) {
        notes_ = &writer_.borrow();
        put_note(*notes_, Note::of_time(now_ns()));
    }
    if (!is_as_received(p, form))
        return put_note(*notes_, {verdict, frame_id_, form.size(), Note::Bytes::kFollow}, form);
    if (noted_id_ == frame_id_)
        return put_note(*notes_, {verdict, frame_id_, form.size(), Note::Bytes::kSame});
    noted_id_ = frame_id_;
    return put_note(*notes_, {verdict, frame_id_, form.size(), Note::Bytes::kReceived}, form);
}

void Capture::decided(const Packet& p)
{
    ++frame_id_;
    arrival_ = nullptr;
    const bool dropped = p.drop != DropReason::kNone;
    if (ports_.test(p.in_port) &&
        (wants(Captured::received) || (dropped && wants(Captured::dropped))))
        arrival_ = note(Verdict::of_received(p), {p.in_port}, p, p.frame);
}

void Capture::leaves(const Packet& p, PortSet ports, FrameView form)
{
    ports &= ports_;
    if (ports.empty() || !wants(Captured::sent))
        return;
    if (arrival_ == nullptr || ports != p.out || !is_as_received(p, form)) {
        note(Verdict::of_sent(p, ports), ports, p, form);
        return;
    }
    Note arrival = note_at(arrival_);
    arrival.set_bytes(Note::Bytes::kSent);
    std::memcpy(arrival_, &arrival, sizeof arrival);
    arrival_ = nullptr;
    packets_ += static_cast<std::uint64_t>(ports.count());
}

void Capture::is_lost(const Packet& p, PortSet ports, FrameView form, DropReason why)
{
    ports &= ports_;
    if (ports.any() && wants(Captured::dropped))
        note(Verdict::of_lost(p, ports, why), ports, p, form);
}

void Capture::batch_ends()
{
    if (notes_ == nullptr)
        return;
    notes_ = nullptr;
    writer_.give_back();
    arrival_ = nullptr;
}

} // namespace vexosim
