#include "tools/vexosh/live_socket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstring>

#include "tools/vexosh/input.h"

namespace vexosh {

using vexosim::Fd;

namespace {

[[noreturn]] void fail(const std::string& what)
{
    throw BadInput(what + ": " + std::strerror(errno));
}

sockaddr_un address_of(const std::string& path)
{
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof address.sun_path) {
        throw BadInput("bad socket path '" + path + "': 1 to " +
                       std::to_string(sizeof address.sun_path - 1) + " characters are wanted");
    }
    std::memcpy(address.sun_path, path.c_str(), path.size());
    return address;
}

Fd new_socket()
{
    Fd socket(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket) {
        fail("no socket");
    }
    return socket;
}

bool try_connect(int socket, const sockaddr_un& address)
{
    return ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

/// Removes a socket whose server has died; leaves all else alone.
void remove_if_left_behind(const std::string& path, const sockaddr_un& address)
{
    struct stat info {};
    if (::stat(path.c_str(), &info) != 0 || !S_ISSOCK(info.st_mode)) {
        return;
    }
    if (try_connect(new_socket().get(), address)) {
        throw BadInput(path + ": a card is served there already");
    }
    if (errno == ECONNREFUSED) {
        ::unlink(path.c_str());
    }
}

} // namespace

Fd listen_at(const std::string& path)
{
    const sockaddr_un address = address_of(path);
    remove_if_left_behind(path, address);
    Fd socket = new_socket();
    if (::bind(socket.get(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0) {
        fail("cannot listen at " + path);
    }
    // Nobody can connect before listen().
    if (::chmod(path.c_str(), S_IRUSR | S_IWUSR) != 0 || ::listen(socket.get(), 16) != 0) {
        fail("cannot listen at " + path);
    }
    return socket;
}

Fd connect_to(const std::string& path)
{
    const sockaddr_un address = address_of(path);
    Fd socket = new_socket();
    if (!try_connect(socket.get(), address)) {
        if (errno == ECONNREFUSED || errno == ENOENT) {
            throw BadInput(path + ": no card is served there; start one with vexosh --listen " +
                           path);
        }
        fail("cannot connect to " + path);
    }
    return socket;
}

bool send_all(int socket, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t sent = ::send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        if (sent < 0 && errno == EINTR) {
            continue;
        }
        if (sent <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

std::optional<Message> MessageReader::next()
{
    std::array<char, 65536> part;
    for (;;) {
        if (const std::size_t end = waiting_.find('\n', searched_); end != std::string::npos) {
            Message message = Message::parse(waiting_.substr(0, end), nullptr, false);
            waiting_.erase(0, end + 1);
            searched_ = 0;
            return message.is_object() ? std::optional(std::move(message)) : std::nullopt;
        }
        searched_ = waiting_.size();
        const ssize_t got = ::recv(socket_, part.data(), part.size(), 0);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0 || waiting_.size() > kLongest) {
            return std::nullopt;
        }
        waiting_.append(part.data(), static_cast<std::size_t>(got));
    }
}

} // namespace vexosh
