// The one capture of the card, from its start to its end.
#include <cstdlib>
#include <memory>
#include <mutex>

#include "sim/capture/capture.h"
#include "sim/card/card.h"
#include "vexosim/card.h"
#include "vexosim/wire.h"

namespace vexosim {

namespace {

std::mutex mutex; // of these; taken before the chip's lock
std::string path_of_running;
std::unique_ptr<Capture> running;

/// @return empty, or the port that is none.
std::string choose_ports(const std::vector<int>& user_ports, PortSet& chosen)
{
    if (user_ports.empty()) {
        chosen = PortSet::all();
        return {};
    }
    for (const int user_port : user_ports) {
        const int chip_port = chip_port_of(user_port);
        if (chip_port < 0)
            return "no port " + std::to_string(user_port);
        chosen.set(chip_port);
    }
    return {};
}

void describe(Capture::Plan& plan)
{
    for (int chip_port = 0; chip_port < kPortCount; ++chip_port)
        plan.names.set(chip_port, user_port_of(chip_port));
    for (const Attachment& attached : attachments()) {
        if (const int chip_port = chip_port_of(attached.user_port); chip_port >= 0)
            plan.descriptions[static_cast<std::size_t>(chip_port)] = attached.wire;
    }
}

CaptureStatus status_of_running()
{
    const ChipLock lock;
    return {path_of_running, running->packets(), running->error()};
}

} // namespace

std::string start_capture(const std::string& path, const CaptureOptions& options)
{
    const std::lock_guard lock(mutex);
    if (running)
        return "a capture into " + path_of_running + " is running; stop it first";
    if (!attached())
        return "the card is not up";
    Capture::Plan plan;
    plan.what = options.what;
    if (std::string why = choose_ports(options.ports, plan.ports); !why.empty())
        return why;
    describe(plan);
    auto capture = std::make_unique<Capture>(plan);
    if (std::string why = capture->open(path); !why.empty())
        return why;
    static const int at_exit = std::atexit([] { stop_capture(); });
    (void)at_exit;
    running = std::move(capture);
    path_of_running = path;
    const ChipLock chip;
    card().observers.push_back(running.get());
    return {};
}

std::optional<CaptureStatus> capture_status()
{
    const std::lock_guard lock(mutex);
    if (!running)
        return std::nullopt;
    return status_of_running();
}

std::optional<CaptureStatus> stop_capture()
{
    const std::lock_guard lock(mutex);
    if (!running)
        return std::nullopt;
    {
        const ChipLock chip;
        std::erase(card().observers, running.get());
    }
    CaptureStatus last = status_of_running();
    last.error = running->close();
    running.reset();
    return last;
}

} // namespace vexosim
