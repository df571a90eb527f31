#include "sim/sdk/render.h"

#include <dlfcn.h>

#include <array>
#include <cstdio>

#include "vexosim/card.h"

namespace vexosim {

namespace {

void append_hex(std::string& text, std::uint8_t byte)
{
    static const char digits[] = "0123456789abcdef";
    text += digits[byte >> 4];
    text += digits[byte & 0xF];
}

/// The exported name of a function, when it has a readable one.
const char* name_of(void (*function)())
{
    void* const address = reinterpret_cast<void*>(function);
    Dl_info info{};
    if (dladdr(address, &info) == 0 || info.dli_sname == nullptr || info.dli_saddr != address)
        return "handler";
    const bool mangled = info.dli_sname[0] == '_' && info.dli_sname[1] == 'Z';
    return mangled ? "handler" : info.dli_sname;
}

void append_ports(std::string& text, const bcmx_lport_t* ports, int count)
{
    text += '[';
    for (int i = 0; i < count; ++i) {
        if (i != 0)
            text += ", ";
        render(text, Lport{ports[i]});
    }
    text += ']';
}

} // namespace

void render(std::string& text, long long number)
{
    text += std::to_string(number);
}

void render(std::string& text, Lport port)
{
    const int chip_port = port.lport - kFirstLport;
    if (attached() && user_port_of(chip_port) >= 0)
        text += port_name(chip_port);
    else
        text += "lport:" + std::to_string(port.lport);
}

void render(std::string& text, Ports ports)
{
    if (ports.list == nullptr)
        text += "null";
    else
        append_ports(text, ports.list->lp_ports, ports.list->lp_last + 1);
}

void render(std::string& text, Mac mac)
{
    if (mac.bytes == nullptr) {
        text += "null";
        return;
    }
    for (int i = 0; i < 6; ++i) {
        if (i != 0)
            text += ':';
        append_hex(text, mac.bytes[i]);
    }
}

void render(std::string& text, Bytes bytes)
{
    if (bytes.data == nullptr)
        text += "null";
    else
        for (std::size_t i = 0; i < bytes.size; ++i)
            append_hex(text, bytes.data[i]);
}

void render(std::string& text, Flags flags)
{
    std::array<char, 16> buffer{};
    const char* const format = flags.bits < 10 ? "%lu" : "0x%lx";
    std::snprintf(buffer.data(), buffer.size(), format, static_cast<unsigned long>(flags.bits));
    text += buffer.data();
}

void render(std::string& text, Address address)
{
    text += address.address == 0 ? "null" : "pointer";
}

void render(std::string& text, Ip4 ip)
{
    for (int shift = 24; shift >= 0; shift -= 8) {
        if (shift != 24)
            text += '.';
        text += std::to_string(ip.address >> shift & 0xFF);
    }
}

void render(std::string& text, Handler handler)
{
    text += handler.function == nullptr ? "null" : name_of(handler.function);
}

void render(std::string& text, Out out)
{
    text += out.pointer == nullptr ? "null" : "out";
}

void render(std::string& text, const char* string)
{
    if (string == nullptr)
        text += "null";
    else
        text += '"' + std::string(string) + '"';
}

void render(std::string& text, const void* cookie)
{
    text += cookie == nullptr ? "null" : "pointer";
}

} // namespace vexosim
