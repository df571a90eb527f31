#include "tools/vexosh/interpreter.h"

#include <fstream>
#include <iostream>

#include "tools/vexosh/input.h"

namespace vexosh {

namespace {

constexpr int kDeepestScript = 16;

/// Counts a script that runs within another.
class Nesting {
public:
    Nesting(int& depth, const std::string& name) : depth_(depth)
    {
        if (depth_ == kDeepestScript) {
            throw BadInput(name + ": scripts are nested too deep");
        }
        ++depth_;
    }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;
    ~Nesting() { --depth_; }

private:
    int& depth_;
};

} // namespace

void Interpreter::run_line(const std::string& line)
{
    for (const std::string& command : split_commands(line)) {
        if (!split_words(command).empty()) {
            run_command(command);
        }
        if (finished_ || ending()) {
            return;
        }
    }
}

void Interpreter::run_script_line(const std::string& line, const std::string& place)
{
    try {
        run_line(line);
    } catch (const BadInput& problem) {
        const std::string said = place + ": " + problem.what();
        if (!keep_going_) {
            throw BadInput(said);
        }
        ++failures_;
        std::cerr << said << std::endl;
    }
}

void Interpreter::run_script(std::istream& script, const std::string& name)
{
    const Nesting nesting(nesting_, name);
    std::string line;
    for (int number = 1; !finished_ && std::getline(script, line); ++number) {
        const std::string place = name + ":" + std::to_string(number);
        run_script_line(line, place);
        if (ending()) {
            throw BadInput(place + ": ended before its time");
        }
    }
}

void Interpreter::run_script_file(const std::string& path)
{
    std::ifstream script(path);
    if (!script) {
        throw BadInput("cannot read script '" + path + "'");
    }
    run_script(script, path);
}

} // namespace vexosh
