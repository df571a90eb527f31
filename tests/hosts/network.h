/// Real hosts for tests: network namespaces that belong to processes, so that they are gone when
/// the test is, however it ended.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <sys/types.h>

/// What a command printed, and how it ended.
struct Ran {
    int status = -1;
    std::string output;
};

/// Runs a shell command in the test's own network namespace.
Ran run(const std::string& command);

/// A Linux host with a network of its own.
class Host {
public:
    Host();
    Host(const Host&) = delete;
    Host& operator=(const Host&) = delete;
    ~Host();

    /// Moves an interface of the test's namespace here and brings it up.
    /// @param address with prefix length, e.g. "192.0.2.1/24"; may be empty.
    void take(const std::string& interface, const std::string& address);
    Ran run(const std::string& command) const;

    /// Starts a command that runs until it ends, the host or the test does.
    /// @return a descriptor of what it prints, for the host to close.
    int start(const std::string& command);
    /// Ends what was started.
    void stop_all();

    /// The calling thread moves into the host's network for good: its sockets are the host's.
    void enter() const;

private:
    struct Started {
        pid_t pid;
        int output;
    };

    pid_t keeper_ = -1;
    std::vector<Started> started_;
};

/// Reads what a started command prints until a text comes, for at most twenty seconds.
/// @return all that was read.
std::string read_until(int output, const std::string& text);

/// A test whose process has a network namespace of its own. Skipped where that is not allowed,
/// unless VEXOLC_REQUIRE_HOSTS is set: then it fails.
class HostTest : public testing::Test {
protected:
    void SetUp() override;
};
