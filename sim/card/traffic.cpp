#include "sim/card/traffic.h"

#include "sim/pipeline/forward.h"
#include "sim/wire/panel.h"
#include "vexosim/ports.h"
#include "vexosim/wire.h"

namespace vexosim {

void send_to_wires(const Outputs& outputs)
{
    for (const int port : outputs.used()) {
        const int user_port = card().ports.user_port(port);
        if (user_port >= 0)
            send_to_wire(user_port, outputs.frames(port));
    }
}

Outputs& thread_outputs()
{
    static thread_local Outputs outputs;
    return outputs;
}

void receive(int user_port, std::span<const FrameView> frames)
{
    const int port = card().ports.chip_port_of_user(user_port);
    if (port <= kCpuPort)
        return;
    forward([&](Chip& chip, Outputs& outputs) {
        forward_batch(chip, card().background.receiver.queues, port, frames, outputs);
        return true;
    });
}

void receive(int user_port, FrameView frame)
{
    receive(user_port, std::span(&frame, 1));
}

void connect_wires()
{
    panel().on_due_earlier([] { const ChipLock looks_what_is_due; });
    on_wire_receive(
        [](int user_port, std::span<const FrameView> frames) { receive(user_port, frames); });
}

} // namespace vexosim
