// Proves the plain functions at the edges of their ranges, and that the response curves are pairs
// of inverse functions. What each class id computes is proven with the function objects.

#include "math/PlainFunction.h"
#include "math/ValueCurve.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

namespace Lathe::Math {

namespace {

using namespace FunctionsLibrary;

TEST(FunctionsLibrary, TruncatesAnyNumberToAnInteger) {
    const double rounded[][2] = {
        {0.0, 0.0}, {-0.4, 0.0},      {0.5, 1.0},           {-0.5, -1.0},
        {2.5, 3.0}, {-2.5, -3.0},     {2.4, 2.0},           {2147483646.5, INT_MAX},
        {NAN, 0.0}, {1e300, INT_MAX}, {-INFINITY, INT_MIN},
    };
    for (const auto& [x, expected] : rounded)
        EXPECT_EQ(Round(x), expected) << x;
    const double remainders[][3] = {
        {7.9, 2.9, 1.0}, {-7.0, 2.0, -1.0},    {7.0, -2.0, 1.0},      {5.0, 0.0, 0.0},
        {5.0, 0.9, 0.0}, {INT_MIN, -1.0, 0.0}, {-1e300, -1.9, 0.0},   {NAN, 3.0, 0.0},
        {3.0, NAN, 0.0}, {5.0, INFINITY, 5.0}, {INT_MIN, 10.0, -8.0}, {1e300, 10.0, 7.0},
    };
    for (const auto& [x, y, expected] : remainders)
        EXPECT_EQ(Modulo(x, y), expected) << x << " % " << y;
}

TEST(FunctionsLibrary, EdgesOfTheirRanges) {
    for (const double x : {-1.0, -HUGE_VAL, 0.0, std::nan("")})
        EXPECT_EQ(SquareRoot(x), 0.0) << x;
    EXPECT_EQ(Log(0.0), -INFINITY);
    EXPECT_EQ(Not(-0.0), 1.0);
    // A truth value differs from 0, as NaN does.
    EXPECT_EQ(Not(NAN) + And(NAN, -0.0) + And(-0.0, NAN) + Or(-0.0, 0.0), 0.0);
    EXPECT_EQ(Or(NAN, 0.0) + Or(0.0, NAN), 2.0);
    // The two zeros are equal, and their signs tell which of them came back: the first.
    EXPECT_TRUE(std::signbit(Max(-0.0, 0.0)) && std::signbit(Min(-0.0, 0.0)));
    EXPECT_FALSE(std::signbit(Max(0.0, -0.0)) || std::signbit(Min(0.0, -0.0)));
    EXPECT_EQ(Normalize(7.0, 5.0, 5.0), 2.0);
    EXPECT_EQ(Normalize(3.0, 9.0, 1.0), 0.75);
    EXPECT_EQ(Denormalize(0.75, 9.0, 1.0), 3.0);
}

TEST(ValueCurve, PairsAreInverseAndRunFromTheMostRaisedToTheMostLowered) {
    double above = 1.0;
    for (int number = -1; number <= 13; ++number) {
        SCOPED_TRACE(number);
        const IFunction *direct = nullptr, *inverse = nullptr;
        GetCurveFunctions(static_cast<EParamValueCurve>(number), direct, inverse);
        for (double x = 0.0; x <= 1.0; x += 1.0 / 64) {
            // An exponential loses a few of the last digits in its difference from 1.
            EXPECT_NEAR(inverse->Evaluate(direct->Evaluate(x)), x, 1e-14);
            EXPECT_NEAR(direct->Evaluate(inverse->Evaluate(x)), x, 1e-14);
        }
        EXPECT_EQ(direct->Evaluate(0.0), 0.0);
        // A logarithm is divided by itself here; only an exponential rounds.
        EXPECT_NEAR(direct->Evaluate(1.0), 1.0, number <= 6 ? 0.0 : 4e-15);
        const IFunction* identity = &TFunction<Identity>::GetInstance();
        const bool isLine = number < 0 || number > 12 || (number % 3 == 0 && number % 12 != 0);
        EXPECT_EQ(direct == identity && inverse == identity, isLine);
        EXPECT_LT(isLine ? 0.0 : direct->Evaluate(0.5), above);
        above = isLine ? above : direct->Evaluate(0.5);
    }
}

} // namespace

} // namespace Lathe::Math
