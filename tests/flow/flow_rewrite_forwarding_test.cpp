// What flows change in frames, byte for byte, and the bytes that they match.
#include <cstddef>

#include "tests/flow/flow_forwarding_fixture.h"

namespace {

constexpr std::size_t tos_at = 15, checksum_at = 24, payload_at = 42; ///< without a tag

/// The sum over an IPv4 header of 20 bytes, which is 0xffff when its checksum is right.
unsigned header_sum(const TestFrame& frame)
{
    unsigned sum = 0;
    for (std::size_t at = 14; at < 34; at += 2)
        sum += static_cast<unsigned>(frame.bytes()[at] << 8 | frame.bytes()[at + 1]);
    while (sum > 0xffff)
        sum = (sum & 0xffff) + (sum >> 16);
    return sum;
}

TEST_F(FlowForwarding, SetsTheVlanAndLeavesThroughItsPorts)
{
    EXPECT_TRUE(sdk().create_vlan(20));
    EXPECT_TRUE(sdk().add_ports_to_vlan(20, mps({4, 5}), mps({6})));
    modify(add_to_host2(), OF_MODIFY_OUTER_VLAN_ID, 20);
    expect_copies(frame.tagged(10, 3), 3,
                  {{4, frame.tagged(20, 3)}, {5, frame.tagged(20, 3)}, {6, frame}});
}

TEST_F(FlowForwarding, SetsThePriorityOfTheTag)
{
    modify(add_to_host2(), OF_MODIFY_OUTER_VLAN_PRI, 5);
    expect_copies(tagged, 3, {{4, frame.tagged(10, 5)}, {5, frame}, {6, frame}});
    expect_copies(frame, 5, {{3, frame.tagged(10, 5)}, {4, frame.tagged(10, 5)}, {6, frame}});
}

TEST_F(FlowForwarding, SetsTheTosAndPutsTheChecksumRight)
{
    const unsigned flow = add_to_host2();
    for (const uint8_t tos : std::initializer_list<uint8_t>{0x2e, 0xff, 0x00}) {
        modify(flow, OF_MODIFY_TOS, tos);
        take_sent();
        receive(3, FrameView(tagged));
        auto sent = take_sent();
        ASSERT_EQ(sent[5].size(), 1u);
        const TestFrame& out = sent[5][0];
        EXPECT_EQ(header_sum(out), 0xffffu) << unsigned{tos};
        const auto& bytes = out.bytes();
        const TestFrame wanted = frame.with(tos_at, tos)
                                     .with(checksum_at, bytes[checksum_at])
                                     .with(checksum_at + 1, bytes[checksum_at + 1]);
        EXPECT_EQ(out, wanted);
        EXPECT_EQ(sent[4], std::vector<TestFrame>{wanted.tagged(10)});
        unact(flow, OF_ACTION_MODIFY, of_type(OF_MODIFY_TOS));
    }
}

TEST_F(FlowForwarding, SetsBothMacAddresses)
{
    const unsigned flow = add_to_host2();
    modify(flow, OF_MODIFY_SRC_MAC, host4.mac);
    modify(flow, OF_MODIFY_DST_MAC, host3.mac);
    const TestFrame changed = frame.from(host4.mac).to(host3.mac);
    expect_copies(tagged, 3, {{4, changed.tagged(10)}, {5, changed}, {6, changed}});
    expect_forwarded(udp(host3, host1), 5, {3}); // the source that came in was learned
}

TEST_F(FlowForwarding, DeletesTheInnerTag)
{
    act(add_to_host2(), OF_ACTION_MODIFY, of_type(OF_MODIFY_DELETE_INNER_VLAN));
    expect_copies(frame.tagged(77, 2).tagged(10), 3, {{4, tagged}, {5, frame}, {6, frame}});
    expect_copies(tagged, 3, {{4, tagged}, {5, frame}, {6, frame}});
}

TEST_F(FlowForwarding, MatchesPayloadBytesOfUntaggedFramesOnly)
{
    const Udf udf(payload_at + 1, {0xca, 0xfe});
    of_flow_mp_s match = {};
    match.flags = OF_QUALIFY_UDF;
    act(add(match, udf), OF_ACTION_DROP);
    const TestFrame hit = frame.with(payload_at + 1, 0xca).with(payload_at + 2, 0xfe);
    expect_dropped(hit, 5, "field_drop");
    expect_forwarded(hit.with(payload_at + 2, 0xff), 5, {3, 4, 6});
    expect_forwarded(hit.tagged(10), 3, {4, 5, 6});
}

TEST_F(FlowForwarding, AnIpFieldBesidesMatchesBytesInEveryFormat)
{
    const Udf udf(payload_at + 4, {0xca, 0xfe});
    of_flow_mp_s match = {};
    match.ip_protocol = 17;
    match.flags = OF_QUALIFY_UDF | OF_QUALIFY_IP_PROTOCOL;
    act(add(match, udf), OF_ACTION_DROP);
    const TestFrame at_0 = frame.with(payload_at, 0xca).with(payload_at + 1, 0xfe);
    const TestFrame at_4 = frame.with(payload_at + 4, 0xca).with(payload_at + 5, 0xfe);
    expect_dropped(at_4, 5, "field_drop");
    expect_dropped(at_0.tagged(10), 3, "field_drop"); // bytes are counted from the frame's first
    expect_forwarded(at_0, 5, {3, 4, 6});
    expect_forwarded(at_4.tagged(10), 3, {4, 5, 6});
}

} // namespace
