// Proves that a kept result is computed once for as long as its argument stays the same to the bit,
// and not at all where another has it.

#include "math/KeptResult.h"

#include <gtest/gtest.h>

#include <cmath>

namespace Lathe::Math {

static int g_Calls = 0;
static double CountedInverse(double x) {
    ++g_Calls;
    return 1.0 / x;
}

TEST(KeptResult, ComputesOnlyWhatNeitherItNorTheOtherHas) {
    const struct {
        double m_Own, m_Others, m_Asked;
        int m_Calls;
    } cases[] = {
        {2.0, 4.0, 2.0, 0},  {2.0, 4.0, 4.0, 0}, {2.0, 4.0, 8.0, 1},
        {2.0, 0.0, -0.0, 1}, // Whose inverse is the other infinity.
        {-0.0, 2.0, 0.0, 1}, {NAN, 2.0, NAN, 0}, {2.0, NAN, NAN, 0},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(test.m_Asked);
        TKeptResult<double, &CountedInverse> own;
        TKeptResult<double, &CountedInverse> other;
        EXPECT_EQ(own.Get(0.0), INFINITY) << "asked for before anything else";
        own.Get(test.m_Own);
        other.Get(test.m_Others);
        g_Calls = 0;
        const double expected = 1.0 / test.m_Asked;
        for (int i = 0; i < 2; ++i) {
            const double result = own.Get(test.m_Asked, other);
            EXPECT_TRUE(std::isnan(expected) ? std::isnan(result) : result == expected) << result;
            EXPECT_EQ(g_Calls, test.m_Calls);
        }
        // Takes nothing away from the other.
        other.Get(test.m_Others);
        EXPECT_EQ(g_Calls, test.m_Calls);
    }
}

} // namespace Lathe::Math
