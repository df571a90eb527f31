#pragma once

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace vexosim {

/// What a call touches: the chip, or only the SDK's own memory.
enum class CallClass { chip, local };

/// The calls made, as text. Guards itself.
class CallLog {
public:
    /// Where a call's result belongs. Stale after a clear().
    struct Place {
        std::size_t index = 0;
        unsigned long generation = 0;
    };

    Place add(CallClass kind, std::string text);
    void result(Place place, std::string text);
    std::string text(bool local_too, bool results) const;
    void clear();

private:
    struct Line {
        CallClass kind;
        std::string call;
        std::string result;
    };

    mutable std::mutex mutex_;
    std::vector<Line> lines_;
    unsigned long generation_ = 0;
};

} // namespace vexosim
