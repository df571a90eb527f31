// MAC table changes and listings, to the subscribers. One surprise: the counter also moves for
// entries that are then dropped, and for every entry that is listed.
#include <algorithm>

#include <bcmx/lport.h>

#include "core/factory.h"
#include "pktio/event_records.h"
#include "pktio/receive.h"
#include "platform/mac.h"
#include "platform/port_map.h"

namespace {

constexpr unsigned cpu_module = 3;
constexpr int insert_listed = 2;

uint32_t entry_count = 0;

struct Records {
    L2Addr addr;
    ctype_l2_addr_s c_addr = {};
};

void fill_trunk(Records& records, const bcmx_l2_addr_t& entry)
{
    records.addr.set_trunk(entry.tgid);
    records.addr.set_trunk_sel(entry.rtag);
    records.addr.set_is_trunk(true);
    records.c_addr.trunk = entry.tgid;
    records.c_addr.trunk_sel = entry.rtag;
    records.c_addr.is_trunk = 1;
}

bool fill_port(Records& records, int lport)
{
    Mp mp;
    Usp usp;
    if (!map_lport_to_mp(lport, mp) || mp.module() == cpu_module || !vexo_mp_to_usp(mp, usp))
        return false;
    records.addr.set_port(usp);
    records.c_addr.unit = usp.unit();
    records.c_addr.slot = usp.slot();
    records.c_addr.port = usp.port();
    return true;
}

void fill_rest(Records& records, const bcmx_l2_addr_t& entry, int type)
{
    const bool learned = (entry.flags & BCM_L2_STATIC) == 0;
    records.addr.set_flags(entry.flags);
    records.addr.set_mac(entry.mac);
    records.addr.set_vlan(entry.vid);
    records.addr.set_auth(entry.auth);
    records.addr.set_type(type);
    records.addr.set_learn_type(learned);
    records.c_addr.flags = entry.flags;
    std::copy_n(entry.mac, 6, records.c_addr.mac);
    records.c_addr.vlan = entry.vid;
    records.c_addr.auth = entry.auth;
    records.c_addr.type = type;
    records.c_addr.learn_type = learned ? 1 : 0;
}

bool fill(Records& records, const bcmx_l2_addr_t& entry, int type)
{
    if ((entry.flags & BCM_L2_TRUNK_MEMBER) != 0)
        fill_trunk(records, entry);
    else if (!fill_port(records, entry.lport))
        return false;
    fill_rest(records, entry, type);
    return true;
}

void count(int insert)
{
    if (insert == 0)
        --entry_count;
    else
        ++entry_count;
}

} // namespace

void vexo_l2_notify_handler(bcmx_l2_addr_t* entry, int insert, void* data)
{
    if (is_mac_t_multicast(entry->mac) || (entry->flags & BCM_L2_PENDING) != 0)
        return;
    VexoSdkBase* sdk = nullptr;
    if (!vexosdk_get_sdk_instance(sdk))
        return;
    count(insert); // deliberately before any entry is dropped
    if (sdk == nullptr)
        return;
    Records records;
    if (!fill(records, *entry, insert))
        return;
    sdk->mac_update(&records.addr, insert, data);
    sdk->mac_update_c(&records.c_addr, insert, data);
}

int vexo_mac_traverse_callback(int, bcm_l2_addr_t* entry, void* user_data)
{
    bcmx_l2_addr_t wide = {}; // a unit's entry has no authentication value
    wide.flags = entry->flags;
    std::copy_n(entry->mac, 6, wide.mac);
    wide.vid = entry->vid;
    wide.lport = bcmx_modid_port_to_lport(entry->modid, entry->port);
    wide.tgid = entry->tgid;
    wide.rtag = 0; // deliberate: a listed entry shows no trunk selection
    wide.cos_dst = entry->cos_dst;
    wide.cos_src = entry->cos_src;
    wide.l2mc_index = entry->l2mc_index;
    vexo_l2_notify_handler(&wide, insert_listed, user_data);
    return 0;
}

uint32_t vexolc::mac_entry_count()
{
    return entry_count;
}
