/// Flows and traps between hosts, through the driver's operations.
#pragma once

#include <array>
#include <initializer_list>
#include <vector>

#include "flow/flow_types.h"
#include "tests/hosts/lab.h"

/// The last byte of an address; both networks are for documentation.
constexpr std::uint32_t in_net_a(unsigned host)
{
    return 192u << 24 | 2u << 8 | host; // 192.0.2.0/24
}
constexpr std::uint32_t in_net_b(unsigned host)
{
    return 198u << 24 | 51u << 16 | 100u << 8 | host; // 198.51.100.0/24
}

class FlowLab : public TwoHosts {
protected:
    /// Adds a flow. @return its id.
    unsigned add(const of_flow_mp_s& match, const of_flow_qualify_udf_s& bytes = {})
    {
        unsigned id = 0;
        EXPECT_TRUE(session().driver()->add_of_flow(match, id, bytes));
        return id;
    }
    void remove(unsigned flow) { EXPECT_TRUE(session().driver()->delete_of_flow(flow)); }

    void act(unsigned flow, of_action_t action, const of_action_param_s& param = {},
             unsigned port = 0)
    {
        EXPECT_TRUE(session().driver()->add_of_flow_action(flow, action, param, Mp(0, port)));
    }
    void output(unsigned flow, unsigned port)
    {
        of_action_param_s param = {};
        param.type = OF_OUTPUT_PORT;
        act(flow, OF_ACTION_OUTPUT, param, port);
    }
    void set_vlan(unsigned flow, std::uint16_t vid)
    {
        of_action_param_s param = {};
        param.type = OF_MODIFY_OUTER_VLAN_ID;
        param.value.number = vid;
        act(flow, OF_ACTION_MODIFY, param);
    }
    /// Frames get the address of what is plugged into a port.
    void send_to_mac_of(unsigned flow, std::uint8_t port)
    {
        of_action_param_s param = {};
        param.type = OF_MODIFY_DST_MAC;
        param.value.mac[0] = 2;
        param.value.mac[5] = port;
        act(flow, OF_ACTION_MODIFY, param);
    }

    unsigned long long counted(unsigned flow)
    {
        unsigned long long frames = 0;
        EXPECT_TRUE(session().driver()->get_of_flow_stat_counter64(flow, frames));
        return frames;
    }
};

/// A host in a port with an interface in one VLAN, tagged on the wire.
class TaggedHost {
public:
    /// @param address of the interface, `vVID`, with prefix length.
    TaggedHost(Host& host, int port, int vid, const std::string& address)
        : host_(host), switch_(host)
    {
        const std::string number = std::to_string(vid), name = "v" + number;
        switch_.set("add-port br0 h" + std::to_string(port) + " trunks=" + number +
                    " -- add-port br0 " + name + " tag=" + number + " -- set interface " + name +
                    " type=internal");
        host_.run("ip addr add " + address + " dev " + name + "; ip link set " + name + " up");
    }

    Host& operator*() const { return host_; }
    Host* operator->() const { return &host_; }

private:
    Host& host_;
    OpenSwitch switch_;
};
