#pragma once

#include <nlohmann/json.hpp>
#include <optional>
#include <string>

#include "sim/wire/fd.h"

/// What a card that is served and its clients have in common: a Unix socket, and messages on it,
/// each a line of JSON.
namespace vexosh {

using Message = nlohmann::ordered_json;

/// What a server says first.
inline constexpr int kProtocol = 1;

/// Makes a socket that only its owner may use; one that nobody serves any more is replaced. Throws
/// BadInput.
vexosim::Fd listen_at(const std::string& path);
/// Throws BadInput.
vexosim::Fd connect_to(const std::string& path);

/// @return false when the other side is gone.
bool send_all(int socket, std::string_view bytes);

/// Messages as they come in.
class MessageReader {
public:
    explicit MessageReader(int socket) : socket_(socket) {}
    /// Waits for the next one; none when the other side is gone or speaks no JSON.
    std::optional<Message> next();

private:
    static constexpr std::size_t kLongest = std::size_t{64} * 1024 * 1024;

    int socket_;
    std::string waiting_;
    std::size_t searched_ = 0;
};

} // namespace vexosh
