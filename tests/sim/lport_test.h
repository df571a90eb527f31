#pragma once

#include <bcmx/lplist.h>
#include <gtest/gtest.h>

#include <list>

#include "tests/kit/kit.h"

inline constexpr int kNoPort = kFirstLport + kPorts;

/// A card that is up, the logical ports of user ports 3 and 4, and lists that are freed at the end.
struct LportTest : CardTest {
    const int port3 = kFirstLport + chip_port_of(3);
    const int port4 = kFirstLport + chip_port_of(4);
    bcm_mac_t mac = {2, 0, 0, 0, 0, 9};

    ~LportTest() override
    {
        for (bcmx_lplist_t& list : lists_)
            bcmx_lplist_free(&list);
    }
    bcmx_lplist_t list(std::initializer_list<int> lports)
    {
        bcmx_lplist_t& made = lists_.emplace_back(bcmx_lplist_t{nullptr, -1, 0});
        for (const int lport : lports)
            bcmx_lplist_add(&made, lport);
        return made;
    }

private:
    std::list<bcmx_lplist_t> lists_;
};
