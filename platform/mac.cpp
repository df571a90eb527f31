#include "platform/mac.h"

#include <algorithm>

bool mac_t_same(const unsigned char* a, const unsigned char* b)
{
    return std::equal(a, a + 6, b);
}

bool is_mac_t_broadcast(const unsigned char* mac)
{
    static constexpr unsigned char broadcast[6] = {0xff, 0xff, 0xff, 0xff, 0xff, 0xff};
    return mac_t_same(mac, broadcast);
}

bool is_mac_t_multicast(const unsigned char* mac)
{
    return (mac[0] & 0x01) != 0;
}
