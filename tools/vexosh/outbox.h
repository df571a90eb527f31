#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

#include "tools/vexosh/console.h"

namespace vexosh {

/// Messages on their way to a client, sent by a thread of its own: nobody waits for a slow one.
/// Events that it does not take in time are counted instead of kept.
class Outbox : public Console {
public:
    explicit Outbox(int socket);
    ~Outbox() override;

    void print(std::string_view lines) override;
    void tell(const Event& event) override;
    /// The command is done.
    void done();
    /// The command has failed.
    void failed(const std::string& error);
    /// Waits until no more than a little is left to send.
    /// @return false when the client is gone.
    bool wait_for_room();
    /// Sends what there is, if the client takes it, and ends.
    void close();

private:
    void add(std::string line);
    void send();

    const int socket_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::string> lines_;
    std::size_t bytes_ = 0, lost_events_ = 0;
    bool closing_ = false, gone_ = false;
    std::thread sender_;
};

} // namespace vexosh
