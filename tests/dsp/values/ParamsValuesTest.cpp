// Proves which vectors of parameter values check their bounds, and what they keep.

#include "dsp/values/ParamsValues.h"

#include <gtest/gtest.h>

namespace Lathe::Audio::DSP {

namespace {

TEST(ParamsValues, ReadsZeroAndWritesNothingOutside) {
    const double numbers[] = {1.0, 2.0, 3.0};
    CParamsValues values(3, numbers);
    for (const int index : {-1, 3, 1000})
        values.SetValue(index, 9.0);
    EXPECT_EQ(values.GetCount(), 3);
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(values.GetValue(i), numbers[i]);
    for (const int index : {-1, 3, 1000})
        EXPECT_EQ(values.GetValue(index), 0.0);
    EXPECT_EQ(CParamsValues(2).GetValue(1), 0.0);
    EXPECT_EQ(CParamsValues(-1).GetCount(), 0);
}

TEST(DynamicParamsValues, KeepsValuesAndBringsInZeros) {
    CDynamicParamsValues values(2);
    values.SetValue(1, 5.0);
    values.SetCount(7);
    EXPECT_EQ(values.GetValue(1), 5.0);
    EXPECT_EQ(values.GetValue(6), 0.0);
    values.SetValue(6, 6.0);
    values.SetCount(2);
    values.SetCount(7);
    EXPECT_EQ(values.GetValue(1), 5.0);
    EXPECT_EQ(values.GetValue(6), 0.0) << "what left does not come back";
}

TEST(ConstParamsValuesMux, ReadsTheFirstThenTheSecond) {
    const double numbers[] = {1.0, 2.0, 3.0, 4.0, 5.0};
    const CParamsValues first(2, numbers);
    const CParamsValues second(3, numbers + 2);
    CConstParamsValuesMux mux(first, second);
    ASSERT_EQ(mux.GetCount(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(mux.GetValue(i), numbers[i]);
    mux.Attach(second, first);
    EXPECT_EQ(mux.GetValue(2), 5.0);
    EXPECT_EQ(mux.GetValue(3), 1.0);
    const CParamsValues none(0);
    mux.Attach(none, second);
    EXPECT_EQ(mux.GetValue(0), 3.0);
}

} // namespace

} // namespace Lathe::Audio::DSP
