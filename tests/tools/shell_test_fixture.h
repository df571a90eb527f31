#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <optional>
#include <sstream>

#include "tools/vexosh/shell.h"
#include "vexosim/clock.h"

/// A shell on a card of its own, with the manual clock.
class ShellTest : public testing::Test {
protected:
    ShellTest()
    {
        vexosim::use_manual_clock();
        session_.emplace();
        shell_.emplace(*session_, console_);
    }

    /// What a line prints.
    std::string run(const std::string& line)
    {
        out_.str("");
        shell_->run_line(line);
        return out_.str();
    }

    /// The one line that a failing line answers with.
    std::string error_of(const std::string& line)
    {
        try {
            run(line);
        } catch (const vexosh::BadInput& problem) {
            return problem.what();
        }
        return "no error";
    }

    /// The line of `show port PORT` that is about a property, without its name.
    std::string property(int port, const std::string& name)
    {
        std::istringstream lines(run("show port " + std::to_string(port)));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with(name + " ")) {
                return line.substr(line.find_first_not_of(' ', name.size()));
            }
        }
        return "no property " + name;
    }

    /// A script in a file of its own.
    static std::string script(const std::string& text)
    {
        std::string path = testing::TempDir() + "vexosh_script_" +
                           testing::UnitTest::GetInstance()->current_test_info()->name();
        std::ofstream(path) << text;
        return path;
    }

    std::ostringstream out_;
    vexosh::StreamConsole console_{out_};
    std::optional<vexosh::Session> session_;
    std::optional<vexosh::Shell> shell_;
};

/// A command that answers with an error, and with which.
struct BadCommand {
    const char* line;
    const char* error;
};
