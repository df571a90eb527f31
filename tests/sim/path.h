/// @file
/// Frames through a chip value: no card, no driver, no threads. Ports are chip ports.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "sim/pipeline/forward.h"
#include "sim/pipeline/rewrite.h"
#include "sim/pipeline/trace.h"

namespace vexosim {

inline constexpr MacAddress kHostA = 0x00aa00000001, kHostB = 0x00bb00000002,
                            kHostC = 0x00cc00000003, kGroup = 0x01005e000005,
                            kBridgeGroup = 0x0180c2000000;

/// A frame of 60 bytes, type IPv4, that is changed step by step.
class TestFrame {
public:
    TestFrame(MacAddress dst, MacAddress src, std::size_t bytes = 60) : bytes_(bytes)
    {
        store_mac(dst, bytes_.data());
        store_mac(src, bytes_.data() + 6);
        type(0x0800);
    }
    explicit TestFrame(Frame bytes) : bytes_(std::move(bytes)) {}
    /// Puts a tag in front of what is there.
    TestFrame tag(int vid, int priority = 0) const
    {
        TestFrame tagged = *this;
        int tci = priority << 13 | vid;
        std::uint8_t tag[4] = {0x81, 0, static_cast<std::uint8_t>(tci >> 8),
                               static_cast<std::uint8_t>(tci)};
        tagged.bytes_.insert(tagged.bytes_.begin() + 12, tag, tag + 4);
        return tagged;
    }
    /// Sets the outermost type.
    TestFrame& type(int value)
    {
        bytes_[12] = static_cast<std::uint8_t>(value >> 8);
        bytes_[13] = static_cast<std::uint8_t>(value);
        return *this;
    }
    /// Becomes an IP packet of the type that it has, 0x0800 or 0x86dd, between these two. The
    /// addresses are the last four bytes of IPv6's.
    TestFrame ip(std::uint32_t dst, std::uint32_t src) const
    {
        TestFrame packet = *this;
        std::size_t at = bytes_.size() > 16 && bytes_[12] == 0x81 ? 18 : 14;
        bool is_4 = bytes_[at - 2] == 0x08;
        packet.bytes_.resize(std::max<std::size_t>(bytes_.size(), at + 40));
        packet.bytes_[at] = is_4 ? 0x45 : 0x60;
        packet.store(at + (is_4 ? 12 : 20), src);
        packet.store(at + (is_4 ? 16 : 36), dst);
        return packet;
    }
    operator FrameView() const { return bytes_; }
    const Frame& bytes() const { return bytes_; }

private:
    void store(std::size_t at, std::uint32_t value)
    {
        for (std::size_t i = 0; i < 4; ++i)
            bytes_[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }

    Frame bytes_;
};

/// A chip whose ports are all up and filter by VLAN, and a CPU that receives.
struct Path {
    Chip chip;
    CpuReceive cpu;
    Outputs outputs;
    PortNames names;

    Path()
    {
        for (int port : PortSet::front()) {
            chip.ports.set_link(port, true);
            chip.ports.set_vlan_member(port, 3);
            chip.flood_block.set(port, kCpuPort, 0xf);
        }
        cpu.init(chip.cpu);
        cpu.start(chip.cpu, nullptr);
    }

    /// Makes a VLAN with these ports only.
    void vlan(int vid, PortSet tagged, PortSet untagged = {})
    {
        chip.vlans.create(vid);
        chip.vlans.add_ports(vid, tagged | untagged, untagged);
    }
    /// Leaves these ports alone in VLAN 1, untagged.
    void only(PortSet ports) { chip.vlans.remove_ports(1, PortSet::all() - ports); }

    /// Sends a frame in at a port and says where it came out: "2 3:v10 cpu:BPDU" is port 2 without
    /// a tag, port 3 tagged with VLAN 10, and the CPU; or "drop:not_member". Every frame is traced
    /// first, and what the trace says is checked against what happens.
    std::string send(int port, FrameView frame)
    {
        std::uint64_t before = chip.digest();
        FrameTrace trace = trace_frame(chip, cpu, port, frame, names);
        EXPECT_EQ(chip.digest(), before) << trace.text;
        DropCounters was = chip.drops;
        std::size_t waiting = cpu.waiting();
        outputs.clear();
        forward_batch(chip, cpu, port, {&frame, 1}, outputs);
        EXPECT_EQ(chip.check_conservation(), "");
        EXPECT_EQ(outputs.used(), trace.tagged | trace.untagged | trace.mirrored) << trace.text;
        EXPECT_EQ(cpu.waiting() > waiting, trace.to_cpu) << trace.text;
        std::string came_out = where(was, waiting);
        EXPECT_EQ(came_out.find("drop:") != std::string::npos, trace.drop != DropReason::kNone)
            << trace.text;
        return came_out;
    }
    /// What the CPU sends through the tables.
    std::string send_from_cpu(FrameView frame) { return send(kCpuPort, frame); }

    /// The next frame that the CPU may have now, if any.
    CpuFrame take()
    {
        CpuFrame frame;
        cpu.take(chip.cpu, chip.now_us, frame);
        return frame;
    }
    std::uint64_t drops(DropReason reason) const
    {
        return chip.drops.frames[static_cast<std::size_t>(reason)];
    }

private:
    static std::string form(FrameView frame)
    {
        if (frame[12] != 0x81 || frame[13] != 0)
            return "";
        return ":v" + std::to_string((frame[14] & 15) << 8 | frame[15]);
    }
    std::string where(const DropCounters& was, std::size_t waiting)
    {
        std::string text;
        auto add = [&](const std::string& part) { text += (text.empty() ? "" : " ") + part; };
        for (int port : outputs.used()) {
            for (FrameView frame : outputs.frames(port))
                add(std::to_string(port) + form(frame));
        }
        if (cpu.waiting() > waiting)
            add("cpu");
        for (std::size_t i = 0; i < kDropReasons; ++i) {
            if (chip.drops.frames[i] != was.frames[i])
                add(std::string("drop:") + drop_name(static_cast<DropReason>(i)));
        }
        return text;
    }
};

} // namespace vexosim
