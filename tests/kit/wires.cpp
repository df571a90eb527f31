#include "tests/kit/wires.h"

#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <stdexcept>

#include "sim/card/card.h"
#include "vexosim/ports.h"

namespace vexokit {

namespace {

constexpr int kFrontPorts = 53;

/// The panel owns the wires; a test detaches none of these.
std::array<vexosim::MemoryWire*, kFrontPorts>& wires()
{
    static std::array<vexosim::MemoryWire*, kFrontPorts> all{};
    return all;
}

vexosim::DropCounters drops()
{
    const vexosim::ChipLock chip;
    return chip->drops;
}

std::string drop_difference(const vexosim::DropCounters& before, const vexosim::DropCounters& after)
{
    std::string names;
    for (std::size_t i = 0; i < vexosim::kDropReasons; ++i)
        for (std::uint64_t n = before.frames[i]; n < after.frames[i]; ++n)
            names += std::string(names.empty() ? "" : " ") +
                     vexosim::drop_name(static_cast<vexosim::DropReason>(i));
    return names.empty() ? "none" : names;
}

std::string names(const std::map<int, std::vector<TestFrame>>& sent)
{
    std::string text;
    for (const auto& [port, frames] : sent)
        text += (text.empty() ? "" : " ") + std::to_string(port);
    return text.empty() ? "none" : text;
}

std::map<int, std::vector<TestFrame>> copies_of(const TestFrame& frame, int in_port)
{
    take_sent();
    vexosim::receive(in_port, vexosim::FrameView(frame));
    EXPECT_EQ(conservation(), "");
    return take_sent();
}

std::string names(const std::set<int>& ports)
{
    std::map<int, std::vector<TestFrame>> sent;
    for (const int port : ports)
        sent[port];
    return names(sent);
}

} // namespace

void attach_memory_wires()
{
    for (int port = 0; port < kFrontPorts; ++port) {
        auto memory = std::make_unique<vexosim::MemoryWire>();
        vexosim::MemoryWire* const made = memory.get();
        if (vexosim::attach(port, std::move(memory)).empty())
            wires()[static_cast<std::size_t>(port)] = made;
    }
}

vexosim::MemoryWire& wire(int user_port)
{
    vexosim::MemoryWire* const found = wires().at(static_cast<std::size_t>(user_port));
    if (found == nullptr)
        throw std::out_of_range("no memory wire at port " + std::to_string(user_port));
    return *found;
}

std::map<int, std::vector<TestFrame>> take_sent()
{
    std::map<int, std::vector<TestFrame>> sent;
    for (int port = 0; port < kFrontPorts; ++port) {
        vexosim::MemoryWire* const memory = wires()[static_cast<std::size_t>(port)];
        if (memory == nullptr)
            continue;
        for (vexosim::Frame& frame : memory->take_sent())
            sent[port].emplace_back(std::move(frame));
    }
    return sent;
}

std::string ports_reached(const TestFrame& frame, int in_port)
{
    return names(copies_of(frame, in_port));
}

void expect_forwarded(const TestFrame& frame, int in_port, const std::set<int>& ports)
{
    const auto sent = copies_of(frame, in_port);
    EXPECT_EQ(names(sent), names(ports)) << "ports that sent, and ports that should have";
    for (const auto& [port, frames] : sent) {
        EXPECT_EQ(frames.size(), 1u) << "copies at port " << port;
        EXPECT_EQ(frames.front().untagged(), frame.untagged()) << "at port " << port;
    }
}

void expect_copies(const TestFrame& frame, int in_port, const std::map<int, TestFrame>& copies)
{
    std::map<int, std::vector<TestFrame>> expected;
    for (const auto& [port, copy] : copies)
        expected[port].push_back(copy);
    const auto sent = copies_of(frame, in_port);
    EXPECT_EQ(names(sent), names(expected)) << "ports that sent, and ports that should have";
    for (const auto& [port, frames] : sent)
        if (expected.contains(port)) {
            EXPECT_EQ(frames, expected[port]) << "at port " << port;
        }
}

void expect_dropped(const TestFrame& frame, int in_port, const std::string& reason)
{
    const vexosim::DropCounters before = drops();
    EXPECT_EQ(ports_reached(frame, in_port), "none");
    const vexosim::DropCounters after = drops();
    EXPECT_EQ(after.copies_to_cpu, before.copies_to_cpu) << "copies for the CPU";
    EXPECT_EQ(drop_difference(before, after), reason);
}

void expect_to_cpu(const TestFrame& frame, int in_port, bool to_cpu)
{
    const std::uint64_t before = drops().copies_to_cpu;
    copies_of(frame, in_port);
    EXPECT_EQ(drops().copies_to_cpu - before, to_cpu ? 1u : 0u) << "copies for the CPU";
}

std::string conservation()
{
    const vexosim::ChipLock chip;
    return chip->check_conservation();
}

} // namespace vexokit
