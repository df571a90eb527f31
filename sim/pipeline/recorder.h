/// @file
/// Writes down what the stages decide. Null while nobody watches, and then costs a branch.
#pragma once

#include <array>
#include <string>
#include <utility>
#include <vector>

#include "sim/chip/port_set.h"
#include "sim/pipeline/packet.h"

namespace vexosim {

/// The user port of each chip port, -1 where there is none.
class PortNames {
public:
    /// Before the ports have user ports, chip ports name themselves.
    PortNames();
    void set(int chip_port, int user_port)
    {
        user_[static_cast<std::size_t>(chip_port)] = user_port;
    }
    int user(int chip_port) const { return user_[static_cast<std::size_t>(chip_port)]; }
    /// "cpu", the user port's number, or "chip:5" for a port without one.
    std::string name(int chip_port) const;
    /// The ports' names by user port, as in "1-4,7"; "none" for no port.
    std::string names(PortSet ports) const;

private:
    std::array<int, kPortCount> user_;
};

class Recorder {
public:
    struct Line {
        std::string stage;
        std::string text;
    };

    explicit Recorder(const PortNames& names) : names_(names) {}

    void enter(const char* stage) { stage_ = stage; }
    void note(std::string text) { lines_.push_back({stage_, std::move(text)}); }
    const std::vector<Line>& lines() const { return lines_; }
    const PortNames& names() const { return names_; }

private:
    const PortNames& names_;
    const char* stage_ = "";
    std::vector<Line> lines_;
};

/// Notes what `text`, given the names of ports, returns; does not call it unless traced.
template <class Text>
void explain(const Packet& p, Text&& text)
{
    if (p.recorder != nullptr) [[unlikely]]
        p.recorder->note(text(p.recorder->names()));
}

} // namespace vexosim
