#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "companion/vector_to_array.h"

namespace {

using Bytes = std::vector<uint8_t>;
using Array = std::array<uint8_t, 4>;

TEST(VectorToArray, CopiesTheFirstBytesAndNoMore)
{
    Array array = {9, 9, 9, 9};
    EXPECT_TRUE(vexo_vector_to_array(Bytes{1, 2, 3}, array.data(), 2));
    EXPECT_EQ(array, (Array{1, 2, 9, 9}));
}

TEST(VectorToArray, CopiesAWholeVector)
{
    Array array = {9, 9, 9, 9};
    EXPECT_TRUE(vexo_vector_to_array(Bytes{1, 2, 3}, array.data(), 3));
    EXPECT_EQ(array, (Array{1, 2, 3, 9}));
}

TEST(VectorToArray, CopiesNothingOnRequest)
{
    Array array = {9, 9, 9, 9};
    EXPECT_TRUE(vexo_vector_to_array(Bytes{}, array.data(), 0));
    EXPECT_EQ(array, (Array{9, 9, 9, 9}));
}

TEST(VectorToArray, RefusesMoreThanTheVectorHolds)
{
    Array array = {9, 9, 9, 9};
    EXPECT_FALSE(vexo_vector_to_array(Bytes{1, 2, 3}, array.data(), 4));
    EXPECT_EQ(array, (Array{9, 9, 9, 9}));
}

TEST(VectorToArray, RefusesANullArray)
{
    EXPECT_FALSE(vexo_vector_to_array(Bytes{1, 2, 3}, nullptr, 2));
}

} // namespace
