#include "tests/hosts/network.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <poll.h>
#include <sched.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Router solicitations and the like would come between the frames a test looks at.
const char* const kQuiet = "sysctl -qw net.ipv6.conf.all.disable_ipv6=1 "
                           "net.ipv6.conf.default.disable_ipv6=1";

// Why this process cannot have a network of its own; empty when it has one now.
std::string enter_own_network()
{
    if (::access("/dev/net/tun", F_OK) != 0) {
        return "/dev/net/tun is missing";
    }
    if (::unshare(CLONE_NEWNET) != 0) {
        return std::string("no network namespace: ") + std::strerror(errno) + "; needs root";
    }
    if (run("ip link set lo up").status != 0) {
        return "needs the package iproute2";
    }
    run(kQuiet);
    return {};
}

// Holds a network namespace until it or the test is killed.
[[noreturn]] void keep_namespace(int ready)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const char done = ::unshare(CLONE_NEWNET) == 0 ? 'y' : 'n';
    if (::write(ready, &done, 1) != 1) {
        ::_exit(1);
    }
    for (;;) {
        ::pause();
    }
}

} // namespace

Ran run(const std::string& command)
{
    Ran ran;
    FILE* const pipe = ::popen(("{ " + command + "\n} 2>&1 </dev/null").c_str(), "r");
    if (pipe == nullptr) {
        return ran;
    }
    char part[4096];
    for (std::size_t size = 0; (size = std::fread(part, 1, sizeof part, pipe)) > 0;) {
        ran.output.append(part, size);
    }
    ran.status = ::pclose(pipe);
    return ran;
}

Host::Host()
{
    int ready[2] = {-1, -1};
    if (::pipe(ready) != 0) {
        ADD_FAILURE() << "no pipe";
        return;
    }
    keeper_ = ::fork();
    if (keeper_ == 0) {
        keep_namespace(ready[1]);
    }
    char answer = 'n';
    EXPECT_EQ(::read(ready[0], &answer, 1), 1);
    EXPECT_EQ(answer, 'y') << "no network namespace for a host";
    ::close(ready[0]);
    ::close(ready[1]);
    run("ip link set lo up");
    run(kQuiet);
}

Host::~Host()
{
    stop_all();
    if (keeper_ > 0) {
        ::kill(keeper_, SIGKILL);
        ::waitpid(keeper_, nullptr, 0);
    }
}

void Host::take(const std::string& interface, const std::string& address)
{
    const Ran moved = ::run("ip link set " + interface + " netns " + std::to_string(keeper_));
    EXPECT_EQ(moved.status, 0) << moved.output;
    if (!address.empty()) {
        run("ip addr add " + address + " dev " + interface);
    }
    const Ran up = run("ip link set " + interface + " up");
    EXPECT_EQ(up.status, 0) << up.output;
}

Ran Host::run(const std::string& command) const
{
    return ::run("nsenter --net=/proc/" + std::to_string(keeper_) + "/ns/net sh -c '" + command +
                 "'");
}

int Host::start(const std::string& command)
{
    int output[2] = {-1, -1};
    if (::pipe2(output, O_CLOEXEC) != 0) {
        ADD_FAILURE() << "no pipe";
        return -1;
    }
    const std::string net = "--net=/proc/" + std::to_string(keeper_) + "/ns/net";
    const pid_t pid = ::fork();
    if (pid == 0) {
        ::prctl(PR_SET_PDEATHSIG, SIGKILL);
        ::dup2(output[1], STDOUT_FILENO);
        ::dup2(output[1], STDERR_FILENO);
        ::dup2(::open("/dev/null", O_RDONLY), STDIN_FILENO);
        // Whatever the command starts in turn ends with it. The shell stays, to be killed: a daemon
        // that gives up privileges is no longer killed when its parent dies.
        const std::string in_shell = command + "; exit $?";
        ::execlp("nsenter", "nsenter", net.c_str(), "unshare", "--mount", "--pid", "--fork",
                 "--kill-child", "sh", "-c", in_shell.c_str(), nullptr);
        ::_exit(127);
    }
    ::close(output[1]);
    started_.push_back({pid, output[0]});
    return output[0];
}

void Host::stop_all()
{
    for (const Started& started : started_) {
        ::kill(started.pid, SIGKILL);
        ::waitpid(started.pid, nullptr, 0);
        ::close(started.output);
    }
    started_.clear();
}

void Host::enter() const
{
    const std::string path = "/proc/" + std::to_string(keeper_) + "/ns/net";
    const int net = ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(::setns(net, CLONE_NEWNET), 0) << std::strerror(errno);
    ::close(net);
}

std::string read_until(int output, const std::string& text)
{
    std::string all;
    pollfd readable{output, POLLIN, 0};
    while (all.find(text) == std::string::npos && ::poll(&readable, 1, 20'000) > 0) {
        char part[4096];
        const ssize_t size = ::read(output, part, sizeof part);
        if (size <= 0) {
            break;
        }
        all.append(part, static_cast<std::size_t>(size));
    }
    return all;
}

void HostTest::SetUp()
{
    const std::string why = enter_own_network();
    if (why.empty()) {
        return;
    }
    if (std::getenv("VEXOLC_REQUIRE_HOSTS") != nullptr) {
        FAIL() << why;
    }
    GTEST_SKIP() << why;
}
