#include "sim/wire/pcap_wire.h"

#include "sim/wire/capture_clock.h"

namespace vexosim {

OpenedWire PcapWire::open(const std::string& files)
{
    const auto comma = files.find(',');
    if (comma == std::string::npos || files.size() == 1) {
        return {nullptr, "pcap:" + files + ": expected pcap:IN,OUT, of which one may be empty"};
    }
    const std::string in = files.substr(0, comma), out = files.substr(comma + 1);
    auto wire = std::make_unique<PcapWire>();
    std::string why = in.empty() ? "" : wire->in_.open(in);
    // Only once all else is well: opening empties the file.
    if (why.empty() && !out.empty()) {
        why = wire->out_.open(out);
    }
    if (!why.empty()) {
        return {nullptr, "pcap:" + files + ": " + why};
    }
    return {std::move(wire), {}};
}

void PcapWire::send(std::span<const FrameView> frames)
{
    if (!out_.is_open()) {
        count_.sent += frames.size();
        return;
    }
    const std::lock_guard lock(write_mutex_);
    const std::size_t written = out_.write(frames, capture_now());
    count_.sent += written;
    count_.drops += frames.size() - written;
}

// Looks ahead to the next frame that can be played, counting those that cannot.
bool PcapWire::fetch()
{
    while (!waiting_) {
        waiting_ = in_.next();
        if (!waiting_) {
            return false;
        }
        const bool too_long = waiting_->frame.size() > FrameBatch::kMaxFrameBytes;
        if (waiting_->cut || too_long) {
            (waiting_->cut ? count_.cut : count_.too_long)++;
            waiting_.reset();
        }
    }
    return true;
}

bool PcapWire::receive(FrameBatch& batch)
{
    const std::lock_guard lock(read_mutex_);
    while (!batch.full() && fetch()) {
        batch.add(waiting_->frame);
        waiting_.reset();
        count_.received++;
    }
    return waiting_ || fetch();
}

std::optional<std::chrono::nanoseconds> PcapWire::next_time()
{
    const std::lock_guard lock(read_mutex_);
    return fetch() ? std::optional(waiting_->time) : std::nullopt;
}

std::string PcapWire::describe() const
{
    return "pcap:" + in_.path() + "," + out_.path();
}

std::string PcapWire::notice() const
{
    const std::lock_guard lock(read_mutex_);
    std::string text = in_.damage();
    const WireCounters now = counters();
    const auto skipped = now.receive_cut + now.receive_too_long;
    if (skipped > 0) {
        text += text.empty() ? in_.path() + ": " : "; ";
        text += std::to_string(skipped) + " frames that were captured in part or are too long " +
                "were not played";
    }
    return text;
}

} // namespace vexosim
