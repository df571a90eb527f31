// The records that callers fill, and the qualifiers of a flow's entry: their order, their lines and
// the calls.
#include <bcmx/field.h>

#include <cstddef>

#include "flow/field_qset.h"
#include "flow/flow_entry.h"
#include "tests/flow/flow_fixture.h"

namespace {

// Callers are built apart from the driver: the records' layout is part of the interface.
static_assert(offsetof(of_flow_mp_s, port) == 0 && offsetof(of_flow_mp_s, src_mac) == 8 &&
              offsetof(of_flow_mp_s, dst_mac) == 14 && offsetof(of_flow_mp_s, ether_type) == 20 &&
              offsetof(of_flow_mp_s, vlan_id) == 22 && offsetof(of_flow_mp_s, vlan_pri) == 24 &&
              offsetof(of_flow_mp_s, src_ip) == 28 && offsetof(of_flow_mp_s, src_ip_mask) == 32 &&
              offsetof(of_flow_mp_s, dst_ip) == 36 && offsetof(of_flow_mp_s, dst_ip_mask) == 40);
static_assert(offsetof(of_flow_mp_s, l4_src_port) == 44 &&
              offsetof(of_flow_mp_s, l4_dst_port) == 46 &&
              offsetof(of_flow_mp_s, ip_protocol) == 48 && offsetof(of_flow_mp_s, tos) == 50 &&
              offsetof(of_flow_mp_s, flags) == 52 && sizeof(of_flow_mp_s) == 56);
static_assert(offsetof(of_flow_qualify_udf_s, offset) == 0 &&
              offsetof(of_flow_qualify_udf_s, length) == 4 &&
              offsetof(of_flow_qualify_udf_s, data) == 8 &&
              offsetof(of_flow_qualify_udf_s, mask) == 8 + sizeof(void*));
static_assert(offsetof(of_action_param_s, type) == 0 && offsetof(of_action_param_s, value) == 4 &&
              offsetof(of_action_param_s, value.number) == 4 &&
              offsetof(of_action_param_s, value.mac) == 4 && sizeof(of_action_param_s) == 12);
static_assert(offsetof(bcm_udf_s, udf_id) == 0 && offsetof(bcm_udf_s, offset) == 4 &&
              offsetof(bcm_udf_s, data) == 8 && offsetof(bcm_udf_s, mask) == 12 &&
              sizeof(bcm_udf_s) == 16);

/// A flow with a value for everything and no flag.
of_flow_mp_s full_flow(unsigned flags)
{
    of_flow_mp_s flow = {mp(5),
                         {2, 0, 0, 0, 0, 0xa},
                         {2, 0, 0, 0, 0, 0xb},
                         0x800,
                         100,
                         3,
                         0,
                         0,
                         0,
                         0,
                         1024,
                         80,
                         6,
                         0xb8,
                         flags};
    flow.src_ip = 0x0a000001;
    flow.src_ip_mask = 0xffffff00;
    flow.dst_ip = 0xc0a80102;
    flow.dst_ip_mask = 0xffff0000;
    return flow;
}

struct Row {
    unsigned flag;
    const char* text;
    const char* name;
    const char* arguments;
};

const Row rows[] = {
    {0x0001, "add qualify InPort = (0, 5)\n", "InPort", "5"},
    {0x0002, "add qualify SrcMac = 02:00:00:00:00:0a\n", "SrcMac",
     "02:00:00:00:00:0a, ff:ff:ff:ff:ff:ff"},
    {0x0004, "add qualify DstMac = 02:00:00:00:00:0b\n", "DstMac",
     "02:00:00:00:00:0b, ff:ff:ff:ff:ff:ff"},
    {0x0008, "add qualify EtherType = 0x0800\n", "EtherType", "0x800, 0xffff"},
    {0x0010, "add qualify OuterVlanId = 100\n", "OuterVlanId", "100, 0xfff"},
    {0x0020, "add qualify OuterVlanPri = 3\n", "OuterVlanPri", "3, 7"},
    {0x0040, "add qualify SrcIp = 0x0a000001\n", "SrcIp", "10.0.0.1, 255.255.255.0"},
    {0x0080, "add qualify DstIp = 0xc0a80102\n", "DstIp", "192.168.1.2, 255.255.0.0"},
    {0x0100, "add qualify L4SrcPort = 1024\n", "L4SrcPort", "1024, 0xffff"},
    {0x0200, "add qualify L4DstPort = 80\n", "L4DstPort", "80, 0xffff"},
    {0x0400, "add qualify IpProtocol = 0x06\n", "IpProtocol", "6, 0xff"},
    {0x0800, "add qualify Tos = 0xb8\n", "Tos", "0xb8, 0xff"},
};

std::string call_of(const Row& row, int entry)
{
    return std::string("bcmx_field_qualify_") + row.name + "(" + std::to_string(entry) + ", " +
           row.arguments + ")\n";
}

/// An entry of a group with every field that flows know, and UDFs 1 and 2.
struct FlowQualify : FlowCard {
    FlowQualify()
    {
        bcm_field_qset_t qset;
        std::vector<bcm_udf_s> words(2);
        printed([&] { flow_flags_to_qset(0x1fff, &qset, words); });
        EXPECT_EQ(bcmx_field_group_create(qset, 0, &group), 0);
        EXPECT_EQ(bcmx_field_entry_create(group, &entry), 0);
        clear_calls();
    }

    int qualify(const of_flow_mp_s& flow, const std::vector<bcm_udf_s>& words = {})
    {
        int rc = 99;
        text = printed([&] { rc = qualify_flow_entry(flow, entry, words); });
        return rc;
    }

    int group = 0;
    int entry = 0;
    std::string text;
};

TEST_F(FlowQualify, EachFlagIsOneLineAndOneCall)
{
    for (const Row& row : rows) {
        EXPECT_EQ(qualify(full_flow(row.flag)), 0) << row.name;
        EXPECT_EQ(text, row.text);
        EXPECT_EQ(take_calls(), call_of(row, entry));
    }
}

TEST_F(FlowQualify, AllFlagsComeInTheirOrderAndTheWordsLast)
{
    std::string lines;
    std::string calls;
    for (const Row& row : rows) {
        lines += row.text;
        calls += call_of(row, entry);
    }
    const std::vector<bcm_udf_s> words = {
        {2, 18, {0x0a, 0, 0, 1}, {0xff, 0, 0, 0xff}},
        {1, 14, {1, 2, 3, 4}, {0xff, 0xff, 0xff, 0xff}},
    };
    EXPECT_EQ(qualify(full_flow(0x1fff), words), 0);
    EXPECT_EQ(text, lines +
                        "bcmx_field_qualify_UserDefined: entry = 0x1, udf_id = 2, data = 0a 00 00 "
                        "01, mask = ff 00 00 ff\n"
                        "bcmx_field_qualify_UserDefined: entry = 0x1, udf_id = 1, data = 01 02 03 "
                        "04, mask = ff ff ff ff\n");
    EXPECT_EQ(take_calls(), calls + "bcmx_field_qualify_UserDefined(1, 2, 0a000001, ff0000ff)\n"
                                    "bcmx_field_qualify_UserDefined(1, 1, 01020304, ffffffff)\n");
}

TEST_F(FlowQualify, EachFailureIsReturnedAtOnce)
{
    std::string lines;
    for (const Row& row : rows) {
        lines += row.text;
        fail(std::string("bcmx_field_qualify_") + row.name, -6);
        EXPECT_EQ(qualify(full_flow(0x1fff)), -6) << row.name;
        EXPECT_EQ(text, lines);
        fail(std::string("bcmx_field_qualify_") + row.name, 1);
        EXPECT_EQ(qualify(full_flow(0x1fff)), 1) << row.name;
    }
    fail("bcmx_field_qualify_UserDefined", -11);
    clear_calls();
    EXPECT_EQ(qualify(full_flow(0x1000), std::vector<bcm_udf_s>(2)), -11);
    EXPECT_EQ(take_calls(), "bcmx_field_qualify_UserDefined(1, 0, 00000000, 00000000)\n");
}

TEST_F(FlowQualify, WithoutFlagsNothingIsAskedFor)
{
    EXPECT_EQ(qualify(full_flow(0), std::vector<bcm_udf_s>(1)), 0);
    EXPECT_EQ(qualify(full_flow(0xffffe000), std::vector<bcm_udf_s>(1)), 0);
    EXPECT_EQ(text, "");
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FlowQualify, AnIngressPortThatDoesNotExistIsABadParameterAndSaysNothing)
{
    of_flow_mp_s flow = full_flow(0x0003);
    flow.port = Mp(1, 5);
    EXPECT_EQ(qualify(flow), -4);
    EXPECT_EQ(text, "");
    EXPECT_EQ(take_calls(), "");
}

TEST_F(FlowQualify, PriorityProtocolAndTosAreTheirLow8Bits)
{
    of_flow_mp_s flow = full_flow(0x0c20);
    flow.vlan_pri = 0x0105;
    flow.ip_protocol = 0x0211;
    flow.tos = 0xff04;
    EXPECT_EQ(qualify(flow), 0);
    EXPECT_EQ(text, "add qualify OuterVlanPri = 5\n"
                    "add qualify IpProtocol = 0x11\n"
                    "add qualify Tos = 0x04\n");
    EXPECT_EQ(take_calls(), "bcmx_field_qualify_OuterVlanPri(1, 5, 7)\n"
                            "bcmx_field_qualify_IpProtocol(1, 17, 0xff)\n"
                            "bcmx_field_qualify_Tos(1, 4, 0xff)\n");
}

TEST_F(FlowQualify, TheCpuPortIsAnIngressPortToo)
{
    of_flow_mp_s flow = full_flow(0x0001);
    flow.port = mp(53);
    EXPECT_EQ(qualify(flow), 0);
    EXPECT_EQ(text, "add qualify InPort = (3, 53)\n");
    EXPECT_EQ(take_calls(), "bcmx_field_qualify_InPort(1, cpu)\n");
}

TEST_F(FlowQualify, NumbersAreAsWideAsTheirFields)
{
    of_flow_mp_s flow = full_flow(0x07c8);
    flow.ether_type = 0xffff;
    flow.vlan_id = 4095;
    flow.src_ip = flow.dst_ip = 0xffffffff;
    flow.l4_src_port = flow.l4_dst_port = 65535;
    flow.ip_protocol = 255;
    flow.flags |= 0x0010;
    EXPECT_EQ(qualify(flow), 0);
    EXPECT_EQ(text, "add qualify EtherType = 0xffff\n"
                    "add qualify OuterVlanId = 4095\n"
                    "add qualify SrcIp = 0xffffffff\n"
                    "add qualify DstIp = 0xffffffff\n"
                    "add qualify L4SrcPort = 65535\n"
                    "add qualify L4DstPort = 65535\n"
                    "add qualify IpProtocol = 0xff\n");
}

} // namespace
