#include "sim/card/cable_task.h"

#include "sim/card/card.h"
#include "sim/wire/panel.h"

namespace vexosim {

static_assert(Task::kNever == SlowFrames::kNever);

std::uint64_t CableTask::due_us()
{
    return panel().next_due_us();
}

void CableTask::run()
{
    panel().run_due(card().clock.now_us());
}

} // namespace vexosim
