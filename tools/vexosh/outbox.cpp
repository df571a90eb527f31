#include "tools/vexosh/outbox.h"

#include "tools/vexosh/live_socket.h"

namespace vexosh {

namespace {

/// Events are lost beyond this, and the next command waits.
constexpr std::size_t kRoom = std::size_t{1024} * 1024;

std::string line_of(const Message& message)
{
    // What is no UTF-8, e.g. in a file's name, does not stop the rest.
    return message.dump(-1, ' ', false, Message::error_handler_t::replace) + "\n";
}

} // namespace

Outbox::Outbox(int socket) : socket_(socket), sender_([this] { send(); }) {}

Outbox::~Outbox()
{
    close();
}

void Outbox::print(std::string_view lines)
{
    add(line_of({{"out", lines}}));
}

void Outbox::tell(const Event& event)
{
    {
        const std::lock_guard lock(mutex_);
        if (bytes_ > kRoom) {
            ++lost_events_;
            return;
        }
    }
    add(line_of({{"event", event.data}, {"text", event.text}}));
}

void Outbox::done()
{
    add(line_of({{"done", true}}));
}

void Outbox::failed(const std::string& error)
{
    add(line_of({{"error", error}}));
}

void Outbox::add(std::string line)
{
    const std::lock_guard lock(mutex_);
    if (lost_events_ > 0) {
        lines_.push_back(line_of({{"lost", lost_events_}}));
        bytes_ += lines_.back().size();
        lost_events_ = 0;
    }
    bytes_ += line.size();
    lines_.push_back(std::move(line));
    changed_.notify_all();
}

bool Outbox::wait_for_room()
{
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return bytes_ <= kRoom || gone_; });
    return !gone_;
}

void Outbox::close()
{
    {
        const std::lock_guard lock(mutex_);
        closing_ = true;
        changed_.notify_all();
    }
    if (sender_.joinable()) {
        sender_.join();
    }
}

void Outbox::send()
{
    std::unique_lock lock(mutex_);
    for (;;) {
        changed_.wait(lock, [this] { return !lines_.empty() || closing_; });
        if (lines_.empty()) {
            return;
        }
        std::string together;
        for (std::deque<std::string> lines = std::exchange(lines_, {});
             std::string & line : lines) {
            together += line;
        }
        lock.unlock();
        const bool sent = send_all(socket_, together);
        lock.lock();
        bytes_ -= together.size();
        gone_ |= !sent;
        closing_ |= gone_;
        lines_.resize(gone_ ? 0 : lines_.size());
        changed_.notify_all();
    }
}

} // namespace vexosh
