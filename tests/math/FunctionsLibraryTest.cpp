// Proves the plain functions at the edges of their ranges, and that the response curves are pairs
// of inverse functions. What each class id computes is proven with the stored functions.

#include "math/PlainFunction.h"
#include "math/ValueCurve.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>

namespace Lathe::Math {

namespace {

using namespace FunctionsLibrary;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NaN = std::numeric_limits<double>::quiet_NaN();

TEST(FunctionsLibrary, RoundsHalfAwayFromZeroAndSaturates) {
    const double cases[][2] = {
        {0.0, 0.0}, {-0.4, 0.0},      {0.5, 1.0},           {-0.5, -1.0},
        {2.5, 3.0}, {-2.5, -3.0},     {2.4, 2.0},           {2147483646.5, INT_MAX},
        {NaN, 0.0}, {1e300, INT_MAX}, {-Infinity, INT_MIN},
    };
    for (const auto& [x, expected] : cases)
        EXPECT_EQ(Round(x), expected) << x;
}

TEST(FunctionsLibrary, ModuloIsARemainderOfIntegersForAnyArgument) {
    const double cases[][3] = {
        {7.9, 2.9, 1.0}, {-7.0, 2.0, -1.0},    {7.0, -2.0, 1.0},      {5.0, 0.0, 0.0},
        {5.0, 0.9, 0.0}, {INT_MIN, -1.0, 0.0}, {-1e300, -1.9, 0.0},   {NaN, 3.0, 0.0},
        {3.0, NaN, 0.0}, {5.0, Infinity, 5.0}, {INT_MIN, 10.0, -8.0}, {1e300, 10.0, 7.0},
    };
    for (const auto& [x, y, expected] : cases)
        EXPECT_EQ(Modulo(x, y), expected) << x << " % " << y;
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

TEST(FunctionsLibrary, EdgesOfArithmetic) {
    EXPECT_EQ(Division(-1.0, 0.0), -Infinity);
    EXPECT_TRUE(std::isnan(Division(0.0, 0.0)));
    EXPECT_EQ(Log(0.0), -Infinity);
    EXPECT_EQ(TodB(0.0), -Infinity);
    for (const double x : {-1.0, -Infinity, 0.0, NaN})
        EXPECT_EQ(SquareRoot(x), 0.0) << x;
    // The two zeros are equal, and their signs tell which of them came back: the first.
    for (const double x : {0.0, -0.0}) {
        EXPECT_EQ(std::signbit(Max(x, -x)), std::signbit(x));
        EXPECT_EQ(std::signbit(Min(x, -x)), std::signbit(x));
    }
    EXPECT_EQ(Normalize(7.0, 5.0, 5.0), 2.0);
    EXPECT_EQ(Normalize(3.0, 9.0, 1.0), 0.75);
    EXPECT_EQ(Denormalize(0.75, 9.0, 1.0), 3.0);
}

TEST(ValueCurve, PairsAreInverseAndRunFromTheMostRaisedToTheMostLowered) {
    double above = 1.0;
    for (const int number : {0, 1, 2, 4, 5, 6, 7, 8, 10, 11, 12}) {
        SCOPED_TRACE(number);
        const IFunction *direct = nullptr, *inverse = nullptr;
        GetCurveFunctions(static_cast<EParamValueCurve>(number), direct, inverse);
        for (double x = 0.0; x <= 1.0; x += 1.0 / 64) {
            // An exponential loses a few of the last digits in its difference from 1.
            EXPECT_NEAR(inverse->Evaluate(direct->Evaluate(x)), x, 1e-14);
            EXPECT_NEAR(direct->Evaluate(inverse->Evaluate(x)), x, 1e-14);
        }
        EXPECT_EQ(direct->Evaluate(0.0), 0.0);
        EXPECT_NEAR(direct->Evaluate(1.0), 1.0, 4e-15);
        EXPECT_LT(direct->Evaluate(0.5), above);
        above = direct->Evaluate(0.5);
    }
}

TEST(ValueCurve, AllOtherNumbersAreTheSharedIdentity) {
    for (const int number : {3, 6, 9, -1, 13, INT_MIN, INT_MAX}) {
        const IFunction *direct = nullptr, *inverse = nullptr;
        GetCurveFunctions(static_cast<EParamValueCurve>(number), direct, inverse);
        EXPECT_EQ(direct, &TFunction<Identity>::GetInstance()) << number;
        EXPECT_EQ(inverse, direct) << number;
    }
}

} // namespace

} // namespace Lathe::Math
