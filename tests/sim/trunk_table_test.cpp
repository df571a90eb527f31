#include "sim/chip/trunk_table.h"

#include <bcmx/trunk.h>
#include <gtest/gtest.h>

namespace {

using namespace vexosim;

Trunk members(std::vector<int> ports, int criterion = 3)
{
    Trunk trunk;
    trunk.members = std::move(ports);
    trunk.criterion = criterion;
    return trunk;
}

struct TrunkTableTest : testing::Test {
    TrunkTableTest() { trunks.create_id(5); }

    TrunkTable trunks;
};

TEST_F(TrunkTableTest, CreateTakesTheLowestFreeId)
{
    int id = -1;
    ASSERT_EQ(trunks.create_id(0), 0);
    EXPECT_EQ(trunks.create(&id), 0);
    EXPECT_EQ(id, 1);
}

TEST_F(TrunkTableTest, The129thTrunkIsRefusedAndTheOutputStays)
{
    int id = -7;
    for (int i = 0; i < 127; ++i)
        ASSERT_EQ(trunks.create(&id), 0);
    const int last = id;
    EXPECT_EQ(last, 127);
    EXPECT_EQ(trunks.create(&id), BCM_E_FULL);
    EXPECT_EQ(id, last);
}

TEST_F(TrunkTableTest, AnIdIsTakenOnce)
{
    EXPECT_EQ(trunks.create_id(5), BCM_E_EXISTS);
    EXPECT_EQ(trunks.create_id(127), 0);
}

TEST_F(TrunkTableTest, IdsOutsideTheTableAreBadParameters)
{
    for (int id : {-1, 128}) {
        EXPECT_EQ(trunks.create_id(id), BCM_E_PARAM);
        EXPECT_EQ(trunks.destroy(id), BCM_E_PARAM);
        EXPECT_EQ(trunks.set(id, members({1})), BCM_E_PARAM);
        EXPECT_EQ(trunks.set_criterion(id, 1), BCM_E_PARAM);
    }
    EXPECT_EQ(trunks.create(nullptr), BCM_E_PARAM);
}

TEST_F(TrunkTableTest, ATrunkThatDoesNotExistIsNotFound)
{
    EXPECT_EQ(trunks.destroy(6), BCM_E_NOT_FOUND);
    EXPECT_EQ(trunks.set(6, members({1})), BCM_E_NOT_FOUND);
    EXPECT_EQ(trunks.set_criterion(6, 1), BCM_E_NOT_FOUND);
}

TEST_F(TrunkTableTest, SetReplacesTheMembers)
{
    ASSERT_EQ(trunks.set(5, members({1, 2})), 0);
    ASSERT_EQ(trunks.set(5, members({3, 2})), 0);
    EXPECT_EQ(trunks.at(5).members, (std::vector{3, 2}));
    EXPECT_EQ(trunks.trunk_of(1), -1);
    EXPECT_EQ(trunks.trunk_of(2), 5);
    EXPECT_EQ(trunks.trunk_of(3), 5);
}

TEST_F(TrunkTableTest, EightMembersFitAndNineDoNot)
{
    EXPECT_EQ(trunks.set(5, members({1, 2, 3, 4, 5, 6, 7, 8})), 0);
    const TrunkTable before = trunks;
    EXPECT_EQ(trunks.set(5, members({1, 2, 3, 4, 5, 6, 7, 8, 9})), BCM_E_PARAM);
    EXPECT_EQ(trunks.set(5, members({})), BCM_E_PARAM);
    EXPECT_EQ(trunks, before);
}

TEST_F(TrunkTableTest, CriteriaAreOneToSix)
{
    for (int criterion : {0, 7}) {
        EXPECT_EQ(trunks.set(5, members({1}, criterion)), BCM_E_PARAM);
        EXPECT_EQ(trunks.set_criterion(5, criterion), BCM_E_PARAM);
    }
    EXPECT_EQ(trunks.set(5, members({1}, 1)), 0);
    EXPECT_EQ(trunks.set_criterion(5, 6), 0);
    EXPECT_EQ(trunks.at(5).criterion, 6);
}

TEST_F(TrunkTableTest, MembersAreFrontPorts)
{
    for (int port : {-1, 0, 54})
        EXPECT_EQ(trunks.set(5, members({1, port})), BCM_E_PORT);
    EXPECT_EQ(trunks.set(5, members({53})), 0);
}

TEST_F(TrunkTableTest, APortOfAnotherTrunkIsRefusedUntilThatTrunkGoes)
{
    trunks.create_id(6);
    ASSERT_EQ(trunks.set(5, members({1, 2})), 0);
    EXPECT_EQ(trunks.set(6, members({2, 3})), BCM_E_RESOURCE);
    EXPECT_EQ(trunks.trunk_of(3), -1);
    ASSERT_EQ(trunks.destroy(5), 0);
    EXPECT_EQ(trunks.set(6, members({2, 3})), 0);
}

TEST_F(TrunkTableTest, ADesignatedPortThatIsNoMemberCountsAsNone)
{
    Trunk trunk = members({1, 2});
    trunk.dlf_port = 2;
    trunk.mc_port = 3;
    ASSERT_EQ(trunks.set(5, trunk), 0);
    EXPECT_EQ(trunks.at(5).dlf_port, 2);
    EXPECT_EQ(trunks.at(5).mc_port, -1);
}

TEST_F(TrunkTableTest, ATrunkMadeAgainStartsEmpty)
{
    ASSERT_EQ(trunks.set(5, members({1}, 6)), 0);
    ASSERT_EQ(trunks.destroy(5), 0);
    ASSERT_EQ(trunks.create_id(5), 0);
    EXPECT_TRUE(trunks.at(5).members.empty());
    EXPECT_EQ(trunks.at(5).criterion, 3);
}

} // namespace
