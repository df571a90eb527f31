// The prompt, as a person has it: vexosh on a terminal of its own.
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <signal.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <string>

#include "sim/wire/fd.h"

namespace {

class Terminal : public testing::Test {
protected:
    Terminal()
    {
        int master = -1;
        const winsize size{24, 80, 0, 0};
        child_ = ::forkpty(&master, nullptr, nullptr, &size);
        if (child_ == 0) {
            ::setenv("TERM", "xterm", 1);
            ::setenv("NO_COLOR", "1", 1);
            ::execl(VEXOSH_PROGRAM, "vexosh", "-m", nullptr);
            ::_exit(127);
        }
        terminal_ = vexosim::Fd(master);
        expect("leaves.");
        expect_prompt();
    }

    ~Terminal() override
    {
        ::kill(child_, SIGKILL);
        ::waitpid(child_, nullptr, 0);
    }

    void type(const std::string& keys)
    {
        ASSERT_EQ(::write(terminal_.get(), keys.data(), keys.size()),
                  static_cast<ssize_t>(keys.size()));
    }

    /// Reads until a text has come, for ten seconds at most; what came behind it is kept.
    void expect(const std::string& text)
    {
        std::array<char, 4096> part;
        std::size_t at = 0;
        while ((at = seen_.find(text)) == std::string::npos) {
            pollfd ready{terminal_.get(), POLLIN, 0};
            const ssize_t got = ::poll(&ready, 1, 10'000) == 1
                                    ? ::read(terminal_.get(), part.data(), part.size())
                                    : -1;
            ASSERT_GT(got, 0) << "no '" << text << "' in: " << seen_;
            seen_.append(part.data(), static_cast<std::size_t>(got));
        }
        seen_.erase(0, at + text.size());
    }

    /// The prompt, ready for keys.
    void expect_prompt()
    {
        expect("vexosh> ");
        termios modes{};
        for (int i = 0; i < 1000 && ::tcgetattr(terminal_.get(), &modes) == 0; ++i) {
            if ((modes.c_lflag & static_cast<tcflag_t>(ICANON)) == 0) {
                return;
            }
            ::usleep(1000);
        }
        FAIL() << "no line is being edited";
    }

    /// What vexosh exits with when it has ended by itself.
    int exit_code()
    {
        int status = -1;
        ::waitpid(child_, &status, 0);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

private:
    pid_t child_ = -1;
    vexosim::Fd terminal_;
    std::string seen_;
};

constexpr const char* kCtrlC = "\x03";

TEST_F(Terminal, CtrlCAtThePromptTakesTheLineAwayAndNothingElse)
{
    type("echo thrown away");
    type(kCtrlC);
    expect("^C\r\n");
    expect_prompt();
    type(kCtrlC);
    expect("^C\r\n");
    expect_prompt();
    type("echo kept\n");
    expect("\nkept\r\n");
    expect_prompt();
    type("quit\n");
    EXPECT_EQ(exit_code(), 0);
}

TEST_F(Terminal, CtrlCWhileACommandRunsGivesThePromptBack)
{
    type("watch every 1us echo again\n");
    expect("again\r\n");
    type(kCtrlC);
    expect_prompt();
    type("\x04"); // the end of the input
    EXPECT_EQ(exit_code(), 0);
}

} // namespace
