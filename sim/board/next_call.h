#pragma once

#include <atomic>
#include <cerrno>
#include <dlfcn.h>

namespace vexoboard {

/// The function of that name that the process would use without this library. Looked up at the
/// first call; needs no constructor.
template <typename Function>
class NextCall {
public:
    constexpr explicit NextCall(const char* name) : name_(name) {}

    /// Null when there is none.
    Function* get()
    {
        Function* function = function_.load(std::memory_order_acquire);
        if (function == nullptr) {
            const int saved_errno = errno;
            function = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name_));
            function_.store(function, std::memory_order_release);
            errno = saved_errno;
        }
        return function;
    }

private:
    const char* name_;
    std::atomic<Function*> function_{nullptr};
};

} // namespace vexoboard
