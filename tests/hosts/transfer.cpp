#include "tests/hosts/transfer.h"

#include <array>
#include <cstring>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#include <unistd.h>

#include "tests/hosts/lab.h"

namespace {

constexpr int kPatience = 20; // seconds

sockaddr_in address_of(const std::string& address)
{
    sockaddr_in result{};
    result.sin_family = AF_INET;
    result.sin_port = htons(Transfer::kPort);
    inet_pton(AF_INET, address.c_str(), &result.sin_addr);
    return result;
}

const sockaddr* generic(const sockaddr_in& address)
{
    return reinterpret_cast<const sockaddr*>(&address);
}

int patient_socket()
{
    const int socket = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const timeval patience{kPatience, 0};
    const int on = 1;
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    ::setsockopt(socket, SOL_SOCKET, SO_SNDTIMEO, &patience, sizeof patience);
    ::setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
    return socket;
}

/// The byte at a position of the stream.
std::uint8_t pattern(std::uint64_t position)
{
    return static_cast<std::uint8_t>(position * 7 + position / 251);
}

using Block = std::array<std::uint8_t, 16384>;

} // namespace

Transfer::Transfer(const Host& sender, const Host& receiver, const std::string& address)
    : receiver_([this, &receiver, address] { receive(receiver, address); }),
      sender_([this, &sender, address] { send(sender, address); })
{
}

Transfer::~Transfer()
{
    finish();
}

bool Transfer::finish()
{
    stopping_ = true;
    if (sender_.joinable()) {
        sender_.join();
        receiver_.join();
    }
    return intact_ && sent_ == received_;
}

void Transfer::send(const Host& host, const std::string& address)
{
    host.enter();
    comes_true([this] { return listening_.load(); });
    const int socket = patient_socket();
    const sockaddr_in to = address_of(address);
    EXPECT_EQ(::connect(socket, generic(to), sizeof to), 0) << std::strerror(errno);
    Block block;
    while (!stopping_) {
        for (std::size_t i = 0; i < block.size(); ++i) {
            block[i] = pattern(sent_ + i);
        }
        const ssize_t size = ::send(socket, block.data(), block.size(), MSG_NOSIGNAL);
        if (size <= 0) {
            ADD_FAILURE() << "sending stopped: " << std::strerror(errno);
            break;
        }
        sent_ += static_cast<std::uint64_t>(size);
    }
    ::close(socket);
}

void Transfer::receive(const Host& host, const std::string& address)
{
    host.enter();
    const int listener = patient_socket();
    const sockaddr_in own = address_of(address);
    EXPECT_EQ(::bind(listener, generic(own), sizeof own), 0) << std::strerror(errno);
    EXPECT_EQ(::listen(listener, 1), 0);
    listening_ = true;
    const int socket = ::accept4(listener, nullptr, nullptr, SOCK_CLOEXEC);
    const timeval patience{kPatience, 0};
    ::setsockopt(socket, SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    Block block;
    for (ssize_t size; (size = ::recv(socket, block.data(), block.size(), 0)) > 0;) {
        for (std::size_t i = 0; i < static_cast<std::size_t>(size); ++i) {
            intact_ = intact_ && block[i] == pattern(received_ + i);
        }
        received_ += static_cast<std::uint64_t>(size);
    }
    ::close(socket);
    ::close(listener);
}
