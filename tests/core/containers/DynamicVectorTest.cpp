// Proves the capacity rules of both growth strategies, that memory is given back only on demand,
// that a keeping vector keeps, and that copies are apart.
#include "core/containers/DynamicVector.h"
#include "core/Fixtures.h"

#include <limits>

using namespace Lathe::Core;
using Text = std::string;

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
        EXPECT_EQ(vector.GetCapacity(), capacity) << "at count " << count;
        EXPECT_EQ(vector.GetData() == block, stays) << "at count " << count;
    }
}

// Resizes, appends of own elements, copies and moves against a vector of the standard library.
template <class T, class TVector>
void PlayAgainstModel() {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    TVector vector;
    std::vector<T> model;
    for (int round = 0; round < 2000; ++round) {
        if (!model.empty() && random() % 4) { // The block may move under the argument.
            const std::size_t from = random() % model.size();
            vector.Append(vector[static_cast<int>(from)]);
            model.push_back(model[from]);
        } else {
            std::size_t i = model.size();
            model.resize(random() % 50);
            vector.SetCount(static_cast<int>(model.size()), random() % 3 == 0);
            for (; i < model.size(); ++i) // Unspecified until written.
                vector[static_cast<int>(i)] = model[i] = static_cast<char>(random());
        }
        TVector copy = vector, assigned;
        assigned = copy;
        std::fill_n(copy.GetData(), copy.GetCount(), '-');
        vector = std::move(assigned);
        ASSERT_EQ(std::vector<T>(vector.GetData(), vector.GetData() + vector.GetCount()), model);
    }
}

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

    constexpr int Max = std::numeric_limits<int>::max(), Large = 1'500'000'000;
    // Count, capacity, and what a step of 8 and the half make of them.
    const int cases[][4] = {{Max - 4, Max - 5, Max, Max},
                            {Large, Large - 100'000'000, Large, 2'100'000'000},
                            {Large - 4, Large, Large, Large}};
    for (const auto& [count, capacity, step, exponentially] : cases) {
        EXPECT_EQ(CStepGrowthStrategy(8).GetCapacity(count, capacity), step);
        EXPECT_EQ(CExpGrowthStrategy().GetCapacity(count, capacity), exponentially);
    }
}

TEST(DynamicVectorTest, RandomChangesMatchTheModel) {
    PlayAgainstModel<char, TDynamicVector<char, CExpGrowthStrategy, TMemoryCopier>>();
    PlayAgainstModel<Text, TDynamicVector<Text, CStepGrowthStrategy, TEqualOperatorCopier>>();
}
