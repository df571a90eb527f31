// L3 interfaces as the chip has them after operations.
#include "tests/l3/addresses.h"

namespace {

constexpr Mac other_router = {0x02, 0x00, 0x00, 0x00, 0x00, 0x02};
constexpr Mac multicast = {0x01, 0x00, 0x5e, 0x00, 0x00, 0x01};

struct L3InterfaceOperations : QuietCardTest {
    bool create(const Mac& mac, unsigned vid)
    {
        return sdk().create_l3_interface(mac.data(), vid, id);
    }
    bool create(const Mac& mac, unsigned vid, unsigned with_id, bool replace = false)
    {
        return sdk().create_l3_interface_with_id(mac.data(), vid, with_id, replace);
    }

    /// "VLAN MAC" of an interface, or "none".
    std::string interface(unsigned of_id)
    {
        unsigned vid = 0;
        Mac mac = {};
        if (!sdk().get_l3_interface(of_id, vid, mac.data()))
            return "none";
        std::string text = std::to_string(vid);
        for (const unsigned char byte : mac)
            text += " " + std::to_string(byte);
        return text;
    }

    unsigned id = 77; ///< of the last interface
};

TEST_F(L3InterfaceOperations, OneThatIsCreatedGetsAnIdAndReadsAsItWasCreated)
{
    EXPECT_TRUE(create(router, 0x1000a));
    EXPECT_EQ(id, 0u);
    EXPECT_TRUE(create(router, 11));
    EXPECT_EQ(id, 1u);
    EXPECT_EQ(interface(0), "10 2 0 0 0 0 1");
    EXPECT_EQ(interface(1), "11 2 0 0 0 0 1");
}

TEST_F(L3InterfaceOperations, CreatingAnExistingOneSucceedsAndGivesItsId)
{
    create(router, 10, 7);
    EXPECT_TRUE(create(router, 10));
    EXPECT_EQ(id, 7u);
}

TEST_F(L3InterfaceOperations, TheIdGivenIsTheOneInTheRecordAfterTheCall)
{
    inject({.call = "bcmx_l3_intf_create", .code = -8});
    EXPECT_TRUE(create(router, 10));
    EXPECT_EQ(id, 0u);
}

TEST_F(L3InterfaceOperations, AChosenIdThatIsTakenIsReportedAsCreatedAndReplacedOnRequestOnly)
{
    EXPECT_TRUE(create(router, 10, 7));
    EXPECT_TRUE(create(other_router, 11, 7));
    EXPECT_EQ(interface(7), "10 2 0 0 0 0 1");
    EXPECT_TRUE(create(other_router, 11, 7, true));
    EXPECT_EQ(interface(7), "11 2 0 0 0 0 2");
}

TEST_F(L3InterfaceOperations, WhatTheChipRefusesIsFalseAndChangesNothing)
{
    create(router, 10);
    const auto before = chip_digest();
    id = 77;
    EXPECT_FALSE(create(router, 0));
    EXPECT_FALSE(create(router, 4095));
    EXPECT_FALSE(create(multicast, 10));
    EXPECT_FALSE(create(router, 11, 512));
    EXPECT_FALSE(create(router, 11, 0xffffffff, true));
    EXPECT_EQ(id, 77u);
    EXPECT_EQ(chip_digest(), before);
}

TEST_F(L3InterfaceOperations, TheChipHolds512)
{
    for (unsigned vid = 1; vid <= 512; ++vid)
        ASSERT_TRUE(create(router, vid));
    EXPECT_EQ(id, 511u);
    EXPECT_FALSE(create(router, 513));
    EXPECT_EQ(id, 511u);
    EXPECT_TRUE(create(router, 100));
    EXPECT_EQ(id, 99u);
}

TEST_F(L3InterfaceOperations, AnAbsentOneReadsAsFalse)
{
    EXPECT_EQ(interface(0), "none");
    EXPECT_EQ(interface(512), "none");
    EXPECT_EQ(interface(0xffffffff), "none");
}

TEST_F(L3InterfaceOperations, ReadingIsTrueWithoutAResultWhenTheRecordCannotBePrepared)
{
    create(router, 10);
    inject({.call = "bcmx_l3_intf_t_init"});
    EXPECT_EQ(interface(0), "0 0 0 0 0 0 0");
    EXPECT_EQ(interface(0), "10 2 0 0 0 0 1");
}

TEST_F(L3InterfaceOperations, DeletingByAddressAndVlanDeletesTheOneThatIsFound)
{
    create(router, 10, 7);
    create(router, 11, 8);
    clear_calls();
    EXPECT_TRUE(sdk().delete_l3_interface(router.data(), 0x1000a));
    EXPECT_EQ(all_calls(),
              "bcmx_l3_intf_find({flags=0, id=0, mac=02:00:00:00:00:01, vid=10})\n"
              "bcmx_l3_intf_delete({flags=0x20, id=7, mac=02:00:00:00:00:01, vid=10})\n");
    EXPECT_EQ(interface(7), "none");
    EXPECT_EQ(interface(8), "11 2 0 0 0 0 1");
}

TEST_F(L3InterfaceOperations, DeletingAnAbsentAddressAndVlanSucceedsAndDeletesNothing)
{
    create(router, 10);
    clear_calls();
    EXPECT_TRUE(sdk().delete_l3_interface(router.data(), 11));
    EXPECT_EQ(take_calls(), "bcmx_l3_intf_find({flags=0, id=0, mac=02:00:00:00:00:01, vid=11})\n");
    EXPECT_EQ(interface(0), "10 2 0 0 0 0 1");
}

TEST_F(L3InterfaceOperations, OneThatGoesBetweenFindAndDeleteIsAFailure)
{
    create(router, 10);
    inject({.call = "bcmx_l3_intf_delete", .code = -7});
    EXPECT_FALSE(sdk().delete_l3_interface(router.data(), 10));
}

TEST_F(L3InterfaceOperations, DeletingByIdSucceedsForAbsentIdsToo)
{
    create(router, 10);
    EXPECT_TRUE(sdk().delete_l3_interface_by_id(0));
    EXPECT_EQ(interface(0), "none");
    EXPECT_TRUE(sdk().delete_l3_interface_by_id(0));
    EXPECT_TRUE(sdk().delete_l3_interface_by_id(0xffffffff));
}

TEST_F(L3InterfaceOperations, DeletingAllLeavesNone)
{
    create(router, 10);
    create(router, 11);
    EXPECT_TRUE(sdk().delete_l3_interface_all());
    EXPECT_EQ(interface(0) + interface(1), "nonenone");
    EXPECT_TRUE(sdk().delete_l3_interface_all());
}

} // namespace
