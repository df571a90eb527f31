#pragma once

namespace vexosh {

/// While one lives, Ctrl-C ends what runs, and not the program. On the main thread.
class Interruptible {
public:
    Interruptible();
    Interruptible(const Interruptible&) = delete;
    Interruptible& operator=(const Interruptible&) = delete;
    ~Interruptible();

    /// Whether it has been pressed since one began to live, or since forget().
    static bool interrupted();
    static void forget();

private:
    void (*before_)(int);
};

} // namespace vexosh
