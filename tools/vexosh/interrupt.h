#pragma once

namespace vexosh {

/// While one lives, Ctrl-C ends what waits, and not the program. On the main thread.
class Interruptible {
public:
    Interruptible();
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
    ~Interruptible();

    /// Whether it has been pressed since one began to live.
    static bool interrupted();

private:
    void (*before_)(int);
};

} // namespace vexosh
