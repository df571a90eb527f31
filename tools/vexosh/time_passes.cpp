#include "tools/vexosh/time_passes.h"

#include "vexosim/clock.h"

namespace vexosh {

using namespace std::chrono_literals;

std::chrono::microseconds parse_duration(const std::string& word)
{
    const std::size_t unit = word.find_first_not_of("0123456789");
    const std::string_view name =
        unit == std::string::npos ? "" : std::string_view(word).substr(unit);
    const auto count = parse_number(word.substr(0, unit), "duration", 0, 1'000'000'000);
    if (name == "us") {
        return std::chrono::microseconds(count);
    }
    if (name == "ms") {
        return std::chrono::milliseconds(count);
    }
    if (name == "s" || name.empty()) {
        return std::chrono::seconds(count);
    }
    throw BadInput("bad duration '" + word + "': a number with us, ms or s is wanted");
}

bool let_time_pass(Shell& shell, std::chrono::microseconds duration)
{
    if (!vexosim::manual_clock()) {
        return shell.pause(duration);
    }
    // In steps, so that what the manager does about an event happens near its time.
    for (auto left = duration; left > 0us;) {
        const auto step = std::min<std::chrono::microseconds>(left, 100ms);
        vexosim::advance(step);
        shell.session().settle();
        left -= step;
        if (shell.ending()) {
            return false;
        }
    }
    return true;
}

} // namespace vexosh
