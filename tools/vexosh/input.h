#pragma once

#include <array>
#include <cstdint>
#include <list>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/mp.h"

/// From words a person typed to values. Whatever cannot be read throws BadInput, whose text is the
/// one line that the person gets to see.
namespace vexosh {

class BadInput : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// What the driver refused to do; whoever runs the command says why.
class Refused : public BadInput {
public:
    using BadInput::BadInput;
};

using Mac = std::array<unsigned char, 6>;
using Ip6 = std::array<unsigned char, 16>;
using Bytes = std::vector<std::uint8_t>;

/// Splits a line at blanks; "..." and '...' keep blanks together, # starts a comment.
std::vector<std::string> split_words(std::string_view line);
/// Splits a line at semicolons outside quotes and comments.
std::vector<std::string> split_commands(std::string_view line);
/// A word as it can stand in a line: in quotes if it has blanks or separators, or is empty.
std::string quoted(const std::string& word);

/// A number, decimal or with 0x, within limits; `what` names it in errors.
std::int64_t parse_number(std::string_view word, std::string_view what, std::int64_t least,
                          std::int64_t most);
/// on, off, true, false, yes, no, up, down, 1, 0.
bool parse_switch(std::string_view word, std::string_view what);
/// A user port (0 to 52), `cpu`, or MODULE/PORT for any module and port at all.
Mp parse_port(std::string_view word);
/// The same as a user port number, 0 to 53.
int parse_user_port(std::string_view word);
/// Ports and ranges with commas, e.g. 1,4-6,cpu; `-` is the empty list.
std::list<Mp> parse_ports(std::string_view word);
std::vector<int> parse_user_ports(std::string_view word);
Mac parse_mac(std::string_view word);
/// a.b.c.d, as a number in host order.
std::uint32_t parse_ip4(std::string_view word);
Ip6 parse_ip6(std::string_view word);
/// Pairs of hexadecimal digits; colons, dots and dashes between them are passed over.
Bytes parse_hex(std::string_view word);
/// A VLAN id; the chip decides which ids it takes.
unsigned parse_vid(std::string_view word);

std::string text(const Mac& mac);
std::string text(const Mp& port);
/// Of an address in host order.
std::string ip4_text(std::uint32_t ip);
/// In order, as parse_ports() reads them: cpu,1,4-6.
std::string text(std::list<Mp> ports);
std::string hex(const std::uint8_t* bytes, std::size_t count);

} // namespace vexosh
