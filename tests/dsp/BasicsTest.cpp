// Proves the small parts that filters are made of: clocks of outputs and vectors of values.

#include "dsp/OutputDataSync.h"
#include "dsp/values/ParamsValues.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Lathe::Audio::DSP {

TEST(OutputDataSync, FallsDueAtOnceAndThenOnceAPeriod) {
    const struct {
        double m_SampleRate;
        double m_RefreshRate;
        int m_Period;
    } cases[] = {{44100.0, 10.0, 4410}, {48000.0, 7.0, 6857}, {100.0, 200.0, 0},
                 {44100.0, -1.0, 0},    {NAN, 10.0, 0},       {44100.0, 0.0, 0}};
    for (const auto& row : cases) {
        COutputDataSync clock(1.0);
        clock.SetSampleRate(row.m_SampleRate);
        EXPECT_TRUE(clock.IsTimeToSync());
        clock.ResetCounter();
        clock.AddSamples(row.m_Period / 2);
        clock.SetRefreshRate(row.m_RefreshRate); // Keeps the counter.
        clock.AddSamples((row.m_Period - 1) / 2);
        EXPECT_EQ(clock.IsTimeToSync(), row.m_Period == 0) << row.m_RefreshRate;
        clock.AddSamples(1);
        EXPECT_TRUE(clock.IsTimeToSync());
        clock.AddSamples(std::numeric_limits<int>::max());
        EXPECT_TRUE(clock.IsTimeToSync()) << "however long nobody asks";
    }
}

TEST(OutputDataSyncMux, SpeaksForTheClocksThatExist) {
    for (int mask = 0; mask < 4; ++mask) {
        COutputDataSync fast(100.0);
        COutputDataSync slow(10.0);
        fast.SetSampleRate(1000.0);
        slow.SetSampleRate(1000.0);
        COutputDataSyncMux mux;
        mux.Attach(mask & 2 ? &slow : nullptr, mask & 1 ? &fast : nullptr);
        EXPECT_EQ(mux.GetRefreshRate(), mask & 1 ? 100.0 : mask ? 10.0 : 0.0);
        EXPECT_EQ(mux.IsTimeToSync(), mask != 0);
        mux.ResetCounter();
        EXPECT_FALSE(mux.IsTimeToSync());
        fast.AddSamples(10);
        EXPECT_EQ(mux.IsTimeToSync(), (mask & 1) != 0) << "either clock will do";
        mux.SetRefreshRate(5.0);
        EXPECT_EQ(fast.GetRefreshRate(), mask & 1 ? 5.0 : 100.0);
        EXPECT_EQ(slow.GetRefreshRate(), mask & 2 ? 5.0 : 10.0);
    }
}

TEST(ParamsValues, KeepWhatIsInsideAndReadZeroOutside) {
    const double numbers[] = {1.0, 2.0, 3.0, 4.0, 5.0};
    CParamsValues three(3, numbers);
    for (const int index : {-1, 3, 1000}) {
        three.SetValue(index, 9.0);
        EXPECT_EQ(three.GetValue(index), 0.0);
    }
    const CParamsValues two(2, numbers + 3);
    const CConstParamsValuesMux mux(three, two);
    ASSERT_EQ(mux.GetCount(), 5);
    for (int i = 0; i < 5; ++i)
        EXPECT_EQ(mux.GetValue(i), numbers[i]);
    CDynamicParamsValues values(2);
    for (int round = 0; round < 2; ++round) {
        values.SetValue(1, 5.0);
        values.SetCount(7);
        EXPECT_EQ(values.GetValue(1), 5.0);
        EXPECT_EQ(values.GetValue(6), 0.0) << "what left does not come back";
        values.SetValue(6, 6.0);
        values.SetCount(2);
    }
}

} // namespace Lathe::Audio::DSP
