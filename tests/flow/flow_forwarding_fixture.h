#pragma once

#include "tests/flow/flow_fixture.h"
#include "vexosim/state.h"

/// Frames that meet flows. VLAN 10 is ports 3 and 4 tagged and 5 and 6 untagged, without the CPU
/// port; what no flow takes elsewhere floods in it.
struct FlowForwarding : CardTest {
    const TestFrame frame = udp(host1, host2), tagged = frame.tagged(10);

    FlowForwarding()
    {
        EXPECT_TRUE(sdk().create_vlan(10));
        EXPECT_TRUE(sdk().delete_cpu_port_from_vlan(10));
        EXPECT_TRUE(sdk().add_ports_to_vlan(10, mps({3, 4}), mps({5, 6})));
        for (const unsigned port : {5u, 6u})
            EXPECT_TRUE(sdk().set_port_vlan_pvid(mp(port), 10));
    }

    /// Adds a flow. @return its id.
    unsigned add(const of_flow_mp_s& flow, const of_flow_qualify_udf_s& udf = no_udf)
    {
        unsigned id = 0;
        printed([&] { EXPECT_TRUE(sdk().add_of_flow(flow, id, udf)); });
        return id;
    }
    /// A flow for frames to host2.
    unsigned add_to_host2()
    {
        of_flow_mp_s flow = {};
        std::copy(host2.mac.begin(), host2.mac.end(), flow.dst_mac);
        flow.flags = OF_QUALIFY_DST_MAC;
        return add(flow);
    }
    void act(unsigned flow, of_action_t action, of_action_param_s param = {}, unsigned port = 0)
    {
        printed([&] { EXPECT_TRUE(sdk().add_of_flow_action(flow, action, param, mp(port))); });
    }
    void unact(unsigned flow, of_action_t action, of_action_param_s param = {}, unsigned port = 0)
    {
        printed([&] { EXPECT_TRUE(sdk().delete_of_flow_action(flow, action, param, mp(port))); });
    }
    void output(unsigned flow, unsigned port)
    {
        act(flow, OF_ACTION_OUTPUT, of_type(OF_OUTPUT_PORT), port);
    }
    void modify(unsigned flow, of_modify_t field, uint16_t number)
    {
        of_action_param_s param = of_type(field);
        param.value.number = number;
        act(flow, OF_ACTION_MODIFY, param);
    }
    void modify(unsigned flow, of_modify_t field, const MacBytes& mac)
    {
        of_action_param_s param = of_type(field);
        std::copy(mac.begin(), mac.end(), param.value.mac);
        act(flow, OF_ACTION_MODIFY, param);
    }
    static of_action_param_s of_type(uint32_t type)
    {
        of_action_param_s param = {};
        param.type = type;
        return param;
    }
    unsigned long long counted(unsigned flow)
    {
        unsigned long long frames = 0;
        EXPECT_TRUE(sdk().get_of_flow_stat_counter64(flow, frames));
        unsigned low = 0;
        EXPECT_TRUE(sdk().get_of_flow_stat_counter32(flow, low));
        EXPECT_EQ(low, frames);
        return frames;
    }
};
