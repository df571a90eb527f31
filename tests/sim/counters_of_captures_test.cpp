// The hosts' captures of demo/ replayed: each port's counters, as the driver reads them, against
// what is counted in the capture files here. VLAN 10 has ports 1, 2 and tagged 5, VLAN 20 has 3, 4
// and tagged 5.
#include <cstring>

#include "tests/kit/kit.h"
#include "tests/sim/wire_captures.h"

namespace {

/// The frames of a capture file of this project: little-endian, microseconds.
std::vector<Bytes> frames_of(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    const Bytes bytes{std::istreambuf_iterator<char>(file), {}};
    const auto word = [&](std::size_t at) {
        return std::uint32_t{bytes[at]} | std::uint32_t{bytes[at + 1]} << 8 |
               std::uint32_t{bytes[at + 2]} << 16 | std::uint32_t{bytes[at + 3]} << 24;
    };
    std::vector<Bytes> frames;
    EXPECT_GE(bytes.size(), 24u) << path;
    for (std::size_t at = 24; at + 16 <= bytes.size();) {
        const std::uint32_t size = word(at + 8);
        const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(at + 16);
        frames.emplace_back(first, first + static_cast<std::ptrdiff_t>(size));
        at += 16 + size;
    }
    return frames;
}

/// What a port must have counted of frames in one direction.
struct Count {
    std::uint64_t frames = 0, octets = 0, unicast = 0, multicast = 0, broadcast = 0, ip4 = 0,
                  ip6 = 0, ip6_multicast = 0;
    std::map<std::string, std::uint64_t> sizes;

    explicit Count(const std::vector<Bytes>& captured)
    {
        for (const Bytes& frame : captured)
            add(frame);
    }

private:
    static std::string size_class(std::uint64_t size)
    {
        return size <= 64     ? "64"
               : size <= 127  ? "65-127"
               : size <= 255  ? "128-255"
               : size <= 511  ? "256-511"
               : size <= 1023 ? "512-1023"
               : size <= 1518 ? "1024-1518"
                              : "longer";
    }
    void add(const Bytes& frame)
    {
        const std::uint64_t size = std::max<std::size_t>(frame.size(), 60) + 4;
        ++frames;
        octets += size;
        ++sizes[size_class(size)];
        const bool everyone = std::all_of(frame.begin(), frame.begin() + 6,
                                          [](std::uint8_t byte) { return byte == 0xff; });
        const bool group = (frame[0] & 1) != 0;
        ++(everyone ? broadcast : group ? multicast : unicast);
        const std::size_t type = frame[12] == 0x81 && frame[13] == 0 ? 16 : 12;
        ip4 += frame[type] == 0x08 && frame[type + 1] == 0x00 ? 1 : 0;
        const bool is_ip6 = frame[type] == 0x86 && frame[type + 1] == 0xdd;
        ip6 += is_ip6 ? 1 : 0;
        ip6_multicast += is_ip6 && group ? 1 : 0;
    }
};

struct CountersOfCaptures : CardTest {
    TempDir dir;

    CountersOfCaptures()
    {
        for (const unsigned vid : {10u, 20u})
            EXPECT_TRUE(sdk().create_vlan(vid));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({5}), mps({1, 2})));
        EXPECT_TRUE(sdk().add_ports_to_vlan(20, mps({5}), mps({3, 4})));
        EXPECT_TRUE(sdk().delete_ports_from_vlan(1, mps({1, 2, 3, 4, 5})));
        for (const unsigned port : {1u, 2u, 3u, 4u})
            EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(port), port <= 2 ? 10 : 20));
        for (int port = 1; port <= 5; ++port) {
            EXPECT_EQ(detach(port), "");
            EXPECT_EQ(attach(port, "pcap:" + in(port) + "," + out(port)), "");
        }
        EXPECT_EQ(replay_captures().frames, 54u);
    }
    static std::string in(int port) { return VEXO_DEMO_DIR "/h" + std::to_string(port) + ".pcap"; }
    std::string out(int port) const { return dir.path("out" + std::to_string(port) + ".pcap"); }

    /// What port's wire has carried, once it is unplugged.
    Count received(int port) const { return Count(frames_of(in(port))); }
    Count sent(int port) const
    {
        detach(port);
        return Count(frames_of(out(port)));
    }
    std::uint64_t stat(int port, stat_type_t type)
    {
        unsigned long long value = 0;
        EXPECT_TRUE(sdk().get_port_stat_counter(mp(static_cast<unsigned>(port)), type, value));
        return value;
    }
};

TEST_F(CountersOfCaptures, FramesAndOctetsIn)
{
    for (int port = 1; port <= 5; ++port) {
        SCOPED_TRACE(port);
        const Count count = received(port);
        EXPECT_GT(count.frames, 0u);
        EXPECT_EQ(stat(port, STAT_IF_IN_OCTETS), count.octets);
        EXPECT_EQ(stat(port, STAT_IF_IN_UCAST_PKTS), count.unicast);
        EXPECT_EQ(stat(port, STAT_IF_IN_MULTICAST_PKTS), count.multicast);
        EXPECT_EQ(stat(port, STAT_IF_IN_BROADCAST_PKTS), count.broadcast);
        EXPECT_EQ(stat(port, STAT_IF_IN_NUCAST_PKTS), count.multicast + count.broadcast);
        EXPECT_EQ(stat(port, STAT_DOT1D_IN_FRAMES), count.frames);
        EXPECT_EQ(stat(port, STAT_IP_IN_RECEIVES), count.ip4);
        EXPECT_EQ(stat(port, STAT_IPV6_IN_RECEIVES), count.ip6);
        EXPECT_EQ(stat(port, STAT_IPV6_IN_MCAST_PKTS), count.ip6_multicast);
    }
}

TEST_F(CountersOfCaptures, FramesAndOctetsOut)
{
    for (int port = 1; port <= 5; ++port) {
        SCOPED_TRACE(port);
        const Count count = sent(port);
        EXPECT_GT(count.frames, 0u);
        EXPECT_EQ(stat(port, STAT_IF_OUT_OCTETS), count.octets);
        EXPECT_EQ(stat(port, STAT_IF_OUT_UCAST_PKTS), count.unicast);
        EXPECT_EQ(stat(port, STAT_IF_OUT_NUCAST_PKTS), count.multicast + count.broadcast);
        EXPECT_EQ(stat(port, STAT_IF_HC_OUT_MULTICAST_PKTS), count.multicast);
        EXPECT_EQ(stat(port, STAT_IF_HC_OUT_BROADCAST_PKTS), count.broadcast);
        EXPECT_EQ(stat(port, STAT_DOT1D_OUT_FRAMES), count.frames);
        EXPECT_EQ(stat(port, STAT_IPV6_OUT_MCAST_PKTS), count.ip6_multicast);
    }
}

TEST_F(CountersOfCaptures, BothDirectionsTogetherBySize)
{
    for (int port = 1; port <= 5; ++port) {
        SCOPED_TRACE(port);
        Count in = received(port), out = sent(port);
        const auto both = [&](const char* size) { return in.sizes[size] + out.sizes[size]; };
        EXPECT_EQ(stat(port, STAT_ETHER_PKTS_64), both("64"));
        EXPECT_EQ(stat(port, STAT_ETHER_PKTS_65_TO_127), both("65-127"));
        EXPECT_EQ(stat(port, STAT_ETHER_PKTS_128_TO_255), both("128-255"));
        EXPECT_EQ(stat(port, STAT_ETHER_PKTS_256_TO_511), both("256-511"));
        EXPECT_EQ(stat(port, STAT_ETHER_PKTS_512_TO_1023), both("512-1023"));
        EXPECT_EQ(stat(port, STAT_ETHER_PKTS_1024_TO_1518), both("1024-1518"));
        EXPECT_EQ(stat(port, STAT_ETHER_PKTS), in.frames + out.frames);
        EXPECT_EQ(stat(port, STAT_ETHER_OCTETS), in.octets + out.octets);
        EXPECT_EQ(stat(port, STAT_ETHER_RX_NO_ERRORS), in.frames);
        EXPECT_EQ(stat(port, STAT_ETHER_TX_NO_ERRORS), out.frames);
    }
}

TEST_F(CountersOfCaptures, TheShortSetIsTheSame)
{
    for (int port = 1; port <= 5; ++port) {
        SCOPED_TRACE(port);
        const Count in = received(port), out = sent(port);
        std::list<BriefStatCounter64> brief;
        EXPECT_TRUE(
            sdk().get_port_brief_stat_counter_all64(mp(static_cast<unsigned>(port)), brief));
        std::vector<std::uint64_t> values;
        for (const BriefStatCounter64& counter : brief)
            values.push_back(counter.value);
        EXPECT_EQ(values,
                  (std::vector<std::uint64_t>{in.frames, in.octets, out.frames, out.octets}));
    }
}

TEST_F(CountersOfCaptures, BothWidthsAndAllFormsAgree)
{
    for (int port = 0; port <= 5; ++port) {
        const Mp where = mp(static_cast<unsigned>(port));
        std::list<StatCounter64> wide;
        std::list<StatCounter32> narrow;
        StatCounter64 array[76];
        unsigned count = 76;
        EXPECT_TRUE(sdk().get_port_stat_counter_all64(where, wide));
        EXPECT_TRUE(sdk().get_port_stat_counter_all32(where, narrow));
        EXPECT_TRUE(sdk().get_port_stat_counter_all64_ext(where, array, count));
        auto next = narrow.begin();
        std::size_t i = 0;
        for (const StatCounter64& counter : wide) {
            EXPECT_EQ(counter.value, stat(port, counter.type)) << counter.type;
            EXPECT_EQ(next->value, counter.value) << counter.type;
            EXPECT_EQ(array[i].value, counter.value) << counter.type;
            ++next;
            ++i;
        }
    }
}

TEST_F(CountersOfCaptures, ClearingAPortSetsAllOfItsCountersToZeroAndNoOthers)
{
    EXPECT_TRUE(sdk().clear_port_stat_counter(mp(1)));
    for (int type = STAT_IF_IN_OCTETS; type <= STAT_IF_IN_BROADCAST_PKTS; ++type)
        EXPECT_EQ(stat(1, static_cast<stat_type_t>(type)), 0u) << type;
    EXPECT_EQ(stat(2, STAT_IF_IN_OCTETS), received(2).octets);
}

} // namespace
