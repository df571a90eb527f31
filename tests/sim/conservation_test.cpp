// Random frames through randomly set chips. Path::send() checks that frames and copies balance,
// that the trace agrees with what happens, and that tracing changes nothing.
#include <random>

#include <bcm/l2.h>
#include <bcmx/rate.h>

#include "path.h"

namespace vexosim {
namespace {

class Random {
public:
    explicit Random(unsigned seed) : engine_(seed) {}
    int below(int n) { return static_cast<int>(engine_() % static_cast<unsigned>(n)); }
    bool one_in(int n) { return below(n) == 0; }
    PortSet ports()
    {
        PortSet set;
        for (int port = 0; port < 8; ++port)
            set.assign(port, one_in(2));
        return set;
    }

private:
    std::mt19937 engine_;
};

MacAddress some_address(Random& random)
{
    static constexpr MacAddress kAddresses[] = {kHostA,           kHostB,           kHostC,
                                                kGroup,           kBroadcastMac,    kBridgeGroup,
                                                kBridgeGroup + 1, kBridgeGroup + 14};
    return kAddresses[random.below(random.one_in(3) ? 8 : 3)];
}

/// Few MAC entries, so that the table is full at times.
void set_up(Chip& chip, Random& random)
{
    chip.macs = MacTable(8);
    for (int vid : {1, 2, 3}) {
        chip.vlans.create(vid);
        chip.vlans.remove_ports(vid, PortSet::all());
        chip.vlans.add_ports(vid, random.ports() | random.ports(), random.ports());
    }
    for (int port = 1; port < 8; ++port) {
        chip.ports.set_link(port, !random.one_in(8));
        chip.ports.set_enable(port, random.one_in(8) ? 0 : 1);
        chip.ports.set_discard(port, random.one_in(4) ? random.below(4) : 0);
        chip.ports.set_untagged_vlan(port, 1 + random.below(3));
        chip.ports.set_learn(port,
                             random.one_in(3) ? static_cast<std::uint32_t>(random.below(8)) : 5);
        chip.ports.set_vlan_member(port, static_cast<std::uint32_t>(random.below(4)));
        chip.ports.set_bpdu_enable(port, random.below(2));
        chip.ports.set_frame_max(port, 64 + random.below(100));
        chip.stgs.set(1, port, random.one_in(3) ? random.below(5) : 4);
        chip.controls.set_port(port, 21, random.below(2));
        for (int egress = 0; egress < 8; ++egress)
            chip.flood_block.set(port, egress, static_cast<std::uint32_t>(random.below(16)));
    }
}

/// Two trunks of what ports the other has left, one of them without members at times.
void set_up_trunks(Chip& chip, Random& random)
{
    for (int id : {0, 1}) {
        chip.trunks.destroy(id);
        chip.trunks.create_id(id);
    }
    for (int id : {0, 1}) {
        Trunk trunk{true, 1 + random.below(6), {}, random.below(8), random.below(8), -1};
        for (int port : random.ports() - PortSet{kCpuPort})
            if (chip.trunks.trunk_of(port) < 0 && random.one_in(2))
                trunk.members.push_back(port);
        chip.trunks.set(id, trunk);
    }
}

/// Also to the CPU, and to ports that are down.
void set_up_mirrors(Chip& chip, Random& random)
{
    static constexpr std::uint32_t kFlags[] = {0, 0x3, 0x5, 0xd, 0xf};
    chip.mirrors.set_format(random.below(2));
    for (int port = 0; port < 8; ++port)
        chip.mirrors.set(port, random.below(10), kFlags[random.one_in(2) ? 0 : random.below(5)]);
}

/// Limits that are met now and then, and rules for some addresses and the type of some frames.
void set_up_rules(Chip& chip, Random& random)
{
    static constexpr int kFlags[] = {BCM_RATE_DLF, BCM_RATE_MCAST, BCM_RATE_BCAST};
    for (int port = 1; port < 8; ++port) {
        const int storm = random.below(3);
        chip.rates.set(port, static_cast<StormClass>(storm), random.below(3) * 20, kFlags[storm]);
        chip.ports.set_cos(port, random.below(8), random.below(4));
        chip.vlan_rules.delete_all_protocols(port);
        if (random.one_in(4))
            chip.vlan_rules.add_protocol(port, {1, 0x0800, 1 + random.below(4)});
    }
    if (random.one_in(4))
        chip.vlan_rules.add_mac(kHostC, {1 + random.below(4), random.below(8)});
    if (random.one_in(8))
        chip.vlan_rules.add_ip4(0, 0, {1 + random.below(4), random.below(8)});
}

void add_entry(Chip& chip, Random& random)
{
    MacEntry e;
    e.key = mac_key(some_address(random), 1 + random.below(3));
    e.port = static_cast<std::uint8_t>(random.below(8));
    e.flags = random.one_in(2) ? BCM_L2_STATIC : 0;
    if (random.one_in(3)) {
        e.flags |= BCM_L2_TRUNK_MEMBER;
        e.trunk = static_cast<std::uint8_t>(random.below(3));
    }
    e.block = random.one_in(4) ? random.ports() : PortSet{};
    chip.macs.add(e, true, chip.now_us);
}

Frame some_frame(Random& random)
{
    TestFrame frame(some_address(random), some_address(random),
                    static_cast<std::size_t>(14 + random.below(160)));
    for (int tags = random.below(4); tags > 1; --tags)
        frame = frame.tag(random.one_in(9) ? 4095 : random.below(5), random.below(8));
    if (random.one_in(5))
        frame.type(random.below(65536));
    Frame bytes = frame.bytes();
    if (random.one_in(10))
        bytes.resize(static_cast<std::size_t>(random.below(20)));
    if (random.one_in(10)) {
        for (std::uint8_t& byte : bytes)
            byte = static_cast<std::uint8_t>(random.below(256));
    }
    return bytes;
}

class Conservation : public ::testing::TestWithParam<unsigned> {};

TEST_P(Conservation, EveryFrameEndsOnceAndEveryTraceIsRight)
{
    Random random(GetParam());
    Path path;
    set_up(path.chip, random);
    std::uint64_t frames = 0, copies = 0;
    for (int i = 0; i < 2000 && !HasFailure(); ++i, ++frames) {
        if (random.one_in(20))
            add_entry(path.chip, random);
        if (random.one_in(100)) {
            set_up(path.chip, random);
            set_up_rules(path.chip, random);
        }
        if (random.one_in(50))
            set_up_trunks(path.chip, random);
        if (random.one_in(50))
            set_up_mirrors(path.chip, random);
        if (random.one_in(3))
            path.take();
        path.chip.now_us += static_cast<std::uint64_t>(random.below(100'000));
        std::string where = path.send(random.below(8), some_frame(random));
        EXPECT_FALSE(where.empty());
        for (int port : path.outputs.used())
            copies += path.outputs.frames(port).size();
    }
    EXPECT_EQ(path.chip.drops.frames_in, frames);
    EXPECT_EQ(path.chip.drops.copies_sent + path.chip.drops.mirrors_sent, copies);
}

TEST_P(Conservation, PortCountersAgreeWithTheFrames)
{
    Random random(GetParam() + 1000);
    Path path;
    set_up(path.chip, random);
    std::array<std::uint64_t, kPortCount> frames{}, octets{};
    set_up_mirrors(path.chip, random);
    for (int i = 0; i < 1000; ++i) {
        path.send(random.below(8), some_frame(random));
        for (int port : path.outputs.used()) {
            for (FrameView frame : path.outputs.frames(port)) {
                ++frames[static_cast<std::size_t>(port)];
                octets[static_cast<std::size_t>(port)] += wire_octets(frame.size());
            }
        }
    }
    for (int port : PortSet::all()) {
        EXPECT_EQ(path.chip.counters[port].stat(19), frames[static_cast<std::size_t>(port)]);
        EXPECT_EQ(path.chip.counters[port].stat(6), octets[static_cast<std::size_t>(port)]);
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, Conservation, ::testing::Range(1u, 9u));

TEST(Batch, DoesWhatItsFramesDoOneByOne)
{
    Random random(99);
    Path one, batch;
    Random setup(5), same(5);
    set_up(one.chip, setup);
    set_up(batch.chip, same);
    std::vector<Frame> frames;
    for (int i = 0; i < 200; ++i)
        frames.push_back(some_frame(random));
    std::vector<FrameView> views(frames.begin(), frames.end());
    std::array<std::vector<Frame>, kPortCount> single, together;
    for (FrameView frame : views) {
        one.send(1, frame);
        for (int port : one.outputs.used())
            for (FrameView copy : one.outputs.frames(port))
                single[static_cast<std::size_t>(port)].emplace_back(copy.begin(), copy.end());
    }
    forward_batch(batch.chip, batch.cpu, 1, views, batch.outputs);
    for (int port : batch.outputs.used())
        for (FrameView copy : batch.outputs.frames(port))
            together[static_cast<std::size_t>(port)].emplace_back(copy.begin(), copy.end());
    EXPECT_EQ(single, together);
    EXPECT_EQ(one.chip, batch.chip);
}

} // namespace
} // namespace vexosim
