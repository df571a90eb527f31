#include "tools/vexosh/server.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

#include "tools/vexosh/live_socket.h"
#include "tools/vexosh/outbox.h"
#include "tools/vexosh/shell.h"

namespace vexosh {

using vexosim::Fd;

/// One client: a thread takes its messages, another runs its requests, one after the other.
class Server::Connection {
public:
    Connection(Session& session, Fd socket)
        : socket_(std::move(socket)), outbox_(socket_.get()), shell_(session, outbox_),
          reader_([this] { read(); }), runner_([this] { serve(); })
    {
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection()
    {
        {
            const std::lock_guard lock(mutex_);
            closing_ = true;
            shell_.stop();
        }
        ::shutdown(socket_.get(), SHUT_RDWR);
        runner_.join();
        reader_.join();
    }

    bool gone() const { return gone_; }

private:
    void read()
    {
        MessageReader reader(socket_.get());
        for (std::optional<Message> message; !gone_ && (message = reader.next());) {
            if (message->contains("interrupt")) {
                interrupt();
            } else {
                hand_over(std::move(*message));
            }
        }
        hand_over(std::nullopt);
        wait_until_hung_up();
        shell_.stop();
    }

    /// A client may still read when it has no more to say.
    void wait_until_hung_up()
    {
        pollfd socket{socket_.get(), 0, 0};
        while (::poll(&socket, 1, -1) < 0 && errno == EINTR) {
        }
    }

    /// Ends all that was asked for so far, and what comes next runs as ever.
    void interrupt()
    {
        std::unique_lock lock(mutex_);
        shell_.stop();
        changed_.wait(lock, [this] { return gone_ || idle_; });
        if (!closing_) {
            shell_.resume();
        }
    }

    /// Gives the runner its next request; none is the end. Waits until it has taken the one before.
    void hand_over(std::optional<Message> request)
    {
        std::unique_lock lock(mutex_);
        changed_.wait(lock, [this] { return gone_ || !next_; });
        no_more_ = !request;
        idle_ = idle_ && no_more_;
        next_ = std::move(request);
        changed_.notify_all();
    }

    std::optional<Message> take_over()
    {
        std::unique_lock lock(mutex_);
        idle_ = !next_;
        changed_.notify_all();
        changed_.wait(lock, [this] { return next_ || no_more_; });
        changed_.notify_all();
        return std::exchange(next_, std::nullopt);
    }

    void serve()
    {
        send_all(socket_.get(), Message({{"vexosh", kProtocol}}).dump() + "\n");
        while (!shell_.finished() && outbox_.wait_for_room()) {
            const auto request = take_over();
            if (!request) {
                break;
            }
            run(*request);
        }
        outbox_.close();
        ::shutdown(socket_.get(), SHUT_RDWR);
        const std::lock_guard lock(mutex_);
        gone_ = true;
        changed_.notify_all();
    }

    void run(const Message& request)
    try {
        shell_.use_json(request.value("json", false));
        shell_.use_colour(request.value("colour", false));
        shell_.use_terminal(request.value("terminal", false));
        shell_.run_line(request.at("run").get<std::string>());
        outbox_.done();
    } catch (const BadInput& problem) {
        outbox_.failed(problem.what());
    } catch (const Message::exception&) {
        outbox_.failed("bad request: {\"run\": \"COMMANDS\"} is wanted");
    }

    Fd socket_;
    Outbox outbox_;
    Shell shell_;
    std::atomic<bool> gone_{false};

    std::mutex mutex_; // of what follows
    std::condition_variable changed_;
    std::optional<Message> next_;
    bool idle_ = true, no_more_ = false, closing_ = false;
    std::thread reader_, runner_;
};

Server::Server(Session& session, std::string path)
    : session_(session), path_(std::move(path)), socket_(listen_at(path_)),
      acceptor_([this] { accept(); })
{
}

Server::~Server()
{
    stopping_ = true;
    ::shutdown(socket_.get(), SHUT_RDWR);
    acceptor_.join();
    ::unlink(path_.c_str());
}

void Server::accept()
{
    while (!stopping_) {
        Fd client(::accept4(socket_.get(), nullptr, nullptr, SOCK_CLOEXEC));
        forget_those_gone();
        if (client) {
            connections_.emplace_back(session_, std::move(client));
        }
    }
}

void Server::forget_those_gone()
{
    connections_.remove_if([](const Connection& connection) { return connection.gone(); });
}

} // namespace vexosh
