// Proves after how many samples outputs fall due, for one clock and for two seen as one.

#include "dsp/OutputDataSync.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace Lathe::Audio::DSP {

namespace {

constexpr int s_MaxInt = std::numeric_limits<int>::max();

// Due after exactly this many samples, however they come.
void CheckPeriod(COutputDataSync& clock, int samples) {
    for (const int step : {1, samples}) {
        clock.ResetCounter();
        for (int left = samples; left > 0; left -= step) {
            ASSERT_FALSE(clock.IsTimeToSync()) << left << " samples early";
            clock.AddSamples(step);
        }
        EXPECT_TRUE(clock.IsTimeToSync());
    }
}

TEST(OutputDataSync, FallsDueAtOnceAndThenOnceAPeriod) {
    const struct {
        double m_SampleRate;
        double m_RefreshRate;
        int m_Period;
    } cases[] = {
        {44100.0, 10.0, 4410}, {44100.0, 25.0, 1764}, {48000.0, 7.0, 6857}, {100.0, 200.0, 0},
        {44100.0, 0.0, 0},     {44100.0, -1.0, 0},    {0.0, 10.0, 0},       {NAN, 10.0, 0},
        {44100.0, NAN, 0},     {-44100.0, 10.0, 0},
    };
    for (const auto& row : cases) {
        SCOPED_TRACE(row.m_RefreshRate);
        COutputDataSync clock(row.m_RefreshRate);
        clock.SetSampleRate(row.m_SampleRate);
        EXPECT_TRUE(clock.IsTimeToSync());
        CheckPeriod(clock, row.m_Period);
    }
}

TEST(OutputDataSync, ANewRefreshRateKeepsTheCounter) {
    COutputDataSync clock(10.0);
    clock.SetSampleRate(1000.0);
    clock.ResetCounter();
    clock.AddSamples(50);
    clock.SetRefreshRate(20.0);
    EXPECT_TRUE(clock.IsTimeToSync());
    clock.SetRefreshRate(5.0);
    EXPECT_FALSE(clock.IsTimeToSync());
    clock.AddSamples(149);
    EXPECT_FALSE(clock.IsTimeToSync());
    clock.AddSamples(1);
    EXPECT_TRUE(clock.IsTimeToSync());
}

TEST(OutputDataSync, StaysDueHoweverLongNobodyAsks) {
    COutputDataSync clock(1e-12);
    clock.SetSampleRate(192000.0);
    clock.ResetCounter();
    for (int i = 0; i < 3; ++i)
        clock.AddSamples(s_MaxInt - 1);
    EXPECT_TRUE(clock.IsTimeToSync());
}

TEST(OutputDataSyncMux, SpeaksForTheClocksThatExist) {
    COutputDataSync fast(100.0);
    COutputDataSync slow(10.0);
    for (const bool hasFast : {false, true}) {
        for (const bool hasSlow : {false, true}) {
            SCOPED_TRACE(testing::Message() << hasFast << hasSlow);
            for (COutputDataSync* clock : {&fast, &slow})
                clock->SetSampleRate(1000.0);
            fast.SetRefreshRate(100.0);
            slow.SetRefreshRate(10.0);
            COutputDataSyncMux mux;
            mux.Attach(hasSlow ? &slow : nullptr, hasFast ? &fast : nullptr);
            EXPECT_EQ(mux.GetRefreshRate(), hasFast ? 100.0 : hasSlow ? 10.0 : 0.0);
            EXPECT_EQ(mux.IsTimeToSync(), hasFast || hasSlow);
            mux.ResetCounter();
            EXPECT_FALSE(mux.IsTimeToSync());
            EXPECT_EQ(fast.IsTimeToSync(), !hasFast) << "the reset reaches no other clock";
            for (COutputDataSync* clock : {&fast, &slow})
                clock->AddSamples(10);
            EXPECT_EQ(mux.IsTimeToSync(), hasFast) << "either clock will do";
            mux.SetRefreshRate(5.0);
            EXPECT_EQ(fast.GetRefreshRate(), hasFast ? 5.0 : 100.0);
            EXPECT_EQ(slow.GetRefreshRate(), hasSlow ? 5.0 : 10.0);
        }
    }
}

} // namespace

} // namespace Lathe::Audio::DSP
