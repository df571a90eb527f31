// Every operation with each of its SDK calls failing in turn, the records' preparation included.
#include <bcmx/l3.h>

#include "tests/l3/operations.h"

namespace {

struct L3FaultSweep : QuietCardTest {
    /// Makes what the operations name: interface 5, LAG 1, hosts and routes.
    void set_up()
    {
        sdk().delete_l3_interface_all();
        sdk().create_l3_interface_with_id(router.data(), 10, 5, false);
        for (const L3Operation& operation : l3_operations(lag_1)) {
            if (operation.name.starts_with("add_"))
                operation.act(sdk(), outputs);
        }
        bcmx_l3_host_t host = {};
        host.l3a_flags = BCM_L3_IP6;
        host.l3a_intf = 5;
        host.l3a_lport = kFirstLport + 3;
        std::copy_n(host6.data(), 16, host.l3a_ip6_addr);
        bcmx_l3_host_add(&host);
    }

    void sweep(const L3Operation& operation)
    {
        SCOPED_TRACE(operation.name);
        set_up();
        outputs = {};
        FaultSweep sweep([&] { return operation.act(sdk(), outputs); });
        sweep.output(outputs);
        for (const L3Call& call : operation.calls) {
            if (call.tolerated != 0)
                sweep.harmless(call.name(), call.tolerated);
        }
        if (operation.if_init_fails)
            sweep.harmless(operation.init);
        if (operation.name == "delete_l3_interface")
            sweep.harmless("bcmx_l3_intf_find", -7);
        sweep.run();
    }

    L3Egress lag_1 = {Mp(0, 1), true, "0x200", "0x20200", "trunk=1"};
    L3Outputs outputs;
};

TEST_F(L3FaultSweep, EveryCallOfEveryOperationCanFail)
{
    unsigned lag = 0;
    ASSERT_TRUE(sdk().create_lag(lag) && sdk().create_lag(lag));
    for (const L3Operation& operation : l3_operations(lag_1)) {
        if (operation.init_must_answer == 0) // record_init_test.cpp fails the other one
            sweep(operation);
    }
}

} // namespace
