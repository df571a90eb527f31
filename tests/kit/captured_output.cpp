#include "tests/kit/captured_output.h"

#include <unistd.h>

#include <iostream>
#include <stdexcept>

namespace vexokit {

CapturedOutput::CapturedOutput() : file_(std::tmpfile()), standard_output_(dup(STDOUT_FILENO))
{
    if (file_ == nullptr || standard_output_ < 0)
        throw std::runtime_error("cannot capture standard output");
    std::cout.flush();
    std::fflush(stdout);
    dup2(fileno(file_), STDOUT_FILENO);
}

CapturedOutput::~CapturedOutput()
{
    std::cout.flush();
    std::fflush(stdout);
    dup2(standard_output_, STDOUT_FILENO);
    close(standard_output_);
    std::fclose(file_);
}

std::string CapturedOutput::take()
{
    std::cout.flush();
    std::fflush(stdout);
    std::string text;
    char buffer[4096];
    ssize_t count = 0;
    while ((count = pread(fileno(file_), buffer, sizeof buffer, taken_)) > 0) {
        text.append(buffer, static_cast<std::size_t>(count));
        taken_ += count;
    }
    return text;
}

std::string printed(const std::function<void()>& act)
{
    CapturedOutput output;
    act();
    return output.take();
}

} // namespace vexokit
