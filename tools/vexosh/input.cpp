#include "tools/vexosh/input.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstdio>
#include <cstring>

#include "platform/port_map.h"

namespace vexosh {
namespace {

constexpr int kCpuUserPort = 53;

[[noreturn]] void reject(std::string_view what, std::string_view word, std::string_view wanted)
{
    throw BadInput("bad " + std::string(what) + " '" + std::string(word) +
                   "': " + std::string(wanted));
}

bool ends_word(char c)
{
    return std::isspace(static_cast<unsigned char>(c)) != 0 || c == '#';
}

std::size_t closing_quote(std::string_view line, std::size_t open)
{
    const std::size_t close = line.find(line[open], open + 1);
    if (close == std::string_view::npos) {
        throw BadInput("a quote is not closed");
    }
    return close;
}

std::vector<std::string_view> split_at(std::string_view text, char separator)
{
    std::vector<std::string_view> pieces;
    for (std::size_t end; (end = text.find(separator)) != std::string_view::npos;) {
        pieces.push_back(text.substr(0, end));
        text.remove_prefix(end + 1);
    }
    pieces.push_back(text);
    return pieces;
}

} // namespace

std::vector<std::string> split_words(std::string_view line)
{
    std::vector<std::string> words;
    for (std::size_t i = 0; i < line.size() && line[i] != '#';) {
        if (ends_word(line[i])) {
            ++i;
            continue;
        }
        std::string& word = words.emplace_back();
        for (; i < line.size() && !ends_word(line[i]); ++i) {
            if (line[i] == '"' || line[i] == '\'') {
                const std::size_t close = closing_quote(line, i);
                word += line.substr(i + 1, close - i - 1);
                i = close;
            } else {
                word += line[i];
            }
        }
    }
    return words;
}

std::vector<std::string> split_commands(std::string_view line)
{
    std::vector<std::string> commands(1);
    for (std::size_t i = 0; i < line.size() && line[i] != '#'; ++i) {
        if (line[i] == ';') {
            commands.emplace_back();
        } else if (line[i] == '"' || line[i] == '\'') {
            const std::size_t close = closing_quote(line, i);
            commands.back() += line.substr(i, close - i + 1);
            i = close;
        } else {
            commands.back() += line[i];
        }
    }
    return commands;
}

std::string quoted(const std::string& word)
{
    const bool plain = !word.empty() && word.find_first_of(" \t;#\"'") == std::string::npos;
    const char quote = word.find('"') == std::string::npos ? '"' : '\'';
    return plain ? word : quote + word + quote;
}

std::int64_t parse_number(std::string_view word, std::string_view what, std::int64_t least,
                          std::int64_t most)
{
    const std::string wanted =
        "a number from " + std::to_string(least) + " to " + std::to_string(most) + " is wanted";
    const bool hexadecimal = word.starts_with("0x") || word.starts_with("0X");
    const std::string_view digits = hexadecimal ? word.substr(2) : word;
    std::int64_t value = 0;
    const auto [end, error] =
        std::from_chars(digits.data(), digits.data() + digits.size(), value, hexadecimal ? 16 : 10);
    if (error != std::errc{} || end != digits.data() + digits.size() || value < least ||
        value > most) {
        reject(what, word, wanted);
    }
    return value;
}

bool parse_switch(std::string_view word, std::string_view what)
{
    for (std::string_view yes : {"on", "true", "yes", "up", "1"}) {
        if (word == yes) {
            return true;
        }
    }
    for (std::string_view no : {"off", "false", "no", "down", "0"}) {
        if (word == no) {
            return false;
        }
    }
    reject(what, word, "on or off is wanted");
}

int parse_user_port(std::string_view word)
{
    if (word == "cpu") {
        return kCpuUserPort;
    }
    int port = -1;
    const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), port);
    if (error != std::errc{} || end != word.data() + word.size() || port < 0 ||
        port >= kCpuUserPort) {
        reject("port", word, "0 to 52 or cpu is wanted");
    }
    return port;
}

Mp parse_port(std::string_view word)
{
    if (const std::size_t slash = word.find('/'); slash != std::string_view::npos) {
        return Mp(
            static_cast<unsigned>(parse_number(word.substr(0, slash), "module", 0, UINT32_MAX)),
            static_cast<unsigned>(parse_number(word.substr(slash + 1), "port", 0, UINT32_MAX)));
    }
    Mp port(0, 0);
    map_user_port_to_mp(parse_user_port(word), port);
    return port;
}

std::vector<int> parse_user_ports(std::string_view word)
{
    std::vector<int> ports;
    if (word == "-") {
        return ports;
    }
    for (std::string_view piece : split_at(word, ',')) {
        const std::size_t dash = piece.find('-');
        const int first = parse_user_port(piece.substr(0, dash));
        const int last =
            dash == std::string_view::npos ? first : parse_user_port(piece.substr(dash + 1));
        if (last < first) {
            reject("port range", piece, "the lower port comes first");
        }
        for (int port = first; port <= last; ++port) {
            ports.push_back(port);
        }
    }
    return ports;
}

std::list<Mp> parse_ports(std::string_view word)
{
    std::list<Mp> ports;
    if (word == "-") {
        return ports;
    }
    for (std::string_view piece : split_at(word, ',')) {
        if (piece.find('/') != std::string_view::npos) {
            ports.push_back(parse_port(piece));
            continue;
        }
        for (int user_port : parse_user_ports(piece)) {
            Mp port(0, 0);
            map_user_port_to_mp(user_port, port);
            ports.push_back(port);
        }
    }
    return ports;
}

Bytes parse_hex(std::string_view word)
{
    std::string digits;
    for (char c : word) {
        if (c != ':' && c != '-' && c != '.') {
            digits += c;
        }
    }
    Bytes bytes(digits.size() / 2);
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const char* pair = digits.data() + 2 * i;
        if (std::from_chars(pair, pair + 2, bytes[i], 16).ptr != pair + 2) {
            reject("bytes", word, "pairs of hexadecimal digits are wanted");
        }
    }
    if (digits.size() % 2 != 0) {
        reject("bytes", word, "pairs of hexadecimal digits are wanted");
    }
    return bytes;
}

Mac parse_mac(std::string_view word)
{
    const auto pieces = split_at(word, ':');
    Mac mac{};
    bool good = pieces.size() == mac.size();
    for (std::size_t i = 0; good && i < mac.size(); ++i) {
        const char* end = pieces[i].data() + pieces[i].size();
        good = !pieces[i].empty() && pieces[i].size() <= 2 &&
               std::from_chars(pieces[i].data(), end, mac[i], 16).ptr == end;
    }
    if (!good) {
        reject("MAC address", word, "six bytes like 02:00:00:00:00:01 are wanted");
    }
    return mac;
}

std::uint32_t parse_ip4(std::string_view word)
{
    in_addr address{};
    if (inet_pton(AF_INET, std::string(word).c_str(), &address) != 1) {
        reject("IPv4 address", word, "four numbers like 192.0.2.1 are wanted");
    }
    return ntohl(address.s_addr);
}

Ip6 parse_ip6(std::string_view word)
{
    Ip6 address{};
    if (inet_pton(AF_INET6, std::string(word).c_str(), address.data()) != 1) {
        reject("IPv6 address", word, "an address like 2001:db8::1 is wanted");
    }
    return address;
}

unsigned parse_vid(std::string_view word)
{
    return static_cast<unsigned>(parse_number(word, "VLAN", 0, 65535));
}

std::string hex(const std::uint8_t* bytes, std::size_t count)
{
    std::string result;
    char pair[3];
    for (std::size_t i = 0; i < count; ++i) {
        std::snprintf(pair, sizeof pair, "%02x", bytes[i]);
        result += pair;
    }
    return result;
}

std::string text(const Mac& mac)
{
    char result[18];
    std::snprintf(result, sizeof result, "%02x:%02x:%02x:%02x:%02x:%02x", mac[0], mac[1], mac[2],
                  mac[3], mac[4], mac[5]);
    return result;
}

std::string text(const Mp& port)
{
    return port == Mp(3, kCpuUserPort) ? "cpu" : std::to_string(port.port());
}

std::string ip4_text(std::uint32_t ip)
{
    return std::to_string(ip >> 24) + "." + std::to_string(ip >> 16 & 0xff) + "." +
           std::to_string(ip >> 8 & 0xff) + "." + std::to_string(ip & 0xff);
}

std::string text(std::list<Mp> ports)
{
    std::string result;
    const auto append = [&](const std::string& part) {
        result += (result.empty() ? "" : ",") + part;
    };
    ports.sort();
    if (!ports.empty() && text(ports.back()) == "cpu") {
        append("cpu");
        ports.pop_back();
    }
    while (!ports.empty()) {
        const unsigned first = ports.front().port();
        unsigned last = first;
        for (ports.pop_front(); !ports.empty() && ports.front().port() == last + 1;) {
            ++last;
            ports.pop_front();
        }
        append(std::to_string(first) +
               (last == first ? "" : (last == first + 1 ? "," : "-") + std::to_string(last)));
    }
    return result.empty() ? "-" : result;
}

} // namespace vexosh
