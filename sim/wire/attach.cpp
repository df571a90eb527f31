#include <utility>

#include "sim/wire/panel.h"
#include "vexosim/cable.h"
#include "vexosim/wire.h"

namespace vexosim {

std::string attach(int user_port, std::unique_ptr<Wire> wire)
{
    return panel().attach(user_port, std::move(wire));
}

std::string attach(int user_port, const std::string& spec)
{
    if (std::string why = panel().refusal(user_port); !why.empty()) {
        return why;
    }
    OpenedWire opened = open_wire(spec);
    if (!opened.wire) {
        return "port " + std::to_string(user_port) + ": " + opened.error;
    }
    return panel().attach(user_port, std::move(opened.wire));
}

std::string detach(int user_port)
{
    return panel().detach(user_port);
}

void detach_all()
{
    for (const Attachment& attached : attachments()) {
        detach(attached.user_port);
    }
}

std::vector<Attachment> attachments()
{
    return panel().attachments();
}

void send_to_wire(int user_port, std::span<const FrameView> frames)
{
    panel().send(user_port, frames);
}

bool wire_carrier(int user_port)
{
    return panel().carrier(user_port);
}

void set_wire_carrier(int user_port, bool up)
{
    panel().set_carrier(user_port, up);
}

void on_wire_receive(ReceiveFn receiver)
{
    panel().on_receive(std::move(receiver));
}

void start_wires()
{
    panel().start();
}

void stop_wires()
{
    panel().stop();
}

std::size_t poll_wires()
{
    return panel().poll();
}

std::string plug_cable(int user_port, bool plugged)
{
    return panel().plug_cable(user_port, plugged);
}

std::string flap_cable(int user_port, std::chrono::microseconds period)
{
    return panel().flap_cable(user_port, period);
}

std::string impair_cable(int user_port, CableWay way, const Impairment& impairment)
{
    return panel().impair_cable(user_port, way, impairment);
}

std::vector<CableStatus> impaired_cables()
{
    return panel().impaired_cables();
}

Replay replay_captures(const std::function<void(std::chrono::nanoseconds)>& elapsed)
{
    return panel().replay(elapsed);
}

} // namespace vexosim
