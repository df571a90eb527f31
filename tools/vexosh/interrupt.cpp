#include "tools/vexosh/interrupt.h"

#include <csignal>

namespace vexosh {

namespace {

volatile std::sig_atomic_t pressed = 0;

} // namespace

Interruptible::Interruptible()
{
    pressed = 0;
    before_ = std::signal(SIGINT, [](int) { pressed = 1; });
}

Interruptible::~Interruptible()
{
    std::signal(SIGINT, before_);
}

void Interruptible::forget()
{
    pressed = 0;
}

bool Interruptible::interrupted()
{
    return pressed != 0;
}

} // namespace vexosh
