#include "sim/wire/panel.h"

#include <cstdlib>
#include <utility>

namespace vexosim {

Panel& panel()
{
    static Panel& the_panel = *new Panel;
    return the_panel;
}

Panel::Panel() : loop_([this](int user_port) { read_burst(user_port, batch_, true); }) {}

std::string Panel::refusal(int user_port) const
{
    const std::string port = "port " + std::to_string(user_port);
    if (!exists(user_port)) {
        return port + ": no such port; wires go into ports 0 to " + std::to_string(kPorts - 1);
    }
    const std::shared_lock lock(slot(user_port).mutex);
    if (const auto& wire = slot(user_port).wire) {
        return port + ": already attached to " + wire->describe() + "; detach it first";
    }
    return {};
}

std::string Panel::without_wire(int user_port) const
{
    const std::string port = "port " + std::to_string(user_port);
    if (!exists(user_port)) {
        return port + ": no such port; wires go into ports 0 to " + std::to_string(kPorts - 1);
    }
    const std::shared_lock lock(slot(user_port).mutex);
    return slot(user_port).wire ? "" : port + ": nothing is attached";
}

// A packet socket would let two ports share an interface, and each would see the other's frames.
int Panel::holder_of(const std::string& description) const
{
    for (int port = 0; port < kPorts; ++port) {
        const std::shared_lock lock(slot(port).mutex);
        if (slot(port).wire && slot(port).wire->describe() == description) {
            return port;
        }
    }
    return -1;
}

std::string Panel::attach(int user_port, std::unique_ptr<Wire> wire)
{
    const std::lock_guard lock(attach_mutex_);
    std::string why = refusal(user_port);
    if (why.empty()) {
        why = place(user_port, wire);
    }
    return why;
}

std::string Panel::place(int user_port, std::unique_ptr<Wire>& wire)
{
    const std::string port = "port " + std::to_string(user_port);
    if (!wire) {
        return port + ": no wire given";
    }
    const std::string name = wire->describe();
    const int holder = name.starts_with("veth:") ? holder_of(name) : -1;
    if (holder >= 0) {
        return port + ": " + name + " is already attached to port " + std::to_string(holder);
    }
    const int fd = wire->poll_fd();
    {
        const std::unique_lock lock(slot(user_port).mutex);
        slot(user_port).wire = std::move(wire);
        slot(user_port).tell_carrier();
    }
    if (fd >= 0 && !loop_.watch(user_port, fd)) {
        const std::unique_lock lock(slot(user_port).mutex);
        slot(user_port).wire.reset();
        return port + ": " + name + " cannot be watched: too many open files";
    }
    return {};
}

std::string Panel::detach(int user_port)
{
    const std::lock_guard lock(attach_mutex_);
    const std::string port = "port " + std::to_string(user_port);
    if (!exists(user_port)) {
        return port + ": no such port; wires go into ports 0 to " + std::to_string(kPorts - 1);
    }
    const std::unique_lock slot_lock(slot(user_port).mutex);
    auto& wire = slot(user_port).wire;
    if (!wire) {
        return port + ": nothing is attached";
    }
    if (wire->poll_fd() >= 0) {
        loop_.unwatch(wire->poll_fd());
    }
    wire->set_carrier(false);
    wire.reset();
    slot(user_port).partner.reset();
    new_cable(user_port);
    return {};
}

std::vector<Attachment> Panel::attachments() const
{
    std::vector<Attachment> all;
    for (int port = 0; port < kPorts; ++port) {
        const std::shared_lock lock(slot(port).mutex);
        if (const auto& wire = slot(port).wire) {
            all.push_back({port, wire->describe(), slot(port).cable.plugged && wire->carrier(),
                           wire->counters(), wire->notice()});
        }
    }
    return all;
}

void Panel::send(int user_port, std::span<const FrameView> frames)
{
    if (!exists(user_port) || frames.empty()) {
        return;
    }
    Cable& cable = slot(user_port).cable;
    if (!cable.plugged) {
        return;
    }
    std::vector<FrameView> left;
    if (cable.out.impaired()) {
        left = through(cable.out, frames);
        frames = left;
    }
    const std::shared_lock lock(slot(user_port).mutex);
    if (const auto& wire = slot(user_port).wire; wire && !frames.empty()) {
        wire->send(frames);
    }
}

bool Panel::carrier(int user_port) const
{
    if (!exists(user_port)) {
        return false;
    }
    const std::shared_lock lock(slot(user_port).mutex);
    const Slot& at = slot(user_port);
    return at.wire && at.cable.plugged && at.wire->carrier();
}

void Panel::set_carrier(int user_port, bool up)
{
    if (!exists(user_port)) {
        return;
    }
    const std::unique_lock lock(slot(user_port).mutex);
    if (std::exchange(slot(user_port).link, up) != up && slot(user_port).wire) {
        slot(user_port).tell_carrier();
    }
}

std::string Panel::set_partner(int user_port, const LinkPartner& partner)
{
    if (std::string why = without_wire(user_port); !why.empty()) {
        return why;
    }
    const std::unique_lock lock(slot(user_port).mutex);
    slot(user_port).partner = partner;
    return {};
}

std::optional<LinkPartner> Panel::partner(int user_port) const
{
    if (!exists(user_port)) {
        return std::nullopt;
    }
    const std::shared_lock lock(slot(user_port).mutex);
    return slot(user_port).partner;
}

} // namespace vexosim
