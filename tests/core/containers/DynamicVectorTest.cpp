// Proves the capacity rules of both growth strategies, that memory is given back only on demand,
// that a keeping vector keeps, and that copies are apart.
#include "core/containers/DynamicVector.h"
#include "core/Seed.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

using namespace Lathe::Core;

namespace {

struct SStep {
    int m_Count;
    bool m_Force;
    int m_Capacity;
};

template <class TVector>
void CheckCapacities(TVector vector, const std::vector<SStep>& steps) {
    for (const auto& [count, force, capacity] : steps) {
        const auto* block = vector.GetData();
        const bool stays = capacity == vector.GetCapacity();
        vector.SetCount(count, force);
        EXPECT_EQ(vector.GetCount(), count);
        EXPECT_EQ(vector.GetCapacity(), capacity) << "at count " << count;
        EXPECT_EQ(vector.GetData() == block, stays) << "at count " << count;
    }
}

using Text = std::string;
template <class TVector>
class KeepingVectorTest : public testing::Test {};
using KeepingVectors =
    testing::Types<TDynamicVector<char, CExpGrowthStrategy, TMemoryCopier>,
                   TDynamicVector<Text, CStepGrowthStrategy, TEqualOperatorCopier>>;
TYPED_TEST_SUITE(KeepingVectorTest, KeepingVectors);

} // namespace

TEST(DynamicVectorTest, CapacityFollowsTheStrategy) {
    CheckCapacities(TNCDynamicVector<Text, CStepGrowthStrategy>(),
                    {{6, false, 6}, {7, false, 7}, {5, false, 7}, {6, true, 7}, {3, true, 3}});
    CheckCapacities(
        TNCDynamicVector<Text, CStepGrowthStrategy>(CStepGrowthStrategy(8)),
        {{1, false, 8}, {9, false, 16}, {40, false, 40}, {32, true, 40}, {31, true, 31}});
    const std::vector<SStep> exponential = {{1, false, 4},   {5, false, 8},     {9, false, 12},
                                            {13, false, 20}, {101, false, 104}, {69, true, 104},
                                            {68, true, 68},  {0, false, 68},    {2, true, 4}};
    CheckCapacities(TNCDynamicVector<Text, CExpGrowthStrategy>(), exponential);
    CheckCapacities(TDynamicVector<float, CExpGrowthStrategy, TMemoryCopier>(), exponential);
    // Twice this capacity doesn't fit an int.
    EXPECT_EQ(CExpGrowthStrategy().GetCapacity(1'400'000'000, 1'500'000'000), 1'500'000'000);
}

TYPED_TEST(KeepingVectorTest, ResizingKeepsWhatFits) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    TypeParam vector;
    std::vector<std::remove_reference_t<decltype(vector[0])>> model;
    for (int round = 0; round < 400; ++round) {
        const std::size_t count = random() % 50;
        vector.SetCount(static_cast<int>(count), random() % 3 == 0);
        const std::size_t kept = std::min(model.size(), count);
        ASSERT_TRUE(
            std::equal(model.begin(), model.begin() + static_cast<int>(kept), vector.GetData()));
        model.resize(count);
        for (std::size_t i = kept; i < count; ++i) // Unspecified until written.
            vector[static_cast<int>(i)] = model[i] = static_cast<char>(random());
    }
}

TYPED_TEST(KeepingVectorTest, AppendTakesItsOwnElementsAndCopiesAreApart) {
    TypeParam vector;
    vector.SetCount(1);
    vector[0] = 'x';
    for (int i = 0; i < 40; ++i)
        vector.Append(vector[0]); // The block moves under the argument.
    TypeParam copy = vector;
    vector[40] = 'y';
    EXPECT_EQ(copy[40], copy[0]);
    copy = std::move(vector);
    EXPECT_EQ(copy.GetCount(), 41);
    EXPECT_NE(copy[40], copy[39]);
}
