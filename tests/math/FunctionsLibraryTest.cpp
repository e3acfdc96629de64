// Proves the plain functions at the edges of their ranges, and that the response curves are pairs
// of inverse functions. What each class id computes is proven with the stored functions.

#include "math/PlainFunction.h"
#include "math/ValueCurve.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <random>

namespace Lathe::Math {

namespace {

using namespace FunctionsLibrary;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

TEST(FunctionsLibrary, RoundsHalfAwayFromZeroAndSaturates) {
    const struct {
        double m_X, m_Expected;
    } cases[] = {
        {0.0, 0.0},
        {-0.4, 0.0},
        {0.4, 0.0},
        {0.5, 1.0},
        {-0.5, -1.0},
        {2.5, 3.0},
        {-2.5, -3.0},
        {2.4, 2.0},
        {1e300, INT_MAX},
        {-Infinity, INT_MIN},
        {2147483646.5, INT_MAX},
        {NaN, 0.0},
    };
    for (const auto& test : cases)
        EXPECT_EQ(Round(test.m_X), test.m_Expected) << test.m_X;
}

TEST(FunctionsLibrary, ModuloIsARemainderOfIntegersForAnyArgument) {
    const struct {
        double m_X, m_Y, m_Expected;
    } cases[] = {
        {7.9, 2.9, 1.0}, {-7.0, 2.0, -1.0},    {7.0, -2.0, 1.0},      {5.0, 0.0, 0.0},
        {5.0, 0.9, 0.0}, {INT_MIN, -1.0, 0.0}, {-1e300, -1.9, 0.0},   {NaN, 3.0, 0.0},
        {3.0, NaN, 0.0}, {5.0, Infinity, 5.0}, {INT_MIN, 10.0, -8.0}, {1e300, 10.0, 7.0},
    };
    for (const auto& test : cases)
        EXPECT_EQ(Modulo(test.m_X, test.m_Y), test.m_Expected) << test.m_X << " % " << test.m_Y;
}

TEST(FunctionsLibrary, TruthIsWhateverDiffersFromZero) {
    const double values[] = {0.0, -0.0, 1.0, -2.5, 1e-310, Infinity, NaN};
    for (int i = 0; i < 7; ++i) {
        EXPECT_EQ(Not(values[i]), i < 2 ? 1.0 : 0.0) << values[i];
        for (int j = 0; j < 7; ++j) {
            EXPECT_EQ(And(values[i], values[j]), i >= 2 && j >= 2 ? 1.0 : 0.0) << i << ' ' << j;
            EXPECT_EQ(Or(values[i], values[j]), i >= 2 || j >= 2 ? 1.0 : 0.0) << i << ' ' << j;
        }
    }
}

TEST(FunctionsLibrary, TiesGiveTheFirst) {
    // The two zeros are equal, and their signs tell which of them came back.
    for (const double x : {0.0, -0.0}) {
        EXPECT_EQ(std::signbit(Max(x, -x)), std::signbit(x));
        EXPECT_EQ(std::signbit(Min(x, -x)), std::signbit(x));
    }
}

TEST(FunctionsLibrary, ArithmeticFaultsAreNotTrapped) {
    EXPECT_EQ(Division(1.0, 0.0), Infinity);
    EXPECT_EQ(Division(-1.0, 0.0), -Infinity);
    EXPECT_TRUE(std::isnan(Division(0.0, 0.0)));
    EXPECT_EQ(Log(0.0), -Infinity);
    EXPECT_EQ(TodB(0.0), -Infinity);
    EXPECT_EQ(FromdB(-Infinity), 0.0);
    EXPECT_TRUE(std::isnan(NormLog(-2.0)));
    for (const double x : {-1.0, -Infinity, 0.0, NaN})
        EXPECT_EQ(SquareRoot(x), 0.0) << x;
}

TEST(FunctionsLibrary, NormalizeAndDenormalizeAreInverse) {
    const unsigned seed = 20;
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> numbers(-100.0, 100.0);
    for (int i = 0; i < 1000; ++i) {
        const double min = numbers(random), max = numbers(random), value = numbers(random);
        // Both divide and multiply by the range once, so that the error grows with its inverse.
        const double tolerance = 1e-12 * (1.0 + 100.0 / std::fabs(max - min));
        EXPECT_NEAR(Denormalize(Normalize(value, min, max), min, max), value, tolerance);
        EXPECT_EQ(Denormalize(0.0, min, max), min);
    }
    EXPECT_EQ(Normalize(7.0, 5.0, 5.0), 2.0);
    EXPECT_EQ(Normalize(3.0, 1.0, 9.0), 0.25);
    EXPECT_EQ(Normalize(3.0, 9.0, 1.0), 0.75);
}

TEST(ValueCurve, PairsAreSharedInverseAndKeepTheEnds) {
    const int identities[] = {3, 6, 9, -1, 13, INT_MIN, INT_MAX};
    for (const int number : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, -1, 13, INT_MIN, INT_MAX}) {
        SCOPED_TRACE(number);
        const IFunction *direct = nullptr, *inverse = nullptr, *again = nullptr, *last = nullptr;
        GetCurveFunctions(static_cast<EParamValueCurve>(number), direct, inverse);
        GetCurveFunctions(static_cast<EParamValueCurve>(number), again, last);
        EXPECT_EQ(direct, again);
        EXPECT_EQ(inverse, last);
        for (const IFunction* function : {direct, inverse}) {
            EXPECT_EQ(function->Evaluate(0.0), 0.0);
            // An exponential loses a few of the last digits in its difference from 1.
            EXPECT_NEAR(function->Evaluate(1.0), 1.0, 4e-15);
        }
        for (double x = 0.0; x <= 1.0; x += 1.0 / 64) {
            EXPECT_NEAR(inverse->Evaluate(direct->Evaluate(x)), x, 1e-14);
            EXPECT_NEAR(direct->Evaluate(inverse->Evaluate(x)), x, 1e-14);
        }
        for (const int identity : identities) {
            if (number == identity) {
                EXPECT_EQ(direct, &TFunction<Identity>::GetInstance());
                EXPECT_EQ(inverse, direct);
            }
        }
    }
}

TEST(ValueCurve, NumbersRunFromTheMostRaisedToTheMostLowered) {
    double above = 1.0;
    for (const auto curve :
         {EParamValueCurve::Log3, EParamValueCurve::Log2, EParamValueCurve::Log1,
          EParamValueCurve::SquareRoot, EParamValueCurve::Log, EParamValueCurve::Linear,
          EParamValueCurve::Exp, EParamValueCurve::Square, EParamValueCurve::Exp1,
          EParamValueCurve::Exp2, EParamValueCurve::Exp3}) {
        const IFunction *direct = nullptr, *inverse = nullptr;
        GetCurveFunctions(curve, direct, inverse);
        EXPECT_LT(direct->Evaluate(0.5), above) << static_cast<int>(curve);
        above = direct->Evaluate(0.5);
    }
}

} // namespace

} // namespace Lathe::Math
