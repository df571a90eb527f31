// A card that is served on a socket, and its clients, in one process.
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <condition_variable>
#include <csignal>
#include <mutex>
#include <thread>

#include "tests/tools/shell_test_fixture.h"
#include "tools/vexosh/client.h"
#include "tools/vexosh/server.h"
#include "vexosim/drops.h"

using namespace vexosh;

namespace {

/// Keeps what it is given.
class KeptConsole : public Console {
public:
    void print(std::string_view lines) override
    {
        const std::lock_guard lock(mutex_);
        text_ += lines;
    }
    void tell(const Event& event) override
    {
        const std::lock_guard lock(mutex_);
        events_.push_back(event);
        told_.notify_all();
    }
    std::string copy()
    {
        const std::lock_guard lock(mutex_);
        return text_;
    }
    std::string take()
    {
        const std::lock_guard lock(mutex_);
        return std::exchange(text_, {});
    }
    /// The first events, once so many have been told; fewer after ten seconds.
    std::vector<Event> events(std::size_t count)
    {
        std::unique_lock lock(mutex_);
        told_.wait_for(lock, std::chrono::seconds(10), [&] { return events_.size() >= count; });
        return events_;
    }

private:
    std::mutex mutex_;
    std::condition_variable told_;
    std::string text_;
    std::vector<Event> events_;
};

class LiveCard : public ShellTest {
protected:
    LiveCard() : path_(testing::TempDir() + "vexosh_" + std::to_string(::getpid()))
    {
        server_.emplace(*session_, path_);
    }

    static std::string error(Client& client, const std::string& line)
    {
        try {
            client.run_line(line);
        } catch (const BadInput& problem) {
            return problem.what();
        }
        return "no error";
    }

    std::string path_;
    std::optional<Server> server_;
    KeptConsole console_a_, console_b_;
};

TEST_F(LiveCard, ClientsSeeWhatOthersChange)
{
    Client a(path_, console_a_), b(path_, console_b_);
    a.run_line("vlan create 10");
    run("vlan create 20");
    b.run_line("show vlans");
    EXPECT_EQ(console_b_.take(), "vlan  tagged  untagged\n"
                                 "   1  cpu     0-52\n"
                                 "  10  cpu     none\n"
                                 "  20  cpu     none\n");
    EXPECT_EQ(console_a_.take(), "");
}

TEST_F(LiveCard, OutputIsThereWhenALineHasRun)
{
    Client client(path_, console_a_);
    for (int i = 0; i < 200; ++i) {
        client.run_line("echo " + std::to_string(i));
        ASSERT_EQ(console_a_.take(), std::to_string(i) + "\n");
    }
}

TEST_F(LiveCard, ACommandThatFailsSaysWhyInTheSameWords)
{
    Client client(path_, console_a_);
    EXPECT_EQ(error(client, "vlan create 5000"), error_of("vlan create 5000"));
    EXPECT_EQ(error(client, "echo 1; bogus; echo 2"), "unknown command 'bogus'; try help");
    EXPECT_EQ(console_a_.take(), "1\n");
}

TEST_F(LiveCard, JsonIsForTheClientThatWantsIt)
{
    Client a(path_, console_a_), b(path_, console_b_);
    a.use_json(true);
    a.run_line("vlan create 9; show vlans 9");
    b.run_line("show vlans 9");
    EXPECT_EQ(console_a_.take(), "{\"vexosh\":1,\"show\":\"vlans\",\"rows\":[{\"vlan\":9,"
                                 "\"tagged\":[\"cpu\"],\"untagged\":[]}]}\n");
    EXPECT_EQ(console_b_.take().substr(0, 4), "vlan");
}

TEST_F(LiveCard, EventsReachTheClientsThatFollowThem)
{
    Client a(path_, console_a_), b(path_, console_b_), c(path_, console_a_);
    a.run_line("events on");
    b.run_line("events on");
    c.run_line("attach 1=mem; wait 1s");
    const std::string text = "link port 1 up 1000 Mb/s full";
    for (KeptConsole* console : {&console_a_, &console_b_}) {
        const std::vector<Event> told = console->events(1);
        ASSERT_EQ(told.size(), 1u);
        EXPECT_EQ(told[0].text, text);
        EXPECT_EQ(told[0].data.dump(), "{\"event\":\"link\",\"port\":1,\"up\":true,\"speed\":1000,"
                                       "\"duplex\":\"full\"}");
    }
}

TEST_F(LiveCard, AClientThatDoesNotReadLosesEventsAndHoldsNobodyUp)
{
    const vexosim::Fd socket = connect_to(path_);
    MessageReader reader(socket.get());
    ASSERT_TRUE(send_all(socket.get(), "{\"run\": \"events on\"}\n"));
    ASSERT_TRUE(reader.next() && reader.next()->contains("done"));
    Client client(path_, console_a_);
    client.run_line("attach 1=mem; wait 1s");
    for (int i = 0; i < 1000; ++i) { // each is more than 2,800 digits
        client.run_line("send 1 dst=01:80:c2:00:00:0e type=0x88cc len=1400; wait 1s");
    }
    client.run_line("show cpu");
    EXPECT_NE(console_a_.take().find("1000 packets reached the CPU"), std::string::npos);

    ASSERT_TRUE(send_all(socket.get(), "{\"run\": \"events off\"}\n"));
    std::size_t told = 0, lost = 0;
    for (std::optional<Message> message; (message = reader.next()) && !message->contains("done");) {
        told += message->contains("event") && (*message)["event"]["event"] == "rx" ? 1 : 0;
        lost += message->value("lost", std::size_t{0});
    }
    EXPECT_GT(told, 0u);
    EXPECT_GT(lost, 0u);
    EXPECT_EQ(told + lost, 1000u);
}

TEST_F(LiveCard, TheSocketIsForItsOwnerOnlyAndGoesWithTheServer)
{
    struct stat info {};
    ASSERT_EQ(::stat(path_.c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777u, 0600u);
    server_.reset();
    EXPECT_NE(::stat(path_.c_str(), &info), 0);
}

TEST_F(LiveCard, AClientIsToldWhenTheCardIsGone)
{
    Client client(path_, console_a_);
    client.run_line("echo 1");
    server_.reset();
    EXPECT_EQ(error(client, "echo 2"), "the card is gone");
}

TEST_F(LiveCard, APathHasOneCard)
{
    try {
        const Server second(*session_, path_);
        FAIL();
    } catch (const BadInput& problem) {
        EXPECT_EQ(problem.what(), path_ + ": a card is served there already");
    }
    Client client(path_, console_a_);
    client.run_line("echo still there");
    EXPECT_EQ(console_a_.take(), "still there\n");
}

TEST_F(LiveCard, ASocketThatWasLeftBehindIsReplacedAndAnotherFileIsNot)
{
    const std::string left = path_ + ".left";
    listen_at(left); // closed at once, and still there
    {
        const Server server(*session_, left);
        Client client(left, console_a_);
        client.run_line("echo 1");
        EXPECT_EQ(console_a_.take(), "1\n");
    }
    std::ofstream(left) << "a file";
    EXPECT_THROW(Server(*session_, left), BadInput);
    std::ifstream kept(left);
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(kept), {}), "a file");
    ::unlink(left.c_str());
}

TEST_F(LiveCard, WithoutACardThereIsOneLine)
{
    try {
        const Client client(path_ + ".none", console_a_);
        FAIL();
    } catch (const BadInput& problem) {
        EXPECT_EQ(problem.what(), path_ +
                                      ".none: no card is served there; start one with vexosh "
                                      "--listen " +
                                      path_ + ".none");
    }
}

TEST_F(LiveCard, WhatIsNoRequestIsRefusedAndWhatIsNoJsonEndsTheConnection)
{
    const vexosim::Fd socket = connect_to(path_);
    MessageReader reader(socket.get());
    EXPECT_EQ(reader.next()->dump(), "{\"vexosh\":1}");
    ASSERT_TRUE(send_all(socket.get(), "{\"walk\": 1}\n{\"run\": 5}\n{\"run\": \"echo 1\"}\n"));
    const std::string refused =
        "{\"error\":\"bad request: {\\\"run\\\": \\\"COMMANDS\\\"} is wanted\"}";
    EXPECT_EQ(reader.next()->dump(), refused);
    EXPECT_EQ(reader.next()->dump(), refused);
    EXPECT_EQ(reader.next()->dump(), "{\"out\":\"1\\n\"}");
    EXPECT_EQ(reader.next()->dump(), "{\"done\":true}");
    ASSERT_TRUE(send_all(socket.get(), "no json\n"));
    EXPECT_FALSE(reader.next());
}

TEST_F(LiveCard, AClientReadsScriptsItself)
{
    Client client(path_, console_a_);
    const std::string path = script("echo 1\nbogus\necho 2\n");
    EXPECT_EQ(error(client, "source " + path), path + ":2: unknown command 'bogus'; try help");
    EXPECT_EQ(console_a_.take(), "1\n");
}

/// A card whose time is the system's, and a client that reads what it likes.
class Interrupting : public testing::Test {
protected:
    void ask(const std::string& request) { ASSERT_TRUE(send_all(socket_.get(), request + "\n")); }

    /// The next message but for the greeting.
    std::string next()
    {
        const auto message = reader_.next();
        return !message ? "gone" : message->contains("vexosh") ? next() : message->dump();
    }

    /// How many messages come before the one that ends a request.
    int messages_until_done()
    {
        int count = 0;
        for (std::string message; (message = next()) != R"({"done":true})"; ++count) {
            EXPECT_EQ(message, R"({"out":"b\n"})");
        }
        return count;
    }

    Session session_;
    std::string path_ = testing::TempDir() + "vexosh_" + std::to_string(::getpid());
    Server server_{session_, path_};
    vexosim::Fd socket_ = connect_to(path_);
    MessageReader reader_{socket_.get()};
};

TEST_F(Interrupting, CtrlCEndsWhatRunsForTheClientWhereItIsPressedAndForNoOther)
{
    ask(R"({"run":"watch every 10ms echo b"})");
    KeptConsole console;
    Client client(path_, console);
    client.heed_ctrl_c();
    const Interruptible meanwhile;
    std::thread pressed([&console] {
        while (console.copy().find("a\n\na\n") == std::string::npos) {
            std::this_thread::yield();
        }
        ::kill(::getpid(), SIGINT);
    });
    client.run_line("watch every 10ms echo a; echo not reached");
    pressed.join();
    EXPECT_EQ(console.take().find("not reached"), std::string::npos);
    for (int i = 0; i < 100; ++i) { // more than could have waited
        ASSERT_EQ(next().find(R"({"out")"), 0u);
    }
}

TEST_F(Interrupting, EndsWhatWasAskedForBeforeAndNotWhatComesNext)
{
    ask(R"({"run":"watch every 1s echo b"})");
    EXPECT_EQ(next(), R"({"out":"b\n"})");
    ask(R"({"interrupt":true})");
    EXPECT_EQ(messages_until_done(), 0);
    ask(R"({"interrupt":true})"); // of nothing
    ask(R"({"run":"wait 20ms; echo b"})");
    EXPECT_EQ(messages_until_done(), 1);
}

TEST_F(Interrupting, WhatRunsForAClientThatIsGoneEnds)
{
    ask(R"({"run":"watch every 1ms send 1 type=0x88b5"})");
    const auto frames = [] { return vexosim::drop_counters().frames_in; };
    while (frames() < 10) {
        std::this_thread::yield();
    }
    socket_ = vexosim::Fd();
    std::uint64_t before = 0;
    for (int i = 0; i < 100 && before != frames(); ++i) {
        before = frames();
        std::this_thread::sleep_for(std::chrono::milliseconds(50));
    }
    EXPECT_EQ(before, frames());
}

TEST_F(Interrupting, AClientThatHasNoMoreToSayStillGetsItsAnswers)
{
    ask(R"({"run":"wait 20ms; echo b"})");
    ask(R"({"run":"wait 20ms; echo b"})");
    ::shutdown(socket_.get(), SHUT_WR);
    EXPECT_EQ(messages_until_done(), 1);
    EXPECT_EQ(messages_until_done(), 1);
    EXPECT_EQ(next(), "gone");
}

/// Two shells on a card whose time is the system's.
TEST(RealTime, TheNextFramesOfAPortAreTracedAsTheyCome)
{
    KeptConsole seen, other;
    Session session;
    Shell tracing(session, seen), sending(session, other);
    sending.run_line("attach 1-2=mem; wait 1s");
    std::thread sender([&] {
        // Until it has been traced, as nothing tells when the other shell has begun.
        while (seen.copy().find("result") == std::string::npos) {
            sending.run_line("send 2 type=0x88b6; send 1 src=02:00:00:00:00:0a type=0x88b5");
        }
    });
    tracing.run_line("trace next 1 on 1");
    sender.join();
    const std::string text = seen.take();
    EXPECT_EQ(text.find("port 1 hex:ffffffffffff02000000000a88b5"), 0u) << text;
    EXPECT_NE(text.find("\nresult "), std::string::npos) << text;
    EXPECT_EQ(text.find("hex:", 11), std::string::npos) << text;
}

} // namespace
