/// @file
/// Writes down what the stages decide. Null while nobody watches, and then costs a branch.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "sim/chip/port_names.h"
#include "sim/pipeline/packet.h"

namespace vexosim {

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

template <class Text>
[[gnu::noinline, gnu::cold]] void explain_traced(const Packet& p, const Text& text)
{
    p.recorder->note(text(p.recorder->names()));
}

/// Notes what `text`, given the names of ports, returns; does not call it unless traced.
template <class Text>
void explain(const Packet& p, const Text& text)
{
    if (p.recorder != nullptr) [[unlikely]]
        explain_traced(p, text);
}

} // namespace vexosim
