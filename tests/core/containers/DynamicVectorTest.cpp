// Proves the capacity rules of both growth strategies, that memory is given back only on demand,
// that a keeping vector keeps, and that copies are apart.
#include "core/containers/DynamicVector.h"
#include "core/Fixtures.h"

#include <algorithm>
#include <limits>

using namespace Lathe::Core;
using Text = std::string;

namespace {

// Each step is a count, whether memory is given back, and the capacity then.
template <class TVector, std::size_t Count>
void CheckCapacities(TVector vector, const int (&steps)[Count][3]) {
    for (const auto& [count, force, capacity] : steps) {
        const auto* block = vector.GetCapacity() == capacity ? vector.GetData() : nullptr;
        vector.SetCount(count, force != 0);
        EXPECT_EQ(vector.GetCapacity(), capacity) << "at count " << count;
        EXPECT_TRUE(!block || vector.GetData() == block) << "at count " << count;
    }
}

} // namespace

TEST(DynamicVectorTest, CapacityFollowsTheStrategy) {
    using Steps = TNCDynamicVector<Text, CStepGrowthStrategy>;
    CheckCapacities(Steps(), {{6, 0, 6}, {7, 0, 7}, {5, 0, 7}, {6, 1, 7}, {3, 1, 3}});
    CheckCapacities(Steps(CStepGrowthStrategy(8)),
                    {{1, 0, 8}, {9, 0, 16}, {40, 0, 40}, {32, 1, 40}, {31, 1, 31}});
    const int halves[][3] = {{1, 0, 4},    {5, 0, 8},   {9, 0, 12}, {13, 0, 20}, {101, 0, 104},
                             {69, 1, 104}, {68, 1, 68}, {0, 0, 68}, {2, 1, 4}};
    CheckCapacities(TNCDynamicVector<Text, CExpGrowthStrategy>(), halves);
    CheckCapacities(TDynamicVector<float, CExpGrowthStrategy, TMemoryCopier>(), halves);

    constexpr int Max = std::numeric_limits<int>::max(), Large = 1'500'000'000;
    EXPECT_EQ(CStepGrowthStrategy(8).GetCapacity(Max - 4, Max - 5), Max);
    EXPECT_EQ(CExpGrowthStrategy().GetCapacity(Max - 4, Max - 5), Max);
    EXPECT_EQ(CExpGrowthStrategy().GetCapacity(Max, 0), Max);
    EXPECT_EQ(CExpGrowthStrategy().GetCapacity(Large - 4, Large), Large);
}

// Resizes, appends of own elements, copies and moves against a vector of the standard library.
TEST(DynamicVectorTest, RandomChangesMatchTheModel) {
    using Vector = TDynamicVector<char, CExpGrowthStrategy, TMemoryCopier>;
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    Vector vector;
    std::vector<char> model;
    for (int round = 0; round < 2000; ++round) {
        if (!model.empty() && random() % 4) { // The block may move under the argument.
            const int from = static_cast<int>(random() % model.size());
            vector.Append(vector[from]), model.push_back(vector[from]);
        } else {
            std::size_t i = model.size();
            model.resize(random() % 50);
            vector.SetCount(static_cast<int>(model.size()), random() % 3 == 0);
            for (; i < model.size(); ++i) // Unspecified until written.
                vector[static_cast<int>(i)] = model[i] = static_cast<char>(random());
        }
        Vector copy = vector, assigned;
        assigned = copy;
        std::fill_n(copy.GetData(), copy.GetCount(), '-');
        vector = std::move(assigned);
        ASSERT_EQ(std::vector<char>(vector.GetData(), vector.GetData() + vector.GetCount()), model);
    }
}
