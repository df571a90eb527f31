#include "tests/kit/card_test.h"

#include <bcm/stg.h>
#include <bcmx/port.h>

#include <stdexcept>

#include "sim/card/card.h"
#include "tests/kit/captured_output.h"
#include "tests/kit/wires.h"
#include "vexosim/board.h"

namespace vexokit {

Mp mp(unsigned user_port)
{
    const unsigned module = user_port == vexosim::kCpuUserPort ? 3 : user_port <= 48 ? 0 : 2;
    return Mp(module, user_port);
}

std::list<Mp> mps(const std::vector<unsigned>& user_ports)
{
    std::list<Mp> list;
    for (const unsigned user_port : user_ports)
        list.push_back(mp(user_port));
    return list;
}

std::uint64_t chip_digest()
{
    const vexosim::ChipLock chip;
    return chip->digest();
}

BareCardTest::BareCardTest()
{
    vexosim::use_manual_clock();
    vexosim::board::enable();
    attach_memory_wires();
    vexosim::connect_wires();
}

BareCardTest::~BareCardTest()
{
    vexosim::log_calls(false);
    vexosim::clear_faults();
    vexosdk_delete_sdk_instance(nullptr);
    EXPECT_EQ(conservation(), "");
}

std::string BareCardTest::bring_up()
{
    vexosim::log_calls(true);
    return printed([] { vexosdk_create_sdk_instance(); });
}

VexoBcmSdk& BareCardTest::sdk()
{
    if (bcm_sdk == nullptr)
        throw std::logic_error("the card has not been brought up");
    return *bcm_sdk;
}

CardTest::CardTest()
{
    printed([] {
        vexosdk_create_sdk_instance();
        vexosim::drain(); // links come up; the driver says where it keeps the LEDs of some
    });
    let_ports_forward();
    vexosim::log_calls(true);
}

QuietCardTest::QuietCardTest()
{
    vexosdk_create_sdk_instance();
    vexosim::log_calls(true);
}

void let_ports_forward()
{
    for (int port = 1; port < vexosim::kPorts; ++port)
        EXPECT_EQ(bcmx_port_stp_set(vexosim::kFirstLport + port, BCM_STG_STP_FORWARD), 0);
}

std::string take_calls()
{
    std::string text = vexosim::calls();
    vexosim::clear_calls();
    return text;
}

} // namespace vexokit
