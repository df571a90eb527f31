#include "tools/vexosh/server.h"

#include <sys/socket.h>
#include <unistd.h>

#include "tools/vexosh/live_socket.h"
#include "tools/vexosh/outbox.h"
#include "tools/vexosh/shell.h"

namespace vexosh {

using vexosim::Fd;

/// One client.
class Server::Connection {
public:
    Connection(Session& session, Fd socket)
        : socket_(std::move(socket)), outbox_(socket_.get()), shell_(session, outbox_),
          thread_([this] { serve(); })
    {
    }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;
    ~Connection()
    {
        shell_.stop();
        ::shutdown(socket_.get(), SHUT_RDWR);
        thread_.join();
    }

    bool gone() const { return gone_; }

private:
    void serve()
    {
        send_all(socket_.get(), Message({{"vexosh", kProtocol}}).dump() + "\n");
        MessageReader reader(socket_.get());
        while (!shell_.finished() && outbox_.wait_for_room()) {
            const auto request = reader.next();
            if (!request) {
                break;
            }
            run(*request);
        }
        outbox_.close();
        ::shutdown(socket_.get(), SHUT_RDWR);
        gone_ = true;
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
    std::thread thread_;
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
