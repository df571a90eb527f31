#include "tools/vexosh/client.h"

#include <sys/socket.h>

#include "tools/vexosh/input.h"
#include "tools/vexosh/system_command.h"

namespace vexosh {

namespace {

constexpr const char* kGone = "the card is gone";

} // namespace

Client::Client(const std::string& path, Console& console)
    : socket_(connect_to(path)), console_(console), reader_(socket_.get())
{
    const auto hello = reader_.next();
    const int protocol = hello ? hello->value("vexosh", 0) : 0;
    if (protocol != kProtocol) {
        throw BadInput(path + ": no card that this vexosh can talk to is served there");
    }
    thread_ = std::thread([this] { read(); });
}

Client::~Client()
{
    ::shutdown(socket_.get(), SHUT_RDWR);
    if (thread_.joinable()) {
        thread_.join();
    }
}

void Client::run_command(const std::string& command)
{
    const std::vector<std::string> words = split_words(command);
    if (words[0] == "quit" && words.size() == 1) {
        finish();
        return;
    }
    if (words[0] == "source" && words.size() == 2) {
        run_script_file(words[1]);
        return;
    }
    if (words[0] == "shell" && words.size() > 1) {
        run_system_command({words.begin() + 1, words.end()},
                           [this](std::string_view line) { console_.print(line); });
        return;
    }
    std::unique_lock lock(mutex_);
    running_ = !gone_;
    error_.reset();
    const Message request = {
        {"run", command}, {"json", json_}, {"colour", colour_}, {"terminal", terminal_}};
    if (gone_ || !send_all(socket_.get(), request.dump() + "\n")) {
        throw BadInput(kGone);
    }
    wait(lock);
    if (error_) {
        throw BadInput(*error_);
    }
}

/// Until the command is done, with Ctrl-C passed on once.
void Client::wait(std::unique_lock<std::mutex>& lock)
{
    constexpr std::chrono::milliseconds kLook{50};
    const auto done = [this] { return !running_; };
    for (bool passed_on = false; !changed_.wait_for(lock, kLook, done);) {
        if (ending() && !passed_on) {
            passed_on = send_all(socket_.get(), Message({{"interrupt", true}}).dump() + "\n");
        }
    }
}

void Client::read()
{
    try {
        for (std::optional<Message> message; (message = reader_.next());) {
            take(*message);
        }
    } catch (const Message::exception&) {
        ::shutdown(socket_.get(), SHUT_RDWR); // that was no card
    }
    const std::lock_guard lock(mutex_);
    gone_ = true;
    if (running_) {
        error_ = kGone;
        running_ = false;
    }
    changed_.notify_all();
}

void Client::take(const Message& message)
{
    if (message.contains("out")) {
        console_.print(message["out"].get<std::string>());
    } else if (message.contains("event")) {
        console_.tell({message.value("text", ""), message["event"]});
    } else if (message.contains("lost")) {
        const auto count = message["lost"].get<std::uint64_t>();
        console_.tell({std::to_string(count) + " events came too fast for this client",
                       {{"event", "lost"}, {"count", count}}});
    } else {
        const std::lock_guard lock(mutex_);
        if (message.contains("error")) {
            error_ = message["error"].get<std::string>();
        }
        running_ = false;
        changed_.notify_all();
    }
}

} // namespace vexosh
