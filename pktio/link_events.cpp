// Link changes, from the SDK's link-scan thread to the card and the subscribers. One surprise: a
// port that comes up blocks until a manager puts it into forwarding.
#include <iostream>

#include <bcm/stg.h>
#include <bcmx/l2.h>
#include <bcmx/lport.h>
#include <bcmx/port.h>

#include "core/factory.h"
#include "core/trace.h"
#include "pktio/event_records.h"
#include "pktio/receive.h"
#include "platform/led.h"
#include "platform/port_map.h"

namespace {

unsigned speed_code(int mbps)
{
    switch (mbps) {
    case 10:
        return 1;
    case 100:
        return 2;
    case 1000:
        return 3;
    case 10000:
        return 4;
    default:
        return 0;
    }
}

unsigned duplex_code(int duplex)
{
    switch (duplex) {
    case BCM_PORT_DUPLEX_HALF:
        return 1;
    case BCM_PORT_DUPLEX_FULL:
        return 2;
    default:
        return 0;
    }
}

LinkStatus class_record(const Usp& usp, const bcm_port_info_t& info)
{
    LinkStatus record;
    record.set_port(usp);
    record.set_status(info.linkstatus);
    record.set_speed(speed_code(info.speed));
    record.set_duplex(duplex_code(info.duplex));
    return record;
}

void report(VexoSdkBase& sdk, Usp usp, const bcm_port_info_t& info)
{
    LinkStatus record = class_record(usp, info);
    usp_s c_usp = {usp.unit(), usp.slot(), usp.port()};
    ctype_link_status_s c_record = {c_usp, record.status(), record.speed(), record.duplex()};
    sdk.link_change(&record, &usp);
    sdk.link_change_c(&c_record, &c_usp);
}

} // namespace

bool vexo_link_side_effects(bcmx_lport_t lport, bcm_port_info_t* info)
{
    const int unit = bcmx_lport_bcm_unit(lport);
    if (!vexo_set_port_led(unit, bcmx_lport_bcm_port(lport), info))
        return false;
    if (info->linkstatus == BCM_PORT_LINK_STATUS_DOWN)
        bcmx_l2_addr_delete_by_port(lport, 0); // result ignored on purpose
    if (info->linkstatus == BCM_PORT_LINK_STATUS_UP)
        bcmx_port_stp_set(lport, BCM_STG_STP_BLOCK); // result ignored on purpose
    return true;
}

void vexo_link_change_handler(bcmx_lport_t lport, bcm_port_info_t* info)
{
    VexoSdkBase* sdk = nullptr;
    if (!vexosdk_get_sdk_instance(sdk) || sdk == nullptr)
        return;
    Mp mp;
    if (!map_lport_to_mp(lport, mp))
        return;
    if (hw_util_dbg != 0)
        std::cout << "Link changed: port " << mp.port() << ", status " << info->linkstatus
                  << std::endl;
    Usp usp;
    if (!vexo_mp_to_usp(mp, usp))
        return;
    vexo_link_side_effects(lport, info); // subscribers are told even when the LED fails
    report(*sdk, usp, *info);
}
