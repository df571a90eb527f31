// Cables that are pulled, that flap, and on which frames take their time.
#include "sim/wire/panel.h"
#include "vexosim/clock.h"

namespace vexosim {

namespace {

std::uint64_t now_us()
{
    return static_cast<std::uint64_t>(now().count());
}

} // namespace

std::string Panel::plug_cable(int user_port, bool plugged)
{
    if (std::string why = without_wire(user_port); !why.empty()) {
        return why;
    }
    const std::lock_guard lock(cable_mutex_);
    set_flapping(user_port, {});
    set_plugged(user_port, plugged);
    return {};
}

std::string Panel::flap_cable(int user_port, std::chrono::microseconds period)
{
    constexpr std::chrono::milliseconds kShortest{1};
    if (std::string why = without_wire(user_port); !why.empty()) {
        return why;
    }
    if (period < kShortest) {
        return "a cable cannot flap that fast; the shortest period is 1 ms";
    }
    const auto half = static_cast<std::uint64_t>(period.count()) / 2;
    {
        const std::lock_guard lock(cable_mutex_);
        set_plugged(user_port, false);
        set_flapping(user_port, {half, now_us() + half});
    }
    tell_earlier();
    return {};
}

std::string Panel::impair_cable(int user_port, CableWay way, const Impairment& impairment)
{
    if (std::string why = without_wire(user_port); !why.empty()) {
        return why;
    }
    if (!(impairment.loss_percent >= 0 && impairment.loss_percent <= 100)) {
        return "a cable loses 0 to 100 percent of its frames";
    }
    if (impairment.delay.count() < 0) {
        return "a cable cannot deliver frames before they are sent";
    }
    slot(user_port).cable.lane(way).set(impairment, user_port, way);
    return {};
}

void Panel::new_cable(int user_port)
{
    Cable& cable = slot(user_port).cable;
    set_flapping(user_port, {});
    cable.plugged = true;
    for (const CableWay way : {CableWay::in, CableWay::out}) {
        cable.lane(way).set({}, user_port, way);
    }
    slow_.forget(user_port);
}

void Panel::set_plugged(int user_port, bool plugged)
{
    const std::unique_lock lock(slot(user_port).mutex);
    if (slot(user_port).wire) {
        slot(user_port).cable.plugged = plugged;
        slot(user_port).tell_carrier();
    }
}

void Panel::set_flapping(int user_port, const Flapping& flapping)
{
    const std::lock_guard lock(flapping_mutex_);
    flapping_[static_cast<std::size_t>(user_port)] = flapping;
    timed_ = timed_ || flapping.half_period_us != 0;
}

std::vector<FrameView> Panel::through(Lane& lane, std::span<const FrameView> frames)
{
    const std::uint64_t before = slow_.next_us();
    std::vector<FrameView> left = lane.pass(frames, now_us(), slow_);
    if (slow_.next_us() < before) {
        timed_ = true;
        tell_earlier();
    }
    return left;
}

void Panel::tell_earlier() const
{
    if (const auto function = on_due_earlier_.load()) {
        function();
    }
}

std::uint64_t Panel::next_due_us() const
{
    if (!timed_.load(std::memory_order_relaxed)) {
        return SlowFrames::kNever;
    }
    std::uint64_t next = slow_.next_us();
    const std::lock_guard lock(flapping_mutex_);
    for (const Flapping& one : flapping_) {
        next = std::min(next, one.next_us);
    }
    return next;
}

// A port whose cable flaps now; -1 when there is none.
int Panel::take_flap(std::uint64_t now_us)
{
    const std::lock_guard lock(flapping_mutex_);
    for (int port = 0; port < kPorts; ++port) {
        Flapping& one = flapping_[static_cast<std::size_t>(port)];
        if (one.next_us <= now_us) {
            one.next_us += one.half_period_us;
            return port;
        }
    }
    return -1;
}

void Panel::flap_due(std::uint64_t now_us)
{
    const std::lock_guard lock(cable_mutex_);
    for (int port = take_flap(now_us); port >= 0; port = take_flap(now_us)) {
        set_plugged(port, !slot(port).cable.plugged);
    }
}

void Panel::run_due(std::uint64_t now_us)
{
    flap_due(now_us);
    while (const auto arrived = slow_.take(now_us)) {
        const FrameView frame(arrived->frame);
        if (!slot(arrived->user_port).cable.plugged) {
            continue;
        }
        if (arrived->way == CableWay::in) {
            deliver(arrived->user_port, {&frame, 1});
            continue;
        }
        const std::shared_lock lock(slot(arrived->user_port).mutex);
        if (const auto& wire = slot(arrived->user_port).wire) {
            wire->send({&frame, 1});
        }
    }
}

CableStatus Panel::cable_status(int user_port) const
{
    const Cable& cable = slot(user_port).cable;
    CableStatus status;
    status.user_port = user_port;
    status.plugged = cable.plugged;
    status.in = cable.in.status();
    status.out = cable.out.status();
    status.in.waiting = slow_.waiting(user_port, CableWay::in);
    status.out.waiting = slow_.waiting(user_port, CableWay::out);
    const std::lock_guard lock(flapping_mutex_);
    status.flap_period = std::chrono::microseconds(
        2 * flapping_[static_cast<std::size_t>(user_port)].half_period_us);
    return status;
}

std::vector<CableStatus> Panel::impaired_cables() const
{
    std::vector<CableStatus> all;
    for (int port = 0; port < kPorts; ++port) {
        const CableStatus status = cable_status(port);
        const bool busy = status.in.waiting != 0 || status.out.waiting != 0;
        const Cable& cable = slot(port).cable;
        if (!status.plugged || status.flap_period.count() != 0 || busy || cable.in.impaired() ||
            cable.out.impaired()) {
            all.push_back(status);
        }
    }
    return all;
}

} // namespace vexosim
