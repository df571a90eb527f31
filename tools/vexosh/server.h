#pragma once

#include <atomic>
#include <list>
#include <string>
#include <thread>

#include "sim/wire/fd.h"
#include "tools/vexosh/session.h"

namespace vexosh {

/// Serves a session on a Unix socket to any number of clients, each with a shell of its own.
class Server {
public:
    /// Throws BadInput when the path cannot be listened at.
    Server(Session& session, std::string path);
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;
    /// Ends what clients do, says good-bye to them and removes the socket.
    ~Server();

private:
    class Connection;
    void accept();
    void forget_those_gone();

    Session& session_;
    std::string path_;
    vexosim::Fd socket_;
    std::list<Connection> connections_; // of the acceptor, and of nobody once it is gone
    std::atomic<bool> stopping_{false};
    std::thread acceptor_;
};

} // namespace vexosh
