// The callback registry and its dispatch: six lists of (function, cookie) pairs. One surprise:
// who gets the cookie back differs by kind of event.
#include <algorithm>

#include "core/bcm_sdk.h"
#include "pktio/event_records.h"

namespace {

using Callback = VexoBcmSdk::Callback;
using CallbackList = std::list<Callback>;

template <class Function>
bool add_once(CallbackList& list, Function function, void* cookie)
{
    const Callback callback(reinterpret_cast<void*>(function), cookie);
    if (std::find(list.begin(), list.end(), callback) == list.end())
        list.push_back(callback);
    return true;
}

void remove_first(CallbackList& list, const Callback& callback)
{
    const auto found = std::find(list.begin(), list.end(), callback);
    if (found != list.end())
        list.erase(found);
}

void remove_from(CallbackList& first, CallbackList& second, const Callback& callback)
{
    remove_first(first, callback);
    remove_first(second, callback);
}

template <class... Args>
bool call_all(const CallbackList& list, Args... args)
{
    for (const Callback& callback : list)
        reinterpret_cast<void (*)(Args...)>(callback.first)(args...);
    return true;
}

template <class Record>
bool call_all_with_cookie(const CallbackList& list, Record* record)
{
    for (const Callback& callback : list)
        reinterpret_cast<void (*)(Record*, void*)>(callback.first)(record, callback.second);
    return true;
}

} // namespace

bool VexoBcmSdk::register_mac_update_callback(void (*callback)(L2Addr*, int, void*), void* cookie)
{
    return add_once(mac_update_callbacks, callback, cookie);
}

bool VexoBcmSdk::register_mac_update_callback_c(void (*callback)(ctype_l2_addr_s*, int, void*),
                                                void* cookie)
{
    return add_once(mac_update_c_callbacks, callback, cookie);
}

bool VexoBcmSdk::register_link_change_callback(void (*callback)(LinkStatus*, Usp*), void* cookie)
{
    return add_once(link_change_callbacks, callback, cookie);
}

bool VexoBcmSdk::register_link_change_callback_c(void (*callback)(ctype_link_status_s*, usp_s*),
                                                 void* cookie)
{
    return add_once(link_change_c_callbacks, callback, cookie);
}

bool VexoBcmSdk::register_rx_packet_callback(void (*callback)(RxPacket*, void*), void* cookie)
{
    return add_once(rx_packet_callbacks, callback, cookie);
}

bool VexoBcmSdk::register_rx_packet_callback_c(void (*callback)(ctype_rx_packet_s*, void*),
                                               void* cookie)
{
    return add_once(rx_packet_c_callbacks, callback, cookie);
}

bool VexoBcmSdk::deregister_event_callback(lcmgr_report_event_t event, void* callback, void* cookie)
{
    const Callback entry(callback, cookie);
    switch (event) {
    case LCMGR_REPORT_MAC_UPDATE:
        remove_from(mac_update_callbacks, mac_update_c_callbacks, entry);
        return true;
    case LCMGR_REPORT_LINK_CHANGE:
        remove_from(link_change_callbacks, link_change_c_callbacks, entry);
        return true;
    case LCMGR_REPORT_RX_PACKET:
        // The class-form list twice, deliberately: a C-style packet callback stays for good.
        remove_from(rx_packet_callbacks, rx_packet_callbacks, entry);
        return true;
    }
    return false;
}

bool VexoBcmSdk::mac_update(L2Addr* addr, int type, void* data)
{
    return call_all(mac_update_callbacks, addr, type, data);
}

bool VexoBcmSdk::mac_update_c(ctype_l2_addr_s* addr, int type, void* data)
{
    return call_all(mac_update_c_callbacks, addr, type, data);
}

bool VexoBcmSdk::link_change(LinkStatus* status, Usp* port)
{
    return call_all(link_change_callbacks, status, port);
}

bool VexoBcmSdk::link_change_c(ctype_link_status_s* status, usp_s* port)
{
    return call_all(link_change_c_callbacks, status, port);
}

bool VexoBcmSdk::rx_packet(RxPacket* packet, void*)
{
    return call_all_with_cookie(rx_packet_callbacks, packet);
}

bool VexoBcmSdk::rx_packet_c(ctype_rx_packet_s* packet, void*)
{
    return call_all_with_cookie(rx_packet_c_callbacks, packet);
}
