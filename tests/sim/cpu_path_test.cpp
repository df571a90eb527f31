// Frames for the CPU and frames from the CPU.
#include <bcm/error.h>
#include <bcm/l2.h>

#include "path.h"

namespace vexosim {
namespace {

constexpr std::uint64_t kSecond = 1'000'000;
const TestFrame kBpdu(kBridgeGroup, kHostA), kToAll(kBroadcastMac, kHostA), kToB(kHostB, kHostA);

CpuMapping by_reason(int reason, int queue)
{
    CpuMapping m;
    m.reasons = m.reasons_mask = reason_bit(reason);
    m.queue = queue;
    return m;
}

std::vector<std::string>& handled()
{
    static std::vector<std::string> calls;
    return calls;
}

bcm_rx_t refuse(int, bcm_pkt_t*, void* cookie)
{
    handled().push_back(std::string("refused by ") + static_cast<const char*>(cookie));
    return BCM_RX_NOT_HANDLED;
}

bcm_rx_t accept(int unit, bcm_pkt_t* pkt, void* cookie)
{
    handled().push_back(std::string(static_cast<const char*>(cookie)) + " got cos " +
                        std::to_string(pkt->cos) + " unit " + std::to_string(unit));
    return BCM_RX_HANDLED;
}

struct CpuPath : ::testing::Test, Path {
    void send_many(int n, FrameView frame)
    {
        for (int i = 0; i < n; ++i) {
            outputs.clear();
            forward_batch(chip, cpu, 1, {&frame, 1}, outputs);
        }
    }
    /// Takes what may be delivered at a time.
    int deliverable(std::uint64_t now_us)
    {
        CpuFrame frame;
        int n = 0;
        for (; cpu.take(chip.cpu, now_us, frame); ++n)
            ;
        return n;
    }
};

TEST_F(CpuPath, FramesAlwaysHaveTheirVlansTag)
{
    chip.ports.set_untagged_vlan(1, 1);
    chip.ports.set_untagged_priority(1, 3);
    send(1, kBpdu);
    CpuFrame frame = take();
    EXPECT_EQ(frame.data, TestFrame(kBridgeGroup, kHostA).tag(1, 3).bytes());
    EXPECT_TRUE(frame.came_untagged);
    EXPECT_EQ(frame.vid, 1);
    EXPECT_EQ(frame.port, 1);
    EXPECT_EQ(frame.priority, 3);

    send(2, kBpdu.tag(77, 6));
    frame = take();
    EXPECT_EQ(frame.data, kBpdu.tag(77, 6).bytes());
    EXPECT_FALSE(frame.came_untagged);
    EXPECT_EQ(frame.vid, 77);

    send(2, kBpdu.tag(0, 5));
    EXPECT_EQ(take().data, kBpdu.tag(1, 5).bytes());
}

TEST_F(CpuPath, TheDescriptorTellsWhereAFrameCameFromAndWhy)
{
    static bcm_pkt_t seen;
    static Frame bytes;
    auto handler = [](int, bcm_pkt_t* pkt, void*) {
        seen = *pkt;
        bytes.assign(pkt->pkt_data->data, pkt->pkt_data->data + pkt->pkt_data->len);
        return BCM_RX_HANDLED;
    };
    cpu.add_handler("test", handler, 1, nullptr, 0xff);
    chip.ports.set_queue_count(8);
    send(9, kBpdu.tag(1, 6));
    CpuFrame frame = take();
    CpuReceive::deliver(*cpu.handlers(), frame);
    EXPECT_EQ(bytes, kBpdu.tag(1, 6).bytes());
    EXPECT_EQ(seen.blk_count, 1);
    EXPECT_EQ(seen.pkt_len, 64);
    EXPECT_EQ(seen.tot_len, 64);
    EXPECT_EQ(seen.vlan, 1);
    EXPECT_EQ(seen.rx_port, 9);
    EXPECT_EQ(seen.rx_untagged, 0);
    EXPECT_EQ(seen.rx_reason, static_cast<std::uint32_t>(bcmRxReasonBpdu));
    EXPECT_EQ(seen.cos, 6);
    EXPECT_EQ(seen.prio_int, 6);
}

TEST_F(CpuPath, TheCpuIsAFloodMemberUnlessBlocked)
{
    only({1, 2, kCpuPort});
    struct {
        TestFrame frame;
        int reason;
        std::uint32_t block;
    } cases[] = {{kToAll, bcmRxReasonBroadcast, 1},
                 {kToB, bcmRxReasonDestLookupFail, 2},
                 {TestFrame(kGroup, kHostA), bcmRxReasonMulticast, 8}};
    for (const auto& c : cases) {
        chip.flood_block.set(1, kCpuPort, 0xf & ~c.block);
        EXPECT_EQ(send(1, c.frame), "2 cpu");
        EXPECT_EQ(take().reason, c.reason);
        chip.flood_block.set(1, kCpuPort, c.block);
        EXPECT_EQ(send(1, c.frame), "2");
    }
    chip.flood_block.set(1, kCpuPort, 0);
    chip.vlans.remove_ports(1, {kCpuPort});
    EXPECT_EQ(send(1, kToAll), "2");
}

TEST_F(CpuPath, UnknownUnicastIsCopiedByPortOrEverywhere)
{
    only({1, 2});
    EXPECT_EQ(send(1, kToB), "2");
    chip.controls.set_port(1, 21, 1);
    EXPECT_EQ(send(1, kToB), "2 cpu");
    EXPECT_EQ(send(2, TestFrame(kHostB, kHostC)), "1");
    chip.controls.set_port(1, 21, 0);
    chip.controls.set(21, 1);
    EXPECT_EQ(send(2, TestFrame(kHostB, kHostC)), "1 cpu");
    EXPECT_EQ(send(1, kToAll), "2");
    EXPECT_EQ(send_from_cpu(kToB.tag(1)), "1 2") << "not back to the CPU";
}

TEST_F(CpuPath, UnknownUnicastReachesTheCpuAlsoWhenNoPortIsLeft)
{
    only({1});
    chip.controls.set(21, 1);
    EXPECT_EQ(send(1, kToB), "cpu");
}

TEST_F(CpuPath, AnAddressOfTheCpuReachesIt)
{
    MacEntry e;
    e.key = mac_key(kHostB, 1);
    e.port = kCpuPort;
    e.flags = BCM_L2_STATIC;
    chip.macs.add(e, false, 0);
    EXPECT_EQ(send(1, kToB), "cpu");
    EXPECT_EQ(take().reason, bcmRxReasonL2Cpu);
    for (int port : PortSet::front())
        chip.ports.set_vlan_member(port, 3);
    chip.vlans.remove_ports(1, {kCpuPort});
    EXPECT_EQ(send(1, kToB), "cpu") << "the CPU port does not filter";
}

TEST_F(CpuPath, TheFirstMappingThatMatchesNamesTheQueue)
{
    chip.cpu.set_mapping(5, by_reason(bcmRxReasonBpdu, 5));
    chip.cpu.set_mapping(3, by_reason(bcmRxReasonBpdu, 3));
    send(1, kBpdu);
    EXPECT_EQ(take().queue, 3);
    chip.cpu.set_mapping(3, by_reason(bcmRxReasonArp, 2));
    send(1, kBpdu);
    EXPECT_EQ(take().queue, 5) << "an entry is replaced whole";
}

TEST_F(CpuPath, WithoutAMappingThePriorityNamesTheQueue)
{
    chip.ports.set_queue_count(8);
    send(1, kBpdu.tag(1, 6));
    EXPECT_EQ(take().queue, 6);
    chip.ports.set_cos(1, 6, 2);
    send(1, kBpdu.tag(1, 6));
    EXPECT_EQ(take().queue, 2);
    send(2, kBpdu.tag(1, 6));
    EXPECT_EQ(take().queue, 6);
}

TEST_F(CpuPath, AMappingMayAskForAPriority)
{
    CpuMapping m = by_reason(bcmRxReasonBpdu, 7);
    m.priority = 4;
    m.priority_mask = 7;
    chip.cpu.set_mapping(0, m);
    send(1, kBpdu.tag(1, 4));
    EXPECT_EQ(take().queue, 7);
    send(1, kBpdu.tag(1, 5));
    EXPECT_NE(take().queue, 7);
}

TEST_F(CpuPath, ArpPacketsHaveThatReasonToo)
{
    only({1, kCpuPort});
    chip.flood_block.set(1, kCpuPort, 0);
    chip.cpu.set_mapping(0, by_reason(bcmRxReasonArp, 3));
    TestFrame arp = kToAll;
    send(1, arp.type(0x0806));
    CpuFrame frame = take();
    EXPECT_EQ(frame.queue, 3);
    EXPECT_EQ(frame.reason, bcmRxReasonBroadcast);
    send(1, kToAll);
    EXPECT_NE(take().queue, 3);
}

TEST_F(CpuPath, HigherQueuesComeFirstAndEachQueueInOrder)
{
    chip.ports.set_queue_count(8);
    for (int priority : {1, 7, 1, 4})
        send(priority == 1 ? 1 : 2, kBpdu.tag(1, priority));
    std::string order;
    for (int i = 0; i < 4; ++i)
        order += std::to_string(take().queue) + " ";
    EXPECT_EQ(order, "7 4 1 1 ");
}

TEST_F(CpuPath, UnknownUnicastIsCopiedToTheCpuWhereTheControlSaysSo)
{
    only({1, 2});
    const int control = SwitchControls::kUnknownUnicastToCpu;
    ASSERT_EQ(chip.controls.set_port(1, control, 1), 0);
    EXPECT_EQ(send(1, kToB), "2 cpu");
    EXPECT_EQ(take().reason, bcmRxReasonDestLookupFail);
    EXPECT_EQ(send(1, kToAll), "2") << "of a group";
    EXPECT_EQ(send(2, TestFrame(kHostB, kHostC)), "1") << "at another port";
    ASSERT_EQ(chip.controls.set(control, 1), 0);
    EXPECT_EQ(send(2, TestFrame(kHostB, kHostC)), "1 cpu");
    EXPECT_EQ(send_from_cpu(kToB.tag(1)), "1 2") << "what the CPU itself has sent";
}

TEST_F(CpuPath, AFullQueueDropsAndCounts)
{
    send_many(static_cast<int>(CpuReceive::kQueueDepth), kBpdu);
    EXPECT_EQ(send(1, kBpdu), "drop:cpu_queue_full");
    only({1, 2, kCpuPort});
    chip.flood_block.set(1, kCpuPort, 0);
    EXPECT_EQ(send(1, kToAll), "2");
    EXPECT_EQ(chip.drops.copies[static_cast<std::size_t>(DropReason::cpu_queue_full)], 2u);
    EXPECT_EQ(drops(DropReason::cpu_queue_full), 1u);
    take();
    EXPECT_EQ(send(1, kBpdu), "cpu");
}

TEST_F(CpuPath, AClassRateLetsABurstOfASecondThroughAndThenItsRate)
{
    chip.cpu.set_cos_rate(0, 50);
    send_many(200, kBpdu);
    EXPECT_EQ(deliverable(0), 50);
    EXPECT_EQ(deliverable(19'999), 0);
    EXPECT_EQ(deliverable(20'000), 1);
    EXPECT_EQ(deliverable(1'020'000), 50);
    EXPECT_EQ(cpu.wait_us(chip.cpu, 1'020'000), 20'000u);
    chip.cpu.set_cos_rate(0, 0);
    EXPECT_EQ(deliverable(1'020'000), 99);
    EXPECT_EQ(cpu.wait_us(chip.cpu, 1'020'000), std::nullopt);
}

TEST_F(CpuPath, ChannelAndGlobalRatesLimitTogether)
{
    bcm_rx_cfg_t config{};
    config.pkt_size = 2048;
    config.pkts_per_chain = 4;
    config.global_pps = 30;
    config.max_burst = 10;
    config.chan_cfg[1] = {4, 20, 0, 0x7f};
    config.chan_cfg[2] = {4, 0, 0, 0x80};
    cpu.stop(nullptr);
    ASSERT_EQ(cpu.start(chip.cpu, &config), BCM_E_NONE);
    send_many(100, kBpdu);
    EXPECT_EQ(deliverable(0), 10) << "the burst";
    EXPECT_EQ(deliverable(kSecond / 2), 10) << "the channel";
    chip.cpu.set_mapping(0, by_reason(bcmRxReasonBpdu, 7));
    send_many(100, kBpdu);
    EXPECT_EQ(deliverable(kSecond / 2), 0) << "all channels together: 10 of 15 are gone";
    EXPECT_EQ(deliverable(kSecond), 10);
}

TEST_F(CpuPath, AChannelWithoutChainsHoldsItsQueuesBack)
{
    send(1, kBpdu);
    chip.cpu.set_queue_channel(0, 3);
    EXPECT_EQ(deliverable(0), 0);
    chip.cpu.set_channel(3, {4, 0}, 0);
    EXPECT_EQ(deliverable(0), 1);
}

TEST_F(CpuPath, NothingIsDeliveredWhileReceiveIsStopped)
{
    cpu.stop(nullptr);
    send(1, kBpdu);
    EXPECT_EQ(deliverable(0), 0);
    EXPECT_EQ(cpu.start(chip.cpu, nullptr), BCM_E_NONE);
    EXPECT_EQ(cpu.start(chip.cpu, nullptr), BCM_E_BUSY);
    EXPECT_EQ(deliverable(0), 1);
}

TEST_F(CpuPath, StopReportsTheConfiguration)
{
    bcm_rx_cfg_t config{}, read{};
    config.pkt_size = 100;
    config.pkts_per_chain = 3;
    config.global_pps = 9;
    cpu.stop(nullptr);
    cpu.start(chip.cpu, &config);
    cpu.stop(&read);
    EXPECT_EQ(read.pkt_size, 100);
    EXPECT_EQ(read.global_pps, 9);
    config.global_pps = -1;
    EXPECT_EQ(cpu.start(chip.cpu, &config), BCM_E_PARAM);
    EXPECT_FALSE(cpu.running());
}

TEST_F(CpuPath, HandlersAreAskedByPriorityUntilOneHandles)
{
    char low[] = "low", high[] = "high", top[] = "top";
    cpu.add_handler("a", accept, 10, low, 0xff);
    cpu.add_handler("b", accept, 20, high, 0xff);
    cpu.add_handler("c", refuse, 255, top, 0xff);
    CpuFrame frame;
    frame.data = kBpdu.bytes();
    handled().clear();
    CpuReceive::deliver(*cpu.handlers(), frame);
    EXPECT_EQ(handled(), (std::vector<std::string>{"refused by top", "high got cos 0 unit 0"}));
}

TEST_F(CpuPath, AHandlerGetsOnlyItsClassesOfService)
{
    char some[] = "some", all[] = "all";
    cpu.add_handler("a", accept, 20, some, 0xC000 | 0x80);
    cpu.add_handler("b", accept, 10, all, 0xC0FF);
    CpuFrame frame;
    frame.data = kBpdu.bytes();
    handled().clear();
    for (int queue : {7, 6}) {
        frame.queue = queue;
        CpuReceive::deliver(*cpu.handlers(), frame);
    }
    EXPECT_EQ(handled(),
              (std::vector<std::string>{"some got cos 7 unit 0", "all got cos 6 unit 0"}));
}

TEST_F(CpuPath, RegisteringChecksItsArguments)
{
    CpuReceive fresh;
    EXPECT_EQ(fresh.add_handler("a", accept, 1, nullptr, 0), BCM_E_INIT);
    EXPECT_EQ(cpu.add_handler("a", nullptr, 1, nullptr, 0), BCM_E_PARAM);
    EXPECT_EQ(cpu.add_handler("a", accept, 1, nullptr, 0), BCM_E_NONE);
    EXPECT_EQ(cpu.add_handler("a", accept, 1, nullptr, 0), BCM_E_EXISTS);
    EXPECT_EQ(cpu.add_handler("a", accept, 2, nullptr, 0), BCM_E_NONE);
    cpu.init(chip.cpu);
    EXPECT_TRUE(cpu.handlers()->empty());
}

TEST_F(CpuPath, TheCpusFramesAreForwardedInTheVlanOfTheirTag)
{
    vlan(10, {1}, {2});
    EXPECT_EQ(send_from_cpu(kToAll.tag(10)), "1:v10 2");
    EXPECT_EQ(send_from_cpu(kToAll.tag(11)), "drop:vlan_unknown");
    chip.stgs.set_all(1, 1);
    EXPECT_EQ(send_from_cpu(kToAll.tag(10)), "2");
    EXPECT_EQ(send_from_cpu(TestFrame(kBridgeGroup, kHostA).tag(10)), "2") << "not trapped";
}

TEST_F(CpuPath, ChosenPortsSendWhateverTheTablesSay)
{
    auto send_list = [&](FrameView frame, PortSet ports, PortSet untagged) {
        outputs.clear();
        send_to_ports(chip, cpu, frame, ports, untagged, outputs);
        EXPECT_EQ(chip.check_conservation(), "");
        return outputs.used();
    };
    TestFrame frame = kToB.tag(99, 2);
    chip.stgs.set_all(3, 1);
    EXPECT_EQ(send_list(frame, {3, 4, 5}, {4}), (PortSet{3, 4, 5}));
    EXPECT_EQ(Frame(outputs.frames(3)[0].begin(), outputs.frames(3)[0].end()), frame.bytes());
    EXPECT_EQ(Frame(outputs.frames(4)[0].begin(), outputs.frames(4)[0].end()), kToB.bytes());
    EXPECT_EQ(outputs.frames(5)[0].size(), 64u);
    EXPECT_EQ(chip.macs.size(), 0u) << "nothing is learned";

    EXPECT_EQ(send_list(kToB, {3}, {}), (PortSet{3}));
    EXPECT_EQ(outputs.frames(3)[0].size(), 60u) << "a frame without a tag gets none";

    chip.ports.set_link(3, false);
    EXPECT_EQ(send_list(frame, {3, 5}, {}), (PortSet{5}));
    EXPECT_EQ(send_list(frame, {3}, {}), PortSet{});
    EXPECT_EQ(drops(DropReason::egress_down), 1u);
}

TEST_F(CpuPath, ForNoPortsAtAllTheFrameIsDropped)
{
    TestFrame frame = kToB.tag(1);
    send_to_ports(chip, cpu, frame, {}, {}, outputs);
    EXPECT_EQ(drops(DropReason::no_destination), 1u);
    EXPECT_EQ(chip.check_conservation(), "");
}

TEST(TokenBucket, IsExactOverLongAndShortTimes)
{
    TokenBucket bucket;
    std::uint64_t passed = 0;
    for (std::uint64_t now = 0; now <= 3 * kSecond; now += 7) {
        if (bucket.ready(333, 1, now)) {
            bucket.take(333);
            ++passed;
        }
    }
    EXPECT_NEAR(static_cast<double>(passed), 1000, 8);
    EXPECT_EQ(bucket.wait_us(333, 1, std::uint64_t{1} << 60), 0u);
}

} // namespace
} // namespace vexosim
