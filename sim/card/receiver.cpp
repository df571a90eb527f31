#include "sim/card/receiver.h"

#include "sim/card/card.h"

namespace vexosim {

std::uint64_t Receiver::due_us()
{
    const Chip& chip = card().chip();
    const auto wait = queues.wait_us(chip.cpu, chip.now_us);
    return wait ? chip.now_us + *wait : kNever;
}

std::size_t Receiver::take()
{
    const ChipLock chip;
    std::size_t taken = 0;
    while (taken < frames_.size() && queues.take(chip->cpu, chip->now_us, frames_[taken]))
        ++taken;
    return taken;
}

void Receiver::run()
{
    const std::size_t taken = take();
    CpuReceive::Handlers handlers;
    {
        const ChipLock chip;
        handlers = queues.handlers();
    }
    for (std::size_t i = 0; i < taken; ++i)
        CpuReceive::deliver(*handlers, frames_[i]);
}

} // namespace vexosim
