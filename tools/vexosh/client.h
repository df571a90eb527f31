#pragma once

#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

#include "sim/wire/fd.h"
#include "tools/vexosh/console.h"
#include "tools/vexosh/interpreter.h"
#include "tools/vexosh/live_socket.h"

namespace vexosh {

/// Has commands run by a card that is served elsewhere. Scripts are read, and commands of the
/// system run, here.
class Client : public Interpreter {
public:
    /// Throws BadInput when there is no card to talk to.
    Client(const std::string& path, Console& console);
    ~Client() override;

    void use_json(bool on) { json_ = on; }
    void use_colour(bool on) { colour_ = on; }
    void use_terminal(bool on) { terminal_ = on; }

private:
    void run_command(const std::string& command) override;
    void wait(std::unique_lock<std::mutex>& lock);
    void read();
    void take(const Message& message);

    vexosim::Fd socket_;
    Console& console_;
    bool json_ = false, colour_ = false, terminal_ = false;
    MessageReader reader_;

    std::mutex mutex_; // of what follows
    std::condition_variable changed_;
    bool running_ = false, gone_ = false;
    std::optional<std::string> error_;
    std::thread thread_;
};

} // namespace vexosh
