#include "sim/pipeline/edit.h"

namespace vexosim {

namespace {

std::uint32_t load16(const std::uint8_t* bytes)
{
    return static_cast<std::uint32_t>(bytes[0]) << 8 | bytes[1];
}

void store16(std::uint8_t* to, std::uint32_t value)
{
    to[0] = static_cast<std::uint8_t>(value >> 8);
    to[1] = static_cast<std::uint8_t>(value);
}

/// The checksum of a header of which one 16-bit word changes.
std::uint32_t changed_checksum(std::uint32_t checksum, std::uint32_t was, std::uint32_t is)
{
    std::uint32_t sum = (~checksum & 0xffff) + (~was & 0xffff) + is;
    sum = (sum & 0xffff) + (sum >> 16);
    sum = (sum & 0xffff) + (sum >> 16);
    return ~sum & 0xffff;
}

void set_tos(std::uint8_t* ip, std::uint32_t tos)
{
    const std::uint32_t was = load16(ip);
    if (ip[0] >> 4 == 6) {
        store16(ip, (was & 0xf00f) | tos << 4);
        return;
    }
    const std::uint32_t is = (was & 0xff00) | tos;
    store16(ip, is);
    store16(ip + 10, changed_checksum(load16(ip + 10), was, is));
}

} // namespace

void apply_hop(MacAddress dst, MacAddress src, std::uint8_t* copy, std::size_t ip_at)
{
    store_mac(dst, copy);
    store_mac(src, copy + 6);
    std::uint8_t* ip = copy + ip_at;
    if (ip[0] >> 4 == 6) {
        --ip[7];
        return;
    }
    const std::uint32_t was = load16(ip + 8);
    --ip[8];
    store16(ip + 10, changed_checksum(load16(ip + 10), was, load16(ip + 8)));
}

void apply_edits(const FieldEdits& edits, std::uint8_t* copy, std::size_t ip_at)
{
    if (edits.new_dst)
        store_mac(edits.dst, copy);
    if (edits.new_src)
        store_mac(edits.src, copy + 6);
    if (edits.tos >= 0 && ip_at != 0)
        set_tos(copy + ip_at, static_cast<std::uint32_t>(edits.tos));
}

} // namespace vexosim
