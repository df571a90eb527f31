#include "tools/vexosh/call_words.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cstring>

#include "platform/port_map.h"
#include "tools/vexosh/flow_words.h"

namespace vexosh {
namespace {

/// Whether a number is an IPv4 address or mask.
bool is_ip4(const std::string& name)
{
    for (const char* ip : {"IP", "MASK", "SUBNET", "NEXTHOP_IP", "NET"}) {
        if (name == ip) {
            return true;
        }
    }
    return false;
}

std::string ip6_text(const unsigned char* ip)
{
    char result[INET6_ADDRSTRLEN] = {};
    inet_ntop(AF_INET6, ip, result, sizeof result);
    return result;
}

std::string bitmap_text(const unsigned char* bitmap)
{
    std::string vids;
    for (unsigned vid = 0; vid < 4096; ++vid) {
        if ((bitmap[vid / 8] >> vid % 8 & 1) != 0) {
            vids += (vids.empty() ? "" : ",") + std::to_string(vid);
        }
    }
    return vids.empty() ? "-" : vids;
}

} // namespace

std::string as_word(bool value, const std::string&)
{
    return value ? "on" : "off";
}

std::string as_word(int value, const std::string&)
{
    return std::to_string(value);
}

std::string as_word(unsigned value, const std::string& name)
{
    return is_ip4(name) ? ip4_text(value) : std::to_string(value);
}

std::string as_word(unsigned short value, const std::string&)
{
    return std::to_string(value);
}

/// A port that is none of the card's, or the number of a LAG, is written as MODULE/PORT.
std::string as_word(const Mp& value, const std::string&)
{
    int user_port = -1;
    return map_mp_to_user_port(value, user_port)
               ? text(value)
               : std::to_string(value.module()) + "/" + std::to_string(value.port());
}

std::string as_word(const std::list<Mp>& value, const std::string& name)
{
    std::string ports;
    for (const Mp& port : value) {
        ports += (ports.empty() ? "" : ",") + as_word(port, name);
    }
    return ports.empty() ? "-" : ports;
}

std::string as_word(const std::string& value, const std::string&)
{
    return quoted(value);
}

std::string as_word(const Packet& value, const std::string&)
{
    return quoted(hex(value.data().data(), value.data().size()));
}

std::string as_word(const of_flow_mp_s& value, const std::string&)
{
    return text(value);
}

/// Its value is a number or an address; the number's bytes are the address's first two.
std::string as_word(const of_action_param_s& value, const std::string&)
{
    const std::string type = std::to_string(value.type);
    Mac bytes{};
    std::memcpy(bytes.data(), &value.value, bytes.size());
    if (std::any_of(bytes.begin() + 2, bytes.end(), [](auto byte) { return byte != 0; })) {
        return type + ":" + text(bytes);
    }
    return value.value.number == 0 ? type : type + ":" + std::to_string(value.value.number);
}

std::string as_word(const of_flow_qualify_udf_s& value, const std::string&)
{
    if (value.length == 0 || value.data == nullptr || value.mask == nullptr) {
        return "-";
    }
    return std::to_string(value.offset) + ":" + hex(value.data, value.length) + "/" +
           hex(value.mask, value.length);
}

std::string as_word(const unsigned char* value, const std::string& name)
{
    if (name == "BITMAP") {
        return bitmap_text(value);
    }
    if (name.find('6') != std::string::npos) {
        return ip6_text(value);
    }
    Mac mac{};
    std::copy_n(value, mac.size(), mac.begin());
    return text(mac);
}

} // namespace vexosh
