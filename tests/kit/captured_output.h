#pragma once

#include <cstdio>
#include <functional>
#include <string>

namespace vexokit {

/// While it lives, standard output goes to a file: what printf, std::cout and write() put there.
class CapturedOutput {
public:
    CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;
    ~CapturedOutput();

    /// What was printed since the last time.
    std::string take();

private:
    std::FILE* file_;
    int standard_output_;
    long taken_ = 0;
};

/// What `act` prints on standard output.
std::string printed(const std::function<void()>& act);

} // namespace vexokit
