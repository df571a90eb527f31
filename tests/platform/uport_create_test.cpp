#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "platform/port_map.h"

namespace {

constexpr int lport = 300;

void prepare_tables()
{
    map_build_uport_to_user_port();
    std::memset(vexo_user_port_to_lport, 0xff, sizeof vexo_user_port_to_lport);
}

// The user ports that have an lport, in order.
std::vector<int> attached()
{
    std::vector<int> ports;
    for (int port = 0; port < vexo_port_rows; ++port) {
        if (vexo_user_port_to_lport[port] != -1)
            ports.push_back(port);
    }
    return ports;
}

struct Case {
    const char* description;
    int unit;
    int port;
    uint32_t flags;
};

} // namespace

TEST(UportCreate, RefusesAndChangesNothing)
{
    prepare_tables();
    for (const Case& c :
         {Case{"another unit", 1, 5, 0x21}, Case{"no flag 0x1", 0, 5, 0x20},
          Case{"a unit below 0", -1, 5, 0x21}, Case{"front port 0", 0, 0, 0x21},
          Case{"front port below 0", 0, -1, 0x21},
          Case{"a port the chip does not have", 0, 54, 0x21},
          Case{"CPU port that is not 0", 0, 3, 0x9}, Case{"neither front nor CPU", 0, 5, 0x1},
          Case{"other flags only", 0, 5, 0xffffff07},
          Case{"front and CPU port 0: front counts", 0, 0, 0x29}}) {
        EXPECT_EQ(vexo_uport_create_cb(lport, c.unit, c.port, c.flags), -1) << c.description;
        EXPECT_EQ(attached(), std::vector<int>{}) << c.description;
    }
}

TEST(UportCreate, TakesEveryKindOfFrontPort)
{
    for (const uint32_t kind : {0x10u, 0x20u, 0x40u, 0x80u}) {
        prepare_tables();
        EXPECT_EQ(vexo_uport_create_cb(lport, 0, 2, 0x1 | kind), 8) << kind;
        EXPECT_EQ(attached(), std::vector<int>{8}) << kind;
        EXPECT_EQ(vexo_user_port_to_lport[8], lport) << kind;
    }
}

TEST(UportCreate, UsesTheChipPortAsTheIndexOfTheUportTable)
{
    prepare_tables();
    EXPECT_EQ(vexo_uport_create_cb(lport, 0, 26, 0x41), 50);
    EXPECT_EQ(vexo_uport_create_cb(lport + 1, 0, 27, 0x41), 49);
    EXPECT_EQ(vexo_uport_create_cb(lport + 2, 0, 53, 0x21), 47);
    EXPECT_EQ(attached(), (std::vector<int>{47, 49, 50}));
    EXPECT_EQ(vexo_user_port_to_lport[50], lport);
}

TEST(UportCreate, TakesTheCpuPortAsUserPort53)
{
    prepare_tables();
    EXPECT_EQ(vexo_uport_create_cb(lport, 0, 0, 0x9), 53);
    EXPECT_EQ(attached(), std::vector<int>{53});
    EXPECT_EQ(vexo_user_port_to_lport[53], lport);
}

TEST(UportCreate, AnswersUserPort53ForTheCpuPortWhateverRow0Holds)
{
    prepare_tables();
    vexo_uport_to_user_port[0] = 12;
    EXPECT_EQ(vexo_uport_create_cb(lport, 0, 0, 0x9), 53);
    EXPECT_EQ(attached(), std::vector<int>{12});
}

TEST(UportCreate, AttachesEveryUserPortOfACard)
{
    prepare_tables();
    for (int port = 0; port < vexo_port_rows; ++port)
        vexo_uport_create_cb(256 + port, 0, port, port == 0 ? 0x9 : 0x21);
    EXPECT_EQ(attached().size(), 54u);
}
